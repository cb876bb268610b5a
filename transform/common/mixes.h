// What two displays have in common, part by part: each takes a part of `image` down to what `other` has too.
#pragma once

#include <cstdint>

#include "base/memory.h"
#include "inventory/offers.h"
#include "transform/link/budget.h"

namespace reedid {

// HDMI 2.1 and nothing limited.
inline constexpr EdidLink kAnyLink = {0, 0, 6, 1, 1, 0, 0, 0, 0, 0, nullptr, 0};

// The timings that a display offers, to ask about many times.
class OfferList {
 public:
  explicit OfferList(const EdidHandle& image);
  bool ok() const { return list_ != nullptr; }  // false without memory

  struct Shared {
    bool whole = false;
    bool in420 = false;
  };
  // In which forms the display has the mode of another's offer, wherever it stands and by whatever name.
  Shared FormsOf(const OfferedTiming& offer) const;

 private:
  Owned<OfferedTiming[]> list_;
  unsigned count_ = 0;
};

// Whether two offers are one mode on the wire: a source may send it at 1000/1001 of the clock too.
bool SameMode(const OfferedTiming& a, const OfferedTiming& b);
bool IsVga(const OfferedTiming& offer);

// The clock in kHz up to which the links of both displays carry a picture; kNoClock where they carry all that both offer.
uint32_t CommonClock(const EdidHandle& a, const EdidHandle& b);

// Every timing but the preferred one; 640x480 at 60 Hz, which every display shows, stays.
void MixTimings(EdidHandle& image, const EdidHandle& other, const OfferList& theirs, uint32_t clock);
// The preferred timing, once the others are common: the first detailed timing that stays, else the best of all.
void MixPreferred(EdidHandle& image, const OfferList& theirs, uint32_t clock);

// Whether a timing is marked native, progressive or interlaced. A panel whose own format is gone has none: interlaced ones
// that were native beside it are not its size.
bool HasNative(const EdidHandle& image, bool interlaced);
void ClearInterlacedNatives(EdidHandle& image);

void MixRanges(EdidHandle& image, const EdidHandle& other);
// Whether a data block tells of sound: formats, speakers, the room.
bool IsSound(const CtaCursor& cursor);
void MixAudio(EdidHandle& image, const EdidHandle& other);
void MixColour(EdidHandle& image, const EdidHandle& other);
void MixStaticHdr(EdidHandle& image, const EdidHandle& other);

// Whether a source can send what the HDR static metadata tells: it takes BT.2020 and more than 8 bits.
bool CanSendHdr(const EdidHandle& image);
void DropStaticHdr(EdidHandle& image);

// What a data block tells that no other part knows how to compare stays where the other has the very same block.
void MixOtherBlocks(EdidHandle& image, const EdidHandle& other);

}  // namespace reedid
