// An image's bytes as EDID_GenerateEdid writes them, and blocks that belong to no image.
#pragma once

// The inner names first: reedid.hpp has a BytesOf of its own, which would be a second candidate in them.
#include "cea/codec.h"
#include "displayid/codec.h"
#include "patch/block.h"
#include "reedid/reedid.hpp"
#include "tests/support/bytes.h"

namespace reedid::test {

inline ByteVector Generate(EdidHandle* handle) {
  ByteVector out(65536);
  const int32_t size = EDID_GenerateEdid(handle, out.data(), static_cast<uint32_t>(out.size()));
  out.resize(size < 0 ? 0 : static_cast<size_t>(size));
  return out;
}

// A block outside a handle, over bytes of its own.
struct Block : EdidBlock {
  Block(uint8_t blockType, const ByteVector& content, uint16_t room = 0) : EdidBlock{}, storage(content) {
    type = blockType;
    size = static_cast<uint16_t>(content.size());
    capacity = room > size ? room : size;
    storage.resize(capacity);
    bytes = storage.data();
  }
  ByteVector storage;
};

}  // namespace reedid::test
