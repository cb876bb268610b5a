#include "patch/block.h"

#include <cstring>

#include "edid/image.h"

namespace reedid {

bool IsWhole(const EdidBlock& block) {
  if (block.bytes == nullptr) return false;
  if (block.type == EDID_BLOCK_DISPID_FIRST || block.type == EDID_BLOCK_DISPID_NEXT) {
    return block.size >= kSectionOverhead && block.size <= kMaxSectionSize &&
           block.size == block.bytes[1] + unsigned{kSectionOverhead};
  }
  return block.size == kEdidBlockSize;
}

void RefreshChecksums(EdidBlock& block) {
  if (!IsWhole(block)) return;
  if (block.type == EDID_BLOCK_DISPID_EXT) {
    uint8_t* section = block.bytes + 1;
    const unsigned size = section[1] + unsigned{kSectionOverhead};
    if (size < kEdidBlockSize - 1u) section[size - 1] = Low8(GetChecksum(section, size));
  }
  block.bytes[block.size - 1] = Low8(GetChecksum(block.bytes, block.size));
}

void Overwrite(EdidBlock& block, unsigned at, Bytes fresh) {
  if (!IsWhole(block) || at + fresh.size() > block.size) return;
  if (fresh.size() == 0 || std::memcmp(block.bytes + at, fresh.data(), fresh.size()) == 0) return;
  fresh.CopyTo(block.bytes + at);
  RefreshChecksums(block);
}

bool Splice(EdidBlock& block, unsigned at, unsigned size, Bytes fresh, unsigned used, unsigned limit) {
  const auto added = static_cast<unsigned>(fresh.size());
  if (used < at + size || used - size + added > limit) return false;
  const unsigned usedNow = used - size + added;
  std::memmove(block.bytes + at + added, block.bytes + at + size, used - at - size);
  fresh.CopyTo(block.bytes + at);
  if (usedNow < used) std::memset(block.bytes + usedNow, 0, used - usedNow);
  return true;
}

unsigned UsedEnd(Bytes bytes, unsigned begin, unsigned end) {
  while (end > begin && bytes[end - 1] == 0) --end;
  return end;
}

}  // namespace reedid
