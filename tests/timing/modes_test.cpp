// The modes that identifiers, established bits and standard timing codes mean, against the published ones.
#include "timing/modes.h"

#include <gtest/gtest.h>

#include <string>

#include "vesa/std_timing.h"

namespace reedid::test {
namespace {

std::string Axis(unsigned active, unsigned blank, unsigned front, unsigned sync) {
  return std::to_string(active) + " " + std::to_string(front) + " " + std::to_string(sync) + " " +
         std::to_string(int(blank) - int(front) - int(sync));
}

// Clock, then active, front porch, sync and back porch of both axes, polarities, rate in mHz.
std::string TextOf(const Mode& mode) {
  const DtdTiming& t = mode.timing;
  return std::to_string(t.pixelClock) + " " + Axis(t.hactive, t.hblank, t.hfrontPorch, t.hsyncWidth) + ", " +
         Axis(t.vactive, t.vblank, t.vfrontPorch, t.vsyncWidth) + (t.interlaced ? "i" : "") + " " +
         (t.hsyncPositive ? "+" : "-") + (t.vsyncPositive ? "+" : "-") + " " + std::to_string(RateOf(mode));
}

TEST(Modes, OfEstablishedTimings) {
  const struct {
    unsigned index, dmt;
    uint8_t border;
    const char* text;
  } cases[] = {
      {7, 0, 0, "28320 720 18 108 54, 400 21 2 26 -+ 70082"},
      {6, 0, 0, "35500 720 18 108 54, 400 12 2 35 -+ 87850"},
      {5, 4, 8, "25175 640 16 96 48, 480 10 2 33 -- 59940"},  // porches with their borders
      {4, 0, 0, "30240 640 64 64 96, 480 3 3 39 -- 66667"},
      {3, 5, 8, "31500 640 24 40 128, 480 9 3 28 -- 72809"},
      {2, 6, 0, "31500 640 16 64 120, 480 1 3 16 -- 75000"},
      {1, 8, 0, "36000 800 24 72 128, 600 1 2 22 ++ 56250"},
      {0, 9, 0, "40000 800 40 128 88, 600 1 4 23 ++ 60317"},
      {15, 10, 0, "50000 800 56 120 64, 600 37 6 23 ++ 72188"},
      {14, 11, 0, "49500 800 16 80 160, 600 1 3 21 ++ 75000"},
      {13, 0, 0, "57284 832 32 64 224, 624 1 3 39 -- 74551"},
      {12, 15, 0, "44900 1024 8 176 56, 384 0 4 20i ++ 86958"},
      {11, 16, 0, "65000 1024 24 136 160, 768 3 6 29 -- 60004"},
      {10, 17, 0, "75000 1024 24 136 144, 768 3 6 29 -- 70069"},
      {9, 18, 0, "78750 1024 16 96 176, 768 1 3 28 ++ 75029"},
      {8, 36, 0, "135000 1280 16 144 248, 1024 1 3 38 ++ 75025"},
      {16, 0, 0, "100000 1152 48 128 128, 870 3 3 39 ++ 75062"},
  };
  for (const auto& c : cases) {
    Mode mode;
    uint8_t dmt = 0;
    ASSERT_TRUE(EstablishedMode(c.index, mode, dmt)) << c.index;
    EXPECT_EQ(TextOf(mode), c.text);
    EXPECT_EQ(dmt, c.dmt) << c.text;
    EXPECT_EQ(mode.hBorder + mode.vBorder, 2 * c.border) << c.text;
  }
  Mode mode;
  uint8_t dmt;
  EXPECT_FALSE(EstablishedMode(17, mode, dmt));
  const uint8_t secondByte[] = {37, 35, 33, 32, 25, 24, 23, 22};  // bit 0 first
  for (unsigned bit = 0; bit < 8; ++bit) EXPECT_EQ(Established3Dmt(8 + bit), secondByte[bit]);
  EXPECT_EQ(Established3Dmt(7) + Established3Dmt(47) + Established3Dmt(43), 1 + 70 + 0);
}

constexpr StandardFormula kGtfFormula, kCvtFormula = {StandardFormula::kCvt}, kReduced = {StandardFormula::kCvtReduced},
                                       kSquare = {StandardFormula::kGtf, true};
const StandardFormula kSecondary = {StandardFormula::kGtf, false, 53, {20, 150}};

TEST(Modes, OfStandardTimingCodes) {
  const struct {
    unsigned code, dmt;
    const StandardFormula& formula;
    const char* text;
  } cases[] = {
      // Where two modes share a format, the one with normal blanking.
      {0xB300, 58, kGtfFormula, "146250 1680 104 176 280, 1050 3 6 30 -+ 59954"},
      {0x9500, 47, kGtfFormula, "106500 1440 80 152 232, 900 3 6 25 -+ 59887"},
      {0x8100, 28, kCvtFormula, "83500 1280 72 128 200, 800 3 6 22 -+ 59810"},
      {0xD100, 69, kGtfFormula, "193250 1920 136 200 336, 1200 3 6 36 -+ 59885"},
      {0x9040, 42, kGtfFormula, "121750 1400 88 144 232, 1050 3 4 32 -+ 59978"},
      {0x8BC0, 39, kGtfFormula, "85500 1360 64 112 256, 768 3 6 18 ++ 60015"},
      {0x3140, 4, kGtfFormula, "25175 640 16 96 48, 480 10 2 33 -- 59940"},
      {0x3119, 2, kGtfFormula, "31500 640 32 64 96, 400 1 3 41 -+ 85080"},
      {0x81C0, 85, kSquare, "74250 1280 110 40 220, 720 5 5 20 ++ 60000"},
      {0xE1C0, 84, kGtfFormula, "162000 2048 26 80 96, 1152 1 3 44 ++ 60000"},
      // Outside the list, by formula.
      {0x7140, 0, kGtfFormula, "81624 1152 64 120 184, 864 1 3 27 -+ 60000"},
      {0xD1CF, 0, kGtfFormula, "220637 1920 136 208 344, 1080 1 3 44 -+ 75000"},
      {0x617C, 0, kGtfFormula, "139054 1024 80 112 192, 768 1 3 51 -+ 120000"},
      {0x7100, 0, kGtfFormula, "67319 1152 56 120 176, 720 1 3 22 -+ 60000"},
      {0x4568, 0, kGtfFormula, "68179 800 48 88 136, 600 1 3 32 -+ 100000"},
      {0x7140, 0, kCvtFormula, "81750 1152 64 120 184, 864 3 4 26 -+ 59959"},
      {0x7140, 0, kReduced, "69750 1152 48 32 80, 864 3 4 18 +- 59801"},
      {0xD1CF, 0, kReduced, "220750 1920 136 208 344, 1080 3 5 42 -+ 74906"},  // no reduced blanking at 75 Hz
      {0x4500, 0, kSquare, "52462 800 40 88 128, 800 1 3 24 -+ 60000"},        // 1:1 before EDID 1.3
      // Above 53 kHz by the sink's own curve.
      {0x7140, 0, kSecondary, "74750 1152 8 112 120, 864 1 3 27 -+ 60000"},
      {0x7100, 0, kSecondary, "67319 1152 56 120 176, 720 1 3 22 -+ 60000"},
      {0x0101, 0, kGtfFormula, nullptr},
      {0x0040, 0, kGtfFormula, nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.code));
    Mode mode;
    uint8_t dmt = 0;
    const uint8_t bytes[] = {uint8_t(c.code >> 8), uint8_t(c.code)};
    StdTiming std = {};
    DecodeStdTiming(Bytes(bytes, 2), std);
    ASSERT_EQ(StandardMode(std, c.formula, mode, dmt), c.text != nullptr);
    if (c.text == nullptr) continue;
    EXPECT_EQ(TextOf(mode), c.text);
    EXPECT_EQ(dmt, c.dmt);
  }
  Mode mode;
  EXPECT_FALSE(GtfMode(1680, 296, 64, kGtfFormula, mode)) << "no room for a front porch";
}

TEST(Modes, OfIdentifiers) {
  Mode mode;
  ASSERT_TRUE(VicMode(39, mode));
  EXPECT_EQ(TextOf(mode), "72000 1920 32 168 184, 540 23 5 57i +- 50000");  // the one with the same lines in each field
  ASSERT_TRUE(VicMode(5, mode));
  EXPECT_EQ(TextOf(mode), "74250 1920 88 44 148, 540 2 5 15i ++ 60000");
  ASSERT_TRUE(DmtMode(88, mode));
  EXPECT_EQ(RateOf(mode), 59940u);
  for (unsigned vic : {0u, 128u, 156u}) EXPECT_FALSE(VicMode(vic, mode)) << vic;
  for (unsigned dmt : {0u, 90u}) EXPECT_FALSE(DmtMode(dmt, mode)) << dmt;
}

TEST(Modes, RatesThatNoRecordTellsAreNone) {
  DtdTiming timing = {655350, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 8, 0, 0, 0, 0, 0};
  EXPECT_EQ(RateOf(ModeOf(timing)), 0u);
  timing.vblank = 199;
  EXPECT_EQ(RateOf(ModeOf(timing)), 3276750000u);
  timing.hactive = 0;
  EXPECT_EQ(RateOf(ModeOf(timing)), 0u);
}

}  // namespace
}  // namespace reedid::test
