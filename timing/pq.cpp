// The perceptual quantizer (SMPTE ST 2084) between 12-bit codes and cd/m2. A code is scaled by 4096, so that 4096 is
// 10000 cd/m2.

#include <algorithm>
#include <cmath>

#include "reedid/timing.h"

const float m1 = 0.1593017578125f;
const float m2 = 78.84375f;
const float c1 = 0.8359375f;
const float c2 = 18.8515625f;
const float c3 = 18.6875f;

namespace {

constexpr int32_t kMaxNits = 10000;
constexpr int32_t kMaxCode = 4096;

// 1 / m2 and 1 / m1, rounded to single precision.
constexpr double kInverseM2 = 0.012683313339948654;
constexpr double kInverseM1 = 6.277394771575928;

}  // namespace

int32_t PQtoLuminace(int32_t code) {
  if (code < 0 || code > kMaxCode) return kMaxNits;
  if (code == 0) return 0;
  const float e = static_cast<float>(code) * (1.0f / kMaxCode);
  const double p = std::pow(static_cast<double>(e), kInverseM2);
  const double n = std::max(p - c1, 0.0);
  const double d = c2 - c3 * p;
  return static_cast<int32_t>(std::pow(n / d, kInverseM1) * kMaxNits);
}

int32_t LuminacetoPQ(uint32_t nits) {
  if (nits > kMaxNits) return kMaxCode;
  if (nits == 0) return 0;
  const float y = static_cast<float>(nits) / kMaxNits;
  const double p = std::pow(static_cast<double>(y), static_cast<double>(m1));
  return static_cast<int32_t>(std::pow((c1 + c2 * p) / (1 + c3 * p), static_cast<double>(m2)) * kMaxCode);
}
