// Section: version, payload length n, product type, count of further sections, n bytes of data blocks and zero fill,
// checksum. Inside an EDID it begins at byte 1 and zeros follow up to byte 126.

#include "patch/section.h"

#include <algorithm>

#include "edid/image.h"

namespace reedid {
namespace {

constexpr unsigned kPayload = 4;      // in the section
constexpr unsigned kMaxLength = 121;  // of a section inside an EDID

// Where the payload ends; never behind the last byte that is no checksum.
unsigned PayloadEnd(const EdidBlock& block) {
  const unsigned start = SectionStart(block.type);
  const unsigned end = start + kPayload + block.bytes[start + 1];
  return std::min(end, block.size - 1u - start);
}

unsigned MaxLength(const EdidBlock& block) {
  if (block.type == EDID_BLOCK_DISPID_EXT) return kMaxLength;
  const unsigned room = std::min<unsigned>(block.capacity, kMaxSectionSize);
  return room < kSectionOverhead ? 0 : room - kSectionOverhead;
}

}  // namespace

SectionCursor::SectionCursor(EdidBlock& block) : block_(&block), at_(SectionStart(block.type) + kPayload) {}

unsigned SectionCursor::End() const {
  return IsSection(block_->type) && IsWhole(*block_) ? PayloadEnd(*block_) : 0;
}

bool SectionCursor::Next() {
  at_ += size_;
  size_ = 0;
  const unsigned end = End();
  if (at_ + kDispIdHeaderSize > end) return false;
  const Bytes header = BytesOf(*block_).From(at_);
  const unsigned size = kDispIdHeaderSize + header[2];
  if (at_ + size > end || (header[0] == 0 && header[2] == 0)) return false;
  size_ = size;
  return true;
}

bool SectionCursor::Replace(Bytes fresh) {
  if (fresh.size() == size_) {
    Overwrite(*block_, at_, fresh);
    return true;
  }
  if (!SpliceSection(*block_, at_, size_, fresh)) return false;
  size_ = static_cast<unsigned>(fresh.size());
  return true;
}

bool SpliceSection(EdidBlock& block, unsigned at, unsigned size, Bytes fresh) {
  if (!IsSection(block.type) || !IsWhole(block)) return false;
  const unsigned start = SectionStart(block.type), begin = start + kPayload;
  const unsigned end = PayloadEnd(block);
  if (block.bytes[start + 1] > MaxLength(block) || at < begin || at + size > end) return false;
  // The last data block may end in zeros that are its own.
  unsigned used = std::max(at + size, UsedEnd(BytesOf(block), begin, end));
  for (SectionCursor cursor(block); cursor.Next();) {
    used = std::max(used, cursor.at() + static_cast<unsigned>(cursor.bytes().size()));
  }
  if (!Splice(block, at, size, fresh, used, begin + MaxLength(block))) return false;
  const unsigned usedNow = used - size + static_cast<unsigned>(fresh.size());
  if (usedNow > end) {
    block.bytes[start + 1] = Low8(usedNow - begin);
    if (block.type != EDID_BLOCK_DISPID_EXT) block.size = Low16(usedNow + 1);
  }
  RefreshChecksums(block);
  return true;
}

}  // namespace reedid
