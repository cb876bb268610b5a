#include <gtest/gtest.h>

#include "tests/displayid/entry.h"
#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

using DtdGetter = int32_t (*)(const DispIdDataBlock*, DtdTiming*, uint32_t);
using DtdSetter = int32_t (*)(const DtdTiming*, uint32_t, DispIdDataBlock*);
using CvtGetter = int32_t (*)(const DispIdDataBlock*, CvtTiming*, uint32_t);
using CvtSetter = int32_t (*)(const CvtTiming*, uint32_t, DispIdDataBlock*);

// 1080p60 fits every form of detailed timing.
DtdTiming Plain() {
  DtdTiming timing = k1080p60;
  timing.aspectRatio = ASPECT_UNKNOWN;
  timing.frameRate = 0;
  return timing;
}

constexpr CvtTiming kCvt = {2, ASPECT_16_9, 1920, 60, 0, 0, 0, 0, 0, 1080, 0, 0};

TEST(DispIdTimings, EveryStoredBitSurvivesARoundTrip) {
  const auto dtd = [](DtdGetter get, DtdSetter set) {
    return [=](const ByteVector& block) { return RoundTrip<DtdTiming>(block, get, set); };
  };
  const auto cvt = [](CvtGetter get, CvtSetter set) {
    return [=](const ByteVector& block) { return RoundTrip<CvtTiming>(block, get, set); };
  };
  const ByteVector all20 = Concat({{0xFF, 0xFF, 0xFF, 0x9F}, ByteVector(16, 0xFF)});
  const ByteVector all14 = {0xFF, 0xFF, 0xBF, 0xFF, 0xBF, 0xFF, 0xBF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x8F};
  const ByteVector longVi = {0, 0, 0x40, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 152, 0, 0};
  const auto typeVi = dtd(DispID_Get17ByteDTD, DispID_Set17ByteDTD);
  const auto typeIx = cvt(DispID20_Get6ByteCVT, DispID20_Set6ByteCVT);
  struct Case {
    const char* name;
    ByteVector block;
    std::function<ByteVector(const ByteVector&)> roundTrip;
    ByteVector kept;  // the bits that have a meaning of their own
  };
  const Case cases[] = {
      {"I", BlockOf(0x03, 1, ByteVector(20)), dtd(DispID_Get20ByteDTD, DispID_Set20ByteDTD), all20},
      {"VII", BlockOf(0x22, 0xA2, ByteVector(20)), dtd(DispID20_Get20ByteDTD, DispID20_Set20ByteDTD), all20},
      {"II",
       BlockOf(0x04, 0, ByteVector(11)),
       dtd(DispID_Get11ByteDTD, DispID_Set11ByteDTD),
       {0xFF, 0xFF, 0xFF, 0x9C, 0xFF, 0xFF, 0xFF, 0xFF, 0x0F, 0xFF, 0xFF}},
      {"VI", BlockOf(0x13, 0x28, ByteVector(14)), typeVi, all14},
      {"VI, long", BlockOf(0x13, 0, longVi), typeVi, Concat({all14, {0, 0xFF, 0xFF}})},  // 14 is a code
      {"III", BlockOf(0x05, 1, ByteVector(3)), cvt(DispID_Get3ByteCVT, DispID_Set3ByteCVT), ByteVector(3, 0xFF)},
      {"V",
       BlockOf(0x11, 0, ByteVector(7)),
       cvt(DispID_Get7ByteCVT, DispID_Set7ByteCVT),
       {0x93, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
      {"IX", BlockOf(0x24, 0x60, ByteVector(6)), typeIx, {0x93, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
      {"IX, formula 3", BlockOf(0x24, 0, {3, 0, 0, 0, 0, 0}), typeIx, {0x93, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
      {"X", BlockOf(0x2A, 0x10, ByteVector(7)), typeIx, {0x93, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.roundTrip(c.block), c.block) << c.name;
    EXPECT_EQ(BitsKept(c.block, c.roundTrip), c.kept) << c.name;
  }
}

TEST(DispIdTimings, DetailedFieldsStandWhereTheFormSays) {
  DtdTiming timing = Plain();
  timing.preferred = 1;
  timing.aspectRatio = ASPECT_16_9;
  timing.hImageSize = 0x123;
  timing.vImageSize = 5;
  struct Case {
    std::string name;
    DtdSetter set;
    DtdGetter get;
    ByteVector block;
    bool keepsAspect, keepsSize;
  };
  const ByteVector counts20 = {0x7F, 0x07, 0x17, 0x01, 0x57, 0x80, 0x2B, 0x00,
                               0x37, 0x04, 0x2C, 0x00, 0x03, 0x80, 0x04, 0x00};
  const Case cases[] = {
      {"I", DispID_Set20ByteDTD, DispID_Get20ByteDTD, BlockOf(0x03, 1, Concat({{0x01, 0x3A, 0x00, 0x84}, counts20})),
       true, false},
      {"VII", DispID20_Set20ByteDTD, DispID20_Get20ByteDTD,
       BlockOf(0x22, 0x95, Concat({{0x13, 0x44, 0x02, 0x84}, counts20})), true, false},
      {"II", DispID_Set11ByteDTD, DispID_Get11ByteDTD,
       BlockOf(0x04, 0, {0x01, 0x3A, 0x00, 0x8C, 0xEF, 0x44, 0xA4, 0x37, 0x04, 0x2C, 0x34}), false, false},
      {"VI", DispID_Set17ByteDTD, DispID_Get17ByteDTD,
       BlockOf(0x13, 0x90,
               {0x13, 0x44, 0xC2, 0x7F, 0x87, 0x37, 0x84, 0x17, 0x57, 0x01, 0x2B, 0x2C, 0x03, 0x04, 152, 0x22, 0x41}),
       true, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Target target(c.block.size());
    ASSERT_EQ(c.set(&timing, 1, &target), 0);
    EXPECT_EQ(target.Block(), c.block);
    EXPECT_EQ(target.tag, c.block[0]);
    DtdTiming back;
    ASSERT_EQ(c.get(&target, &back, 5), 0);
    EXPECT_EQ(back.pixelClock, 148500u);
    EXPECT_EQ(back.hblank, 280);
    EXPECT_EQ(back.hsyncWidth, c.name == "II" ? 40 : 44);  // units of 8 pixels
    EXPECT_EQ(back.vfrontPorch, 4);
    EXPECT_EQ(back.hsyncPositive + back.vsyncPositive + back.preferred, 3);
    EXPECT_EQ(back.frameRate, 0);
    EXPECT_EQ(back.aspectRatio, c.keepsAspect ? ASPECT_16_9 : ASPECT_UNKNOWN);
    EXPECT_EQ(back.hImageSize, c.keepsSize ? 0x123 : 0);
    EXPECT_EQ(back.vImageSize, c.keepsSize ? 5 : 0);
  }
}

TEST(DispIdTimings, TypeViAspectRatiosAreNumbersOfTheirOwn) {
  const std::pair<uint8_t, uint16_t> read[] = {{85, 0},  {86, 0},  {106, 1}, {107, 1}, {113, 2}, {114, 2},
                                               {136, 5}, {137, 5}, {142, 3}, {143, 3}, {151, 4}, {152, 4},
                                               {161, 7}, {162, 7}, {202, 6}, {203, 6}, {84, 98}, {255, 298}};
  for (const auto& [value, code] : read) {
    ByteVector payload(17);
    payload[2] = 0x40;
    payload[14] = value;
    const Entry entry(BlockOf(0x13, 0, payload));
    DtdTiming timing;
    ASSERT_EQ(DispID_Get17ByteDTD(&entry, &timing, 1), 0);
    EXPECT_EQ(timing.aspectRatio, code) << int{value};
  }
  const std::pair<uint16_t, uint8_t> written[] = {{0, 86},  {1, 107}, {2, 113}, {3, 142}, {4, 152},  {5, 137},
                                                  {6, 202}, {7, 162}, {9, 7},   {98, 83}, {298, 254}};
  for (const auto& [code, value] : written) {
    DtdTiming timing = Plain();
    timing.aspectRatio = code;
    timing.hImageSize = timing.vImageSize = 1;
    Target target(20);
    ASSERT_EQ(DispID_Set17ByteDTD(&timing, 1, &target), 0);
    EXPECT_EQ(target.bytes[3 + 14], value) << code;
  }
  DtdTiming timing = Plain();
  timing.aspectRatio = 0;  // an image size of 0 cannot be told
  Target target(20);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_Set17ByteDTD(&timing, 1, &target), 0); }),
            Err("DispID_Set17ByteDTD", "invalid parameters"));
  EXPECT_EQ(target.bytes[18], 0xFF);
  EXPECT_EQ(target.bytes[19], 0xFF);
}

template <class Record>
struct Limit {
  const char* field;
  void (*set)(Record&, uint32_t);
  uint32_t min, max;
};

template <class Record>
void ExpectLimits(int32_t (*set)(const Record*, uint32_t, DispIdDataBlock*), const char* name, uint8_t tag, size_t size,
                  const Record& good, std::initializer_list<Limit<Record>> limits) {
  for (const Limit<Record>& limit : limits) {
    for (const uint32_t value : {limit.min - 1, limit.min, limit.max, limit.max + 1}) {
      SCOPED_TRACE(testing::Message() << name << " " << limit.field << " " << value);
      if (limit.max == 0xFFFF && value > limit.max) continue;  // no record can hold it
      Record record = good;
      limit.set(record, value);
      Target target(size, tag, 0, 0);
      const bool fits = value >= limit.min && value <= limit.max;
      const std::string log = LogOf([&] { EXPECT_EQ(set(&record, 1, &target), fits ? 0 : -1); });
      EXPECT_EQ(log.rfind(std::string("[ERR:") + name + "]: invalid timing", 0), fits ? std::string::npos : 0) << log;
      EXPECT_EQ(target.size, size);  // the header stands, whatever comes of the record
    }
  }
}

#define LIMIT(Record, field, min, max)                                                                    \
  Limit<Record> {                                                                                         \
#field, [](Record & r, uint32_t value) { r.field = static_cast<decltype(r.field)>(value); }, min, max \
  }
#define DTD(field, min, max) LIMIT(DtdTiming, field, min, max)
#define CVT(field, min, max) LIMIT(CvtTiming, field, min, max)

TEST(DispIdTimings, SettersRefuseWhatTheFormCannotHold) {
  ExpectLimits(DispID_Set20ByteDTD, "Set20ByteDTD", 0, 23, Plain(),
               {DTD(pixelClock, 10, 167772169), DTD(hactive, 1, 65535), DTD(hblank, 1, 65535),
                DTD(hfrontPorch, 1, 0x8000), DTD(hsyncWidth, 1, 65535), DTD(vactive, 1, 65535), DTD(vblank, 1, 65535),
                DTD(vfrontPorch, 1, 0x8000), DTD(vsyncWidth, 1, 65535)});
  ExpectLimits(DispID20_Set20ByteDTD, "Set20ByteDTD", 0, 23, Plain(), {DTD(pixelClock, 1, 0x1000000)});
  ExpectLimits(DispID_Set11ByteDTD, "DispID_Set11ByteDTD", 0, 14, Plain(),
               {DTD(pixelClock, 10, 167772169), DTD(hactive, 8, 4103), DTD(hblank, 8, 1031), DTD(hfrontPorch, 8, 135),
                DTD(hsyncWidth, 8, 135), DTD(vactive, 1, 4096), DTD(vblank, 1, 256), DTD(vfrontPorch, 1, 16),
                DTD(vsyncWidth, 1, 16)});
  ExpectLimits(DispID_Set17ByteDTD, "DispID_Set17ByteDTD", 0, 17, Plain(),
               {DTD(pixelClock, 1, 0x400000), DTD(hactive, 1, 16384), DTD(hblank, 1, 4096), DTD(hfrontPorch, 1, 4096),
                DTD(hsyncWidth, 1, 256), DTD(vactive, 1, 16384), DTD(vblank, 1, 256), DTD(vfrontPorch, 1, 256)});
  ExpectLimits(DispID_Set3ByteCVT, "DispID_Set3ByteCVT", 0, 6, kCvt, {CVT(hactive, 8, 2055), CVT(frameRate, 1, 128)});
  ExpectLimits(DispID_Set7ByteCVT, "DispID_Set7ByteCVT", 0, 10, kCvt,
               {CVT(hactive, 1, 65535), CVT(vactive, 1, 65535), CVT(frameRate, 1, 256)});
  ExpectLimits(DispID20_Set6ByteCVT, "DispID20_Set6ByteCVT", 0x24, 9, kCvt,
               {CVT(hactive, 1, 65535), CVT(vactive, 1, 65535), CVT(frameRate, 1, 1024)});
  CvtTiming timing = kCvt;
  Target target(10, 0x24);
  timing.formula = 1;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_Set7ByteCVT(&timing, 1, &target), -1); }),
            Err("DispID_Set7ByteCVT", "invalid parameters"));
  timing.formula = 4;
  target.tag = 0x24;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID20_Set6ByteCVT(&timing, 1, &target), -1); }),
            Err("DispID20_Set6ByteCVT", "invalid parameters"));
}

