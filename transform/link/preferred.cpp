// The preferred timing under a limit: the first descriptor of the base block (EDID 1.4, 3.10.1) stays a timing.

#include <algorithm>

#include "base/log.h"
#include "patch/base_block.h"
#include "timing/dtd.h"
#include "timing/tables.h"
#include "transform/link/hdmi.h"
#include "transform/link/image_size.h"
#include "transform/link/timings.h"

namespace reedid {
namespace {

// A mode that could stand in the first descriptor.
struct Candidate {
  bool found = false;
  OfferedTiming mode = {};
};

OfferedTiming ModeFrom(const Mode& mode) {
  OfferedTiming offer = {};
  offer.timing = mode.timing;
  offer.rate = RateOf(mode);
  offer.vTotalHalfLines = mode.vTotalHalfLines;
  return offer;
}

bool IsTaken(const LinkBudget& budget, const OfferedTiming& mode, bool anyRange) {
  const uint32_t clock = mode.timing.pixelClock;
  return FitsDescriptor(mode.timing) && (anyRange ? budget.TakesAnyRange(mode, clock) : budget.Takes(mode, clock));
}

// The video format, else the CVT timing with reduced blanking, of a progressive picture at a rate.
Candidate ModeOfSize(const LinkBudget& budget, const OfferedTiming& picture, uint32_t rate, bool anyRange) {
  Candidate candidate;
  for (unsigned row = 1; row < kVicRows && !candidate.found; ++row) {
    Mode mode;
    if (row == kEmptyVicRow || !VicMode(row, mode)) continue;
    candidate.mode = ModeFrom(mode);
    candidate.found = mode.timing.hactive == picture.timing.hactive && mode.timing.vactive == picture.timing.vactive &&
                      mode.timing.interlaced == picture.timing.interlaced && SameRate(candidate.mode.rate, rate) &&
                      IsTaken(budget, candidate.mode, anyRange);
  }
  if (candidate.found || picture.timing.interlaced != 0) return candidate;
  for (unsigned formula = 1; formula <= 2; ++formula) {
    CvtTiming request = {};
    request.formula = Low8(formula);
    request.aspectRatio = ASPECT_UNKNOWN;
    request.hactive = picture.timing.hactive;
    request.vactive = picture.timing.vactive;
    request.frameRate = Low16((rate + 500) / 1000);
    DtdTiming timing;
    if (ExpandCvt(request, timing) != nullptr || timing.hactive != picture.timing.hactive) continue;
    candidate.mode = ModeFrom(ModeOf(timing));
    candidate.found = SameRate(candidate.mode.rate, rate) && IsTaken(budget, candidate.mode, anyRange);
    if (candidate.found) break;
  }
  return candidate;
}

// Another mode of the same picture, at the highest rate of the display.
Candidate SamePicture(const LinkBudget& budget, const OfferedTiming& preferred, bool anyRange) {
  Candidate candidate;
  budget.BestRate({preferred.rate, true, true}, [&](uint32_t rate) {
    const Candidate other = ModeOfSize(budget, preferred, rate, anyRange);
    if (other.found) candidate = other;
    return other.found;
  });
  return candidate;
}

bool IsBetter(const OfferedTiming& mode, const Candidate& best) {
  const auto area = [](const OfferedTiming& m) { return uint32_t{m.timing.hactive} * m.timing.vactive; };
  if (!best.found || area(mode) != area(best.mode)) return !best.found || area(mode) > area(best.mode);
  const bool detailed = mode.source == TIMING_DETAILED, bestDetailed = best.mode.source == TIMING_DETAILED;
  return detailed != bestDetailed ? detailed : mode.rate > best.mode.rate;
}

Candidate Largest(const EdidHandle& image, const LinkBudget& budget, bool anyRange) {
  Candidate best;
  best.found = LargestOffered(image, budget, anyRange, best.mode);
  return best;
}

// The largest video format that is no larger than a picture, at a rate of the display.
Candidate SmallerFormat(const LinkBudget& budget, const OfferedTiming& picture) {
  Candidate best;
  budget.BestRate({picture.rate, true, true}, [&](uint32_t rate) {
    for (unsigned row = 1; row < kVicRows; ++row) {
      Mode mode;
      if (row == kEmptyVicRow || !VicMode(row, mode) || mode.timing.interlaced != 0) continue;
      const OfferedTiming format = ModeFrom(mode);
      const bool smaller =
          format.timing.hactive <= picture.timing.hactive && format.timing.vactive <= picture.timing.vactive;
      if (smaller && SameRate(format.rate, rate) && IsBetter(format, best) && IsTaken(budget, format, false)) {
        best = {true, format};
      }
    }
    return false;  // another rate may have a larger one
  });
  return best;
}

bool SlowDown(EdidHandle& image, const LinkBudget& budget, const OfferedTiming& preferred) {
  const auto taken = [&](uint32_t rate) {
    OfferedTiming slower = preferred;
    slower.rate = rate;
    return budget.Takes(slower, ClockAt(preferred, rate, 10));
  };
  const uint32_t rate = budget.BestRate({preferred.rate, true}, taken);
  if (rate == 0) return false;
  uint8_t clock[2];
  PutLe16(clock, ClockAt(preferred, rate, 10) / 10);
  Overwrite(image.blocks[0], preferred.offset, Bytes(clock, sizeof clock));
  return true;
}

bool Replace(EdidHandle& image, const LinkBudget& budget, const OfferedTiming& preferred) {
  const auto write = [&](const Candidate& candidate) {
    return candidate.found && SetPreferred(image, preferred, candidate.mode);
  };
  Mode vga;
  const bool known = VicMode(1, vga);
  const Candidate last = {known && IsTaken(budget, ModeFrom(vga), true), ModeFrom(vga)};
  // Within the display's range limits; then those that it offers in spite of them.
  return write(SamePicture(budget, preferred, false)) || write(Largest(image, budget, false)) ||
         write(SmallerFormat(budget, preferred)) || write(Largest(image, budget, true)) ||
         write(SamePicture(budget, preferred, true)) || write(last);
}

}  // namespace

bool LargestOffered(const EdidHandle& image, const LinkBudget& budget, bool anyRange, OfferedTiming& largest) {
  Candidate best;
  VisitOffers(image, [&](const OfferedTiming& offer) {
    const bool reached =
        offer.block == 0 || image.blocks[offer.block].type == EDID_BLOCK_CEA || offer.source != TIMING_DETAILED;
    if (IsPreferredSlot(offer) || offer.timing.interlaced != 0 || offer.ycc420 == YCC420_ONLY || !reached) return;
    if (IsBetter(offer, best) && IsTaken(budget, offer, anyRange)) best = {true, offer};
  });
  if (best.found) largest = best.mode;
  return best.found;
}

// The first descriptor becomes this mode. A picture of another size is not what the panel natively has.
bool SetPreferred(EdidHandle& image, const OfferedTiming& preferred, const OfferedTiming& mode) {
  EdidBlock& base = image.blocks[0];
  DtdTiming timing = mode.timing;
  SetImageSize(base, SizeOf(BaseSlot(base, 0)), timing);
  DtdSlot slot;
  if (mode.source == TIMING_DETAILED) {
    BytesOf(image.blocks[mode.block]).From(mode.offset).First(kSlotSize).CopyTo(slot.bytes);
    if (!IsSizeOf(Bytes(slot.bytes, sizeof slot.bytes), timing)) WriteSize(slot.bytes, timing);
    if (mode.block == 0) EraseDetailedTiming(image, PlaceOf(mode));
  } else if (VESA_SetDTD(&timing, &slot) != 0) {
    return false;
  }
  SetBaseSlot(base, 0, Bytes(slot.bytes, sizeof slot.bytes));
  if (timing.hactive != preferred.timing.hactive || timing.vactive != preferred.timing.vactive) {
    ClearNativeTimings(image);
  }
  WidenRange(image, mode);
  return true;
}

bool LimitPreferred(EdidHandle& image, const LinkBudget& budget) {
  OfferedTiming preferred;
  bool found = false;
  VisitOffers(image, [&](const OfferedTiming& offer) {
    if (!IsPreferredSlot(offer) || budget.CarriedOf(offer) == Carried::kWhole) return;
    preferred = offer;
    found = true;
  });
  if (!found) return true;
  const bool slowed = SlowDown(image, budget, preferred);
  if (!slowed && !Replace(image, budget, preferred)) return false;
  REEDID_INFO_AS("LimitPreferred", "%ux%u %u.%03u Hz %u kHz %s", unsigned{preferred.timing.hactive},
                 unsigned{preferred.timing.vactive}, preferred.rate / 1000, preferred.rate % 1000,
                 preferred.timing.pixelClock, slowed ? "lowered" : "replaced");
  return true;
}

}  // namespace reedid
