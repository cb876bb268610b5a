#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

struct Outcome {
  std::string log;
  ByteVector image;
  std::string rates;  // "60 50 "
  std::string dtds;   // "1920x1080 148500, " for each
};

Outcome HighRefresh(const ByteVector& image) {
  Outcome outcome = {};
  const Image handle(image);
  outcome.log = LogOf([&] { EXPECT_EQ(EDID_HighRefreshRate(handle.get()), 0); });
  outcome.image = Generate(handle.get());
  EXPECT_EQ(isValidEdid(handle.get()), 1);
  uint16_t rates[50];
  const uint32_t count = EDID_GetAllFrameRate(handle.get(), rates, 50);
  for (uint32_t i = 0; i < count; ++i) outcome.rates += std::to_string(rates[i]) + " ";
  std::vector<DtdTiming> list(EDID_GetDTDCnt(handle.get()));
  EDID_FindOutAllDTD(handle.get(), list.data(), static_cast<uint32_t>(list.size()));
  for (const DtdTiming& t : list) {
    outcome.dtds +=
        std::to_string(t.hactive) + "x" + std::to_string(t.vactive) + " " + std::to_string(t.pixelClock) + ", ";
  }
  return outcome;
}

DtdTiming Sized(DtdTiming timing, uint16_t hactive, uint16_t vactive, uint16_t hblank = 280) {
  timing.hactive = hactive;
  timing.vactive = vactive;
  timing.hblank = hblank;
  return timing;
}

// A CTA block without free space, for DTDs as for VICs.
Cta Full() {
  const ByteVector filler(30, 0x11);
  return Cta().Vdb({16}).Block(3, filler).Block(3, filler).Block(3, filler).Block(3, ByteVector(25, 0x44));
}

// 1920x1080 by formula at each of these rates, in a section that goes.
Section Formulas(const ByteVector& rates) {
  ByteVector payload;
  for (const uint8_t rate : rates) {
    payload = Concat({payload, {0, 0, 0x7F, 0x07, 0x37, 0x04, static_cast<uint8_t>(rate - 1)}});
  }
  return Section().Block(0x11, 0, payload);
}

TEST(HighRefresh, TellsEachStep) {
  // 144 Hz stands in the DisplayID extension only.
  const Outcome outcome = HighRefresh(Edid()
                                          .Dtd(k1080p60)
                                          .Name("reedid")
                                          .Extension(Cta().Vdb({16}))
                                          .Extension(Section().TypeI({AtClock(k1080p60, 356400)}))
                                          .Build());
  EXPECT_EQ(outcome.image.size(), 256u);
  EXPECT_EQ(outcome.rates, "144 60 ");
  EXPECT_EQ(outcome.log,
            "[INFO:EDID_HighRefreshRate]: support frameRate(2): 144Hz, 60Hz,\n"
            "[INFO:EDID_HighRefreshRate]: dtdList(2): 1920x1080@60.00 148500KHz, 1920x1080@144.00 356400KHz,\n"
            "[INFO:EDID_HighRefreshRate]: dtdSpaceLimits=9, dtdSpaceLimitsMax=9\n"
            "[INFO:EDID_HighRefreshRate]: delete invalid dtd, dtdCnt=2\n"
            "[INFO:EDID_HighRefreshRate]: dtdList(2): 1920x1080@60.00 148500KHz, 1920x1080@144.00 356400KHz,\n");
}

