// Standard timings (EDID 1.4, 3.9) name a width, an aspect and a rate; the rest comes from the DMT row that has them.

#include <cmath>

#include "base/log.h"
#include "base/pinned.h"
#include "timing/tables.h"

namespace reedid {
namespace {

PIN_FIELDS(StdTiming, 0, 1, valid, frameRate);
PIN_FIELDS(StdTiming, 2, 2, hactive);
PIN_FIELDS(StdTiming, 4, 1, aspectRatio);
PIN_SIZE(StdTiming, 6);

// The width that a height gives at an aspect, in whole characters of 8 pixels.
float WidthOf(uint16_t vactive, float ratio) {
  return std::floor(static_cast<float>(vactive) * ratio * 0.125f) * 8.0f;
}

bool Matches(const TimingRow& row, const StdTiming& std) {
  return row.hactive == std.hactive && row.frameRate == std.frameRate && row.aspectRatio == std.aspectRatio &&
         WidthOf(row.vactive, kAspectRatios[std.aspectRatio]) == static_cast<float>(std.hactive);
}

// The aspects that the two bits have codes for.
bool IsStdAspect(uint16_t aspect) {
  return aspect == ASPECT_5_4 || aspect == ASPECT_4_3 || aspect == ASPECT_16_9 || aspect == ASPECT_16_10;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t StdToDtd(const StdTiming* std, DtdTiming* timing) {
  if (std == nullptr || timing == nullptr || std->valid == 0 || std->frameRate == 0 || std->hactive == 0 ||
      std->aspectRatio >= ASPECT_UNKNOWN) {
    return REEDID_ERR("invalid parameters");
  }
  for (unsigned id = 1; id < kDmtRows; ++id) {
    if (!Matches(kDmtTable[id], *std)) continue;
    *timing = {};
    FillFromRow(kDmtTable[id], *timing);
    return 0;
  }
  return -1;
}

int32_t DtdToStd(const DtdTiming* timing, StdTiming* std) {
  if (timing == nullptr || std == nullptr) return REEDID_ERR("invalid parameters");
  if (timing->frameRate < 60 || timing->frameRate > 123) {
    return REEDID_WARN("invalid frameRate: %d", timing->frameRate);
  }
  if (timing->hactive < 256 || timing->hactive > 2288) return REEDID_WARN("invalid hactive: %d", timing->hactive);
  if (!IsStdAspect(timing->aspectRatio)) return REEDID_WARN("invalid aspectRatio: %d", timing->aspectRatio);
  if (timing->interlaced != 0) return REEDID_WARN("interlaced timing can't transform to standard timing");
  *std = {.valid = 1,
          .frameRate = timing->frameRate,
          .hactive = timing->hactive,
          .aspectRatio = static_cast<uint8_t>(timing->aspectRatio)};
  return 0;
}
