// The two bytes of a standard timing (EDID 1.4, table 3.20), shared by the base block and the 0xFA descriptor.
//
// byte 0: hactive / 8 - 31; byte 1: bits 7..6 aspect (00 16:10, 01 4:3, 10 5:4, 11 16:9), bits 5..0 rate - 60; 01 01
// unused
#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "reedid/timing.h"

namespace reedid {

inline constexpr uint8_t kStdRateMask = 0x3F;
// What VESA_SetStandardTimings keeps of a rate: one bit less than the field has, as its users have come to expect.
inline constexpr uint8_t kStdDescriptorRateMask = 0x1F;

StdTiming DecodeStdTiming(Bytes bytes);

// Bad widths, rates and aspects are reported under `name` and written all the same.
void EncodeStdTiming(const StdTiming& timing, uint8_t rateMask, const char* name, uint8_t* bytes);

}  // namespace reedid
