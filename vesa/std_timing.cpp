#include "vesa/std_timing.h"

#include <iterator>

#include "base/layout.h"

namespace reedid {
namespace {

constexpr uint8_t kUnused = 0x01;
constexpr uint8_t kAspects[] = {ASPECT_16_10, ASPECT_4_3, ASPECT_5_4, ASPECT_16_9};
constexpr unsigned kCodeOf16To9 = 3;

template <class Io, class Timing>
constexpr void StdLayout(const Io& io, Timing& t, uint8_t rateBits) {
  Coded(
      io, t.hactive, [](uint32_t code) { return (code + 31) * 8; }, [](uint32_t width) { return width / 8 - 31; },
      Place{0});
  Above(io, t.frameRate, 60, Place{1, 0, rateBits});
  Listed(io, t.aspectRatio, kAspects, kCodeOf16To9, Place{1, 6, 2});
}

}  // namespace

void DecodeStdTiming(Bytes bytes, StdTiming& timing) {
  timing = {};
  if (bytes[0] == kUnused && bytes[1] == kUnused) return;
  timing.valid = 1;
  StdLayout(LayoutReader(bytes), timing, kStdRateBits);
}

void EncodeStdTiming(const StdTiming& timing, uint8_t rateBits, uint8_t* bytes, Caller caller) {
  if (timing.valid == 0) {
    bytes[0] = bytes[1] = kUnused;
    return;
  }
  if (timing.hactive < 256) REEDID_ERR_AS(caller, "invalid std hactive: %d", timing.hactive);
  if (timing.frameRate < 60) REEDID_ERR_AS(caller, "invalid std refresd rate: %d", timing.frameRate);
  if (IndexOf(kAspects, timing.aspectRatio) == std::size(kAspects)) {
    REEDID_ERR_AS(caller, "invalid std aspect ratio: %d", timing.aspectRatio);
  }
  StdLayout(LayoutWriter(bytes), timing, rateBits);
}

}  // namespace reedid
