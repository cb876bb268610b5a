#include "document/account/color_text.h"

#include <algorithm>
#include <cmath>

namespace reedid::document {
namespace {

// Three digits, without a power of ten.
std::string NumberText(double number) {
  if (number > 0 && number < 0.0001) return fmt::format("{:.6f}", number);
  return number < 100 ? fmt::format("{:.3g}", number) : fmt::format("{:.0f}", number);
}

}  // namespace

double Luminance(unsigned code) {
  return 50.0 * std::exp2(code / 32.0);
}

double LeastLuminance(unsigned code, unsigned codeOfMaximum) {
  const double part = code / 255.0;
  return Luminance(codeOfMaximum) * part * part / 100;
}

// SMPTE ST 2084, 5.2. The library's PQtoLuminace gives whole cd/m2 only, which are 0 for every black.
double PqLuminance(unsigned code) {
  constexpr double kM1 = 2610.0 / 16384, kM2 = 2523.0 / 32, kC1 = 3424.0 / 4096, kC2 = 2413.0 / 128, kC3 = 2392.0 / 128;
  const double root = std::pow(code / 4095.0, 1 / kM2);
  return 10000 * std::pow(std::max(root - kC1, 0.0) / (kC2 - kC3 * root), 1 / kM1);
}

std::string LuminanceText(double luminance) {
  return NumberText(luminance) + " cd/m2";
}

std::string LuminanceRangeText(double least, double most) {
  return fmt::format("{} to {}", NumberText(least), LuminanceText(most));
}

std::string HalfFloatText(unsigned code) {
  const int exponent = static_cast<int>(code >> 10 & 0x1F);
  const double fraction = (code & 0x3FF) / 1024.0;
  if (code == 0x8000) return "not stated";
  if (code > 0x7FFF || exponent == 31) return fmt::format("{:#06x}, reserved", code);
  return LuminanceText(exponent == 0 ? std::ldexp(fraction, -14) : std::ldexp(1 + fraction, exponent - 15));
}

std::string PointText(unsigned x, unsigned y, double unit) {
  return fmt::format("{:.3f} {:.3f}", x / unit, y / unit);
}

}  // namespace reedid::document
