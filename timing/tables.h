// The timings that have identifiers, as constant rows: CTA-861 video formats and VESA DMT. The index of a row is its
// identifier; row 0 is empty.
#pragma once

#include <cstdint>

#include "reedid/timing.h"

namespace reedid {

// Fields as in DtdTiming; the rate in whole Hz.
struct TimingRow {
  uint32_t pixelClock;
  uint16_t hactive, hblank, hfrontPorch, hsyncWidth;
  uint16_t vactive, vblank, vfrontPorch, vsyncWidth;
  uint8_t hsyncPositive, vsyncPositive, interlaced, frameRate, aspectRatio;
};

inline constexpr unsigned kVicRows = 156;  // VIC 1..127, an empty row, VIC 193..219
inline constexpr unsigned kEmptyVicRow = 128;
inline constexpr unsigned kDmtRows = 90;  // DMT 0x01..0x58 and one of our own
extern const TimingRow kVicTable[kVicRows];
extern const TimingRow kDmtTable[kDmtRows];

// Width by height of the aspect codes below ASPECT_UNKNOWN.
inline constexpr float kAspectRatios[] = {1.0f,       1.25f, 1.3333334f, 1.6666666f,
                                          1.7777778f, 1.6f,  2.3703704f, 1.8962963f};

// Writes what a row knows; image sizes, `preferred` and the reserved fields stay.
void FillFromRow(const TimingRow& row, DtdTiming& timing);

// What holds for a sound row: sync behind a front porch and before a back porch, on both axes.
constexpr bool PorchesFit(const TimingRow& row) {
  return row.hfrontPorch > 0 && row.hsyncWidth > 0 && row.hfrontPorch + row.hsyncWidth < row.hblank &&
         row.vfrontPorch > 0 && row.vsyncWidth > 0 && row.vfrontPorch + row.vsyncWidth < row.vblank;
}

// And the rate is the clock by the totals, rounded; an interlaced field has half a line more.
constexpr bool RateFits(const TimingRow& row) {
  const uint64_t halfLines = 2u * (uint32_t{row.vactive} + row.vblank) + row.interlaced;
  const uint64_t total = halfLines * (uint32_t{row.hactive} + row.hblank);
  return total != 0 && (row.pixelClock * uint64_t{2000} + total / 2) / total == row.frameRate;
}

}  // namespace reedid
