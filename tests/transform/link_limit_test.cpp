#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

using RateVector = std::vector<uint16_t>;

enum class Link { kHdmi20, kHdmi14 };

void Limit(EdidHandle* handle, Link link, const RateVector& rates) {
  const auto limit = link == Link::kHdmi20 ? EDID_LimitToHDMI20 : EDID_LimitToHDMI14;
  limit(handle, rates.data(), static_cast<uint32_t>(rates.size()));
}

// The image after a limit, as bytes.
ByteVector Limited(const ByteVector& image, Link link, const RateVector& rates) {
  const Owned<EdidHandle> handle = OpenImage(image);
  Limit(handle.get(), link, rates);
  return Generate(handle.get());
}

// A CTA extension through a limit, as the model opens it afterwards.
Owned<CeaBlock> LimitedCta(const Cta& cta, Link link, const RateVector& rates) {
  const Owned<EdidHandle> handle = OpenImage(Edid().Extension(cta).Build());
  Limit(handle.get(), link, rates);
  return Owned<CeaBlock>(CEA_Open(&handle->blocks[1]));
}

ByteVector BytesOfBlock(const CeaBlock& model, uint32_t tag, uint32_t extTag = 0) {
  const CeaDataBlock* entry = CEA_FindDataBlock(&model, tag, extTag);
  return entry == nullptr ? ByteVector() : ByteVector(entry->bytes, entry->bytes + entry->size);
}

TEST(LinkLimit, ReclocksOrDropsDetailedTimings) {
  struct Case {
    const char* name;
    Link link;
    DtdTiming timing;
    RateVector rates;
    uint32_t pixelClock;  // 0: dropped
  };
  const Case cases[] = {
      {"at the limit", Link::kHdmi20, k2160p60, {120, 60}, 594000},
      {"1000/1001 of a whole rate stays one", Link::kHdmi20, AtClock(k2160p60, 593400), {60}, 593400},
      {"66 Hz to 60", Link::kHdmi20, AtClock(k2160p60, 655300), {66, 60, 50}, 594000},
      {"no listed rate fits", Link::kHdmi20, AtClock(k2160p60, 655300), {66, 62}, 0},
      {"4K 60 to 30", Link::kHdmi14, k2160p60, {60, 30, 24}, 297000},
      {"4K 60 with only 60 listed", Link::kHdmi14, k2160p60, {60}, 0},
      {"the caller's order decides", Link::kHdmi14, k2160p60, {24, 30}, 237600},
      {"59.94 Hz to 29.97 Hz", Link::kHdmi14, AtClock(k2160p60, 593406), {30}, 296703},
      {"slow enough", Link::kHdmi14, k720p60, {24}, 74250},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Owned<EdidHandle> handle =
        OpenImage(Edid().Dtd(c.timing).Name("behind").Extension(Cta().Vdb({16}).Dtd(c.timing)).Build());
    Limit(handle.get(), c.link, c.rates);
    const Owned<VesaBlock> vesa(VESA_Open(&handle->blocks[0]));
    const Owned<CeaBlock> cea(CEA_Open(&handle->blocks[1]));
    EXPECT_EQ(vesa->checksumValid + cea->checksumValid, 2);
    if (c.pixelClock == 0) {
      EXPECT_EQ(vesa->descriptors[0].flag, 0xFC) << "the name moves up";
      EXPECT_EQ(cea->dtdCount, 0);
      continue;
    }
    for (const DtdSlot& slot : {vesa->descriptors[0], cea->dtds[0]}) {
      DtdTiming timing;
      ASSERT_EQ(VESA_GetDTD(&slot, &timing), 0);
      EXPECT_EQ(timing.pixelClock, c.pixelClock / 10 * 10);
      EXPECT_EQ(timing.hactive, c.timing.hactive);
      EXPECT_EQ(timing.hblank, c.timing.hblank);
    }
  }
}

TEST(LinkLimit, ExaminesTheDescriptorThatMovedUp) {
  const Owned<EdidHandle> handle = OpenImage(Edid().Dtd(k2160p60).Dtd(k2160p60).Dtd(k720p60).Name("reedid").Build());
  Limit(handle.get(), Link::kHdmi14, {60});
  const Owned<VesaBlock> vesa(VESA_Open(&handle->blocks[0]));
  const uint8_t flags[] = {1, 0xFC, 0, 0};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(vesa->descriptors[i].flag, flags[i]) << i;
}

