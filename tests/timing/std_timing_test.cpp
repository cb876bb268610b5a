#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/record_text.h"

namespace reedid::test {
namespace {

TEST(StdTiming, ExpandsThroughTheDmtTable) {
  const struct {
    StdTiming std;
    uint32_t dmt;  // 0 = no such timing
    bool refused;
  } cases[] = {
      {{1, 60, 1280, ASPECT_5_4}, 35, false},   {{1, 60, 1920, ASPECT_16_9}, 82, false},
      {{1, 60, 1920, ASPECT_16_10}, 68, false},  // reduced blanking stands first
      {{1, 60, 1400, ASPECT_4_3}, 0, false},     // the rows have no aspect
      {{1, 43, 1024, ASPECT_4_3}, 0, false},     // a width that is not the height's
      {{1, 60, 1366, ASPECT_16_9}, 0, false},    // no multiple of 8
      {{0, 60, 1280, ASPECT_5_4}, 0, true},     {{1, 60, 1280, ASPECT_UNKNOWN}, 0, true},
      {{1, 0, 1280, ASPECT_5_4}, 0, true},      {{1, 60, 0, ASPECT_5_4}, 0, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    DtdTiming timing;
    std::memset(&timing, 0xEE, sizeof timing);
    DtdTiming expected = timing;
    if (c.dmt != 0) expected = {};
    DmtToDtd(c.dmt, &expected);
    int32_t result = 0;
    EXPECT_EQ(LogOf([&] { result = StdToDtd(&c.std, &timing); }),
              c.refused ? Err("StdToDtd", "invalid parameters") : "");
    EXPECT_EQ(result, c.dmt == 0 ? -1 : 0);
    EXPECT_EQ(std::memcmp(&timing, &expected, sizeof timing), 0);
  }
}

// Makes a standard timing and gives the log, after checking that all or nothing was written.
std::string LogOfDtdToStd(uint16_t hactive, uint8_t frameRate, uint16_t aspect, uint8_t interlaced = 0) {
  DtdTiming timing = k1080p60;
  timing.hactive = hactive;
  timing.frameRate = frameRate;
  timing.aspectRatio = aspect;
  timing.interlaced = interlaced;
  StdTiming std = {7, 7, 7, 7};
  int32_t result = 0;
  const std::string log = LogOf([&] { result = DtdToStd(&timing, &std); });
  EXPECT_EQ(result, log.empty() ? 0 : -1);
  EXPECT_EQ(ToText(std), ToText(log.empty() ? StdTiming{1, frameRate, hactive, static_cast<uint8_t>(aspect)}
                                            : StdTiming{7, 7, 7, 7}));
  return log;
}

TEST(StdTiming, IsMadeOfWhatTwoBytesCanHold) {
  const std::string name = "DtdToStd";
  for (const uint16_t aspect : {ASPECT_5_4, ASPECT_4_3, ASPECT_16_9, ASPECT_16_10}) {
    EXPECT_EQ(LogOfDtdToStd(2288, 60, aspect), "");
    EXPECT_EQ(LogOfDtdToStd(256, 123, aspect), "");
    EXPECT_EQ(LogOfDtdToStd(1366, 75, aspect), "");  // the byte encoder rounds
  }
  // In this order.
  EXPECT_EQ(LogOfDtdToStd(2289, 124, ASPECT_UNKNOWN, 1), Warn(name, "invalid frameRate: 124"));
  EXPECT_EQ(LogOfDtdToStd(1280, 59, ASPECT_5_4), Warn(name, "invalid frameRate: 59"));
  EXPECT_EQ(LogOfDtdToStd(2289, 60, ASPECT_UNKNOWN, 1), Warn(name, "invalid hactive: 2289"));
  EXPECT_EQ(LogOfDtdToStd(255, 60, ASPECT_5_4), Warn(name, "invalid hactive: 255"));
  EXPECT_EQ(LogOfDtdToStd(1280, 60, 258, 1), Warn(name, "invalid aspectRatio: 258"));
  EXPECT_EQ(LogOfDtdToStd(1280, 60, ASPECT_5_3), Warn(name, "invalid aspectRatio: 3"));
  EXPECT_EQ(LogOfDtdToStd(1280, 60, ASPECT_5_4, 1), Warn(name, "interlaced timing can't transform to standard timing"));
}

}  // namespace
}  // namespace reedid::test
