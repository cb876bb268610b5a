// Product identification, display parameters, range limits and strings.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/displayid/entry.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

TEST(DispIdProduct, ReadsAndWritesTheBlock) {
  const ByteVector payload = {'R', 'E', 'D', 0x34, 0x12, 0x78, 0x56, 0x34, 0x82, 53, 26, 2, 'T', 'V'};
  for (const uint8_t tag : ByteVector{0x00, 0x20}) {
    const Entry entry(BlockOf(tag, 0, payload));
    char name[3] = {'x', 'x', 'x'};
    ProductIdRecord record = {};
    record.name = name;
    ASSERT_EQ((tag == 0 ? DispID_GetPIDB : DispID20_GetPIDB)(&entry, &record), 0);
    EXPECT_EQ(record.productCode, 0x1234);
    EXPECT_EQ(record.serialNumber, 0x82345678u);
    EXPECT_EQ(record.week, 53);
    EXPECT_EQ(record.year, 2026);
    EXPECT_EQ(record.nameLength, 2);
    EXPECT_STREQ(name, "TV");
    Target target(17);
    ASSERT_EQ((tag == 0 ? DispID_SetPIDB : DispID20_SetPIDB)(&record, &target), 0);
    EXPECT_EQ(target.Block(), BlockOf(tag, 0, payload));
    record.name = nullptr;
    EXPECT_EQ(DispID_SetPIDB(&record, &target), 0);
    EXPECT_EQ(target.bytes[15], 0);
  }
}

TEST(DispIdProduct, TheNameEndsWithItsBlockAndWith233) {
  for (const auto& [stored, present, length] :
       {std::tuple(240, 240, 233), {5, 3, 3}, {3, 5, 3}, {9, 0, 0}, {234, 236, 233}}) {
    ByteVector payload = Concat({ByteVector(12), ByteVector(static_cast<size_t>(present), 'n')});
    payload[11] = static_cast<uint8_t>(stored);
    const Entry entry(BlockOf(0, 0, payload));
    const ExactBytes name(ByteVector(static_cast<size_t>(length) + 1, 'x'));
    ProductIdRecord record = {};
    record.name = reinterpret_cast<char*>(name.data());
    ASSERT_EQ(DispID_GetPIDB(&entry, &record), 0);
    EXPECT_EQ(record.nameLength, length);
    EXPECT_EQ(std::string(record.name), std::string(static_cast<size_t>(length), 'n'));
  }
  char name[234] = {};
  ProductIdRecord record = {{1, 2, 3}, 0, 0, 1, 2020, 234, name};
  Target target(248);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_SetPIDB(&record, &target), -1); }),
            Err("DispID_SetPIDB", "invalid parameters"));
  EXPECT_TRUE(target.Untouched());
  record.nameLength = 233;
  ASSERT_EQ(DispID_SetPIDB(&record, &target), 0);
  EXPECT_EQ(target.size, 248);
}

TEST(DispIdProduct, ABadDateIsReportedAndWritten) {
  struct Case {
    uint8_t week;
    uint16_t year;
    std::string log;
    uint8_t yearByte;
  };
  const std::string name = "DispID20_SetPIDB";
  for (const Case& c : {Case{54, 2000, "", 0},
                        {55, 2001, Err(name, "invalid week:55"), 1},
                        {254, 1999, Err(name, "invalid week:254") + Err(name, "invalid year:1999"), 255},
                        {255, 2256, "", 0},
                        {0, 2255, "", 255}}) {
    const ProductIdRecord record = {{1, 2, 3}, 0, 0, c.week, c.year, 0, nullptr};
    Target target(15);
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID20_SetPIDB(&record, &target), 0); }), c.log);
    EXPECT_EQ(target.bytes[12], c.week);
    EXPECT_EQ(target.bytes[13], c.yearByte);
  }
}

