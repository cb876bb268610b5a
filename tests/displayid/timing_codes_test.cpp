#include <gtest/gtest.h>

#include "tests/displayid/entry.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

constexpr char kTwoBytes[] = "Not support 2byte code now!!!";

TEST(DispIdTimingCodes, ReadAndWrite) {
  uint8_t codes[3] = {9, 9, 9};
  TimingCodeRecord record = {7, 0xA5, 7, 7, codes};
  const Entry entry(BlockOf(0x23, 0x86, {4, 97, 118}));
  ASSERT_EQ(DispID20_GetTimingCode(&entry, &record, 2), 0);
  EXPECT_EQ(record.codeType, 2);
  EXPECT_EQ(record.codeCount, 2);
  EXPECT_EQ(record.twoByteCodes, 0);
  EXPECT_EQ(record.reserved, 0xA5);
  EXPECT_EQ(codes[1], 97);
  EXPECT_EQ(codes[2], 9);
  record.codeType = 1;
  Target typeIv(5);
  ASSERT_EQ(DispID_SetTimingCode(&record, &typeIv), 0);
  EXPECT_EQ(typeIv.Block(), (ByteVector{0x06, 0x41, 2, 4, 97}));
  Target typeViii(5);
  ASSERT_EQ(DispID20_SetTimingCode(&record, &typeViii), 0);
  EXPECT_EQ(typeViii.Block(), (ByteVector{0x23, 0x45, 2, 4, 97}));  // keeps revision 5
}

TEST(DispIdTimingCodes, TwoByteCodesAndCountsAreRefused) {
  uint8_t codes[249] = {};
  TimingCodeRecord record = {7, 7, 7, 7, codes};
  for (const uint8_t tag : ByteVector{0x06, 0x23}) {
    const Entry entry(BlockOf(tag, 0x08, {1, 2}));
    const auto get = tag == 0x06 ? DispID_GetTimingCode : DispID20_GetTimingCode;
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(get(&entry, &record, 2), -1); }), Err("GetTimingCode", kTwoBytes));
    EXPECT_EQ(record.codeType + record.twoByteCodes + record.codeCount, 21);
  }
  struct Case {
    uint8_t twoBytes, count;
    const char* message;
  };
  for (const Case& c :
       {Case{1, 0, kTwoBytes}, {2, 1, kTwoBytes}, {0, 0, "invalid parameters"}, {0, 249, "invalid parameters"}}) {
    record = {0, 0, c.twoBytes, c.count, codes};
    Target target(251);
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_SetTimingCode(&record, &target), -1); }), Err("SetTimingCode", c.message));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID20_SetTimingCode(&record, &target), -1); }), Err("SetTimingCode", c.message));
    EXPECT_TRUE(target.Untouched());
  }
  record = {0, 0, 0, 248, codes};
  Target target(251);
  EXPECT_EQ(DispID_SetTimingCode(&record, &target), 0);
}

TEST(DispIdBitmaps, ElementsAreOneAboveTheBits) {
  ByteVector payload(10);
  payload[0] = 0x81;
  payload[9] = 0x80;
  const Entry entry(BlockOf(0x07, 0, payload));
  const ExactBytes flags(ByteVector(81, 0xAA));
  ASSERT_EQ(DispID_GetVESATiming(&entry, flags.data(), 500), 0);
  EXPECT_EQ(flags.data()[0], 0xAA);
  for (unsigned i = 1; i < 81; ++i) EXPECT_EQ(flags.data()[i], i == 1 || i == 8 || i == 80) << i;
  const ExactBytes one(ByteVector(1, 0xAA));
  ASSERT_EQ(DispID_GetVESATiming(&entry, one.data(), 1), 0);
  EXPECT_EQ(one.data()[0], 0xAA);
}

TEST(DispIdBitmaps, AreWrittenOneByteBeyondTheirSize) {
  ByteVector flags(16);
  flags[1] = flags[9] = flags[15] = 1;
  flags[2] = 0xFE;  // only bit 0 counts
  Target target(5);
  ASSERT_EQ(DispID_SetCEATiming(flags.data(), 16, &target), 0);
  EXPECT_EQ(target.headerFlags, 0x12);
  EXPECT_EQ(target.size, 4);
  EXPECT_EQ(target.All(), (ByteVector{0x08, 0x90, 1, 0x01, 0xCC | 0x41}));
  const std::vector<uint8_t> many(2000);
  for (const uint32_t count : {0u, 1u, 12u, 2000u}) {
    Target refused(251);
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_SetVESATiming(many.data(), count, &refused), -1); }),
              Err("DispID_SetVESATiming", "invalid parameters"));
    EXPECT_TRUE(refused.Untouched());
  }
  Target largest(252);
  ASSERT_EQ(DispID_SetVESATiming(many.data(), 1992, &largest), 0);
  EXPECT_EQ(largest.size, 251);
}

}  // namespace
}  // namespace reedid::test
