#include "vesa/std_timing.h"

#include "base/log.h"

namespace reedid {
namespace {

constexpr uint8_t kUnused = 0x01;
constexpr uint8_t kAspectOfCode[4] = {ASPECT_16_10, ASPECT_4_3, ASPECT_5_4, ASPECT_16_9};
constexpr unsigned kCodeOf16To9 = 3;

unsigned CodeOfAspect(uint8_t aspect, const char* name) {
  for (unsigned code = 0; code < 4; ++code) {
    if (kAspectOfCode[code] == aspect) return code;
  }
  REEDID_ERR_AS(name, "invalid std aspect ratio: %d", aspect);
  return kCodeOf16To9;
}

}  // namespace

StdTiming DecodeStdTiming(Bytes bytes) {
  if (bytes[0] == kUnused && bytes[1] == kUnused) return {};
  return {.valid = 1,
          .frameRate = Low8((bytes[1] & kStdRateMask) + 60),
          .hactive = Low16((bytes[0] + 31) * 8),
          .aspectRatio = kAspectOfCode[bytes[1] >> 6]};
}

void EncodeStdTiming(const StdTiming& timing, uint8_t rateMask, const char* name, uint8_t* bytes) {
  if (timing.valid == 0) {
    bytes[0] = bytes[1] = kUnused;
    return;
  }
  if (timing.hactive < 256) REEDID_ERR_AS(name, "invalid std hactive: %d", timing.hactive);
  if (timing.frameRate < 60) REEDID_ERR_AS(name, "invalid std refresd rate: %d", timing.frameRate);
  bytes[0] = Low8((timing.hactive >> 3) - 31);
  bytes[1] = Low8(((timing.frameRate - 60) & rateMask) | CodeOfAspect(timing.aspectRatio, name) << 6);
}

}  // namespace reedid