TEST(DispIdDisplayParams, EachFieldHasItsPlace) {
  const Entry entry(BlockOf(0x01, 0, {0x10, 0x27, 0x20, 0x17, 0x80, 0x07, 0x38, 0x04, 0xA5, 120, 78, 0x97}));
  DisplayParamsRecord r;
  ASSERT_EQ(DispID_GetDPDB(&entry, &r), 0);
  EXPECT_EQ(r.hImageSize, 10000);
  EXPECT_EQ(r.vPixels, 1080);
  EXPECT_EQ(r.audio + r.audioOverride + r.fixedPixelFormat + r.deinterlacing, 4);
  EXPECT_EQ(r.separateAudio + r.powerManagement + r.fixedTiming + r.supportsAI, 0);
  EXPECT_EQ(r.gammaX100, 220);
  EXPECT_EQ(r.aspectRatioX100, 178);
  EXPECT_EQ(r.nativeColorDepth, 10);
  EXPECT_EQ(r.overallColorDepth, 8);
  Target target(15);
  ASSERT_EQ(DispID_SetDPDB(&r, &target), 0);
  ByteVector expected(entry.bytes, entry.bytes + 15);
  expected[0] = 78;  // where the aspect ratio goes
  expected[13] = 0;
  EXPECT_EQ(target.Block(), expected);
  EXPECT_EQ(target.tag, 0x01);
  r.aspectRatioX100 = 100;
  r.gammaX100 = 99;
  r.nativeColorDepth = r.overallColorDepth = 0;
  ASSERT_EQ(DispID_SetDPDB(&r, &target), 0);
  EXPECT_EQ(target.bytes[0], 0x01);
  EXPECT_EQ(target.bytes[12], 255);
  EXPECT_EQ(target.bytes[14], 0);
}

TEST(DispIdDisplayParams, Of20ComeBackBitByBit) {
  const auto roundTrip = [](const ByteVector& block) -> ByteVector {
    const Entry entry(block);
    DisplayParams20Record record;
    if (DispID20_GetDPDB(&entry, &record) != 0) return {};
    Target target(32);
    return DispID20_SetDPDB(&record, &target) == 0 ? target.Block() : ByteVector();
  };
  ByteVector kept(29, 0xFF);
  kept[27] = 0x77;
  for (const uint8_t flags : ByteVector{0x00, 0x80}) {
    EXPECT_EQ(BitsKept(BlockOf(0x21, flags, ByteVector(29)), roundTrip), kept);
  }
}

TEST(DispIdDisplayParams, Of20HaveUnitsAndDepthCodes) {
  ByteVector payload(29);
  payload[0] = 0xE8;
  payload[1] = 0xFD;  // 65000
  payload[9] = 0x34;
  payload[10] = 0x12;
  payload[11] = 0x56;
  payload[27] = 0x12;
  payload[28] = 255;
  const Entry entry(BlockOf(0x21, 0x80, payload));
  DisplayParams20Record r;
  ASSERT_EQ(DispID20_GetDPDB(&entry, &r), 0);
  EXPECT_EQ(r.hImageSize, 650000u);
  EXPECT_EQ(r.redX, 0x234);
  EXPECT_EQ(r.redY, 0x561);
  EXPECT_EQ(r.colorDepth, 8);
  EXPECT_EQ(r.technology, 1);
  EXPECT_EQ(r.gammaX100, 0);
  for (const auto& [depth, code] : {std::pair(0, 0), {6, 1}, {10, 3}, {16, 6}, {2, 7}}) {
    r.colorDepth = static_cast<uint8_t>(depth);
    r.technology = 0;
    Target target(32);
    ASSERT_EQ(DispID20_SetDPDB(&r, &target), 0);
    EXPECT_EQ(target.bytes[30], code) << depth;
    EXPECT_EQ(target.headerFlags, 0x10);
  }
}

