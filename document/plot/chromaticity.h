// Arithmetic of chromaticities: areas, what one triangle covers of another, colours for the screen.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace reedid::document {

// CIE 1931 chromaticity coordinates.
struct Chromaticity {
  double x, y;
};
struct Gamut {
  Chromaticity red, green, blue, white;
};

struct ReferenceGamut {
  const char* name;
  Gamut gamut;
  const char* stroke;
  const char* dashes;
};

// D65 (CIE 015, table T.3) and the primaries of IEC 61966-2-1, SMPTE RP 431-2 and ITU-R BT.2020, table 3.
inline constexpr Chromaticity kD65 = {0.3127, 0.3290};
inline constexpr ReferenceGamut kReferences[] = {
    {"sRGB / BT.709", {{0.640, 0.330}, {0.300, 0.600}, {0.150, 0.060}, kD65}, "#d9480f", "7 3"},
    {"DCI-P3", {{0.680, 0.320}, {0.265, 0.690}, {0.150, 0.060}, kD65}, "#0b7285", "2 3"},
    {"BT.2020", {{0.708, 0.292}, {0.170, 0.797}, {0.131, 0.046}, kD65}, "#5f3dc4", "9 3 2 3"}};

using Polygon = std::vector<Chromaticity>;

Polygon TriangleOf(const Gamut& gamut);
double Area(const Polygon& polygon);

// The part of `subject` inside the triangle `window`; both convex, in any direction of turn.
Polygon Intersection(const Polygon& subject, const Polygon& window);

// "#rrggbb": the colour at its brightest, or its nearest on a screen of sRGB, paled.
std::string SoftColor(const Chromaticity& color);

// The spectral colours from 380 to 700 nm in steps of 5 nm.
inline constexpr int kLocusFirst = 380;
inline constexpr int kLocusStep = 5;
extern const std::array<Chromaticity, 65> kSpectralLocus;

}  // namespace reedid::document
