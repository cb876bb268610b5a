// Reading and writing raw bytes: bits, bit ranges, little-endian numbers, a bounded view, and layouts that are written
// once and serve both directions. All index arithmetic on bytes from outside goes through here.
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

// A layout names each field with the places of its bits, least significant first, and is a template over one of the two
// classes below: `io(timing.hactive, Place{2, 0, 8}, Place{4, 4, 4})` reads or writes 12 bits.
struct Place {
  uint8_t byte;
  uint8_t low = 0;    // lowest bit
  uint8_t width = 8;  // bits
};

class LayoutReader {
 public:
  explicit constexpr LayoutReader(Bytes bytes) : bytes_(bytes) {}

  template <class Field, class... Places>
  constexpr void operator()(Field& field, Places... places) const {
    unsigned value = 0;
    unsigned shift = 0;
    ((value |= Bits(bytes_[places.byte], places.low, places.width) << shift, shift += places.width), ...);
    field = static_cast<Field>(value);
  }

 private:
  Bytes bytes_;
};

// Ors the low bits of each field into place: the bytes are cleared before a layout is written.
class LayoutWriter {
 public:
  explicit constexpr LayoutWriter(uint8_t* bytes) : bytes_(bytes) {}

  template <class Field, class... Places>
  constexpr void operator()(const Field& field, Places... places) const {
    unsigned value = field;
    ((bytes_[places.byte] = Low8(bytes_[places.byte] | Bits(value, 0, places.width) << places.low),
      value >>= places.width),
     ...);
  }

 private:
  uint8_t* bytes_;
};

}  // namespace reedid
