#include "document/read/override_count.h"

#include <cstddef>

#include "reedid/tags.h"

namespace reedid::document {
namespace {

constexpr size_t kCollectionStart = 4;
constexpr size_t kCollectionEnd = 126;  // where no detailed timings follow

// CTA-861, 7.4: a data block begins with its tag in 3 bits and the size of its payload in 5.
std::optional<unsigned> CountOf(std::span<const uint8_t> bytes) {
  const size_t offset = bytes[2];
  const size_t end = offset >= kCollectionStart && offset < kCollectionEnd ? offset : kCollectionEnd;
  for (size_t at = kCollectionStart; at < end;) {
    const unsigned tag = bytes[at] >> 5u;
    const size_t size = 1 + (bytes[at] & 0x1Fu);
    if (tag == 0 || at + size > end) break;
    if (tag == CEA_TAG_EXTENDED && size >= 3 && bytes[at + 1] == CEA_EXT_TAG_EXTENSION_OVERRIDE) return bytes[at + 2];
    at += size;
  }
  return std::nullopt;
}

}  // namespace

std::optional<unsigned> OverrideCount(std::span<const EdidBlock> blocks) {
  for (const EdidBlock& block : blocks) {
    if (block.type != EDID_BLOCK_CEA) continue;
    if (const auto count = CountOf({block.bytes, block.size})) return count;
  }
  return std::nullopt;
}

}  // namespace reedid::document
