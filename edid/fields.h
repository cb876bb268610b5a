// Fields that the base block (EDID 1.4, table 3.1) and DisplayID's display parameters store alike.
#pragma once

#include "base/layout.h"

namespace reedid {

// Gamma in hundredths: the distance from 1.00, 255 for a gamma that is not stated.
template <class Io, class Field>
constexpr void Gamma(const Io& io, Field& field, Place place) {
  constexpr uint32_t kNotStated = 255;
  Coded(
      io, field, [](uint32_t code) { return code == kNotStated ? 0 : code + 100; },
      [](uint32_t value) { return value >= 100 ? value - 100 : kNotStated; }, place);
}

// Bits per colour: code 1 is 6, and so on by twos; 0 is not stated.
template <class Io, class Field>
constexpr void BitsPerColor(const Io& io, Field& field, Place place) {
  Coded(
      io, field, [](uint32_t code) { return code == 0 ? 0 : code * 2 + 4; },
      [](uint32_t value) { return value == 0 ? 0 : (value - 4) >> 1; }, place);
}

}  // namespace reedid
