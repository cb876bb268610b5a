#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

struct Outcome {
  int32_t result;
  std::string log;
  ByteVector image;
  std::vector<uint16_t> rates;
};

Outcome HighRefresh(const ByteVector& image) {
  Outcome outcome = {};
  const Owned<EdidHandle> handle = OpenImage(image);
  outcome.log = LogOf([&] { outcome.result = EDID_HighRefreshRate(handle.get()); });
  outcome.image = Generate(handle.get());
  EXPECT_EQ(isValidEdid(handle.get()), 1);
  outcome.rates.resize(50);
  outcome.rates.resize(EDID_GetAllFrameRate(handle.get(), outcome.rates.data(), 50));
  return outcome;
}

// A DisplayID extension with one type I timing for each clock (kHz), all of 1920x1080 in 2200x1125.
Section TypeI(const std::vector<uint32_t>& clocks) {
  std::vector<DtdTiming> timings;
  for (const uint32_t clock : clocks) timings.push_back(AtClock(k1080p60, clock));
  uint8_t bytes[251];
  DispIdDataBlock entry = {0, 0, 0, 0, bytes};
  EXPECT_EQ(DispID_Set20ByteDTD(timings.data(), static_cast<uint32_t>(timings.size()), &entry), 0);
  return Section().Block(0x03, 1, ByteVector(bytes + 3, bytes + entry.size));
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(HighRefresh, LeavesTwoBlocksAlone) {
  const ByteVector image = Edid().Dtd(k1080p60).Extension(Cta().Vdb({16})).Build();
  const Outcome outcome = HighRefresh(image);
  EXPECT_EQ(outcome.result, 0);
  EXPECT_EQ(outcome.log, "");
  EXPECT_EQ(outcome.image, image);
}

TEST(HighRefresh, MovesTimingsIntoTwoBlocks) {
  // 144 Hz stands in the DisplayID extension only.
  const Outcome outcome =
      HighRefresh(Edid().Dtd(k1080p60).Name("reedid").Extension(Cta().Vdb({16})).Extension(TypeI({356400})).Build());
  EXPECT_EQ(outcome.result, 0);
  EXPECT_EQ(outcome.image.size(), 256u);
  EXPECT_EQ(outcome.rates, (std::vector<uint16_t>{144, 60}));
  EXPECT_EQ(outcome.log,
            "[INFO:EDID_HighRefreshRate]: support frameRate(2): 144Hz, 60Hz,\n"
            "[INFO:EDID_HighRefreshRate]: dtdList(2): 1920x1080@60.00 148500KHz, 1920x1080@144.00 356400KHz,\n"
            "[INFO:EDID_HighRefreshRate]: dtdSpaceLimits=9, dtdSpaceLimitsMax=9\n"
            "[INFO:EDID_HighRefreshRate]: delete invalid dtd, dtdCnt=2\n"
            "[INFO:EDID_HighRefreshRate]: dtdList(2): 1920x1080@60.00 148500KHz, 1920x1080@144.00 356400KHz,\n");
}

TEST(HighRefresh, DropsBlockMapsAndOverrides) {
  ByteVector map(128);
  map[0] = 0xF0;
  FixChecksum(map);
  const Outcome outcome =
      HighRefresh(Edid().Dtd(k1080p60).Extension(map).Extension(Cta().Vdb({16}).Extended(120, {2})).Build());
  EXPECT_EQ(outcome.image.size(), 256u);
  EXPECT_EQ(outcome.image[128], 0x02);
  const Owned<EdidHandle> handle = OpenImage(outcome.image);
  const Owned<CeaBlock> cea(CEA_Open(&handle->blocks[1]));
  EXPECT_EQ(CEA_FindDataBlock(cea.get(), 7, 120), nullptr);
}

TEST(HighRefresh, FillsLostRatesWithVicsAndFormulas) {
  // The rates of the DisplayID codes have no DTD: 120 Hz comes back as VIC 63, 24 Hz as VIC 32; 85 Hz is not wanted.
  Outcome outcome = HighRefresh(Edid()
                                    .Dtd(k1080p60)
                                    .Extension(Cta().Vdb({16}))
                                    .Extension(Section().Block(0x06, 0x40, {63, 32}).Block(0x06, 0, {0x4F}))
                                    .Build());
  EXPECT_EQ(outcome.rates, (std::vector<uint16_t>{120, 60, 24}));
  EXPECT_TRUE(Contains(outcome.log,
                       "[INFO:EDID_HighRefreshRate]: remain frameRate(2): 120, 24,\n"
                       "[WARN:FillWith1080pVIC]: fill vic63, 1080p120\n"
                       "[WARN:FillWith1080pVIC]: fill vic32, 1080p24\n"))
      << outcome.log;

  // No VIC runs at 144 Hz: a CVT timing does. None runs at 255 Hz within the limit.
  outcome = HighRefresh(
      Edid()
          .Dtd(k1080p60)
          .Extension(Cta().Vdb({16}))
          .Extension(Section().Block(0x05, 0, {0x04, 0xEF, 127}).Block(0x11, 0, {0, 0, 0x7F, 7, 0x37, 4, 143}))
          .Build());
  EXPECT_TRUE(Contains(outcome.log, "fill dtd 1080p144\n")) << outcome.log;
  EXPECT_EQ(outcome.rates.front(), 144);
}

TEST(HighRefresh, MakesRoomWhenSpaceIsShort) {
  // A CTA block without free space, a base block with a serial number and range limits, and six resolutions twice each.
  Cta full;
  full.Vdb({16})
      .Block(3, ByteVector(30, 0x11))
      .Block(3, ByteVector(30, 0x22))
      .Block(3, ByteVector(30, 0x33))
      .Block(3, ByteVector(12, 0x44));
  const ByteVector range = {0, 48, 144, 30, 255, 30, 1, 0x0A, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20};
  const Edid edid = Edid().Dtd(k1080p60).Name("reedid").Descriptor(0xFD, range).Descriptor(0xFF, {0, 'A', 0x0A});
  std::vector<DtdTiming> timings;
  for (uint16_t i = 0; i < 4; ++i) {
    DtdTiming timing = AtClock(k1080p60, 148500);
    timing.hactive = static_cast<uint16_t>(1920 - 200 * (i / 2));
    timings.push_back(timing);
  }
  uint8_t bytes[251];
  DispIdDataBlock entry = {0, 0, 0, 0, bytes};
  ASSERT_EQ(DispID_Set20ByteDTD(timings.data(), 4, &entry), 0);
  const Section section = Section().Block(0x03, 1, ByteVector(bytes + 3, bytes + entry.size));
  const Outcome outcome = HighRefresh(Edid(edid).Extension(full).Extension(section).Build());
  EXPECT_EQ(outcome.result, 0);
  EXPECT_TRUE(Contains(outcome.log, "[WARN:DeleteRepeatDTD]: 1920x1080@60 148500KHz\n")) << outcome.log;
  EXPECT_TRUE(Contains(outcome.log, "[WARN:DeleteUncommonDesc]: delete Display Range Limits\n")) << outcome.log;
  const Owned<EdidHandle> handle = OpenImage(outcome.image);
  const Owned<VesaBlock> vesa(VESA_Open(&handle->blocks[0]));
  EXPECT_EQ(vesa->descriptors[0].flag, 1);
  EXPECT_EQ(vesa->descriptors[1].flag, 1);
  EXPECT_EQ(vesa->descriptors[2].flag, 0xFC) << "descriptors keep their order behind the DTDs";
}

TEST(HighRefresh, RefusesWhatIsNotThere) {
  EXPECT_EQ(LogOf([] { EXPECT_EQ(EDID_HighRefreshRate(nullptr), -1); }),
            Err("EDID_HighRefreshRate", "invalid parameters"));
  EXPECT_EQ(LogOf([] { DeleteEODB(nullptr); }), Err("DeleteEODB", "invalid parameters"));
}

}  // namespace
}  // namespace reedid::test
