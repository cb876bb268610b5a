#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "reedid/timing.h"

namespace reedid::test {
namespace {

TEST(Pq, MeetsTheCurveAtItsEnds) {
  for (const int32_t outside : {-1, 4097, INT32_MIN, INT32_MAX}) EXPECT_EQ(PQtoLuminace(outside), 10000);
  EXPECT_EQ(PQtoLuminace(0), 0);
  EXPECT_EQ(PQtoLuminace(4096), 10000);
  EXPECT_EQ(LuminacetoPQ(0), 0);
  EXPECT_EQ(LuminacetoPQ(100), 2081);
  EXPECT_EQ(LuminacetoPQ(10000), 4096);
  EXPECT_EQ(LuminacetoPQ(10001), 4096);
  EXPECT_EQ(LuminacetoPQ(UINT32_MAX), 4096);
}

// SMPTE ST 2084, from the rational numbers that it gives. Truncation and single precision may take one unit.
double Exact(double code) {
  const double p = std::pow(code / 4096, 32 / 2523.0);
  return 10000 * std::pow(std::max(p - 3424 / 4096.0, 0.0) / (2413 / 128.0 - 2392 / 128.0 * p), 8192 / 1305.0);
}

TEST(Pq, FollowsTheCurveAndComesBack) {
  for (int32_t code = 0; code <= 4096; ++code) ASSERT_NEAR(PQtoLuminace(code), Exact(code) - 0.5, 0.51) << code;
  for (uint32_t nits = 1; nits <= 10000; ++nits) {
    const int32_t code = LuminacetoPQ(nits);
    ASSERT_LE(Exact(code), nits * 1.0001) << nits;
    ASSERT_GE(Exact(code + 1), nits * 0.9999) << nits;
  }
}

}  // namespace
}  // namespace reedid::test
