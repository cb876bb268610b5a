// The C++ convenience: who owns what, what an empty owner answers, where ranges begin and end.
#include <gtest/gtest.h>

#include <type_traits>

#include "reedid/reedid.hpp"
#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

static_assert(!std::is_copy_constructible_v<Image> && !std::is_copy_assignable_v<Image>);
static_assert(std::is_nothrow_move_constructible_v<CtaExtension> && std::is_nothrow_move_assignable_v<CtaExtension>);
static_assert(std::forward_iterator<TimingRange::Iterator>);
static_assert(sizeof(DisplayIdSection) == sizeof(void*));

ByteVector Sample() {
  return Edid()
      .Dtd(k2160p60)
      .Name("Sample")
      .Dtd(k1080p60)
      .Extension(Cta().Vdb({16, 97}).Hdmi(0x1000).Dtd(k720p60))
      .Extension(Section().Block(0x0B, 0, {'a', 'b'}))
      .Build();
}

TEST(ReedidHpp, OwnersMoveAndCloseOnce) {
  Image image(Sample());
  ASSERT_TRUE(image);
  Image moved = std::move(image);
  EXPECT_FALSE(image);
  EXPECT_EQ(moved->blockCount, 3);
  moved = Image(Sample());  // the first handle is closed here: a leak checker watches
  Image taken(moved.release());
  EXPECT_FALSE(moved);
  EXPECT_EQ(taken.Bytes(), Sample());
}

TEST(ReedidHpp, RangesGoOverWhatThereIs) {
  const Image image(Sample());
  ASSERT_EQ(image.Blocks().size(), 3u);
  EXPECT_EQ(image.Blocks()[2].type, EDID_BLOCK_DISPID_EXT);
  EXPECT_EQ(BytesOf(image.Blocks()[2]).size(), 128u);
  EXPECT_EQ(image.DetailedTimings().size(), 3u);
  EXPECT_EQ(image.FrameRates(), std::vector<uint16_t>{60});
  EXPECT_EQ(image.Rates(), std::vector<uint32_t>{60000});
  EXPECT_EQ(image.Timings().size(), 5u);

  const BaseBlock base(image.Blocks()[0]);
  std::vector<uint32_t> clocks;
  for (const DtdTiming& timing : base.Timings()) clocks.push_back(timing.pixelClock);
  EXPECT_EQ(clocks, (std::vector<uint32_t>{594000, 148500})) << "the name between them is no timing";
  EXPECT_EQ(&std::next(base.Timings().begin()).slot(), &base->descriptors[2]);

  const CtaExtension cta(image.Blocks()[1]);
  ASSERT_EQ(cta.DataBlocks().size(), 2u);
  EXPECT_EQ(BytesOf(cta.DataBlocks()[0]).size(), 3u);
  EXPECT_EQ((*cta.Timings().begin()).hactive, 1280);

  const DisplayIdSection section(image.Blocks()[2]);
  ASSERT_EQ(section.DataBlocks().size(), 1u);
  EXPECT_EQ(BytesOf(section.DataBlocks()[0])[4], 'b');
}

TEST(ReedidHpp, EmptyOwnersHoldNothing) {
  const ByteVector cut(100);
  LogOf([&] {
    const Image refused{ByteView(cut).first(4)};
    EXPECT_FALSE(refused);
    EXPECT_TRUE(refused.Blocks().empty() && refused.Bytes().empty());
    EXPECT_TRUE(refused.FrameRates().empty() && refused.DetailedTimings().empty());
    const Image image(Sample());
    const BaseBlock wrongKind(image.Blocks()[1]);
    EXPECT_FALSE(wrongKind);
    EXPECT_EQ(wrongKind.Timings().begin(), wrongKind.Timings().end());
    EXPECT_TRUE(CtaExtension().DataBlocks().empty() && DisplayIdSection().DataBlocks().empty());
    EXPECT_EQ(wrongKind.GenerateInto(image.Blocks()[0]), -1);
  });
  EXPECT_TRUE(BytesOf(EdidBlock{}).empty());
  EXPECT_EQ(BytesOf(CeaDataBlock{1, 0, 4, nullptr}).size(), 0u);
}

