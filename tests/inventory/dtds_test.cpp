#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

using TimingVector = std::vector<DtdTiming>;

TimingVector DtdsOf(const ByteVector& image) {
  const Owned<EdidHandle> handle = OpenImage(image);
  TimingVector list(EDID_GetDTDCnt(handle.get()));
  const uint32_t found = EDID_FindOutAllDTD(handle.get(), list.data(), static_cast<uint32_t>(list.size()));
  EXPECT_LE(found, list.size());
  list.resize(found);
  return list;
}

// One type I timing in DisplayID form, 640x480 and the rest small.
const ByteVector kType1 = {0x45, 0x0A, 0, 0, 0x7F, 2, 0x9F, 0, 0x0F, 0, 0x5F, 0, 0xDF, 1, 0x2C, 0, 9, 0, 1, 0};

TEST(Dtds, AreCountedAndCollectedInOrder) {
  const TimingVector list =
      DtdsOf(Edid()
                 .Dtd(k1080p60)
                 .Name("reedid")
                 .Extension(Cta().Dtd(k720p60).Dtd(k2160p60))
                 .Extension(Section().Block(0x03, 0, Concat({kType1, kType1, kType1})).Block(0x06, 0, {1}))
                 .Build());
  ASSERT_EQ(list.size(), 6u);
  const uint16_t widths[] = {1920, 1280, 3840, 640, 640, 640};
  for (size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(list[i].hactive, widths[i]) << i;
    EXPECT_EQ(list[i].preferred, i == 0) << i;
  }
  // In another slot than the first, a timing is not the preferred one.
  EXPECT_EQ(DtdsOf(Edid().Name("reedid").Dtd(k1080p60).Build()).at(0).preferred, 0);
}

TEST(Dtds, MoreThanACountHoldsWrapAround) {
  Cta six;
  for (int i = 0; i < 6; ++i) six.Dtd(k720p60);
  Edid edid;
  edid.Dtd(k1080p60);
  for (int i = 0; i < 60; ++i) edid.Extension(six);
  const TimingVector list = DtdsOf(edid.Build());  // 361 timings
  ASSERT_EQ(list.size(), 361u - 256u);
  EXPECT_EQ(list.front().hactive, 1920);
  EXPECT_EQ(list.back().hactive, 1280);
}

TEST(Dtds, SortByResolutionAndByRate) {
  const auto sized = [](uint16_t h, uint16_t v) {
    DtdTiming timing = {};
    timing.hactive = h;
    timing.vactive = v;
    return timing;
  };
  TimingVector list = {sized(1280, 720), sized(3840, 2160), sized(1920, 1080)};
  SortDTDbyResolution(list.data(), 3);
  EXPECT_EQ(list[0].hactive, 3840);
  EXPECT_EQ(list[1].hactive, 1920);
  EXPECT_EQ(list[2].hactive, 1280);

  struct Case {
    std::vector<uint32_t> before, after;  // Hz
  };
  const Case cases[] = {
      {{50, 120, 60}, {60, 120, 50}},  // the row's first rate is the measure for the whole row
      {{60, 50}, {60, 50}},           {{50, 60}, {60, 50}}, {{50}, {50}}, {{0, 24, 30}, {30, 24, 0}},
  };
  for (const Case& c : cases) {
    TimingVector timings;
    for (const uint32_t rate : c.before) timings.push_back(AtClock(k1080p60, rate * 2475));
    SortDTDbyFrameRate(timings.data(), static_cast<int32_t>(timings.size()));
    for (size_t i = 0; i < c.after.size(); ++i) EXPECT_EQ(timings[i].pixelClock, c.after[i] * 2475);
  }
  // Ends are kept in 16 bits with a sign: this one lies before the list.
  TimingVector two = {sized(1, 1), sized(2, 2)};
  SortDTDbyResolution(two.data(), 0xFFFF);
  SortDTDbyFrameRate(two.data(), -1);
  EXPECT_EQ(two[0].hactive, 1);
}

TEST(Dtds, RefuseWhatIsNotThere) {
  DtdTiming timing;
  EdidHandle empty = {};
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_GetDTDCnt(nullptr), 0u); }), Err("EDID_GetDTDCnt", "invalid parameters"));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_FindOutAllDTD(nullptr, &timing, 1), 0u); }),
            Err("EDID_FindOutAllDTD", "invalid parameters"));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_GetDTDCnt(&empty) + EDID_FindOutAllDTD(&empty, &timing, 1), 0u); }), "");
  EXPECT_EQ(LogOf([] { SortDTDbyFrameRate(nullptr, 3); }), Err("SortDTDbyFrameRate", "invalid parameters"));
}

}  // namespace
}  // namespace reedid::test