TEST(DispIdTimings, AMessageTellsTheTimingAndEarlierDescriptorsStay) {
  DtdTiming timings[2] = {Plain(), AtClock(Plain(), 0x1000000 * 10 + 10)};
  timings[1].hblank = 280;
  Target target(43);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_Set20ByteDTD(timings, 2, &target), -1); }),
            Err("Set20ByteDTD", "invalid timing: 1920x1080@2251 167772170KHz"));  // 67787 Hz, in 16 bits
  EXPECT_EQ(target.size, 43);
  EXPECT_EQ(target.bytes[3 + 4], 0x7F);
  EXPECT_EQ(target.bytes[23 + 4], 0x00);
  timings[0].vsyncWidth = 0;
  timings[0].frameRate = 60;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID20_Set20ByteDTD(timings, 1, &target), -1); }),
            Err("Set20ByteDTD", "invalid timing: 1920x1080@60 148500KHz"));
}

TEST(DispIdTimings, ShortTimingsReadTheirForm) {
  CvtTiming t;
  const Entry typeIii(BlockOf(0x05, 1, {0xA4, 0xEF, 0xBB}));
  ASSERT_EQ(DispID_Get3ByteCVT(&typeIii, &t, 9), 0);
  EXPECT_EQ(t.preferred + t.interlaced, 2);
  EXPECT_EQ(t.formula, 2);
  EXPECT_EQ(t.aspectRatio, ASPECT_16_9);
  EXPECT_EQ(t.hactive, 1920);
  EXPECT_EQ(t.vactive, 0);
  EXPECT_EQ(t.frameRate, 60);

  const Entry typeV(BlockOf(0x11, 0, {0x11, 0xFF, 0x7F, 0x07, 0x37, 0x04, 0xFF}));
  ASSERT_EQ(DispID_Get7ByteCVT(&typeV, &t, 1), 0);
  EXPECT_EQ(t.formula, 3);
  EXPECT_EQ(t.flagA, 1);  // here whatever the formula
  EXPECT_EQ(t.flagB, 0);
  EXPECT_EQ(t.aspectRatio, ASPECT_UNKNOWN);
  EXPECT_EQ(t.vactive, 1080);
  EXPECT_EQ(t.frameRate, 256);

  const Entry typeX(BlockOf(0x2A, 0x20, {0x93, 0x7F, 0x07, 0x37, 0x04, 0x57, 0x4D, 0xFF}));
  ASSERT_EQ(DispID20_Get6ByteCVT(&typeX, &t, 1), 0);
  EXPECT_EQ(t.flagB + t.ycc420, 2);
  EXPECT_EQ(t.flagA + t.preferred + t.aspectRatio, 0);
  EXPECT_EQ(t.frameRate, 0x157 + 1);
  EXPECT_EQ(t.extraBits42, 3);
  EXPECT_EQ(t.extraBits75, 2);
  Target target(11, 0x2A, 0, 4);
  ASSERT_EQ(DispID20_Set6ByteCVT(&t, 1, &target), 0);
  EXPECT_EQ(target.Block(), BlockOf(0x2A, 0x20, {0x93, 0x7F, 0x07, 0x37, 0x04, 0x57, 0x4D, 0x00}));
}

