// Totals and rates of a decoded timing, as every room computes them.
#pragma once

#include <cstdint>

#include "base/log.h"
#include "reedid/timing.h"

namespace reedid {

inline constexpr uint8_t kDtdSlotFlag = 1;
inline constexpr unsigned kDtdSize = 18;

constexpr uint32_t HTotal(const DtdTiming& timing) {
  return uint32_t{timing.hactive} + timing.hblank;
}

constexpr uint32_t VTotal(const DtdTiming& timing) {
  return uint32_t{timing.vactive} + timing.vblank;
}

// A timing without a total has no rate.
constexpr bool HasRate(const DtdTiming& timing) {
  return HTotal(timing) != 0 && VTotal(timing) != 0;
}

// clock * 1000 / htotal / vtotal in Hz, each step rounded to Float; 0 without a rate.
template <class Float>
Float FormulaRate(const DtdTiming& timing) {
  if (!HasRate(timing)) return 0;
  const Float perLine =
      static_cast<Float>(timing.pixelClock) * static_cast<Float>(1000) / static_cast<Float>(HTotal(timing));
  return perLine / static_cast<Float>(VTotal(timing));
}

// The rate that an "invalid timing" message shows: the record's own, else the formula's, rounded, in 16 bits.
uint16_t RateForMessage(const DtdTiming& timing);

// Reports a timing that a descriptor cannot hold.
Failure RefuseTiming(const DtdTiming& timing, Caller caller = {});

}  // namespace reedid
