// Product identification and display parameters.
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

}  // namespace
}  // namespace reedid::test