template <auto kSet>
int32_t SetMany(uint32_t count, DispIdDataBlock* entry) {
  if constexpr (std::is_invocable_v<decltype(kSet), const DtdTiming*, uint32_t, DispIdDataBlock*>) {
    const std::vector<DtdTiming> timings(90, Plain());
    return kSet(count == 0xFFFF ? nullptr : timings.data(), count, entry);
  } else {
    const std::vector<CvtTiming> timings(90, kCvt);
    return kSet(count == 0xFFFF ? nullptr : timings.data(), count, entry);
  }
}

TEST(DispIdTimings, ARefusedCountLeavesTheEntryAlone) {
  struct Case {
    const char* name;
    int32_t (*set)(uint32_t, DispIdDataBlock*);
    uint8_t tag;
    uint32_t min, max;
  };
  const Case cases[] = {
      {"Set20ByteDTD", SetMany<DispID_Set20ByteDTD>, 0x55, 1, 12},
      {"Set20ByteDTD", SetMany<DispID20_Set20ByteDTD>, 0x55, 1, 12},
      {"DispID_Set11ByteDTD", SetMany<DispID_Set11ByteDTD>, 0x55, 1, 22},
      {"DispID_Set17ByteDTD", SetMany<DispID_Set17ByteDTD>, 0x55, 0, 17},
      {"DispID_Set3ByteCVT", SetMany<DispID_Set3ByteCVT>, 0x55, 0, 82},
      {"DispID_Set7ByteCVT", SetMany<DispID_Set7ByteCVT>, 0x55, 1, 35},
      {"DispID20_Set6ByteCVT", SetMany<DispID20_Set6ByteCVT>, 0x24, 0, 41},
      {"DispID20_Set6ByteCVT", SetMany<DispID20_Set6ByteCVT>, 0x2A, 0, 35},  // one extra byte
      {"DispID20_Set6ByteCVT", SetMany<DispID20_Set6ByteCVT>, 0x03, 1, 0},   // another tag: never
  };
  for (const Case& c : cases) {
    for (const uint32_t count : {0u, 1u, c.max, c.max + 1, 0xFFFFu}) {
      SCOPED_TRACE(testing::Message() << c.name << " " << count);
      Target target(251, c.tag);
      const bool fits = count >= c.min && count <= c.max;
      EXPECT_EQ(LogOf([&] { EXPECT_EQ(c.set(count, &target), fits ? 0 : -1); }),
                fits ? "" : Err(c.name, "invalid parameters"));
      EXPECT_EQ(target.Untouched(c.tag), !fits);
    }
  }
}

}  // namespace
}  // namespace reedid::test
