#include "document/plot/chromaticity.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace reedid::document {

// CIE 015, table T.5: x and y of the 1931 standard observer.
constexpr std::array<Chromaticity, 65> kSpectralLocus = {{
    {0.1741, 0.0050}, {0.1740, 0.0050}, {0.1738, 0.0049}, {0.1736, 0.0049}, {0.1733, 0.0048},  // 380 nm
    {0.1730, 0.0048}, {0.1726, 0.0048}, {0.1721, 0.0048}, {0.1714, 0.0051}, {0.1703, 0.0058},  // 405 nm
    {0.1689, 0.0069}, {0.1669, 0.0086}, {0.1644, 0.0109}, {0.1611, 0.0138}, {0.1566, 0.0177},  // 430 nm
    {0.1510, 0.0227}, {0.1440, 0.0297}, {0.1355, 0.0399}, {0.1241, 0.0578}, {0.1096, 0.0868},  // 455 nm
    {0.0913, 0.1327}, {0.0687, 0.2007}, {0.0454, 0.2950}, {0.0235, 0.4127}, {0.0082, 0.5384},  // 480 nm
    {0.0039, 0.6548}, {0.0139, 0.7502}, {0.0389, 0.8120}, {0.0743, 0.8338}, {0.1142, 0.8262},  // 505 nm
    {0.1547, 0.8059}, {0.1929, 0.7816}, {0.2296, 0.7543}, {0.2658, 0.7243}, {0.3016, 0.6923},  // 530 nm
    {0.3373, 0.6589}, {0.3731, 0.6245}, {0.4087, 0.5896}, {0.4441, 0.5547}, {0.4788, 0.5202},  // 555 nm
    {0.5125, 0.4866}, {0.5448, 0.4544}, {0.5752, 0.4242}, {0.6029, 0.3965}, {0.6270, 0.3725},  // 580 nm
    {0.6482, 0.3514}, {0.6658, 0.3340}, {0.6801, 0.3197}, {0.6915, 0.3083}, {0.7006, 0.2993},  // 605 nm
    {0.7079, 0.2920}, {0.7140, 0.2859}, {0.7190, 0.2809}, {0.7230, 0.2770}, {0.7260, 0.2740},  // 630 nm
    {0.7283, 0.2717}, {0.7300, 0.2700}, {0.7311, 0.2689}, {0.7320, 0.2680}, {0.7327, 0.2673},  // 655 nm
    {0.7334, 0.2666}, {0.7340, 0.2660}, {0.7344, 0.2656}, {0.7346, 0.2654}, {0.7347, 0.2653},  // 680 nm
}};

namespace {

// Positive when `point` stands left of the way from `a` to `b`.
double Side(const Chromaticity& a, const Chromaticity& b, const Chromaticity& point) {
  return (b.x - a.x) * (point.y - a.y) - (b.y - a.y) * (point.x - a.x);
}

double SignedArea(const Polygon& polygon) {
  double twice = 0;
  for (size_t i = 0; i < polygon.size(); ++i) {
    const Chromaticity &a = polygon[i], &b = polygon[(i + 1) % polygon.size()];
    twice += a.x * b.y - b.x * a.y;
  }
  return twice / 2;
}

// What stands left of the line from `a` to `b`, or on it.
Polygon CutAlong(const Polygon& subject, const Chromaticity& a, const Chromaticity& b) {
  Polygon kept;
  for (size_t i = 0; i < subject.size(); ++i) {
    const Chromaticity &from = subject[i], &to = subject[(i + 1) % subject.size()];
    const double before = Side(a, b, from), after = Side(a, b, to);
    if (before >= 0) kept.push_back(from);
    if ((before < 0) == (after < 0)) continue;
    const double part = before / (before - after);
    kept.push_back({from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)});
  }
  return kept;
}

// IEC 61966-2-1, 5.2: linear light to a code from 0 to 1.
double Encode(double linear) {
  return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
}

}  // namespace

Polygon TriangleOf(const Gamut& gamut) {
  return {gamut.red, gamut.green, gamut.blue};
}

double Area(const Polygon& polygon) {
  return std::abs(SignedArea(polygon));
}

Polygon Intersection(const Polygon& subject, const Polygon& window) {
  Polygon edges = window, part = subject;
  if (SignedArea(edges) < 0) std::reverse(edges.begin(), edges.end());
  for (size_t i = 0; i < edges.size(); ++i) part = CutAlong(part, edges[i], edges[(i + 1) % edges.size()]);
  return part;
}

std::string SoftColor(const Chromaticity& color) {
  constexpr double kPale = 0.42;
  const double x = color.x / color.y, z = (1 - color.x - color.y) / color.y;
  std::array<double, 3> rgb = {3.2406 * x - 1.5372 - 0.4986 * z, -0.9689 * x + 1.8758 + 0.0415 * z,
                               0.0557 * x - 0.2040 + 1.0570 * z};
  for (double& part : rgb) part = std::max(part, 0.0);
  const double brightest = *std::max_element(rgb.begin(), rgb.end());
  std::array<int, 3> codes = {};
  for (size_t i = 0; i < rgb.size(); ++i) {
    codes[i] = static_cast<int>(std::lround(255 * (kPale + (1 - kPale) * Encode(rgb[i] / brightest))));
  }
  return fmt::format("#{:02x}{:02x}{:02x}", codes[0], codes[1], codes[2]);
}

}  // namespace reedid::document
