// The malloc heap behind small owners: what the interface hands out is released by free().
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace reedid {

inline void Free(void* memory) {
  std::free(memory);
}

template <auto kClose>
struct Closer {
  template <class T>
  void operator()(T* owned) const {
    kClose(owned);
  }
};

// Owner of one object or of an array (`Owned<T[]>`) on the malloc heap, given to `kClose` in the end.
template <class T, auto kClose = Free>
using Owned = std::unique_ptr<T, Closer<kClose>>;

template <class T>
T* AllocateZeroed(size_t count = 1) {
  return static_cast<T*>(std::calloc(count == 0 ? 1 : count, sizeof(T)));
}

// Whether all memory that an edit asked for was there. The steps of one edit pass it along, as the library has no state
// of its own; whoever keeps the edit looks at it first.
class MemoryWatch {
 public:
  bool sufficed() const { return sufficed_; }
  void Lack() { sufficed_ = false; }

 private:
  bool sufficed_ = true;
};

// A copy of `size` bytes in a buffer of `room` bytes (at least 1 and at least `size`), zero behind them. Null without
// memory.
inline uint8_t* CopyBytes(const uint8_t* bytes, size_t size, size_t room = 0) {
  if (room < size) room = size;
  auto* copy = static_cast<uint8_t*>(std::malloc(room == 0 ? 1 : room));
  if (copy == nullptr) return nullptr;
  if (size > 0) std::memcpy(copy, bytes, size);
  std::memset(copy + size, 0, room - size);
  return copy;
}

}  // namespace reedid
