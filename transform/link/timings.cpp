#include "transform/link/timings.h"

#include "base/log.h"
#include "patch/base_block.h"
#include "timing/tables.h"

namespace reedid {
namespace {

constexpr unsigned kMaxSteps = 100000;  // each removes or slows a timing; there are never so many

bool SamePicture(const OfferedTiming& a, const OfferedTiming& b) {
  return a.timing.hactive == b.timing.hactive && a.timing.vactive == b.timing.vactive &&
         a.timing.interlaced == b.timing.interlaced;
}

// In steps of 10 kHz, or of 1 kHz less one in 24 bits as DisplayID has them.
void WriteClock(EdidHandle& image, const OfferedTiming& offer, uint32_t clock) {
  uint8_t bytes[3];
  const bool dtd = offer.source == TIMING_DETAILED;
  PutLe24(bytes, dtd ? clock / 10 : (offer.source == TIMING_TYPE_VII ? clock : clock / 10) - 1);
  Overwrite(image.blocks[offer.block], offer.offset, Bytes(bytes, dtd ? 2 : 3));
}

Outcome SlowOrErase(EdidHandle& image, const LinkBudget& budget, const OfferedTiming& offer) {
  const unsigned unit = offer.source == TIMING_TYPE_VII ? 1 : 10;
  const uint32_t rate = SlowerRate(budget, offer, unit);
  if (rate != 0 && !IsOfferedElsewhere(image, budget, offer, rate)) {
    WriteClock(image, offer, ClockAt(offer, rate, unit));
    return Outcome::kChanged;
  }
  if (image.blocks[offer.block].type == EDID_BLOCK_UNKNOWN) return Outcome::kKept;  // a list without free places
  if (offer.source != TIMING_DETAILED) return EraseOffer(image, offer) ? Outcome::kGone : Outcome::kKept;
  EraseDetailedTiming(image, PlaceOf(offer));
  return Outcome::kGone;
}

// The best video format of the same picture that the link carries; 0 for none.
uint8_t SlowerVic(const LinkBudget& budget, const OfferedTiming& offer) {
  uint8_t best = 0;
  const uint32_t rate = budget.BestRate({offer.rate}, [&](uint32_t wanted) {
    for (unsigned row = 1; row < kVicRows; ++row) {
      Mode mode;
      if (row == kEmptyVicRow || !VicMode(row, mode)) continue;
      OfferedTiming slower = {};
      slower.timing = mode.timing;
      slower.rate = RateOf(mode);
      if (!SamePicture(slower, offer) || mode.timing.aspectRatio != offer.timing.aspectRatio ||
          !SameRate(slower.rate, wanted) || !budget.Takes(slower, mode.timing.pixelClock)) {
        continue;
      }
      best = Low8(row > kEmptyVicRow ? row + 64 : row);
      return true;
    }
    return false;
  });
  return rate == 0 ? uint8_t{0} : best;
}

// The only short video descriptor may not go where a source of HDMI asks for one.
bool IsLastSvd(const EdidHandle& image) {
  unsigned count = 0;
  VisitCtaDataBlocks(image, [&](CtaCursor& cursor) {
    if (cursor.Is(CEA_TAG_VIDEO)) count += static_cast<unsigned>(cursor.bytes().size()) - 1;
  });
  return count == 1;
}

Outcome LimitSvd(EdidHandle& image, const LinkBudget& budget, const OfferedTiming& offer) {
  const BytePlace place = PlaceOf(offer);
  if (budget.CarriedOf(offer) == Carried::kIn420) {
    const bool listed = CountVics420(image, offer.vic) != 0;
    if (!IsLastSvd(image) && (listed || AddVic420(image, offer.block, offer.vic))) {
      EraseSvd(image, FindSvdOf(image, offer.block, offer.vic));  // it may have moved
      return Outcome::kGone;
    }
  }
  const uint8_t slower = SlowerVic(budget, offer);
  if (slower != 0 && CountSvds(image, slower) == 0 && CountVics420(image, slower) == 0) {
    Mode mode;
    const bool slow = !VicMode(slower > 192 ? slower - 64u : slower, mode) || mode.timing.pixelClock < kLeast420Clock;
    ReplaceSvd(image, place, slower);
    if (slow) ClearFromMap420(image, place);
    return Outcome::kChanged;
  }
  return DropSvd(image, place);
}

}  // namespace

Outcome DropSvd(EdidHandle& image, BytePlace place) {
  if (place.at == 0) return Outcome::kKept;
  if (IsLastSvd(image)) {
    ReplaceSvd(image, place, 1);
    ClearFromMap420(image, place);
    return Outcome::kChanged;
  }
  EraseSvd(image, place);
  return Outcome::kGone;
}

namespace {

void TellOutcome(const OfferedTiming& offer, Outcome outcome) {
  static constexpr const char* kWords[] = {"lowered", "dropped", "stays"};
  REEDID_INFO_AS("LimitTimings", "block %u byte %u: %ux%u %u.%03u Hz %u kHz %s", unsigned{offer.block},
                 unsigned{offer.offset}, unsigned{offer.timing.hactive}, unsigned{offer.timing.vactive},
                 offer.rate / 1000, offer.rate % 1000, offer.timing.pixelClock, kWords[static_cast<unsigned>(outcome)]);
}

}  // namespace

uint32_t SlowerRate(const LinkBudget& budget, const OfferedTiming& offer, unsigned unit) {
  return budget.BestRate({offer.rate}, [&](uint32_t rate) {
    OfferedTiming slower = offer;
    slower.rate = rate;
    return budget.Takes(slower, ClockAt(offer, rate, unit));
  });
}

bool IsOfferedElsewhere(const EdidHandle& image, const LinkBudget& budget, const OfferedTiming& mode, uint32_t rate) {
  bool found = false;
  VisitOffers(image, [&](const OfferedTiming& other) {
    const bool itself = other.block == mode.block && other.offset == mode.offset;
    found = found || (!itself && SamePicture(other, mode) && SameRate(other.rate, rate) &&
                      budget.CarriedOf(other) == Carried::kWhole);
  });
  return found;
}

Outcome LimitOffer(EdidHandle& image, const LinkBudget& budget, const OfferedTiming& offer) {
  switch (offer.source) {
    case TIMING_DETAILED:
      if (IsPreferredSlot(offer)) return Outcome::kKept;
      return SlowOrErase(image, budget, offer);
    case TIMING_TYPE_I:
    case TIMING_TYPE_II:
    case TIMING_TYPE_VII:
      return SlowOrErase(image, budget, offer);
    case TIMING_VIC:
      return LimitSvd(image, budget, offer);
    case TIMING_VIC_420:
      EraseVic420(image, PlaceOf(offer));
      return Outcome::kGone;
    default:
      return EraseOffer(image, offer) ? Outcome::kGone : Outcome::kKept;
  }
}

void LimitTimings(EdidHandle& image, const LinkBudget& budget) {
  unsigned next = 0;
  for (unsigned step = 0; step < kMaxSteps; ++step) {
    OfferedTiming offer;
    unsigned at = 0;
    bool found = false;
    VisitOffers(image, [&](const OfferedTiming& other) {
      if (!found && at++ >= next && budget.CarriedOf(other) != Carried::kWhole) {
        offer = other;
        found = true;
        next = at - 1;
      }
    });
    if (!found) return;
    const Outcome outcome = LimitOffer(image, budget, offer);
    if (!IsPreferredSlot(offer)) TellOutcome(offer, outcome);
    if (outcome != Outcome::kGone) ++next;
  }
}

}  // namespace reedid
