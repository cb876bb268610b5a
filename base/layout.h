// Layouts of binary records, written once for both directions. A layout is a template over LayoutReader or LayoutWriter
// that names each field with the places of its bits, least significant first:
//
//   io(timing.hactive, Place{2}, Place{4, 4, 4});      12 bits: byte 2, then bits 7..4 of byte 4
//   Scaled(io, limits.maxPixelClock, 10000, Place{9});  one byte in units of 10 MHz
//
// Coded, Scaled, LessOne, Above and Listed are the ways in which EDIDs store a number as another one.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/bytes.h"

namespace reedid {

struct Place {
  uint8_t byte;
  uint8_t low = 0;    // lowest bit
  uint8_t width = 8;  // bits; none for a field that a form leaves out
};

class LayoutReader {
 public:
  static constexpr bool kReads = true;

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
  static constexpr bool kReads = false;

  explicit constexpr LayoutWriter(uint8_t* bytes) : bytes_(bytes) {}

  template <class Field, class... Places>
  constexpr void operator()(const Field& field, Places... places) const {
    auto value = static_cast<unsigned>(field);
    ((bytes_[places.byte] = Low8(bytes_[places.byte] | Bits(value, 0, places.width) << places.low),
      value >>= places.width),
     ...);
  }

 private:
  uint8_t* bytes_;
};

// A field whose bytes hold a code for it: `decode` and `encode` are each other's reverse, whichever the layout needs.
template <class Field, class Decode, class Encode, class... Places>
constexpr void Coded(const LayoutReader& io, Field& field, Decode decode, Encode, Places... places) {
  uint32_t code = 0;
  io(code, places...);
  field = static_cast<Field>(decode(code));
}

template <class Field, class Decode, class Encode, class... Places>
constexpr void Coded(const LayoutWriter& io, const Field& field, Decode, Encode encode, Places... places) {
  io(static_cast<uint32_t>(encode(uint32_t{field})), places...);
}

// Stored in units, truncated.
template <class Io, class Field, class... Places>
constexpr void Scaled(const Io& io, Field& field, uint32_t unit, Places... places) {
  Coded(
      io, field, [unit](uint32_t code) { return code * unit; }, [unit](uint32_t value) { return value / unit; },
      places...);
}

// Stored in units less one, as DisplayID stores whatever cannot be 0.
template <class Io, class Field, class... Places>
constexpr void ScaledLessOne(const Io& io, Field& field, uint32_t unit, Places... places) {
  Coded(
      io, field, [unit](uint32_t code) { return (code + 1) * unit; },
      [unit](uint32_t value) { return value / unit - 1; }, places...);
}

template <class Io, class Field, class... Places>
constexpr void LessOne(const Io& io, Field& field, Places... places) {
  ScaledLessOne(io, field, 1, places...);
}

// Stored as the distance from `base`.
template <class Io, class Field, class... Places>
constexpr void Above(const Io& io, Field& field, uint32_t base, Places... places) {
  Coded(
      io, field, [base](uint32_t code) { return code + base; }, [base](uint32_t value) { return value - base; },
      places...);
}

// The index of a value in a list, `missing` when it is not there.
template <size_t kCount>
constexpr uint32_t IndexOf(const uint8_t (&list)[kCount], uint32_t value, uint32_t missing = kCount) {
  for (uint32_t i = 0; i < kCount; ++i) {
    if (list[i] == value) return i;
  }
  return missing;
}

// Stored as an index into `list`; as `other`, an index of it, when the list does not have the value.
template <class Io, class Field, size_t kCount, class... Places>
constexpr void Listed(const Io& io, Field& field, const uint8_t (&list)[kCount], uint32_t other, Places... places) {
  Coded(
      io, field, [&list, other](uint32_t code) { return list[code < kCount ? code : other]; },
      [&list, other](uint32_t value) { return IndexOf(list, value, other); }, places...);
}

}  // namespace reedid