TEST(LinkLimit, CutsCvtCodesAndRangeLimits) {
  // 2160 lines 16:9 at 50, 60, 75, 85 Hz and 60 Hz reduced: 75 and 85 need more than 600 MHz, and so does 60 with full
  // blanking; 1080 lines fit.
  const ByteVector codes = {0, 1, 0x37, 0x44, 0x3F, 0x1B, 0x24, 0x3F};
  const ByteVector range = {0, 48, 144, 30, 255, 65, 1, 0x0A, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20};
  const Owned<EdidHandle> handle = OpenImage(Edid().Descriptor(0xF8, codes).Descriptor(0xFD, range).Build());
  Limit(handle.get(), Link::kHdmi20, {60});
  const Owned<VesaBlock> vesa(VESA_Open(&handle->blocks[0]));
  VesaCvtRecord record;
  ASSERT_EQ(VESA_GetCvtTiming(&vesa->descriptors[0], &record), 0);
  const VesaCvtCode& uhd = record.codes[0];
  EXPECT_EQ(uhd.lines, 2160);
  EXPECT_EQ(uhd.rate50 + uhd.rate60rb, 2);
  EXPECT_EQ(uhd.rate60 + uhd.rate75 + uhd.rate85, 0);
  EXPECT_EQ(record.codes[1].rate85, 1);
  EXPECT_EQ(vesa->descriptors[1].bytes[9], 60);

  Limit(handle.get(), Link::kHdmi14, {60});
  const Owned<VesaBlock> slow(VESA_Open(&handle->blocks[0]));
  ASSERT_EQ(VESA_GetCvtTiming(&slow->descriptors[0], &record), 0);
  EXPECT_EQ(record.codes[0].lines, 0) << "a code without a rate is cleared";
  EXPECT_EQ(slow->descriptors[1].bytes[9], 34);
}