TEST(DispIdRangeLimitsBlock, ReadsAndWrites) {
  const ByteVector clocks = {0x0F, 0x27, 0x00, 0xFF, 0xFF, 0xFF};
  const ByteVector block = BlockOf(0x09, 0, Concat({clocks, {30, 160, 0x50, 0x01, 24, 144, 0x0C, 0x00, 0xA0}}));
  const ByteVector block20 = BlockOf(0x25, 0x49, Concat({clocks, {24, 144, 0x80}}));
  DispIdRangeLimits limits;
  const Entry entry(block);
  ASSERT_EQ(DispID_GetRangeLimits(&entry, &limits), 0);
  EXPECT_EQ(limits.minPixelClock, 100000u);
  EXPECT_EQ(limits.maxPixelClock, 167772160u);
  EXPECT_EQ(limits.minHBlank, 0x150);
  EXPECT_EQ(limits.maxVRate, 144);
  EXPECT_EQ(limits.interlaced + limits.cvtReduced, 2);
  Target target(18);
  ASSERT_EQ(DispID_SetRangeLimits(&limits, &target), 0);
  EXPECT_EQ(target.Block(), block);
  const Entry entry20(block20);
  ASSERT_EQ(DispID20_GetRangeLimits(&entry20, &limits), 0);
  EXPECT_EQ(limits.minPixelClock, 10000u);
  EXPECT_EQ(limits.maxPixelClock, 0x1000000u);
  EXPECT_EQ(limits.maxHRate, 0);
  EXPECT_EQ(limits.seamlessTransition, 1);
  Target target20(12, 0x25, 1, 9);
  ASSERT_EQ(DispID20_SetRangeLimits(&limits, &target20), 0);
  EXPECT_EQ(target20.Block(), block20);
}

TEST(DispIdRangeLimitsBlock, EachBadClockIsOneLineAndWritten) {
  struct Case {
    uint32_t min, max;
    int bad, bad20;
  };
  for (const Case& c : {Case{10, 167772169, 0, 1}, {9, 167772170, 2, 1}, {0, 5, 2, 1}, {1, 0x1000000, 1, 0}}) {
    DispIdRangeLimits limits = {};
    limits.minPixelClock = c.min;
    limits.maxPixelClock = c.max;
    Target target(18);
    std::string expected, expected20;
    for (int i = 0; i < c.bad; ++i) expected += Err("DispID_SetRangeLimits", "invalid pclk");
    for (int i = 0; i < c.bad20; ++i) expected20 += Err("DispID20_SetRangeLimits", "invalid pclk");
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_SetRangeLimits(&limits, &target), 0); }), expected);
    EXPECT_EQ(target.bytes[6], static_cast<uint8_t>(c.max / 10 - 1));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID20_SetRangeLimits(&limits, &target), 0); }), expected20);
    EXPECT_EQ(target.bytes[6], static_cast<uint8_t>(c.max - 1));
  }
}

TEST(DispIdStrings, BothAreWrittenAsSerialNumbers) {
  for (const auto set : {DispID_SetSerialNumber, DispID_SetDataString}) {
    Target target(7);
    ASSERT_EQ(set("A-17", &target), 0);
    EXPECT_EQ(target.Block(), (ByteVector{0x0A, 0, 4, 'A', '-', '1', '7'}));
    char text[5];
    EXPECT_EQ(DispID_GetSerialNumber(&target, text, 5), 0);
    EXPECT_STREQ(text, "A-17");
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_GetSerialNumber(&target, text, 4), -1); }),
              Err("DispID_GetSerialNumber", "invalid parameters"));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_GetDataString(&target, text, 5), -1); }),
              Err("DispID_GetDataString", "invalid parameters"));
  }
}

TEST(DispIdStrings, WhatASectionCannotHoldIsCut) {
  for (const auto& [length, log] : {std::pair<size_t, std::string>(0, ""),
                                    {248, ""},
                                    {249, Err("DispID_SetDataString", "invalid parameters")},
                                    {300, Err("DispID_SetDataString", "invalid parameters")}}) {
    const size_t stored = length < 248 ? length : 248;
    Target target(stored + 3);
    const std::string text(length, 's');
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_SetDataString(text.c_str(), &target), 0); }), log);
    EXPECT_EQ(target.Block(), BlockOf(0x0A, 0, ByteVector(stored, 's')));
  }
}

}  // namespace
}  // namespace reedid::test
