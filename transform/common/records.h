// Data blocks of two images as records. A data block is written anew only when its record changed, and keeps its bytes
// when the codec refuses it or there is no room.
#pragma once

#include <cstring>
#include <type_traits>

#include "cea/codec.h"
#include "patch/cta.h"

namespace reedid {

inline CeaDataBlock EntryOf(Bytes block) {
  const CeaHeader header(block[0]);
  const bool extended = header.tag == CEA_TAG_EXTENDED && block.size() > 1;
  return {header.tag, extended ? block[1] : uint8_t{0}, Low8(block.size()), const_cast<uint8_t*>(block.data())};
}

// Calls visit(cursor) for each data block; extensions of versions 1 and 2 have none, whatever stands in them.
template <class Visit>
void VisitDataBlocks(const EdidHandle& image, Visit visit) {
  constexpr uint8_t kFirstWithDataBlocks = 3;
  for (unsigned i = 0; i < image.blockCount; ++i) {
    EdidBlock& block = image.blocks[i];
    if (block.type != EDID_BLOCK_CEA || (IsWhole(block) && block.bytes[1] >= kFirstWithDataBlocks)) {
      VisitCtaDataBlocks(block, visit);
    }
  }
}

// The first data block that `matches` takes; empty without one. Bytes of the image: they hold until it is edited.
template <class Matches>
Bytes FirstDataBlock(const EdidHandle& image, Matches matches) {
  Bytes found;
  VisitDataBlocks(image, [&](const CtaCursor& cursor) {
    if (found.size() == 0 && matches(cursor)) found = cursor.bytes();
  });
  return found;
}

// Byte 3 of a CTA extension: what holds for the display stands in each.
inline constexpr uint8_t kCtaUnderscans = 0x80, kCtaBasicAudio = 0x40, kCtaYcc444 = 0x20, kCtaYcc422 = 0x10;
inline constexpr uint8_t kCtaNative = 0x0F;  // how many detailed timings are
bool HasCtaExtension(const EdidHandle& image);
bool HasCtaFlag(const EdidHandle& image, uint8_t flag);
void ClearCtaFlags(EdidHandle& image, unsigned flags);
void SetCtaFlags(EdidHandle& image, unsigned flags);

template <class Record>
bool SameRecord(const Record& a, const Record& b) {
  static_assert(std::has_unique_object_representations_v<Record>, "padding would be compared");
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// False when the block keeps the bytes that it had.
template <class Record>
bool WriteRecord(CtaCursor& cursor, const Record& record, int32_t (*set)(const Record*, CeaDataBlock*)) {
  ScratchDataBlock block;
  return set(&record, &block) == 0 && cursor.Replace(BytesOf(block));
}

template <class T>
constexpr T Lower(T a, T b) {
  return b < a ? b : a;
}
template <class T>
constexpr T Higher(T a, T b) {
  return a < b ? b : a;
}

}  // namespace reedid
