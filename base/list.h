// A malloc array with an 8-bit count, as the public models hold their blocks and descriptors. Entries that own bytes (a
// `bytes` pointer with a `size`) are copied with them and free them when they go.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "base/memory.h"

namespace reedid {

template <class T>
concept OwnsBytes = requires(T entry) {
  entry.bytes = static_cast<uint8_t*>(nullptr);
};

// Bytes to reserve for an entry's copy: a block that may grow in place gets its capacity.
template <class T>
size_t RoomOf(const T& entry) {
  if constexpr (requires { entry.capacity; }) {
    return entry.capacity;
  } else {
    return entry.size;
  }
}

enum class ListResult { kDone, kFull, kNoMemory };

// Works on the array and the count of a model, which stay plain fields there.
template <class T>
class List {
 public:
  static constexpr unsigned kMaxCount = 255;

  List(T*& items, uint8_t& count) : items_(items), count_(count) {}

  // Inserts a copy at min(index, count) of a new array; on any failure the list is unchanged.
  ListResult Insert(const T& entry, uint32_t index) {
    if (items_ == nullptr) count_ = 0;  // an array that could not be had, or was given away
    if (count_ == kMaxCount) return ListResult::kFull;
    Owned<T[]> grown(AllocateZeroed<T>(count_ + 1u));
    if (grown == nullptr) return ListResult::kNoMemory;
    const unsigned place = index < count_ ? index : count_;
    grown[place] = entry;
    if constexpr (OwnsBytes<T>) {
      grown[place].bytes = CopyBytes(entry.bytes, entry.size, RoomOf(entry));
      if (grown[place].bytes == nullptr) return ListResult::kNoMemory;
    }
    for (unsigned i = 0; i < place; ++i) grown[i] = items_[i];
    for (unsigned i = place; i < count_; ++i) grown[i + 1] = items_[i];
    std::free(std::exchange(items_, grown.release()));
    ++count_;
    return ListResult::kDone;
  }

  // Gives `place`, an entry of the list, the content of `entry` (which may be an entry of the list too).
  bool Assign(T& place, const T& entry) {
    uint8_t* copy = CopyBytes(entry.bytes, entry.size, RoomOf(entry));
    if (copy == nullptr) return false;
    uint8_t* old = place.bytes;
    place = entry;
    place.bytes = copy;
    std::free(old);
    return true;
  }

  bool Contains(const T* entry) const {
    for (unsigned i = 0; i < count_; ++i) {
      if (&items_[i] == entry) return true;
    }
    return false;
  }

  // Removes an entry by its address; false when it is none of the list. The array keeps its allocation.
  bool Erase(const T* entry) {
    if (!Contains(entry)) return false;
    auto at = static_cast<unsigned>(entry - items_);
    Release(items_[at]);
    for (--count_; at < count_; ++at) items_[at] = items_[at + 1];
    return true;
  }

  // What an 8-bit count that wraps to 0 leaves behind: a new array, in use and empty. False, list unchanged, without
  // memory.
  bool StartOver() {
    T* empty = AllocateZeroed<T>();
    if (empty == nullptr) return false;
    Clear();
    items_ = empty;
    return true;
  }

  // Frees the entries and the array.
  void Clear() {
    for (unsigned i = 0; items_ != nullptr && i < count_; ++i) Release(items_[i]);
    std::free(std::exchange(items_, nullptr));
    count_ = 0;
  }

 private:
  static void Release(T& entry) {
    if constexpr (OwnsBytes<T>) {
      std::free(entry.bytes);
      entry.bytes = nullptr;
    }
  }

  T*& items_;
  uint8_t& count_;
};

template <class T>
List(T*&, uint8_t&) -> List<T>;

}  // namespace reedid
