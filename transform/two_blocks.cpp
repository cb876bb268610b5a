// An image of three blocks or more for sources that read two. The base block and the first CTA extension stay, byte for
// byte, and take in what the others told of timings, high rates first.

#include <algorithm>
#include <tuple>

#include "base/log.h"
#include "patch/base_block.h"
#include "patch/image.h"
#include "patch/video.h"
#include "reedid/transforms.h"
#include "timing/dtd.h"
#include "timing/modes.h"
#include "transform/link/hdmi.h"
#include "transform/link/image_size.h"
#include "transform/link/timings.h"

namespace reedid {
namespace {

constexpr unsigned kBlocksLeft = 2;
constexpr uint32_t kHighRate = 99000;  // mHz

// CTA-861 if there is one: sources look there.
unsigned ExtensionToKeep(const EdidHandle& image) {
  for (unsigned i = 1; i < image.blockCount; ++i) {
    if (image.blocks[i].type == EDID_BLOCK_CEA && IsWhole(image.blocks[i])) return i;
  }
  return image.blocks[1].type == EDID_BLOCK_MAP ? 2 : 1;
}

// The size of the screen by DisplayID display parameters (0.1 mm, or mm with bit 7 of byte 1 from 2.0 on), as far as the base
// block tells a smaller one or none: timings that stay have sizes by it.
void KeepScreenSize(EdidHandle& image, EdidBlock& from) {
  constexpr unsigned kSize = 3, kScreen = 21, kSmallest = 10, kTenthsOfCm = 100;
  EdidBlock& base = image.blocks[0];
  for (SectionCursor cursor(from); cursor.Next();) {
    const bool old = cursor.tag() == DISPID_TAG_DISPLAY_PARAMS, now = cursor.tag() == DISPID20_TAG_DISPLAY_PARAMS;
    if ((!old && !now) || (base.bytes[kScreen] == 0) != (base.bytes[kScreen + 1] == 0)) continue;
    const unsigned unit = now && Bit(cursor.bytes()[1], 7) != 0 ? kSmallest : 1;
    for (unsigned i = 0; i < 2; ++i) {
      const unsigned size = cursor.bytes().Le16(kSize + 2 * i) * unit;
      const unsigned told = base.bytes[kScreen + i] * kTenthsOfCm, cm = (size + kTenthsOfCm / 2) / kTenthsOfCm;
      if (size >= told + kTenthsOfCm && cm <= 255) Overwrite(base, kScreen + i, Low8(cm));
    }
  }
}

// What a picture that fills the screen measures: as the first timing tells, unless that is more than the screen.
DtdTiming PictureSize(const EdidBlock& base) {
  constexpr unsigned kRounding = 10;  // mm
  const DtdTiming screen = ScreenSize(base);
  const DtdTiming first = LeadingTimings(base) != 0 ? SizeOf(BaseSlot(base, 0)) : DtdTiming{};
  const bool fits = screen.hImageSize == 0 || (first.hImageSize < screen.hImageSize + kRounding &&
                                               first.vImageSize < screen.vImageSize + kRounding);
  return first.hImageSize != 0 && first.vImageSize != 0 && fits ? first : screen;
}

class TwoBlocks {
 public:
  TwoBlocks(EdidHandle& image, const EdidHandle& before, unsigned kept)
      : image_(image), before_(before), kept_(kept), budget_(EDID_LINK_HDMI20, before) {}

  void Run() {
    for (unsigned i = 1; i < before_.blockCount; ++i) {
      if (i != kept_) KeepScreenSize(image_, before_.blocks[i]);
    }
    for (unsigned i = image_.blockCount; i-- > 1;) {
      if (i != kept_) EraseBlock(image_, i);
    }
    AddLost([&](const OfferedTiming& lost, OfferedTiming&) { return Fits(lost); });
    AddHighRates();
    AddLost([&](const OfferedTiming& lost, OfferedTiming& now) {
      if (Fits(lost)) return false;
      now.rate = SlowerRate(budget_, lost, 10);
      now.timing.pixelClock = now.rate == 0 ? 0 : ClockAt(lost, now.rate, 10);
      return now.rate != 0;
    });
  }

