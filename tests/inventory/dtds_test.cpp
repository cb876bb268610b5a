#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

using TimingVector = std::vector<DtdTiming>;

std::vector<uint32_t> WidthsOf(const TimingVector& list) {
  std::vector<uint32_t> widths;
  for (const DtdTiming& timing : list) widths.push_back(timing.hactive);
  return widths;
}

// One type I timing in DisplayID form, 640x480 and the rest small.
const ByteVector kType1 = {0x45, 0x0A, 0, 0, 0x7F, 2, 0x9F, 0, 0x0F, 0, 0x5F, 0, 0xDF, 1, 0x2C, 0, 9, 0, 1, 0};

TEST(Dtds, AreCountedAndCollectedInOrder) {
  const TimingVector list =
      Image(Edid()
                .Dtd(k1080p60)
                .Name("reedid")
                .Extension(Cta().Dtd(k720p60).Dtd(k2160p60))
                .Extension(Section().Block(0x03, 0, Concat({kType1, kType1, kType1})).Block(0x06, 0, {1}))
                .Build())
          .DetailedTimings();
  EXPECT_EQ(WidthsOf(list), (std::vector<uint32_t>{1920, 1280, 3840, 640, 640, 640}));
  for (const DtdTiming& timing : list) EXPECT_EQ(timing.preferred, &timing == &list[0]);
  // In another slot than the first, a timing is not the preferred one.
  EXPECT_EQ(Image(Edid().Name("reedid").Dtd(k1080p60).Build()).DetailedTimings().at(0).preferred, 0);
}

// However many blocks there are, each is opened, and complained about, once.
TEST(Dtds, MoreThanACountHoldsWrapAround) {
  Cta six;
  for (int i = 0; i < 6; ++i) six.Dtd(k720p60);
  const std::pair<int, size_t> cases[] = {{0, 1},          {12, 73},        {42, 253},
                                          {43, 259 - 256}, {60, 361 - 256}, {85, 511 - 256}};  // extensions, timings
  for (const auto& [extensions, timings] : cases) {
    SCOPED_TRACE(extensions);
    Edid edid = Edid().Dtd(k1080p60).Extension(Section(0x02));
    for (int i = 0; i < extensions; ++i) edid.Extension(six);
    TimingVector list;
    const std::string line = Err("DispID_Open", "error version: 0.2");
    EXPECT_EQ(LogOf([&] { list = Image(edid.Build()).DetailedTimings(); }), line + line)
        << "counted once, collected once";
    ASSERT_EQ(list.size(), timings);
    EXPECT_EQ(list.front().hactive, 1920);
    EXPECT_EQ(list.back().hactive, timings == 1 ? 1920 : 1280);
  }
}

TEST(Dtds, SortByResolutionAndByRate) {
  TimingVector list = {k720p60, k2160p60, k1080p60};
  SortDTDbyResolution(list.data(), 3);
  EXPECT_EQ(WidthsOf(list), (std::vector<uint32_t>{3840, 1920, 1280}));
  const std::pair<std::vector<uint32_t>, std::vector<uint32_t>> cases[] = {
      {{50, 120, 60}, {60, 120, 50}},  // in Hz; the row's first rate is the measure for the whole row
      {{60, 50}, {60, 50}},           {{50, 60}, {60, 50}}, {{50}, {50}}, {{0, 24, 30}, {30, 24, 0}},
  };
  for (const auto& [before, after] : cases) {
    TimingVector timings;
    for (const uint32_t rate : before) timings.push_back(AtClock(k1080p60, rate * 2475));
    SortDTDbyFrameRate(timings.data(), static_cast<int32_t>(timings.size()));
    for (size_t i = 0; i < after.size(); ++i) EXPECT_EQ(timings[i].pixelClock, after[i] * 2475);
  }
  // Ends are kept in 16 bits with a sign: this one lies before the list.
  TimingVector two = {k720p60, k1080p60};
  SortDTDbyResolution(two.data(), 0xFFFF);
  SortDTDbyFrameRate(two.data(), -1);
  EXPECT_EQ(two[0].hactive, 1280);
}

}  // namespace
}  // namespace reedid::test
