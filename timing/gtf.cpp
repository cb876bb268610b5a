// Generalized Timing Formula (VESA GTF 1.1), by refresh rate: what displays before CVT mean by a format without an
// identifier.
//
//   cell 8 pixels, front porch 1 line, vertical sync 3 lines, vertical sync and back porch 550 us at least,
//   horizontal sync 8 % of the line, horizontal blanking by duty cycle C' - M' * period; polarity h -, v +

#include <cmath>

#include "base/bytes.h"
#include "timing/modes.h"

namespace reedid {
namespace {

constexpr double kMinVSyncAndBackPorch = 550;  // us
constexpr uint16_t kVFrontPorch = 1;
constexpr uint16_t kVSync = 3;

// To the nearest, halves up.
double Round(double value) {
  return std::floor(value + 0.5);
}

}  // namespace

bool GtfMode(uint32_t hactive, uint32_t vactive, uint32_t frameRate, const StandardFormula& formula, Mode& mode) {
  if (hactive == 0 || vactive == 0 || frameRate == 0 || frameRate * kMinVSyncAndBackPorch >= 1000000) return false;
  const double width = 8 * Round(hactive / 8.0);
  const double estimate = (1000000.0 / frameRate - kMinVSyncAndBackPorch) / (vactive + kVFrontPorch);  // us
  const double syncAndBackPorch = Round(kMinVSyncAndBackPorch / estimate);
  const double vtotal = vactive + syncAndBackPorch + kVFrontPorch;
  const double period = 1000000 / (frameRate * vtotal);  // us
  const bool secondary = formula.secondaryStart != 0 && 1000 / period >= formula.secondaryStart;
  const GtfCurve curve = secondary ? formula.secondary : GtfCurve{};
  const double duty = curve.c - curve.m * period / 1000;  // percent
  if (duty <= 0 || duty >= 100 || syncAndBackPorch <= kVSync) return false;
  const double hblank = 16 * Round(width * duty / (100 - duty) / 16);
  const double hsync = 8 * Round(0.08 * (width + hblank) / 8);
  if (hblank / 2 <= hsync || width + hblank > UINT16_MAX || vtotal > UINT16_MAX) return false;

  DtdTiming timing = {};
  timing.pixelClock = static_cast<uint32_t>(Round((width + hblank) / period * 1000));
  timing.hactive = Low16(static_cast<unsigned>(width));
  timing.hblank = Low16(static_cast<unsigned>(hblank));
  timing.hfrontPorch = Low16(static_cast<unsigned>(hblank / 2 - hsync));
  timing.hsyncWidth = Low16(static_cast<unsigned>(hsync));
  timing.vactive = Low16(vactive);
  timing.vblank = Low16(static_cast<unsigned>(syncAndBackPorch) + kVFrontPorch);
  timing.vfrontPorch = kVFrontPorch;
  timing.vsyncWidth = kVSync;
  timing.vsyncPositive = 1;
  timing.aspectRatio = ASPECT_UNKNOWN;
  mode = ModeOf(timing);
  return true;
}

}  // namespace reedid
