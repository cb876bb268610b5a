// The two bytes of a standard timing (EDID 1.4, table 3.20), shared by the base block and the 0xFA descriptor.
//
//  0   hactive / 8 - 31
//  1   aspect 7..6 (00 16:10, 01 4:3, 10 5:4, 11 16:9), rate - 60 5..0
//
// Both bytes 1: unused
#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "base/log.h"
#include "reedid/timing.h"

namespace reedid {

inline constexpr uint8_t kStdRateBits = 6;
// The rate bits that VESA_SetStandardTimings writes: odd on purpose, docs/oddities.md.
inline constexpr uint8_t kStdDescriptorRateBits = 5;

void DecodeStdTiming(Bytes bytes, StdTiming& timing);

// Into two cleared bytes. Bad widths, rates and aspects are reported and written all the same.
void EncodeStdTiming(const StdTiming& timing, uint8_t rateBits, uint8_t* bytes, Caller caller = {});

}  // namespace reedid
