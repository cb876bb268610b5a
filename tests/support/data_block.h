// Data blocks of a CTA extension outside a model.
#pragma once

#include "reedid/cea.h"
#include "tests/support/bytes.h"

namespace reedid::test {

// Over exactly these bytes, header first.
struct DataBlock : CeaDataBlock {
  explicit DataBlock(const ByteVector& content) : CeaDataBlock{}, storage(content) {
    tag = content[0] >> 5;
    extTag = tag == 7 && content.size() > 1 ? content[1] : uint8_t{0};
    size = static_cast<uint8_t>(content.size());
    bytes = storage.data();
  }
  ExactBytes storage;
};

// What a setter is given: 32 bytes of room, nothing of it cleared.
struct BlankDataBlock : CeaDataBlock {
  BlankDataBlock() : CeaDataBlock{0xEE, 0xEE, 0xEE, nullptr}, storage(ByteVector(32, 0xEE)) { bytes = storage.data(); }
  ByteVector Written() const { return ByteVector(bytes, bytes + size); }
  ExactBytes storage;
};

}  // namespace reedid::test
