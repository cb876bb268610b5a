// Owners for what the C interface hands out, and short ways to open bytes in tests.
#pragma once

#include <memory>

#include "reedid/reedid.h"
#include "tests/support/bytes.h"

namespace reedid::test {

struct Closer {
  void operator()(EdidHandle* p) const { EDID_Close(p); }
};
template <class T>
using Owned = std::unique_ptr<T, Closer>;

inline Owned<EdidHandle> OpenImage(const ByteVector& bytes) {
  return Owned<EdidHandle>(EDID_Open(bytes.data(), static_cast<uint32_t>(bytes.size())));
}

inline ByteVector Generate(EdidHandle* handle) {
  ByteVector out(65536);
  const int32_t size = EDID_GenerateEdid(handle, out.data(), static_cast<uint32_t>(out.size()));
  out.resize(size < 0 ? 0 : static_cast<size_t>(size));
  return out;
}

inline ByteVector GenerateImage(const EdidHandle* handle) {
  ByteVector out(65536);
  const int32_t size = EDID_GenerateImage(handle, out.data(), static_cast<uint32_t>(out.size()));
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
