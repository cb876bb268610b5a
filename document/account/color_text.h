// Luminances and chromaticities as people read them.
#pragma once

#include <fmt/format.h>

#include <string>

namespace reedid::document {

// The codes of a display's luminances in cd/m2 (CTA-861, 7.5.13): 50 * 2^(code / 32), and the least one as a part of it.
double Luminance(unsigned code);
double LeastLuminance(unsigned code, unsigned codeOfMaximum);

// A 12-bit code of the perceptual quantizer (SMPTE ST 2084), 4095 being 10000 cd/m2.
double PqLuminance(unsigned code);

// "673 cd/m2", with three digits below 100.
std::string LuminanceText(double luminance);

// "0.037 to 673 cd/m2"
std::string LuminanceRangeText(double least, double most);

// The half-precision codes of DisplayID 2.0 (table 4-10): the sign bit alone says that nothing is stated.
std::string HalfFloatText(unsigned code);

// "0.640 0.330"
std::string PointText(unsigned x, unsigned y, double unit);

// "red 0.640 0.330, green ...", of a record with redX and so on.
template <class Record>
std::string PrimariesText(const Record& r, double unit) {
  return fmt::format("red {}, green {}, blue {}", PointText(r.redX, r.redY, unit), PointText(r.greenX, r.greenY, unit),
                     PointText(r.blueX, r.blueY, unit));
}
// The same with the white point.
template <class Record>
std::string ChromaticityText(const Record& r, double unit) {
  return fmt::format("{}, white {}", PrimariesText(r, unit), PointText(r.whiteX, r.whiteY, unit));
}

}  // namespace reedid::document
