// The CTA extension: tag 0x02, revision, d, flags, data blocks from byte 4 up to d, detailed timings from d on, zero
// padding up to byte 126, checksum.

#include "patch/cta.h"

#include <algorithm>
#include <cstring>

#include "timing/dtd.h"

namespace reedid {
namespace {

constexpr unsigned kOffsetByte = 2;  // d
constexpr unsigned kCollectionStart = 4;
constexpr unsigned kDataEnd = 127;  // the checksum stands here

bool IsCta(const EdidBlock& block) {
  return block.type == EDID_BLOCK_CEA && IsWhole(block);
}

bool IsOffset(unsigned offset) {
  return offset >= kCollectionStart && offset <= kDataEnd;
}

// Behind the last byte that means something.
unsigned CtaUsedEnd(const EdidBlock& block) {
  const CtaSlots slots = SlotsOf(block);
  return UsedEnd(BytesOf(block), std::max(kCollectionStart, slots.begin + slots.count * kDtdSize), kDataEnd);
}

// Bytes behind the timings that are too few for one more are padding that should be 0. Moved up they would become one.
void ClearLeftover(EdidBlock& block) {
  const CtaSlots slots = SlotsOf(block);
  const unsigned end = slots.begin + slots.count * kDtdSize;
  if (slots.begin != 0 && end + kDtdSize > kDataEnd) std::memset(block.bytes + end, 0, kDataEnd - end);
}

// Edits the collection: the timings move along.
bool SpliceCollection(const CtaRun& run, unsigned at, unsigned size, Bytes fresh) {
  EdidBlock& block = *run.block;
  const unsigned offset = block.bytes[kOffsetByte];
  if (offset != 0 && !IsOffset(offset)) return false;
  if (fresh.size() < size) ClearLeftover(block);
  const unsigned used = std::max(at + size, CtaUsedEnd(block));
  if (!Splice(block, at, size, fresh, used, kDataEnd)) return false;
  const bool empty = offset == 0 && used == kCollectionStart;
  if (offset != 0 || empty) {
    const unsigned before = empty ? kCollectionStart : offset;
    block.bytes[kOffsetByte] = Low8(before - size + fresh.size());
  }
  RefreshChecksums(block);
  return true;
}

// Edits the payload of a DisplayID data block.
bool SpliceHeld(const CtaRun& run, unsigned at, unsigned size, Bytes fresh) {
  const unsigned payload = run.end - run.begin - size + static_cast<unsigned>(fresh.size());
  if (payload > kMaxDispIdPayload || !SpliceSection(*run.block, at, size, fresh)) return false;
  Overwrite(*run.block, run.holder + 2, Low8(payload));
  return true;
}

}  // namespace

CtaRun CollectionOf(EdidBlock& block) {
  if (!IsCta(block)) return {};
  const unsigned offset = block.bytes[kOffsetByte];
  if (offset == 0) return {&block, kCollectionStart, kDataEnd};
  return {&block, kCollectionStart, IsOffset(offset) ? offset : kCollectionStart};
}

bool CtaCursor::Next() {
  if (run_.block == nullptr) return false;
  if (size_ > 0 && tag() == 0) behindGap_ = true;
  at_ += size_;
  size_ = 0;
  if (UsedEnd(BytesOf(*run_.block), at_, run_.end) == at_) return false;
  const unsigned size = CeaHeader(run_.block->bytes[at_]).size;
  if (at_ + size > run_.end) return false;
  size_ = size;
  return true;
}

bool CtaCursor::Put(unsigned size, Bytes fresh) {
  if (run_.block == nullptr) return false;
  const bool done = run_.holder != 0 ? SpliceHeld(run_, at_, size, fresh) : SpliceCollection(run_, at_, size, fresh);
  if (!done) return false;
  size_ = static_cast<unsigned>(fresh.size());
  run_.end = std::min(run_.end - size + size_, run_.block->size - 1u);
  return true;
}

bool CtaCursor::Replace(Bytes fresh) {
  if (run_.block == nullptr) return false;
  if (fresh.size() != size_) return Put(size_, fresh);
  Overwrite(*run_.block, at_, fresh);
  return true;
}

bool CtaCursor::Insert(Bytes fresh) {
  return Put(0, fresh);
}

CtaSlots SlotsOf(const EdidBlock& block) {
  if (!IsCta(block) || !IsOffset(block.bytes[kOffsetByte])) return {};
  CtaSlots slots = {block.bytes[kOffsetByte], 0};
  const Bytes bytes = BytesOf(block);
  const unsigned whole = (kDataEnd - slots.begin) / kDtdSize;
  const unsigned used = UsedEnd(bytes, slots.begin, slots.begin + whole * kDtdSize) - slots.begin;
  slots.count = (used + kDtdSize - 1) / kDtdSize;
  return slots;
}

void EraseCtaSlot(EdidBlock& block, unsigned index) {
  const CtaSlots slots = SlotsOf(block);
  if (index >= slots.count) return;
  ClearLeftover(block);
  Splice(block, slots.begin + index * kDtdSize, kDtdSize, {}, CtaUsedEnd(block), kDataEnd);
  RefreshChecksums(block);
}

bool InsertCtaSlot(EdidBlock& block, unsigned index, Bytes slot) {
  const CtaSlots slots = SlotsOf(block);
  if (slots.begin == 0 || index > slots.count || slot.size() != kDtdSize) return false;
  if (!Splice(block, slots.begin + index * kDtdSize, 0, slot, CtaUsedEnd(block), kDataEnd)) return false;
  RefreshChecksums(block);
  return true;
}

}  // namespace reedid
