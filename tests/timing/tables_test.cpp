#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <vector>

#include "reedid/timing.h"

namespace reedid::test {
namespace {

using GetTiming = int32_t (*)(uint32_t, DtdTiming*);
using FindTiming = uint32_t (*)(const DtdTiming*);

// FNV-1a over whole fields.
void Mix(uint32_t& hash, uint32_t field) {
  hash = (hash ^ field) * 16777619u;
}

uint32_t HashOfAll(GetTiming get) {
  uint32_t hash = 2166136261u;
  for (uint32_t id = 0; id < 256; ++id) {
    DtdTiming t = {};
    if (get(id, &t) != 0) continue;
    const uint32_t fields[] = {t.pixelClock,    t.hactive,    t.hblank,      t.hfrontPorch, t.hsyncWidth,
                               t.vactive,       t.vblank,     t.vfrontPorch, t.vsyncWidth,  t.hsyncPositive,
                               t.vsyncPositive, t.interlaced, t.frameRate,   t.aspectRatio};
    for (const uint32_t field : fields) Mix(hash, field);
  }
  return hash;
}

// Sums that another program took from the lists that the tables come from.
TEST(Tables, HoldTheListsDigitForDigit) {
  EXPECT_EQ(HashOfAll(VicToDtd), 0x81B7019Cu);
  EXPECT_EQ(HashOfAll(DmtToDtd), 0xDBFF3C8Bu);
  uint32_t hash = 2166136261u;
  for (const auto map : {Est12ToDmt, Est3ToDmt, DmtToEst12, DmtToEst3}) {
    for (uint32_t i = 0; i < 256; ++i) Mix(hash, map(i));
  }
  EXPECT_EQ(hash, 0x61595210u);
}

TEST(Tables, EveryTimingLeadsBackToItsIdentifier) {
  const struct {
    GetTiming get;
    FindTiming find;
    uint32_t count;
  } cases[] = {{VicToDtd, DtdToVic, 154}, {DmtToDtd, DtdToDmt, 89}};
  for (const auto& c : cases) {
    uint32_t count = 0;
    for (uint32_t id = 0; id < 256; ++id) {
      DtdTiming timing = {};
      if (c.get(id, &timing) != 0) continue;
      SCOPED_TRACE(id);
      ++count;
      const bool isDmt87 = c.get == DmtToDtd && id == 87;  // 88 differs in clock only, and the higher one wins
      EXPECT_EQ(c.find(&timing), isDmt87 ? 88 : id);

      // Within the tolerances, and just beyond.
      timing.hblank = static_cast<uint16_t>(timing.hblank - 2);
      timing.frameRate = static_cast<uint8_t>(timing.frameRate + 1);
      EXPECT_EQ(c.find(&timing), isDmt87 ? 88 : id);
      timing.hblank = static_cast<uint16_t>(timing.hblank - 1);
      EXPECT_NE(c.find(&timing), id);
    }
    EXPECT_EQ(count, c.count);
  }
}

TEST(Tables, FillOnlyWhatTheyKnow) {
  const auto check = [&](GetTiming get, uint32_t id, uint32_t pixelClock) {
    SCOPED_TRACE(id);
    DtdTiming timing = {}, before;
    std::memset(&timing.preferred, 0x11, sizeof timing - offsetof(DtdTiming, preferred));
    std::memcpy(&before, &timing, sizeof before);
    EXPECT_EQ(get(id, &timing), pixelClock == 0 ? -1 : 0);
    EXPECT_EQ(timing.pixelClock, pixelClock);
    EXPECT_EQ(std::memcmp(&timing.preferred, &before.preferred, sizeof timing - offsetof(DtdTiming, preferred)), 0);
  };
  for (const uint32_t id : {0u, 128u, 156u, 255u, 256u, 384u}) check(VicToDtd, id, 0);
  for (const uint32_t id : {0u, 90u, 257u}) check(DmtToDtd, id, 0);
  check(VicToDtd, 257, 25175);  // the low byte counts
  check(DmtToDtd, 89, 241500);
  EXPECT_EQ(VicToDtd(16, nullptr) + DmtToDtd(16, nullptr), -2);
  EXPECT_EQ(DtdToVic(nullptr) + DtdToDmt(nullptr), 0u);
}

TEST(Tables, FindFormatsByWhatUsersNameThemBy) {
  const struct {
    int32_t width;
    uint32_t height, rate, aspect;
    uint8_t interlaced;
    uint32_t vic, dmt;
  } cases[] = {
      {1920, 1080, 60, ASPECT_UNKNOWN, 0, 76, 82},  // the highest of several
      {1920, 1080, 60, ASPECT_16_9, 0, 16, 82},
      {1920, 1080, 60, ASPECT_4_3, 0, 0, 0},
      {1920, 540, 60, 255, 1, 5, 0},
      {1922, 1078, 59, ASPECT_16_9, 0, 16, 82},
      {1923, 1080, 60, ASPECT_16_9, 0, 0, 0},
      {1920, 1083, 60, ASPECT_16_9, 0, 0, 0},
      {1920, 1080, 58, ASPECT_16_9, 0, 0, 0},
      {1280, 1024, 60, ASPECT_UNKNOWN, 0, 0, 35},
      {0, 0, 0, ASPECT_UNKNOWN, 0, 128, 0},  // the empty row is a row
      {-2, 2, 1, 0, 0, 128, 0},
      {INT32_MIN, UINT32_MAX, UINT32_MAX, ASPECT_UNKNOWN, 0, 0, 0},
      {0, UINT32_MAX, 0, ASPECT_UNKNOWN, 0, 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << "@" << c.rate << " aspect " << c.aspect);
    EXPECT_EQ(FindVic(c.width, c.height, c.rate, c.aspect, c.interlaced), c.vic);
    EXPECT_EQ(FindDmt(c.width, c.height, c.rate, c.aspect, c.interlaced), c.dmt);
  }
}

}  // namespace
}  // namespace reedid::test
