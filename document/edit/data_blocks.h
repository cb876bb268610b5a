// Data blocks of CTA-861 extensions where they stand in the image, for edits of single bytes.
#pragma once

#include <cstdint>
#include <span>

#include "document/read/image.h"

namespace reedid::document {

// Calls visit(span of the data block's bytes, header first) for each data block of each CTA-861 extension. What passes
// the end of the collection is not visited, nor what stands behind it.
template <class Visit>
void VisitDataBlocks(const Image& image, Visit visit) {
  constexpr size_t kBegin = 4, kEnd = 127;
  for (const EdidBlock& block : image.blocks()) {
    if (block.type != EDID_BLOCK_CEA || block.size != REEDID_BLOCK_SIZE) continue;
    const size_t end = block.bytes[2] == 0 ? kEnd : std::min<size_t>(block.bytes[2], kEnd);
    for (size_t at = kBegin, size = 0; at < end; at += size) {
      size = (block.bytes[at] & 0x1Fu) + 1;
      if (at + size > end) break;
      visit(std::span<uint8_t>(block.bytes + at, size));
    }
  }
}

// Whether a data block has this tag, and of CEA_TAG_EXTENDED this extended tag.
inline bool IsDataBlock(std::span<const uint8_t> bytes, unsigned tag, unsigned extTag = 0) {
  return bytes[0] >> 5 == tag && (tag != CEA_TAG_EXTENDED || (bytes.size() > 1 && bytes[1] == extTag));
}

inline bool IsVendorBlock(std::span<const uint8_t> bytes, uint32_t oui) {
  return IsDataBlock(bytes, CEA_TAG_VENDOR) && bytes.size() > 3 &&
         (bytes[1] | uint32_t{bytes[2]} << 8 | uint32_t{bytes[3]} << 16) == oui;
}

}  // namespace reedid::document
