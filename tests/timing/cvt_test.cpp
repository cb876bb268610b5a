#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "reedid/timing.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

constexpr uint8_t kAny = ASPECT_UNKNOWN;

CvtTiming Request(uint8_t formula, uint16_t hactive, uint16_t vactive, uint16_t frameRate, uint8_t aspect = kAny,
                  uint8_t flagA = 0, uint8_t interlaced = 0) {
  CvtTiming request = {formula, aspect, hactive, frameRate, 0, 0, 0, 0, 0, vactive, 0, 0};
  request.flagA = flagA;
  request.interlaced = interlaced;
  return request;
}

DtdTiming Expanded(const CvtTiming& request) {
  DtdTiming timing = {};
  EXPECT_EQ(Cvt2ToDtd(&request, &timing), 0);
  return timing;
}

// The DMT list holds the formula's own results.
TEST(Cvt, GivesTheDmtTimings) {
  const struct {
    uint8_t formula;
    std::vector<uint32_t> ids;
  } cases[] = {
      {0, {23, 24, 25, 28, 29, 30, 42, 43, 44, 47, 48, 49, 58, 59, 60, 69, 70, 71, 77, 78, 79}},
      {1, {13, 20, 22, 26, 27, 31, 34, 38, 40, 41, 45, 46, 50, 56, 57, 61, 64, 67, 68, 72, 75, 76, 80, 89}},
      {2, {87}},
  };
  for (const auto& c : cases) {
    for (const uint32_t id : c.ids) {
      SCOPED_TRACE(id);
      DtdTiming expected = {};
      ASSERT_EQ(DmtToDtd(id, &expected), 0);
      const uint8_t known = c.formula == 2 ? uint8_t{ASPECT_256_135} : uint8_t{ASPECT_UNKNOWN};  // none to detect
      const DtdTiming timing =
          Expanded(Request(c.formula, expected.hactive, expected.vactive, expected.frameRate, known));
      if (id >= 41 && id <= 43) expected.aspectRatio = ASPECT_4_3;  // the list has none
      EXPECT_EQ(std::memcmp(&timing, &expected, sizeof timing), 0);
    }
  }
}

TEST(Cvt, GivesKnownClocksAndCounts) {
  const struct {
    const char* name;
    CvtTiming request;
    uint32_t clock, htotal, vactive, vtotal, vsync, rate, aspect;
  } cases[] = {
      {"lines from the aspect", Request(0, 1920, 0, 60, ASPECT_16_9), 173000, 2576, 1080, 1120, 5, 60, ASPECT_16_9},
      {"1360", Request(0, 1360, 0, 60, ASPECT_16_9), 84750, 1776, 768, 798, 5, 60, ASPECT_16_9},
      {"odd shape", Request(1, 1000, 1000, 60, ASPECT_1_1), 71500, 1160, 1000, 1029, 10, 60, ASPECT_1_1},
      {"rb", Request(1, 2560, 1440, 120), 497750, 2720, 1440, 1525, 5, 120, ASPECT_16_9},
      {"rb2", Request(2, 2560, 1440, 144), 586586, 2640, 1440, 1543, 8, 144, ASPECT_16_9},
      {"rb2 1000/1001", Request(2, 1920, 1080, 120, kAny, 1), 274285, 2000, 1080, 1144, 8, 120, ASPECT_16_9},
      {"rb2 least blanking", Request(2, 640, 100, 60), 4968, 720, 100, 115, 8, 60, ASPECT_UNKNOWN},
      {"rb2 300, modulo 256", Request(2, 1920, 1080, 300), 751800, 2000, 1080, 1253, 8, 44, ASPECT_16_9},
      {"as much blanking as a record holds", Request(0, 8, 53614, 1000), 953000, 8, 53614, 119149, 10, 232,
       ASPECT_UNKNOWN},
      {"sb interlaced", Request(0, 1920, 1080, 60, kAny, 0, 1), 82000, 2432, 540, 562, 5, 60, ASPECT_16_9},
      {"rb2 interlaced", Request(2, 1920, 1080, 60, kAny, 0, 1), 66780, 2000, 540, 556, 8, 60, ASPECT_16_9},
  };
  for (const auto& c : cases) {
    const DtdTiming t = Expanded(c.request);
    const auto counts = [](auto... n) { return std::vector<uint32_t>{static_cast<uint32_t>(n)...}; };
    EXPECT_EQ(counts(t.pixelClock, t.hactive + t.hblank, t.vactive, t.vactive + t.vblank, t.vsyncWidth, t.frameRate,
                     t.aspectRatio, t.interlaced, t.hsyncPositive, t.vsyncPositive),
              counts(c.clock, c.htotal, c.vactive, c.vtotal, c.vsync, c.rate, c.aspect, c.request.interlaced,
                     c.request.formula != 0, c.request.formula == 0))
        << c.name;
  }
}

