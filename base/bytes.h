// Reading and writing raw bytes: bits, bit ranges, little-endian numbers and a bounded view. All index arithmetic on
// bytes from outside goes through here and base/layout.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace reedid {

// The low bits of a value, as an unsigned store keeps them.
template <class T>
constexpr uint8_t Low8(T value) {
  return static_cast<uint8_t>(value);
}
template <class T>
constexpr uint16_t Low16(T value) {
  return static_cast<uint16_t>(value);
}

constexpr uint8_t Bit(unsigned value, unsigned bit) {
  return (value >> bit) & 1u;
}

// `width` bits of `value` from bit `low` up.
constexpr unsigned Bits(unsigned value, unsigned low, unsigned width) {
  return (value >> low) & ((1u << width) - 1u);
}

// Bytes that end: a read past the end yields 0, and a part never reaches beyond the whole.
class Bytes {
 public:
  constexpr Bytes() = default;
  constexpr Bytes(const uint8_t* data, size_t size) : data_(data), size_(data == nullptr ? 0 : size) {}

  constexpr const uint8_t* data() const { return data_; }
  constexpr size_t size() const { return size_; }
  constexpr uint8_t operator[](size_t at) const { return at < size_ ? data_[at] : uint8_t{0}; }
  constexpr uint16_t Le16(size_t at) const { return Low16((*this)[at] | (*this)[at + 1] << 8); }
  constexpr uint32_t Le24(size_t at) const { return Le16(at) | static_cast<uint32_t>((*this)[at + 2]) << 16; }
  constexpr uint32_t Le32(size_t at) const { return Le24(at) | static_cast<uint32_t>((*this)[at + 3]) << 24; }

  constexpr Bytes From(size_t at) const { return at < size_ ? Bytes(data_ + at, size_ - at) : Bytes(); }
  constexpr Bytes First(size_t count) const { return Bytes(data_, count < size_ ? count : size_); }

  // No bytes have no address, which memcpy may not be given even for none.
  void CopyTo(void* to) const {
    if (data_ != nullptr) std::memcpy(to, data_, size_);
  }

 private:
  const uint8_t* data_ = nullptr;
  size_t size_ = 0;
};

inline void PutLe16(uint8_t* at, unsigned value) {
  at[0] = Low8(value);
  at[1] = Low8(value >> 8);
}

inline void PutLe24(uint8_t* at, uint32_t value) {
  PutLe16(at, value);
  at[2] = Low8(value >> 16);
}

inline void PutLe32(uint8_t* at, uint32_t value) {
  PutLe24(at, value);
  at[3] = Low8(value >> 24);
}

}  // namespace reedid
