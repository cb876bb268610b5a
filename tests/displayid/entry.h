// Data blocks for the DisplayID codecs, in heap buffers of exactly their size.
#pragma once

#include <functional>
#include <string>

#include "reedid/reedid.h"
#include "tests/support/bytes.h"

namespace reedid::test {

// A data block with all its bytes, as a model holds it.
struct Entry : DispIdDataBlock {
  explicit Entry(const ByteVector& block) : DispIdDataBlock{}, storage(block) {
    tag = block.size() > 0 ? block[0] : uint8_t{0};
    revision = block.size() > 1 ? block[1] & 7 : 0;
    headerFlags = block.size() > 1 ? block[1] >> 3 : 0;
    size = static_cast<uint8_t>(block.size());
    bytes = storage.data();
  }
  ExactBytes storage;
};

inline ByteVector BlockOf(uint8_t tag, uint8_t byte1, const ByteVector& payload) {
  return Concat({{tag, byte1, static_cast<uint8_t>(payload.size())}, payload});
}

// An entry to be set, over `room` bytes of rubbish, with header fields of its own.
struct Target : DispIdDataBlock {
  explicit Target(size_t room, uint8_t setTag = 0x55, uint8_t setRevision = 5, uint8_t flags = 0x12)
      : DispIdDataBlock{setTag, setRevision, flags, 0xEE, nullptr}, storage(ByteVector(room, 0xCC)) {
    bytes = storage.data();
  }
  ByteVector Block() const { return ByteVector(bytes, bytes + size); }
  ByteVector All() const { return ByteVector(bytes, bytes + storage.size()); }
  // Nothing was written.
  bool Untouched(uint8_t setTag = 0x55) const {
    return tag == setTag && revision == 5 && headerFlags == 0x12 && size == 0xEE &&
           All() == ByteVector(storage.size(), 0xCC);
  }
  ExactBytes storage;
};

// Reads the single descriptor of a block and writes it back; returns the bytes written, empty if either call fails.
template <class Record>
ByteVector RoundTrip(const ByteVector& block, int32_t (*get)(const DispIdDataBlock*, Record*, uint32_t),
                     int32_t (*set)(const Record*, uint32_t, DispIdDataBlock*)) {
  const Entry entry(block);
  Record record;
  if (DispID_GetTimingCnt(&entry) != 1 || get(&entry, &record, 1) != 0) return {};
  Target target(block.size(), entry.tag, entry.revision, entry.headerFlags);
  return set(&record, 1, &target) == 0 ? target.Block() : ByteVector();
}

// Sets each bit of the payload and reads and writes the block: the bits that come back as they were. A bit without a
// meaning, or one that makes a descriptor that cannot be written, does not.
inline ByteVector BitsKept(const ByteVector& block, const std::function<ByteVector(const ByteVector&)>& roundTrip) {
  ByteVector kept(block.size() - 3);
  for (size_t bit = 0; bit < kept.size() * 8; ++bit) {
    const auto mask = static_cast<uint8_t>(1u << (bit % 8));
    ByteVector changed = block;
    changed[3 + bit / 8] ^= mask;
    if (roundTrip(changed) == changed) kept[bit / 8] |= mask;
  }
  return kept;
}

}  // namespace reedid::test