 private:
  bool IsLost(const OfferedTiming& offer) const {
    return offer.block != 0 && offer.block != kept_ && TellsOwnRates(offer) && offer.timing.interlaced == 0 &&
           offer.ycc420 != YCC420_ONLY;
  }

  bool Fits(const OfferedTiming& mode) const {
    return FitsDescriptor(mode.timing) && budget_.TakesAnyRange(mode, mode.timing.pixelClock);
  }

  // The timings of the blocks that went, as change(lost, it) makes them, fastest first.
  template <class Change>
  void AddLost(Change change) {
    const auto order = [](const OfferedTiming& o) {
      return std::tuple(o.rate, o.timing.hactive, o.timing.vactive, o.timing.pixelClock, o.block, o.offset, o.variant);
    };
    OfferedTiming last = {};
    last.rate = UINT32_MAX;
    for (bool found = true; found;) {
      found = false;
      OfferedTiming best = {};
      VisitOffers(before_, [&](const OfferedTiming& offer) {
        OfferedTiming now = offer;
        if (!IsLost(offer) || !change(offer, now)) return;
        if (order(now) < order(last) && (!found || order(best) < order(now))) best = now;
        found = found || order(now) < order(last);
      });
      if (found) Add(best);
      last = best;
    }
  }

  // High rates that no timing tells now come back as 1920x1080, which is no larger than what has them.
  void AddHighRates() {
    VisitOffers(before_, [&](const OfferedTiming& offer) {
      CvtTiming request = {};
      request.formula = 2;
      request.aspectRatio = ASPECT_16_9;
      request.hactive = 1920;
      request.vactive = 1080;
      request.frameRate = Low16((offer.rate + 500) / 1000);
      DtdTiming timing;
      if (!IsLost(offer) || offer.rate < kHighRate || offer.timing.hactive < request.hactive ||
          offer.timing.vactive < request.vactive || HasRate(offer.rate) || ExpandCvt(request, timing) != nullptr) {
        return;
      }
      const Mode mode = ModeOf(timing);
      OfferedTiming now = {};
      now.timing = timing;
      now.rate = RateOf(mode);
      now.vTotalHalfLines = mode.vTotalHalfLines;
      if (budget_.Takes(now, timing.pixelClock)) Add(now);
    });
  }

  bool HasRate(uint32_t rate) const {
    bool found = false;
    VisitOffers(image_, [&](const OfferedTiming& offer) {
      found = found || (TellsOwnRates(offer) && SameRate(offer.rate, rate));
    });
    return found;
  }

  void Add(const OfferedTiming& mode) {
    OfferedTiming fresh = mode;
    fresh.block = UINT8_MAX;  // at no place yet
    if (!Fits(mode) || IsOfferedElsewhere(image_, budget_, fresh, mode.rate)) return;
    const bool vic = mode.vic != 0 && mode.ycc420 != YCC420_ONLY && AddVic(image_, 1, mode.vic);
    if (vic || AddAsDetailed(mode)) WidenRange(image_, mode);
  }

  bool AddAsDetailed(const OfferedTiming& mode) {
    DtdTiming timing = mode.timing;
    const EdidBlock& base = image_.blocks[0];
    SetImageSize(base, PictureSize(base), timing);
    DtdSlot slot;
    return VESA_SetDTD(&timing, &slot) == 0 && AddDetailedTiming(image_, 1, Bytes(slot.bytes, sizeof slot.bytes));
  }

  EdidHandle& image_;
  const EdidHandle& before_;
  unsigned kept_;
  LinkBudget budget_;
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t EDID_FitTwoBlocks(EdidHandle* handle) {
  if (handle == nullptr || handle->blocks == nullptr || handle->blockCount == 0 || !HasBaseSlots(handle->blocks[0])) {
    return REEDID_ERR("invalid parameters");
  }
  if (handle->blockCount <= kBlocksLeft) return 0;
  Draft draft(*handle);
  if (!draft.ok()) return REEDID_ERR("malloc fail");
  TwoBlocks(draft.image(), *handle, ExtensionToKeep(*handle)).Run();
  draft.Commit(*handle);
  return 0;
}
