// Data blocks for the CTA codecs, in heap buffers of exactly their size.
#pragma once

#include "reedid/reedid.h"
#include "tests/support/bytes.h"

namespace reedid::test {

// An extended data block with all its bytes, as a model holds it.
struct CeaEntry : CeaDataBlock {
  explicit CeaEntry(const ByteVector& block)
      : CeaDataBlock{7, block.size() > 1 ? block[1] : uint8_t{0}, static_cast<uint8_t>(block.size()), nullptr},
        storage(block) {
    bytes = storage.data();
  }
  ExactBytes storage;
};

inline ByteVector ExtendedBlock(uint8_t extTag, const ByteVector& rest) {
  return Concat({{static_cast<uint8_t>(0xE1 + rest.size()), extTag}, rest});
}

// An entry to be set, over 32 bytes of rubbish.
struct CeaTarget : CeaDataBlock {
  CeaTarget() : CeaDataBlock{5, 5, 5, nullptr}, storage(ByteVector(32, 0xCC)) { bytes = storage.data(); }
  ByteVector Block() const { return ByteVector(bytes, bytes + size); }
  ByteVector All() const { return ByteVector(bytes, bytes + 32); }
  bool Untouched() const { return tag == 5 && extTag == 5 && size == 5 && All() == ByteVector(32, 0xCC); }
  ExactBytes storage;
};

}  // namespace reedid::test
