#include "transform/link/budget.h"

#include <algorithm>

#include "patch/base_block.h"
#include "patch/hdmi_video.h"
#include "patch/video.h"

namespace reedid {
namespace {

// Rates are rounded to whole Hz and kHz in range limits, and in what people ask for.
constexpr uint32_t kRateSlack = 500;  // mHz, and Hz of lines

// Gbit/s of the FRL rates (HDMI 2.1, 6.4.2). A pixel has 24 bits, 8 when it is compressed.
constexpr uint32_t kFrlGigabits[] = {0, 9, 18, 24, 32, 40, 48};

// Places in an HDMI 1.4b VSDB and in both HDMI Forum blocks.
constexpr unsigned kMaxTmdsByte = 7;
constexpr unsigned kForumTmdsByte = 5, kForumFrlByte = 7;
constexpr uint32_t kTmdsStep = 5000;  // kHz

constexpr uint8_t kUhdVics[] = {93, 94, 95, 98};  // HDMI VICs 3, 2, 1, 4

uint32_t LinkClock(const EdidLink& link, const EdidHandle& original) {
  if (link.maxTmdsClock == 0) return kNoClock;
  const HdmiRates display = HdmiRatesOf(original);
  uint32_t tmds = link.maxTmdsClock;
  // A display that counts on FRL, or whose HDMI Forum block goes, is left with the TMDS clock that it states.
  const bool lessThanBefore = link.maxFrlRate == 0 && display.frl != 0;
  const bool forumGoes = display.forum && !NeedsForum(link);
  if (display.hdmi && display.tmds != 0 && (lessThanBefore || forumGoes)) tmds = std::min(tmds, display.tmds);
  return std::max(tmds, FrlClock(link.maxFrlRate, link.dsc != 0));
}

}  // namespace

uint32_t FrlClock(uint8_t rate, bool compressed) {
  return kFrlGigabits[std::min<size_t>(rate, 6)] * 1000000 / (compressed ? 8 : 24);
}

RateWindow RateWindowOf(const EdidHandle& handle) {
  RateWindow window;
  if (handle.blockCount == 0 || !HasBaseSlots(handle.blocks[0])) return window;
  const bool offsets = handle.blocks[0].bytes[19] >= 4;
  for (unsigned i = 0; i < kBaseSlots; ++i) {
    const Bytes slot = BaseSlot(handle.blocks[0], i);
    if (slot.Le24(0) != 0 || slot[3] != EDID_DESCRIPTOR_RANGE_LIMITS) continue;
    const unsigned flags = offsets ? slot[4] : 0;
    const auto from = [&](unsigned byte, unsigned bit) {  // a minimum has an offset only with the maximum
      return slot[byte] + (Bits(flags, bit, 2) == 3 ? 255u : 0u);
    };
    const auto to = [&](unsigned byte, unsigned bit) { return slot[byte] + (Bit(flags, bit + 1) ? 255u : 0u); };
    const auto open = [&](unsigned byte) { return !offsets && slot[byte] == 0xFF; };
    window.minV = from(5, 0) * 1000;
    if (!open(6)) window.maxV = to(6, 0) * 1000;
    if (!open(8)) window.maxH = to(8, 2) * 1000;
    // Equal limits are how a display of variable refresh rate states its one line rate.
    if (from(7, 2) != to(8, 2)) window.minH = from(7, 2) * 1000;
    return window;
  }
  return window;
}

HdmiRates HdmiRatesOf(const EdidHandle& handle) {
  HdmiRates rates;
  VisitCtaDataBlocks(handle, [&](CtaCursor& cursor) {
    const Bytes bytes = cursor.bytes();
    rates.ycc420 = rates.ycc420 || Is420(cursor);
    if (!rates.hdmi && IsHdmi14b(cursor)) {
      rates.hdmi = true;
      rates.tmds = std::max(rates.tmds, bytes[kMaxTmdsByte] * kTmdsStep);
    } else if (!rates.forum && IsHdmiForum(cursor)) {
      rates.forum = true;
      rates.tmds = std::max(rates.tmds, bytes[kForumTmdsByte] * kTmdsStep);
      rates.frl = bytes[kForumFrlByte] >> 4;
    }
  });
  for (const uint8_t vic : kUhdVics) rates.uhdVics = rates.uhdVics || CountSvds(handle, vic) != 0;
  return rates;
}

LinkBudget::LinkBudget(const EdidLink& link, const EdidHandle& original)
    : link_(link), clock_(LinkClock(link, original)), original_(original), window_(RateWindowOf(original)) {}

bool LinkBudget::FitsClock(uint32_t clock) const {
  return clock <= clock_ && (link_.maxPixelClock == 0 || clock <= link_.maxPixelClock);
}

bool LinkBudget::FitsPicture(const OfferedTiming& offer) const {
  const uint32_t lines = offer.timing.vactive * (offer.timing.interlaced != 0 ? 2u : 1u);
  return (link_.maxWidth == 0 || offer.timing.hactive <= link_.maxWidth) &&
         (link_.maxHeight == 0 || lines <= link_.maxHeight) &&
         (link_.maxRate == 0 || offer.rate <= uint64_t{link_.maxRate} + kRateSlack);
}

bool LinkBudget::IsWanted(uint32_t rate) const {
  bool wanted = link_.rateCount == 0;
  for (uint32_t i = 0; i < link_.rateCount; ++i) wanted = wanted || SameRate(rate, link_.rates[i]);
  return wanted;
}

Carried LinkBudget::CarriedOf(const OfferedTiming& offer) const {
  if (!FitsPicture(offer)) return Carried::kNot;
  const uint32_t clock = offer.timing.pixelClock;
  const bool only420 = offer.ycc420 == YCC420_ONLY;
  if (FitsClock(clock)) return only420 && link_.ycc420 == 0 ? Carried::kNot : Carried::kWhole;
  const bool halves = link_.ycc420 != 0 && offer.ycc420 != YCC420_NO && clock / 2 <= clock_ && IsWanted(offer.rate) &&
                      (link_.maxPixelClock == 0 || clock <= link_.maxPixelClock);
  if (!halves) return Carried::kNot;
  return only420 ? Carried::kWhole : Carried::kIn420;
}

bool LinkBudget::TakesAnyRange(const OfferedTiming& mode, uint32_t clock) const {
  return clock != 0 && FitsClock(clock) && FitsPicture(mode);
}

bool LinkBudget::Takes(const OfferedTiming& mode, uint32_t clock) const {
  const uint32_t total = mode.timing.hactive + uint32_t{mode.timing.hblank};
  if (!TakesAnyRange(mode, clock) || total == 0) return false;
  const uint64_t lines = uint64_t{clock} * 1000 / total;  // a second
  return mode.rate + uint64_t{kRateSlack} >= window_.minV && mode.rate <= uint64_t{window_.maxV} + kRateSlack &&
         lines + kRateSlack >= window_.minH && lines <= uint64_t{window_.maxH} + kRateSlack;
}

uint32_t ClockAt(const OfferedTiming& mode, uint32_t rate, unsigned unit) {
  const uint64_t total = mode.timing.hactive + uint64_t{mode.timing.hblank};
  const uint64_t step = uint64_t{unit} * 2000000;  // half lines, mHz and kHz
  const uint64_t clock = (std::min(rate, kHighestRate) * total * mode.vTotalHalfLines + step / 2) / step * unit;
  return static_cast<uint32_t>(std::min<uint64_t>(clock, kNoClock));
}

uint32_t InFamilyOf(uint32_t own, uint32_t whole) {
  constexpr uint32_t kRounding = 20;  // mHz, of a clock in steps of 10 kHz
  const auto isWhole = [](uint64_t rate) { return (rate + kRounding) % 1000 <= 2 * kRounding; };
  const bool family = !isWhole(own) && isWhole(uint64_t{own} * 1001 / 1000);
  return family ? static_cast<uint32_t>(uint64_t{whole} * 1000 / 1001) : whole;
}

}  // namespace reedid
