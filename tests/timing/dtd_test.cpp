#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

constexpr DtdSlot k1080p60Slot = {
    1, {0x02, 0x3A, 0x80, 0x18, 0x71, 0x38, 0x2D, 0x40, 0x58, 0x2C, 0x45, 0x00, 0x40, 0x84, 0x63, 0x00, 0x00, 0x1E}};

// Each field with every bit set, alone, and the bytes that then are not 0.
struct FieldCase {
  const char* name;
  uint16_t DtdTiming::*field;
  unsigned largest;
  ByteVector bytes;
};
const FieldCase kFields[] = {
    {"hactive", &DtdTiming::hactive, 4095, {0, 0, 0xFF, 0, 0xF0}},
    {"hblank", &DtdTiming::hblank, 4095, {0, 0, 0, 0xFF, 0x0F}},
    {"vactive", &DtdTiming::vactive, 4095, {0, 0, 0, 0, 0, 0xFF, 0, 0xF0}},
    {"vblank", &DtdTiming::vblank, 4095, {0, 0, 0, 0, 0, 0, 0xFF, 0x0F}},
    {"hfrontPorch", &DtdTiming::hfrontPorch, 1023, {0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0, 0, 0xC0}},
    {"hsyncWidth", &DtdTiming::hsyncWidth, 1023, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0, 0x30}},
    {"vfrontPorch", &DtdTiming::vfrontPorch, 63, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x0C}},
    {"vsyncWidth", &DtdTiming::vsyncWidth, 63, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x0F, 0x03}},
    {"hImageSize", &DtdTiming::hImageSize, 4095, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0, 0xF0}},
    {"vImageSize", &DtdTiming::vImageSize, 4095, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0x0F}},
};

TEST(Dtd, PlacesEachField) {
  for (const FieldCase& c : kFields) {
    SCOPED_TRACE(c.name);
    DtdTiming timing = {};
    timing.pixelClock = 10;
    timing.*c.field = static_cast<uint16_t>(c.largest);
    ByteVector expected = c.bytes;
    expected.resize(18);
    expected[0] = 1;
    expected[17] = 0x18;
    DtdSlot slot;
    ASSERT_EQ(VESA_SetDTD(&timing, &slot), 0);
    EXPECT_EQ(ByteVector(slot.bytes, slot.bytes + 18), expected);
    DtdTiming read;
    ASSERT_EQ(VESA_GetDTD(&slot, &read), 0);
    EXPECT_EQ(read.*c.field, c.largest);
    timing.aspectRatio = 8;
    EXPECT_EQ(std::memcmp(&read, &timing, sizeof read), 0) << "and no other field, the rate of no total included";
  }
}

TEST(Dtd, RefusesWhatDoesNotFit) {
  struct Case {
    const char* name;
    std::function<void(DtdTiming&)> change;
    const char* log;  // null: fits
  };
  const Case cases[] = {
      {"smallest clock", [](DtdTiming& t) { t.pixelClock = 10; }, nullptr},
      {"largest clock", [](DtdTiming& t) { t.pixelClock = 655359; }, nullptr},
      {"clock 9", [](DtdTiming& t) { t.pixelClock = 9; }, "1920x1080@60 9KHz"},
      {"clock 655360", [](DtdTiming& t) { t.pixelClock = 655360; }, "1920x1080@60 655360KHz"},
      {"own rate, though it is wrong",
       [](DtdTiming& t) {
         t.vfrontPorch = 64;
         t.frameRate = 50;
       },
       "1920x1080@50 148500KHz"},
      {"formula rate in 16 bits",
       [](DtdTiming& t) {
         t = {};
         t.pixelClock = 4000000000u;
         t.hactive = 10000;
         t.vactive = 4000;
       },
       "10000x4000@34464 4000000000KHz"},  // 100000 Hz
      {"no total", [](DtdTiming& t) { t = {}; }, "0x0@0 0KHz"},
  };
  const auto check = [](const char* name, const DtdTiming& timing, const char* log) {
    SCOPED_TRACE(name);
    DtdSlot slot;
    std::memset(&slot, 0xEE, sizeof slot);
    int32_t result = 0;
    const std::string printed = LogOf([&] { result = VESA_SetDTD(&timing, &slot); });
    EXPECT_EQ(result, log == nullptr ? 0 : -1);
    EXPECT_EQ(printed, log == nullptr ? "" : Err("VESA_SetDTD", std::string("invalid timing: ") + log));
    EXPECT_EQ(slot.flag, 1);
    EXPECT_EQ(ByteVector(slot.bytes, slot.bytes + 18) == ByteVector(18), log != nullptr);
  };
  for (const Case& c : cases) {
    DtdTiming timing = k1080p60;
    if (std::string(c.name).find("formula") == 0) timing.frameRate = 0;
    c.change(timing);
    check(c.name, timing, c.log);
  }
  for (const FieldCase& c : kFields) {
    DtdTiming timing = {};
    timing.pixelClock = 20;
    timing.frameRate = 7;
    timing.*c.field = static_cast<uint16_t>(c.largest + 1);
    const std::string log = std::to_string(timing.hactive) + "x" + std::to_string(timing.vactive) + "@7 20KHz";
    check(c.name, timing, log.c_str());
  }
}