TEST(HighRefresh, KeepsTheRatesInTwoBlocks) {
  const Edid hd = Edid().Dtd(k1080p60);
  const Edid small = Edid(hd).Name("x").Descriptor(0xF7, {0, 10});  // one slot left, nothing uncommon
  const Edid none = Edid(small).Descriptor(0xF8, {0, 1});
  const Edid uncommon = Edid(hd).Name("x").Descriptor(0xFD, Hex("00 30 90 1E FF 1E 01 0A 20*06"));
  const auto roomy = [&](const Section& section) { return Edid(hd).Extension(Cta().Vdb({16})).Extension(section); };
  const auto packed = [](const Edid& edid, const Section& section) {
    return Edid(edid).Extension(Full()).Extension(section);
  };
  const DtdTiming p900 = AtClock(Sized(k1080p60, 1600, 900), 106596);
  const DtdTiming ntsc = AtClock(k720p60, 74176), p144 = AtClock(k1080p60, 356400);
  const struct {
    const char* name;
    Edid edid;  // three blocks
    const char* rates;
    const char* dtds;  // behind 1080p60
    const char* line;
  } rows[] = {
      {"lost rates become VICs of 1080p: 120 and 24 Hz; 85 Hz is not wanted",
       roomy(Section().Block(0x06, 0x40, {63, 32}).Block(0x06, 0, {0x4F})), "120 60 24 ", "",
       "remain frameRate(2): 120, 24,\n[WARN:FillWith1080pVIC]: fill vic63, 1080p120\n"},
      {"a rate that 1080p has no VIC for", roomy(Formulas({240})), "240 60 ", "", "fill vic57, 720x480@240\n"},
      {"no VIC at all: a formula, within the limit", roomy(Formulas({144, 255})), "144 60 ", "1920x1080 332880, ",
       "[ERR:EDID_HighRefreshRate]: frameRate:255 not support, drop\n"},
      {"75 Hz is neither wanted nor high", roomy(Formulas({75})), "60 ", "",
       "dtdCnt=1\n[INFO:EDID_HighRefreshRate]: dtdList(1): "},
      {"room for two VICs only", packed(hd, Formulas({30, 25, 24})), "60 30 25 ", "", "remain frameRate(3): 30, 25"},
      {"no room for another VIC, so nothing is written again", packed(none, Formulas({144, 30, 25})), "60 30 25 ", "",
       "no enough sapce, drop frameRate:  144Hz,\n"},
      {"no Video Data Block, so nothing is written again", Edid(hd).Extension(Cta()).Extension(Formulas({144})),
       "144 60 ", "1920x1080 332880, ", "remain frameRate(1): 144,\n[INFO:EDID_HighRefreshRate]: dtdSpaceLimits="},
      {"timings are counted anew before they are collected", roomy(Section(0x02)), "60 ", "",
       "dtdSpaceLimitsMax=10\n[ERR:DispID_Open]: error version: 0.2\n[ERR:DispID_Open]: error version: 0.2\n[INFO"},
      {"a slow timing makes room for the formula", packed(Edid(small).Dtd(k720p60), Formulas({144})), "144 60 ",
       "1920x1080 332880, ", "no enough sapce, drop DTD:  1280x720@60.00 74250KHz,\n"},
      {"room for one of two formulas", packed(small, Formulas({144, 130})), "144 60 ", "1920x1080 332880, ",
       "no enough sapce, drop frameRate:  130Hz,\n[WARN:EDID_HighRefreshRate]: fill dtd 1080p144\n"},
      {"fewer slow timings than formulas", packed(Edid(small).Dtd(k720p60), Formulas({144, 130})), "144 60 ",
       "1920x1080 332880, ",
       "drop DTD:  1280x720@60.00 74250KHz,\n[WARN:EDID_HighRefreshRate]: no enough sapce, drop frameRate:  130Hz, "
       "144Hz,\n"},
      {"no more descriptors go than need to", packed(Edid(uncommon).Descriptor(0xFF, {0, 'A', 0x0A}), Formulas({144})),
       "144 60 ", "1920x1080 332880, ",
       "delete Display Range Limits\n[WARN:EDID_HighRefreshRate]: fill dtd 1080p144\n"},
      {"no timing can make room", packed(none, Formulas({165, 144})), "60 ", "",
       "[WARN:EDID_HighRefreshRate]: no enough sapce, drop frameRate:  144Hz, 165Hz,\n"},
      {"an uncommon descriptor makes room", packed(Edid(small).Descriptor(0xFF, {0, 'A', 0x0A}), Formulas({144})),
       "144 60 ", "1920x1080 332880, ", "dtdSpaceLimits=1, dtdSpaceLimitsMax=2\n"},
      {"what no descriptor can hold is made by formula, slow or fast, or goes",
       roomy(Section().TypeI({Sized(AtClock(k1080p60, 426600), 1920, 1080, 4400),
                              Sized(AtClock(k720p60, 511200), 1280, 720, 4400),
                              Sized(AtClock(k1080p60, 372600), 5120, 1080, 400)})),
       "120 60 ", "1920x1080 138500, 1280x720 124390, ",
       "[WARN:DeleteUnspportDTD]: 5120x1080@60.00 372600KHz outof DTD range, drop\n"},
      {"the first of each format stays, the others run faster",
       packed(Edid(small).Dtd(k720p60), Section().TypeI({p144, ntsc})), "144 60 ", "1280x720 178200, ",
       "[WARN:DeleteRepeatDTD]: 1920x1080@144 148500KHz\n[WARN:DeleteRepeatDTD]: 1280x720@60 74250KHz\n"},
      {"a rate of 1000/1001 stays one", packed(Edid(small).Dtd(ntsc), Section().TypeI({p144})), "144 60 ",
       "1280x720 178020, ", "delete repeat dtd, dtdCnt=2\n"},
      {"the fast ones before the large ones",
       packed(Edid(hd).Name("x").Dtd(k2160p60).Dtd(k720p60), Section().TypeI({AtClock(k1080p60, 297000), p900})),
       "120 60 ", "1600x900 213190, 1280x720 148500, ",
       "dtdList(3): 1920x1080@60.00 148500KHz, 1600x900@120.00 213192KHz, 1280x720@120.00 148500KHz,\n"},
      {"the large ones of the slow ones", packed(Edid(small).Dtd(k720p60), Section().TypeI({p900})), "60 ",
       "1600x900 106590, ", "dtdList(2): 1920x1080@60.00 148500KHz, 1600x900@60.00 106596KHz,\n"},
      {"short of space from the start",
       packed(Edid(uncommon).Descriptor(0xFF, {0, 'A', 0x0A}),
              Section().TypeI({k1080p60, Sized(k1080p60, 1720, 1080)})),
       "60 ", "1720x1080 135000, ", "[WARN:DeleteUncommonDesc]: delete Display Range Limits\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Outcome outcome = HighRefresh(row.edid.Build());
    EXPECT_EQ(outcome.image.size(), 256u);
    EXPECT_EQ(outcome.rates, row.rates);
    EXPECT_EQ(outcome.dtds, std::string("1920x1080 148500, ") + row.dtds);
    EXPECT_NE(outcome.log.find(row.line), std::string::npos) << outcome.log;
  }
}

TEST(HighRefresh, LeavesTwoBlocksAloneButForOverrides) {
  ByteVector map(128);
  map[0] = 0xF0;
  FixChecksum(map);
  const Edid hd = Edid().Dtd(k1080p60);
  const Cta cta = Cta().Vdb({0x90});
  EXPECT_EQ(HighRefresh(Edid(hd).Extension(map).Extension(Cta(cta).Extended(120, {2})).Build()).image,
            Edid(hd).Extension(cta).Build());
  const Outcome two = HighRefresh(Edid(hd).Extension(Cta().Vdb({16})).Build());
  EXPECT_EQ(two.image, Edid(hd).Extension(Cta().Vdb({16})).Build());
  EXPECT_EQ(two.log, "");
}

TEST(HighRefresh, TellsWhichDescriptorMadeRoom) {
  const std::pair<uint8_t, const char*> names[] = {{0xF9, "Display Color Management (DCM) Data"},
                                                   {0xFB, "Color Point Data"},
                                                   {0xFD, "Display Range Limits"},
                                                   {0xFE, "Alphanumeric Data String (ASCII)"},
                                                   {0xFF, "Display Product Serial Number"}};
  const Edid small = Edid().Dtd(k1080p60).Name("x").Descriptor(0xF7, {0, 10});
  for (const auto& [tag, name] : names) {
    const Outcome outcome =
        HighRefresh(Edid(small).Descriptor(tag, {0, 1}).Extension(Full()).Extension(Formulas({144})).Build());
    EXPECT_NE(outcome.log.find(Warn("DeleteUncommonDesc", std::string("delete ") + name)), std::string::npos)
        << outcome.log;
  }
}

}  // namespace
}  // namespace reedid::test
