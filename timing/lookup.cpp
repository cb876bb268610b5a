// From identifiers to timings and back.

#include <span>

#include "base/bytes.h"
#include "timing/tables.h"

namespace reedid {

void FillFromRow(const TimingRow& row, DtdTiming& timing) {
  timing.pixelClock = row.pixelClock;
  timing.hactive = row.hactive;
  timing.hblank = row.hblank;
  timing.hfrontPorch = row.hfrontPorch;
  timing.hsyncWidth = row.hsyncWidth;
  timing.vactive = row.vactive;
  timing.vblank = row.vblank;
  timing.vfrontPorch = row.vfrontPorch;
  timing.vsyncWidth = row.vsyncWidth;
  timing.hsyncPositive = row.hsyncPositive;
  timing.vsyncPositive = row.vsyncPositive;
  timing.interlaced = row.interlaced;
  timing.frameRate = row.frameRate;
  timing.aspectRatio = row.aspectRatio;
}

namespace {

using Table = std::span<const TimingRow>;

// Displays round; what differs by so little is the same format.
constexpr int64_t kCountTolerance = 2;
constexpr int64_t kRateTolerance = 1;

constexpr bool Within(int64_t tolerance, int64_t a, int64_t b) {
  return a - b <= tolerance && b - a <= tolerance;
}

constexpr bool CloseCounts(int64_t a, int64_t b) {
  return Within(kCountTolerance, a, b);
}

bool SameCounts(const TimingRow& row, const DtdTiming& t) {
  return CloseCounts(row.hactive, t.hactive) && CloseCounts(row.hblank, t.hblank) &&
         CloseCounts(row.hfrontPorch, t.hfrontPorch) && CloseCounts(row.hsyncWidth, t.hsyncWidth) &&
         CloseCounts(row.vactive, t.vactive) && CloseCounts(row.vblank, t.vblank) &&
         CloseCounts(row.vfrontPorch, t.vfrontPorch) && CloseCounts(row.vsyncWidth, t.vsyncWidth);
}

// All searches go down from the last row: the highest identifier wins.
uint32_t FindFormat(Table table, int64_t hactive, int64_t vactive, int64_t frameRate, uint32_t aspectRatio,
                    uint8_t interlaced) {
  for (auto id = static_cast<uint32_t>(table.size() - 1); id > 0; --id) {
    const TimingRow& row = table[id];
    if (CloseCounts(row.hactive, hactive) && CloseCounts(row.vactive, vactive) &&
        Within(kRateTolerance, row.frameRate, frameRate) && row.interlaced == interlaced &&
        (aspectRatio >= ASPECT_UNKNOWN || row.aspectRatio == aspectRatio)) {
      return id;
    }
  }
  return 0;
}

// Formats that differ in aspect only share all counts; when the aspect is not known, 16:9 is the likely one.
uint32_t FindTiming(Table table, const DtdTiming& timing) {
  const bool anyAspect = timing.aspectRatio >= ASPECT_UNKNOWN;
  uint32_t lowest = 0;
  for (auto id = static_cast<uint32_t>(table.size() - 1); id > 0; --id) {
    const TimingRow& row = table[id];
    if (!SameCounts(row, timing) || !Within(kRateTolerance, row.frameRate, timing.frameRate) ||
        row.interlaced != timing.interlaced) {
      continue;
    }
    if (row.aspectRatio == (anyAspect ? uint16_t{ASPECT_16_9} : timing.aspectRatio)) return id;
    if (anyAspect) lowest = id;
  }
  return lowest;
}

int32_t GetTiming(Table table, uint32_t id, DtdTiming* timing) {
  if (timing == nullptr || id == 0 || id >= table.size()) return -1;
  FillFromRow(table[id], *timing);
  return 0;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

uint32_t FindVic(int32_t hactive, uint32_t vactive, uint32_t frameRate, uint32_t aspectRatio, uint8_t interlaced) {
  return FindFormat(kVicTable, hactive, vactive, frameRate, aspectRatio, interlaced);
}

uint32_t FindDmt(int32_t hactive, uint32_t vactive, uint32_t frameRate, uint32_t aspectRatio, uint8_t interlaced) {
  return FindFormat(kDmtTable, hactive, vactive, frameRate, aspectRatio, interlaced);
}

uint32_t DtdToVic(const DtdTiming* timing) {
  return timing == nullptr ? 0 : FindTiming(kVicTable, *timing);
}

uint32_t DtdToDmt(const DtdTiming* timing) {
  return timing == nullptr ? 0 : FindTiming(kDmtTable, *timing);
}

int32_t VicToDtd(uint32_t index, DtdTiming* timing) {
  const uint8_t row = Low8(index);  // a VIC is a byte, whatever stands above it
  return row == kEmptyVicRow ? -1 : GetTiming(kVicTable, row, timing);
}

int32_t DmtToDtd(uint32_t id, DtdTiming* timing) {
  return GetTiming(kDmtTable, id, timing);
}