TEST(Dtd, Reads1080p60) {
  DtdTiming timing;
  std::memset(&timing, 0xEE, sizeof timing);
  ASSERT_EQ(VESA_GetDTD(&k1080p60Slot, &timing), 0);
  DtdTiming expected = k1080p60;
  expected.hImageSize = 1600;
  expected.vImageSize = 900;
  EXPECT_EQ(std::memcmp(&timing, &expected, sizeof timing), 0);
  DtdSlot again;
  ASSERT_EQ(VESA_SetDTD(&timing, &again), 0);
  EXPECT_EQ(std::memcmp(&again, &k1080p60Slot, sizeof again), 0);
}

TEST(Dtd, ReadsSyncAndRate) {
  struct Case {
    const char* name;
    std::vector<std::pair<size_t, uint8_t>> changes;  // of the 1080p60 descriptor
    int interlaced, vsync, hsync, rate;
  };
  const Case cases[] = {
      {"digital separate", {{17, 0x1A}}, 0, 0, 1, 60},
      {"interlaced, stereo bits", {{17, 0xFD}}, 1, 1, 0, 60},
      {"digital composite", {{17, 0x16}}, 0, 0, 0, 60},
      {"analog composite", {{17, 0x0E}}, 0, 0, 0, 60},
      {"borders are not read", {{15, 9}, {16, 9}}, 0, 1, 1, 60},
      {"rate below a half", {{0, 0xC1}, {1, 0x39}}, 0, 1, 1, 60},   // 147850 kHz, 59.74 Hz
      {"rate in 8 bits", {{5, 1}, {6, 0}, {7, 0}}, 0, 1, 1, 0xAC},  // 67500 Hz
      {"no lines", {{5, 0}, {6, 0}, {7, 0}}, 0, 1, 1, 0},
      {"no pixels", {{2, 0}, {3, 0}, {4, 0}}, 0, 1, 1, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    DtdSlot slot = k1080p60Slot;
    for (const auto& [at, byte] : c.changes) slot.bytes[at] = byte;
    DtdTiming timing;
    ASSERT_EQ(VESA_GetDTD(&slot, &timing), 0);
    EXPECT_EQ(timing.interlaced, c.interlaced);
    EXPECT_EQ(timing.vsyncPositive, c.vsync);
    EXPECT_EQ(timing.hsyncPositive, c.hsync);
    EXPECT_EQ(timing.frameRate, c.rate);
  }
}

TEST(Dtd, TruncatesTheClockAndMasksFlags) {
  DtdTiming timing = AtClock(k1080p60, 148505);
  timing.interlaced = 3;
  timing.vsyncPositive = 2;
  timing.hsyncPositive = 0xFF;
  DtdSlot slot;
  ASSERT_EQ(VESA_SetDTD(&timing, &slot), 0);
  EXPECT_EQ(slot.bytes[17], 0x9A);
  ASSERT_EQ(VESA_GetDTD(&slot, &timing), 0);
  EXPECT_EQ(timing.pixelClock, 148500u);
}

TEST(Dtd, RefusesBadArguments) {
  DtdTiming timing = k720p60;
  for (const int flag : {0, 2, 0xFD}) {
    DtdSlot slot = k1080p60Slot;
    slot.flag = static_cast<uint8_t>(flag);
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_GetDTD(&slot, &timing), -1); }), Err("VESA_GetDTD", "invalid parameters"));
    EXPECT_EQ(std::memcmp(&timing, &k720p60, sizeof timing), 0);
  }
  DtdSlot slot = k1080p60Slot;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_GetDTD(nullptr, &timing), -1); }), Err("VESA_GetDTD", "invalid parameters"));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_GetDTD(&slot, nullptr), -1); }), Err("VESA_GetDTD", "invalid parameters"));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_SetDTD(nullptr, &slot), -1); }), Err("VESA_SetDTD", "invalid parameters"));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_SetDTD(&timing, nullptr), -1); }), Err("VESA_SetDTD", "invalid parameters"));
  EXPECT_EQ(slot.flag, 1);
  EXPECT_EQ(slot.bytes[0], 0x02);
}

}  // namespace
}  // namespace reedid::test