TEST(ReedidHpp, AnEditGoesBackIntoTheImage) {
  const Image image(Sample());
  EdidBlock& block = image.Blocks()[1];
  const CtaExtension cta(block);
  ASSERT_EQ(CEA_DeleteDTD(cta.get(), &cta.Timings().begin().slot()), 0);
  EXPECT_TRUE(cta.Descriptors().empty());
  ASSERT_EQ(cta.GenerateInto(block), 0);
  EXPECT_EQ(image.DetailedTimings().size(), 2u);
}

TEST(ReedidHpp, RecordsAreFoundByTheirType) {
  const auto limits10kHz = [](uint8_t tag) {  // the two forms store the clock alike, in units of 10 and of 1 kHz
    return Section(tag == DISPID20_TAG_RANGE_LIMITS ? 0x20 : 0x13).Block(tag, 0, ByteVector(tag == 0x09 ? 15 : 9, 1));
  };
  const Image image(
      Edid()
          .Name("Sample")
          .Dtd(k1080p60)
          .Descriptor(EDID_DESCRIPTOR_RANGE_LIMITS, {0, 48, 75, 30, 90, 30, 1, 10, 32, 32, 32, 32, 32, 32})
          .Extension(Cta()
                         .Block(CEA_TAG_VENDOR, {0x1A})  // ends before its vendor is told
                         .Block(CEA_TAG_VENDOR, {0x1A, 0, 0, 2})
                         .Hdmi(0x1000)
                         .Block(CEA_TAG_EXTENDED, {CEA_EXT_TAG_420_VIDEO, 97})
                         .Block(CEA_TAG_EXTENDED, {CEA_EXT_TAG_COLORIMETRY, 0x80, 0})
                         .Dtd(k720p60))
          .Extension(limits10kHz(DISPID_TAG_RANGE_LIMITS))
          .Extension(limits10kHz(DISPID20_TAG_RANGE_LIMITS))
          .Build());
  ASSERT_EQ(image.Blocks().size(), 4u);
  const BaseBlock base(image.Blocks()[0]);
  const CtaExtension cta(image.Blocks()[1]);
  EXPECT_EQ(LogOf([&] {
              EXPECT_EQ(Find<DtdTiming>(base).value().hactive, 1920) << "behind a name";
              EXPECT_EQ(Find<RangeLimits>(base).value().maxVRate, 75);
              EXPECT_FALSE(Find<Est3Record>(base));
              EXPECT_EQ(Find<DtdTiming>(cta).value().hactive, 1280);
              EXPECT_EQ(Find<H14bRecord>(cta).value().physAddr, 0x1000) << "behind other vendors";
              EXPECT_FALSE(Find<HfVsdbRecord>(cta) || Find<VdbRecord>(cta) || Find<VideoCapRecord>(cta));
              EXPECT_EQ(Find<Vic420Record>(cta).value().vicCount, 1);
              EXPECT_EQ(Find<ColorimetryRecord>(cta).value().BT2020RGB, 1);
              EXPECT_FALSE(Get<ColorimetryRecord>(cta.DataBlocks()[3]));
              EXPECT_FALSE(Find<VdbRecord>(CtaExtension()));
              EXPECT_EQ(Find<DispIdRangeLimits>(DisplayIdSection(image.Blocks()[2])).value().minPixelClock, 657940u);
              EXPECT_EQ(Find<DispIdRangeLimits>(DisplayIdSection(image.Blocks()[3])).value().minPixelClock, 65794u);
            }),
            "");
  const CeaDataBlock refused = {CEA_TAG_EXTENDED, CEA_EXT_TAG_COLORIMETRY, 4, nullptr};
  EXPECT_EQ(LogOf([&] { EXPECT_FALSE(Get<ColorimetryRecord>(refused)); }), "[ERR:CEA_GetCDB]: invalid parameters\n");
}

}  // namespace
}  // namespace reedid::test
