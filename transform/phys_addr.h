// CEC physical addresses (HDMI 1.4b, 8.7).
#pragma once

#include <cstdint>

#include "base/bytes.h"

namespace reedid {

// A port is a path from the root: digits other than 0, then zeros. 0.0.0.0 is the root itself, F.F.F.F no address.
constexpr bool IsPort(uint16_t address) {
  bool ended = false;
  for (unsigned shift = 16; shift > 0; shift -= 4) {
    const unsigned digit = Bits(address, shift - 4, 4);
    if (ended && digit != 0) return false;
    ended = digit == 0;
  }
  return address != 0 && address != 0xFFFF;
}

}  // namespace reedid
