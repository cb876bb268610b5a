// Taking the timings out of an image that a link does not carry, or slowing them down to a rate of the display.
#pragma once

#include "patch/video.h"
#include "transform/link/budget.h"

namespace reedid {

// The base block's first descriptor: the timing that a source takes when it has no other reason.
constexpr bool IsPreferredSlot(const OfferedTiming& offer) {
  return offer.block == 0 && offer.source == TIMING_DETAILED && offer.offset == 54;
}

constexpr BytePlace PlaceOf(const OfferedTiming& offer) {
  return {offer.block, offer.offset};
}

// Whether the image offers this picture at this rate elsewhere, in a form that the link carries.
bool IsOfferedElsewhere(const EdidHandle& image, const LinkBudget& budget, const OfferedTiming& mode, uint32_t rate);

// Whether 18 bytes can hold a timing.
constexpr bool FitsDescriptor(const DtdTiming& t) {
  return t.pixelClock >= 10 && t.pixelClock < 655360 && t.hactive < 4096 && t.hblank < 4096 && t.vactive < 4096 &&
         t.vblank < 4096 && t.hfrontPorch < 1024 && t.hsyncWidth < 1024 && t.vfrontPorch < 64 && t.vsyncWidth < 64;
}

// The highest rate at which the totals of a timing are carried in steps of `unit` kHz, below its own; 0 without one.
uint32_t SlowerRate(const LinkBudget& budget, const OfferedTiming& offer, unsigned unit);

// What becomes of a timing that the link does not carry as it is offered.
enum class Outcome {
  kChanged,  // it is carried now
  kGone,
  kKept,  // it could not be changed: the preferred timing, which another has to replace, or what no edit reaches
};
Outcome LimitOffer(EdidHandle& image, const LinkBudget& budget, const OfferedTiming& offer);

// Takes a timing that is neither a detailed one nor a VIC of CTA-861 out of its list. False when it cannot be.
bool EraseOffer(EdidHandle& image, const OfferedTiming& offer);

// Takes a short video descriptor out of its list. The last one of all becomes VIC 1: a source of HDMI asks for one.
Outcome DropSvd(EdidHandle& image, BytePlace place);

// Every timing but the preferred one.
void LimitTimings(EdidHandle& image, const LinkBudget& budget);

// The preferred timing is one, and carried: slowed down, or another mode of the same size, or the next detailed timing,
// or the largest that the image still offers. False when the link carries none at all.
bool LimitPreferred(EdidHandle& image, const LinkBudget& budget);

// The largest progressive picture that the image offers beside its preferred timing and that fits a descriptor; as a
// detailed timing, or fastest. False without one; range limits bind unless `anyRange`.
bool LargestOffered(const EdidHandle& image, const LinkBudget& budget, bool anyRange, OfferedTiming& largest);

// Another mode takes the place of the preferred timing, and leaves its own in the base block. False when it fits none.
bool SetPreferred(EdidHandle& image, const OfferedTiming& preferred, const OfferedTiming& mode);

}  // namespace reedid