TEST(Cvt, RefusesAndClears) {
  const char bad[] = "invalid parameters";
  const char fraction[] = "Only CVT 1.2 support 1000/1001.";
  const std::pair<CvtTiming, const char*> cases[] = {
      {Request(3, 0, 1080, 60), bad},
      {Request(3, 1920, 1080, 0), bad},
      {Request(3, 1920, 0, 60), bad},
      {Request(3, 1920, 1080, 60, kAny, 1), "Not support CVT 1.3 now."},
      {Request(1, 1920, 1080, 75, kAny, 1),
       "Refresh rate must be multiple of 60hz according to CVT 1.1 specifications for reduced blanking."},
      {Request(1, 1920, 1080, 120, kAny, 1), fraction},
      {Request(0, 1920, 1080, 60, kAny, 1), fraction},
      {Request(0, 1920, 1080, 1819), bad},  // 550 us are more than a frame
      {Request(2, 1920, 1080, 2174), bad},  // and 460 us
      {Request(0, 1920, 1, 60, kAny, 0, 1), bad},
      {Request(2, 1, 0, 60, ASPECT_16_9), bad},
      {Request(0, 65535, 65535, 1818), bad},  // more blanking and clock than a record holds
      {Request(2, 65535, 65535, 1000), bad},  // the clock alone
  };
  for (const auto& [request, message] : cases) {
    SCOPED_TRACE(message);
    DtdTiming timing;
    const DtdTiming cleared = {};
    std::memset(&timing, 0xEE, sizeof timing);
    int32_t result = 0;
    EXPECT_EQ(LogOf([&, &asked = request] { result = Cvt2ToDtd(&asked, &timing); }), Err("Cvt2ToDtd", message));
    EXPECT_EQ(result, -1);
    EXPECT_EQ(std::memcmp(&timing, &cleared, sizeof timing), 0);
  }
}

// Whatever is asked for: a refusal, or a sound timing near the rate. The formula takes the clock from a blanking that
// can be shorter than the least sync and back porch, by up to 16 lines.
TEST(Cvt, GivesSoundTimingsForAnyRequest) {
  constexpr uint16_t kWidths[] = {1, 83, 160, 641, 1366, 4096, 65535};
  constexpr uint16_t kHeights[] = {1, 2, 97, 768, 2161, 65535};
  constexpr uint16_t kRates[] = {1, 30, 59, 60, 120, 240, 720, 1800, 2160, 65535};
  constexpr unsigned kRequests = 3 * 7 * 6 * 10 * 2;
  unsigned expanded = 0;
  for (unsigned i = 0; i < kRequests; ++i) {
    const CvtTiming request = Request(static_cast<uint8_t>(i % 3), kWidths[i / 3 % 7], kHeights[i / 21 % 6],
                                      kRates[i / 126 % 10], ASPECT_UNKNOWN, 0, i >= kRequests / 2);
    SCOPED_TRACE(i);
    DtdTiming t = {};
    int32_t result = 0;
    LogOf([&] { result = Cvt2ToDtd(&request, &t); });
    if (result != 0) continue;
    ++expanded;
    EXPECT_LE(2u * (t.hfrontPorch + t.hsyncWidth), t.hblank);
    EXPECT_LT(t.vfrontPorch + t.vsyncWidth, t.vblank);
    const double total = (t.hactive + t.hblank) * (t.vactive + t.vblank + 0.5 * t.interlaced);
    const double clock = request.frameRate * total / 1000;
    EXPECT_NEAR(t.pixelClock, clock, 16 * clock / (t.vactive + t.vblank) + 250);
  }
  EXPECT_GT(expanded, 1000u);
}

}  // namespace
}  // namespace reedid::test