TEST(LinkLimit, ReplacesVicsBySlowerOnes) {
  struct Case {
    const char* name;
    Link link;
    ByteVector svds;
    RateVector rates;
    ByteVector left;
  };
  const Case cases[] = {
      {"VIC 97 fits HDMI 2.0", Link::kHdmi20, {97, 16}, {60}, {97, 16}},
      {"4K 100 Hz becomes 60 Hz", Link::kHdmi20, {16, 117}, {100, 60, 50}, {16, 97}},
      {"a format that is still there is not added", Link::kHdmi20, {117, 96}, {60}, {96}},
      {"two of one format add one", Link::kHdmi20, {117, 118, 16}, {60, 50}, {16, 97}},
      {"no slower rate listed", Link::kHdmi20, {117, 16}, {120, 100}, {16}},
      {"unknown VICs stay", Link::kHdmi20, {128, 254}, {60}, {128, 254}},
      {"4K 60 Hz becomes 30 Hz", Link::kHdmi14, {97, 16}, {60, 30}, {16, 95}},
      {"of the same aspect", Link::kHdmi14, {107, 16}, {60, 30}, {16, 105}},
      {"an emptied list", Link::kHdmi14, {97}, {60}, {}},
      {"the native mark stays", Link::kHdmi14, {97, 0x90, 4}, {60}, {0x90, 4}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Owned<CeaBlock> cea = LimitedCta(Cta().Vdb(c.svds), c.link, c.rates);
    ByteVector svds = BytesOfBlock(*cea, 2);
    ASSERT_FALSE(svds.empty());
    svds.erase(svds.begin());
    // Without a marked VIC the first one counts as native and is written with the mark when it can carry one.
    if (!svds.empty() && svds[0] == 0x90) svds[0] = c.left[0];
    EXPECT_EQ(svds, c.left);
  }
}

TEST(LinkLimit, Moves420FormatsOfHdmi20) {
  // The map marks VIC 118 (4K 120 Hz, 594 MHz in 4:2:0) and VIC 97.
  const Cta marked = Cta().Vdb({118, 97, 16}).Extended(15, {0x03});
  Owned<CeaBlock> cea = LimitedCta(marked, Link::kHdmi20, {60});
  EXPECT_EQ(BytesOfBlock(*cea, 7, 14), (ByteVector{0xE2, 14, 118})) << "4:2:0 only from now on, at the end";
  EXPECT_EQ(BytesOfBlock(*cea, 7, 15), (ByteVector{0xE2, 15, 0x01}));
  EXPECT_EQ(cea->dataBlocks[cea->dataBlockCount - 1].extTag, 14);

  cea = LimitedCta(Cta().Vdb({118, 97}).Extended(15, {0x01}).Extended(14, {96, 199}), Link::kHdmi20, {60});
  EXPECT_EQ(BytesOfBlock(*cea, 7, 14), (ByteVector{0xE3, 14, 96, 118})) << "8K is too fast even in 4:2:0";

  cea = LimitedCta(Cta().Vdb({16}).Extended(14, {199}), Link::kHdmi20, {60});
  EXPECT_TRUE(BytesOfBlock(*cea, 7, 14).empty()) << "an emptied block goes";

  cea = LimitedCta(Cta().Vdb({16}).Extended(14, {96}).Extended(15, {0x01}), Link::kHdmi14, {60});
  EXPECT_EQ(cea->dataBlockCount, 1) << "HDMI 1.4 has no 4:2:0";
}

TEST(LinkLimit, CutsHdmiVendorBlocks) {
  const Cta cta =
      Cta().Vdb({16}).Hdmi(0x1000, {0x80, 130}).HdmiForum({1, 240, 0x80, 0x67, 0x3F, 0x70, 0x90, 0xC7, 0x65, 0x1F});
  Owned<CeaBlock> cea = LimitedCta(cta, Link::kHdmi20, {60});
  ASSERT_EQ(cea->dataBlockCount, 3);
  EXPECT_EQ(cea->dataBlocks[1].bytes[7], 120) << "600 MHz";
  HfVsdbRecord forum;
  ASSERT_EQ(CEA_GetHFVSDB(&cea->dataBlocks[2], &forum), 0);
  EXPECT_EQ(forum.TMDS_Character_Rate, 600);
  EXPECT_EQ(forum.Max_FRL_Rate, 0);
  EXPECT_EQ(forum.allm, 1);
  EXPECT_EQ(forum.mDelta + forum.cinemaVrr + forum.cnmVrr + forum.fva + forum.fapaStartLocation, 0);
  EXPECT_EQ(forum.VRRmax + forum.VRRmin + forum.DSC_1p2, 0);
  EXPECT_EQ(cea->dataBlocks[2].size, 9);

  cea = LimitedCta(cta, Link::kHdmi14, {60});
  ASSERT_EQ(cea->dataBlockCount, 2) << "no HDMI Forum block";
  EXPECT_EQ(cea->dataBlocks[1].bytes[7], 68) << "340 MHz";
}

TEST(LinkLimit, LowersTypeViiAndTypeX) {
  Cea20ByteDtdRecord record = {};
  record.timing = AtClock(k2160p60, 1188000);
  const auto typeVii = [&](bool ycc420) {
    uint8_t bytes[32];
    CeaDataBlock entry = {0, 0, 0, bytes};
    record.preferred = ycc420;
    EXPECT_EQ(CEA_Set20ByteDTD(&record, &entry), 0);
    return Cta().Vdb({16}).Block(7, ByteVector(bytes + 1, bytes + entry.size));
  };
  const auto limited = [&](bool ycc420, Link link, const RateVector& rates) {
    const Owned<CeaBlock> cea = LimitedCta(typeVii(ycc420), link, rates);
    Cea20ByteDtdRecord result = {};
    const CeaDataBlock* entry = CEA_FindDataBlock(cea.get(), 7, 0x22);
    if (entry != nullptr) {
      EXPECT_EQ(CEA_Get20ByteDTD(entry, &result), 0);
    }
    return result;
  };
  EXPECT_EQ(limited(true, Link::kHdmi20, {60}).timing.pixelClock, 1188000u) << "half of it in 4:2:0";
  EXPECT_EQ(limited(false, Link::kHdmi20, {60}).timing.pixelClock, 594000u);
  EXPECT_EQ(limited(false, Link::kHdmi20, {100}).timing.pixelClock, 0u);
  EXPECT_EQ(limited(true, Link::kHdmi14, {30}).timing.pixelClock, 297000u);
  EXPECT_EQ(limited(true, Link::kHdmi14, {30}).preferred, 0);

  const auto typeX = [&](Link link, const RateVector& rates) {
    CvtTiming timings[2] = {};
    timings[0] = {2, 8, 2560, 240, 0, 0, 1, 0, 0, 1440, 0, 0};
    timings[1] = {2, 8, 640, 60, 0, 0, 0, 0, 0, 480, 0, 0};
    uint8_t bytes[32];
    CeaDataBlock entry = {0, 0, 0, bytes};
    EXPECT_EQ(CEA_Set6ByteCVT(timings, 2, &entry), 0);
    const Owned<CeaBlock> cea =
        LimitedCta(Cta().Vdb({16}).Block(7, ByteVector(bytes + 1, bytes + entry.size)), link, rates);
    return BytesOfBlock(*cea, 7, 0x2A);
  };
  // 2560x1440 at 240 Hz needs 1019 MHz, half of it in 4:2:0.
  EXPECT_EQ(typeX(Link::kHdmi20, {120}).at(8), 239);
  EXPECT_EQ(typeX(Link::kHdmi20, {120}).at(3), 0x82) << "kept with its mark";
  EXPECT_EQ(typeX(Link::kHdmi14, {120, 60}).at(8), 59);
  EXPECT_EQ(typeX(Link::kHdmi14, {120}).size(), 9u) << "only the slow record is left";
}

TEST(LinkLimit, LimitsDisplayIdSections) {
  DtdTiming timings[2] = {AtClock(k2160p60, 1188000), k720p60};
  uint8_t bytes[251] = {};
  DispIdDataBlock entry = {0, 0, 0, 0, bytes};
  ASSERT_EQ(DispID_Set20ByteDTD(timings, 2, &entry), 0);
  const Section detailed = Section().Block(0x03, 1, ByteVector(bytes + 3, bytes + entry.size));
  const auto open = [](const ByteVector& image) {
    const Owned<EdidHandle> handle = OpenImage(image);
    return Owned<DispIdBlock>(DispID_Open(&handle->blocks[handle->blockCount - 1]));
  };
  Owned<DispIdBlock> model = open(Limited(Edid().Extension(detailed).Build(), Link::kHdmi20, {60}));
  DtdTiming read[2];
  ASSERT_EQ(DispID_GetTimingCnt(&model->dataBlocks[0]), 2);
  ASSERT_EQ(DispID_Get20ByteDTD(&model->dataBlocks[0], read, 2), 0);
  EXPECT_EQ(read[0].pixelClock, 594000u);
  EXPECT_EQ(read[1].pixelClock, 74250u);

  model = open(Limited(Edid().Extension(detailed).Build(), Link::kHdmi20, {100}));
  EXPECT_EQ(DispID_GetTimingCnt(&model->dataBlocks[0]), 1) << "the fast one is dropped";

  // 2560x1440 at 255 Hz with reduced blanking 2, and range limits up to 1.2 GHz.
  const Section formulas = Section(0x20)
                               .Block(0x24, 0, {2, 0xFF, 0x09, 0x9F, 0x05, 254})
                               .Block(0x09, 0, {0, 0, 0, 0xBF, 0xD4, 0x01, 30, 255, 0, 0, 48, 240, 0, 0, 0});
  model = open(Limited(Edid().Extension(formulas).Build(), Link::kHdmi20, {144, 120}));
  ASSERT_EQ(model->dataBlockCount, 2);
  EXPECT_EQ(model->dataBlocks[0].bytes[8], 143);
  DispIdRangeLimits range;
  ASSERT_EQ(DispID_GetRangeLimits(&model->dataBlocks[1], &range), 0);
  EXPECT_EQ(range.maxPixelClock, 600000u);

  const ByteVector without =
      Limited(Edid().Extension(Cta().Vdb({16})).Extension(formulas).Build(), Link::kHdmi14, {60});
  EXPECT_EQ(without.size(), 256u) << "HDMI 1.4 sources know no DisplayID";
  EXPECT_EQ(without[126], 1);
}

TEST(LinkLimit, ARefusedBlockKeepsItsBytes) {
  const ByteVector image = Edid().Set(8, {0, 0}).Dtd(AtClock(k2160p60, 655000)).Build();  // no manufacturer letters
  const ByteVector section = Section().Build(10);                                         // no data blocks
  EXPECT_EQ(Limited(image, Link::kHdmi20, {60}), image);
  EXPECT_EQ(Limited(section, Link::kHdmi20, {60}), section);
}

TEST(LinkLimit, RefusesWhatIsNotThere) {
  const uint16_t rate = 60;
  EdidHandle empty = {};
  const Owned<EdidHandle> handle = OpenImage(Edid().Build());
  const auto refused = Err("EDID_LimitToHDMI20", "invalid parameters");
  EXPECT_EQ(LogOf([&] { EDID_LimitToHDMI20(nullptr, &rate, 1); }), refused);
  EXPECT_EQ(LogOf([&] { EDID_LimitToHDMI20(&empty, &rate, 1); }), refused);
  EXPECT_EQ(LogOf([&] { EDID_LimitToHDMI20(handle.get(), nullptr, 1); }), refused);
  EXPECT_EQ(LogOf([&] { EDID_LimitToHDMI20(handle.get(), &rate, 0); }), refused);
  EXPECT_EQ(LogOf([&] { EDID_LimitToHDMI14(nullptr, &rate, 1); }), Err("EDID_LimitToHDMI14", "invalid parameters"));
  EXPECT_EQ(LogOf([&] {
              EXPECT_EQ(VESA_LimitToHDMI20(nullptr, &rate, 1), -1);
              EXPECT_EQ(VESA_LimitToHDMI14(nullptr, &rate, 1), -1);
              CEA_LimitToHDMI20(nullptr, &rate, 1);
              CEA_LimitToHDMI14(nullptr, &rate, 1);
              DispID_LimitToHDMI20(nullptr, &rate, 1);
            }),
            "");
}

}  // namespace
}  // namespace reedid::test
