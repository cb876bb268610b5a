// What a link can carry of an image, and at which rates the display would take what it cannot.
#pragma once

#include <cstdint>
#include <optional>

#include "inventory/offers.h"
#include "reedid/transforms.h"

namespace reedid {

inline constexpr uint32_t kNoClock = UINT32_MAX;
// From here on a format may be sent in YCbCr 4:2:0 (HDMI 2.1, 7.2): kHz.
inline constexpr uint32_t kLeast420Clock = 590000;

// The vertical and horizontal rates of the base block's range limits (EDID 1.4, 3.10.3.3).
struct RateWindow {
  uint32_t minV = 0, maxV = UINT32_MAX;  // mHz
  uint32_t minH = 0, maxH = UINT32_MAX;  // Hz
};
RateWindow RateWindowOf(const EdidHandle& handle);

// The HDMI blocks of an image, as far as they bear on its timings.
struct HdmiRates {
  bool hdmi = false;   // an HDMI 1.4b VSDB
  bool forum = false;  // an HDMI Forum VSDB or sink capability block
  uint32_t tmds = 0;   // kHz, what the display takes, by either block; 0 where neither tells
  uint8_t frl = 0;
  bool ycc420 = false;   // a 4:2:0 video block or capability map
  bool uhdVics = false;  // VICs that are HDMI VICs too
};
HdmiRates HdmiRatesOf(const EdidHandle& handle);

// Whether the HDMI Forum block has anything to say on this link.
constexpr bool NeedsForum(const EdidLink& link) {
  return link.dvi == 0 && (link.maxFrlRate != 0 || link.maxTmdsClock == 0 || link.maxTmdsClock > 340000 || link.ycc420);
}

enum class Carried {
  kWhole,  // as it is offered
  kIn420,  // only by its YCbCr 4:2:0 form
  kNot,
};

// The pixel clock in kHz that an FRL rate carries at 8 bits a colour. Sources count blanking and coding exactly; what they
// cannot send they leave.
uint32_t FrlClock(uint8_t rate, bool compressed);

class LinkBudget {
 public:
  // `original` is the image before any edit: its rates are the display's.
  LinkBudget(const EdidLink& link, const EdidHandle& original);

  const EdidLink& link() const { return link_; }
  uint32_t clock() const { return clock_; }  // kHz in full colour, kNoClock without a limit
  Carried CarriedOf(const OfferedTiming& offer) const;
  // Whether a progressive or interlaced mode with this clock would be carried in full colour, within the display's
  // range limits.
  bool Takes(const OfferedTiming& mode, uint32_t clock) const;
  bool TakesAnyRange(const OfferedTiming& mode, uint32_t clock) const;

  // The highest rate (mHz) below `own`, and `own` itself with `orOwn`, that accept(rate) takes: a wanted one; without
  // wanted rates, or with `force`, one that the display offers; when none is taken, a usual one. 0 without any.
  struct Search {
    uint32_t own;
    bool force = false;
    bool orOwn = false;
  };
  template <class Accept>
  uint32_t BestRate(const Search& search, Accept accept) const;

 private:
  bool FitsPicture(const OfferedTiming& offer) const;
  bool FitsClock(uint32_t clock) const;
  bool IsWanted(uint32_t rate) const;

  EdidLink link_;
  uint32_t clock_;
  const EdidHandle& original_;
  RateWindow window_;
};

// The clock in kHz of a mode's totals at a rate, in steps of `unit` kHz.
uint32_t ClockAt(const OfferedTiming& mode, uint32_t rate, unsigned unit);

// 1000/1001 of a whole rate for a timing whose own rate is one such.
uint32_t InFamilyOf(uint32_t own, uint32_t whole);

// Whether two rates are the same but for rounding and 1000/1001.
constexpr bool SameRate(uint32_t a, uint32_t b) {
  const uint32_t apart = a > b ? a - b : b - a;
  return apart <= b / 400 || apart <= 100;
}

// Whether the list that a timing stands in tells rates that the display itself has: not those that computers have had
// for ages.
constexpr bool TellsOwnRates(const OfferedTiming& offer) {
  return offer.source != TIMING_ESTABLISHED && offer.source != TIMING_STANDARD &&
         offer.source != TIMING_ESTABLISHED_III && offer.source != TIMING_CVT_CODE;
}

inline constexpr uint32_t kUsualRates[] = {60000, 50000, 30000, 25000, 24000};
inline constexpr uint32_t kHighestRate = 2000000;  // mHz; more is no rate of a display

template <class Accept>
uint32_t LinkBudget::BestRate(const Search& search, Accept accept) const {
  uint32_t best = 0;
  const auto consider = [&](uint32_t rate) {
    const bool allowed = SameRate(rate, search.own) ? search.orOwn : rate < search.own;
    if (rate > best && allowed && rate <= kHighestRate && accept(rate)) best = rate;
  };
  for (uint32_t i = 0; i < link_.rateCount; ++i) consider(InFamilyOf(search.own, link_.rates[i]));
  if (best != 0 || (link_.rateCount != 0 && !search.force)) return best;
  VisitOffers(original_, [&](const OfferedTiming& offer) {
    if (TellsOwnRates(offer)) consider(offer.rate);
  });
  if (best != 0) return best;
  for (const uint32_t rate : kUsualRates) consider(InFamilyOf(search.own, rate));
  return best;
}

}  // namespace reedid
