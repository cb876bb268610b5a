// CTA data blocks and detailed timings by their bytes (CTA-861, 7.3 and 7.4; DisplayID, data block 0x81).
#pragma once

#include <cstdint>

#include "cea/codec.h"
#include "patch/section.h"

namespace reedid {

// Where CTA data blocks stand one behind another: the collection of a CTA extension, or a DisplayID data block 0x81.
struct CtaRun {
  EdidBlock* block = nullptr;
  unsigned begin = 0;
  unsigned end = 0;
  unsigned holder = 0;  // where the data block 0x81 begins; 0 in a CTA extension
};

// The collection of a CTA extension; empty for any other block. It ends where the timings begin. Without timings
// (byte 2 is 0) it may reach to the end: sources read it so.
CtaRun CollectionOf(EdidBlock& block);

// Walks a run and edits the data block at which it stands. The walk ends where nothing but zeros follows, and at a data
// block that passes the end.
class CtaCursor {
 public:
  explicit CtaCursor(const CtaRun& run) : run_(run), at_(run.begin) {}

  bool Next();
  Bytes bytes() const { return BytesOf(*run_.block).From(at_).First(size_); }  // header first
  uint8_t tag() const { return CeaHeader(bytes()[0]).tag; }
  uint8_t extTag() const { return tag() == CEA_TAG_EXTENDED ? bytes()[1] : uint8_t{0}; }
  bool Is(uint8_t wanted, uint8_t extended = 0) const {
    return tag() == wanted && (wanted != CEA_TAG_EXTENDED || (size_ > 1 && extTag() == extended));
  }
  // Whether a header of the reserved tag 0 stands before: some readers take it for the end.
  bool behindGap() const { return behindGap_; }
  unsigned at() const { return at_; }  // in the block
  const CtaRun& run() const { return run_; }

  void Set(unsigned at, uint8_t value) { Overwrite(*run_.block, at_ + at, value); }
  // False, nothing changed, when there is no room.
  bool Replace(Bytes fresh);
  // Before the data block at which it stands, or behind the last; it then stands at the new one.
  bool Insert(Bytes fresh);
  // The next data block stands here then.
  void Erase() { Put(size_, {}); }

 private:
  bool Put(unsigned size, Bytes fresh);

  CtaRun run_;
  unsigned at_;
  unsigned size_ = 0;
  bool behindGap_ = false;
};

// Calls visit(cursor) with a cursor for each data block of each run of a block, in order.
template <class Visit>
void VisitCtaDataBlocks(EdidBlock& block, Visit&& visit) {
  for (CtaCursor cursor(CollectionOf(block)); cursor.Next();) visit(cursor);
  for (SectionCursor holder(block); holder.Next();) {
    if (holder.tag() != DISPID20_TAG_CTA) continue;
    const unsigned begin = holder.at() + kDispIdHeaderSize;
    const unsigned end = holder.at() + static_cast<unsigned>(holder.bytes().size());
    for (CtaCursor cursor({&block, begin, end, holder.at()}); cursor.Next();) visit(cursor);
    holder.Reload();
    if (begin < end && holder.bytes().size() == kDispIdHeaderSize) holder.Erase();
  }
}

// The same over an image.
template <class Visit>
void VisitCtaDataBlocks(const EdidHandle& handle, Visit&& visit) {
  for (unsigned i = 0; handle.blocks != nullptr && i < handle.blockCount; ++i) {
    VisitCtaDataBlocks(handle.blocks[i], visit);
  }
}

// Detailed timing slots of a CTA extension: 18 bytes each from where byte 2 points, up to the last that is not all zero.
// A slot without a clock is no timing but keeps its place: some readers end there, some read on.
struct CtaSlots {
  unsigned begin = 0;
  unsigned count = 0;
};
CtaSlots SlotsOf(const EdidBlock& block);

// Removes a slot; what stands behind it moves up.
void EraseCtaSlot(EdidBlock& block, unsigned index);
// False, nothing changed, when there is no room for 18 bytes more.
bool InsertCtaSlot(EdidBlock& block, unsigned index, Bytes slot);

}  // namespace reedid
