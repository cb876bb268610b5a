#include <gtest/gtest.h>

#include "base/bytes.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"

namespace reedid::test {
namespace {

using RateVector = std::vector<uint16_t>;

RateVector RatesOf(const ByteVector& image, uint32_t maxCount = 50) {
  RateVector rates(maxCount);
  rates.resize(EDID_GetAllFrameRate(Image(image).get(), rates.data(), maxCount));
  return rates;
}

// A DisplayID descriptor of 20 bytes: 1920x1080 in 2200x1125 at a clock given as its three bytes.
ByteVector Type20(uint32_t clock) {
  ByteVector bytes(3);
  PutLe24(bytes.data(), clock - 1);
  return Concat({bytes, Hex("04 7F 07 17 01 57 00 2B 00 37 04 2C 00 03 00 04 00")});
}

TEST(FrameRates, EverySourceOfABaseBlock) {
  // 1080 lines: 85 and 50 Hz, then an unused code, then 75 Hz, then reduced blanking at 60 Hz.
  const ByteVector cvtCodes = Hex("00 01 1B 22 12 00 00 00 1B 22 04 1B 22 01");
  const std::tuple<const char*, Edid, RateVector> cases[] = {
      {"nothing", Edid(), {}},
      {"established 800x600 at 60 and 56, 1280x1024 at 75", Edid().Set(35, {0x03, 0x01}), {75, 60, 56}},
      {"established without a DMT timing", Edid().Set(35, {0x10}), {}},
      {"standard timings", Edid().Set(38, {0xD1, 0xC0, 0x81, 0x99}), {85, 60}},
      {"the last standard timing", Edid().Set(52, {0xD1, 0xC0}), {60}},
      {"DTD", Edid().Dtd(AtClock(k1080p60, 297000)), {120}},
      {"interlaced DTD counts fields",
       Edid().Dtd({74250, 1920, 280, 88, 44, 540, 22, 2, 5, 1, 1, 1, 0, 8, 0, 0, 0, 0, 0}),
       {60}},
      {"DTD without a total", Edid().Dtd({74250, 0, 0, 0, 0, 540, 22, 2, 5, 1, 1, 1, 0, 8, 0, 0, 0, 0, 0}), {}},
      {"standard timings descriptor", Edid().Descriptor(0xFA, {0, 0x81, 0x8F, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}), {75}},
      {"CVT codes", Edid().Descriptor(0xF8, cvtCodes), {85, 75, 60, 50}},
      {"the slowest CVT code", Edid().Descriptor(0xF8, Hex("00 01 1B 22 10")), {50}},
      {"a middle CVT code", Edid().Descriptor(0xF8, Hex("00 01 1B 22 08")), {60}},
      {"the fastest CVT code", Edid().Descriptor(0xF8, Hex("00 01 1B 22 02")), {85}},
  };
  for (const auto& [name, edid, rates] : cases) EXPECT_EQ(RatesOf(edid.Build()), rates) << name;
}

TEST(FrameRates, EverySourceOfACtaExtension) {
  const std::tuple<const char*, Cta, RateVector> cases[] = {
      {"VICs in any order come out falling, each once", Cta().Vdb({16, 31, 63, 32, 97, 0x90}), {120, 60, 50, 24}},
      {"VICs that the table does not know", Cta().Vdb({0, 128, 254}), {}},
      {"4:2:0 VICs", Cta().Extended(14, {96, 218}), {100, 50}},
      {"HDMI VICs", Cta().Hdmi(0x1000, {0, 60, 0x20, 0, 0xA0, 1, 2, 3, 4, 5}), {30, 25, 24}},
      {"behind blocks of other kinds",
       Cta().Block(1, {9, 7, 7}).Block(3, {1, 2, 3}).Extended(5, {1, 1}).Extended(0x23, {0x08, 1, 2}).Vdb({16}),
       {60}},
      {"HDMI Forum alone", Cta().HdmiForum({1, 120, 0x80, 0x60}), {}},
      {"DTDs", Cta().Dtd(k1080p60).Dtd(AtClock(k1080p60, 297000)), {120, 60}},
      {"type VII", Cta().Extended(0x22, Concat({{2}, Type20(297000)})), {120}},
      {"type VIII, DMT", Cta().Extended(0x23, {0, 0x52, 0x4F}), {85, 60}},
      {"type VIII, VIC", Cta().Extended(0x23, {0x40, 63}), {}},
      {"type X", Cta().Extended(0x2A, {0, 2, 0xFF, 0x09, 0x9F, 0x05, 143}), {144}},
      {"type X, 7 bytes: the second record is not all there",
       Cta().Extended(0x2A, {0x10, 2, 0xFF, 0x09, 0x9F, 0x05, 0x2B, 1, 2, 0xFF, 0x09, 0x9F, 0x05, 59}),
       {300}},
      {"type X too short", Cta().Extended(0x2A, {0, 2, 0xFF}), {}},
  };
  for (const auto& [name, cta, rates] : cases) EXPECT_EQ(RatesOf(Edid().Extension(cta).Build()), rates) << name;
}

TEST(FrameRates, EverySourceOfADisplayIdSection) {
  const ByteVector type2 = {0x03, 0x3A, 0x00, 0x00, 0xEF, 0x44, 0xA5, 0x37, 0x04, 0x2C, 0x34};
  const ByteVector type6 = {0x28, 0x88, 0x04, 0x7F, 0x07, 0x37, 0x04, 0x17, 0x57, 0x01, 0x2B, 0x2C, 0x03, 0x04};
  const std::tuple<const char*, Section, RateVector> cases[] = {
      {"type I", Section().Block(0x03, 0, Concat({Type20(14850), Type20(29700)})), {120, 60}},
      {"type II", Section().Block(0x04, 0, type2), {60}},
      {"type III", Section().Block(0x05, 0, {0x04, 0xEF, 74}), {75}},
      {"type IV, DMT, VIC and HDMI VIC",
       Section().Block(0x06, 0, {0x52}).Block(0x06, 0x40, {63}).Block(0x06, 0x80, {2, 9}).Block(0x06, 0xC0, {63}),
       {120, 60, 25}},
      {"VESA bitmap", Section().Block(0x07, 0, {0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0}), {85}},
      {"CTA bitmap", Section().Block(0x08, 0, {0x00, 0x80, 0, 0, 0, 0, 0, 0x40}), {120, 60}},
      {"type V", Section().Block(0x11, 0, {0, 0, 0x7F, 0x07, 0x37, 0x04, 164}), {165}},
      {"type VI", Section().Block(0x13, 0, type6), {120}},
      {"type VII", Section(0x20).Block(0x22, 0, Type20(594000)), {240}},
      {"type VIII", Section(0x20).Block(0x23, 0x40, {31}), {50}},
      {"type IX", Section(0x20).Block(0x24, 0, {2, 0xFF, 0x09, 0x9F, 0x05, 99}), {100}},
      {"type X stands in CTA extensions only", Section(0x20).Block(0x2A, 0, {2, 0xFF, 0x09, 0x9F, 0x05, 99}), {}},
      {"behind codes of two bytes", Section(0x20).Block(0x23, 0x08, {0x52, 0}).Block(0x23, 0x40, {31}), {50}},
      {"a block without a whole timing", Section().Block(0x03, 0, {1, 2, 3}).Block(0x05, 0, {0x04, 0xEF, 74}), {75}},
  };
  for (const auto& [name, section, rates] : cases) {
    EXPECT_EQ(RatesOf(section.Build()), rates) << name << ", standalone";
    EXPECT_EQ(RatesOf(Edid().Extension(section).Build()), rates) << name << ", inside an EDID";
  }
}

TEST(FrameRates, StopsWhenTheArrayIsFull) {
  const ByteVector image = Edid().Extension(Cta().Vdb({16, 31, 63})).Extension(Cta().Vdb({63})).Build();
  EXPECT_EQ(RatesOf(image, 2), (RateVector{60, 50}));
  EXPECT_EQ(RatesOf(image, 0), RateVector{});
}

}  // namespace
}  // namespace reedid::test
