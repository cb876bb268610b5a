#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

struct Outcome {
  std::string log;
  ByteVector image;
  std::vector<uint16_t> rates;
  std::string dtds;  // "1920x1080 148500, " for each
};

Outcome HighRefresh(const ByteVector& image) {
  Outcome outcome = {};
  const Owned<EdidHandle> handle = OpenImage(image);
  outcome.log = LogOf([&] { EXPECT_EQ(EDID_HighRefreshRate(handle.get()), 0); });
  outcome.image = Generate(handle.get());
  EXPECT_EQ(isValidEdid(handle.get()), 1);
  outcome.rates.resize(50);
  outcome.rates.resize(EDID_GetAllFrameRate(handle.get(), outcome.rates.data(), 50));
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

TEST(HighRefresh, LeavesTwoBlocksAlone) {
  const ByteVector image = Edid().Dtd(k1080p60).Extension(Cta().Vdb({16})).Build();
  const Outcome outcome = HighRefresh(image);
  EXPECT_EQ(outcome.log, "");
  EXPECT_EQ(outcome.image, image);
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
  EXPECT_EQ(outcome.rates, (std::vector<uint16_t>{144, 60}));
  EXPECT_EQ(outcome.log,
            "[INFO:EDID_HighRefreshRate]: support frameRate(2): 144Hz, 60Hz,\n"
            "[INFO:EDID_HighRefreshRate]: dtdList(2): 1920x1080@60.00 148500KHz, 1920x1080@144.00 356400KHz,\n"
            "[INFO:EDID_HighRefreshRate]: dtdSpaceLimits=9, dtdSpaceLimitsMax=9\n"
            "[INFO:EDID_HighRefreshRate]: delete invalid dtd, dtdCnt=2\n"
            "[INFO:EDID_HighRefreshRate]: dtdList(2): 1920x1080@60.00 148500KHz, 1920x1080@144.00 356400KHz,\n");
}

TEST(HighRefresh, KeepsTheRatesInTwoBlocks) {
  const ByteVector range = {0, 48, 144, 30, 255, 30, 1, 0x0A, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20};
  const Edid hd = Edid().Dtd(k1080p60);
  const Edid small = Edid(hd).Name("x").Descriptor(0xF7, {0, 10});  // one slot left, nothing uncommon
  const Edid none = Edid(small).Descriptor(0xF8, {0, 1});
  const DtdTiming p900 = AtClock(Sized(k1080p60, 1600, 900), 106596);
  DtdTiming ntsc = AtClock(k720p60, 74176);
  const struct {
    const char* name;
    Edid edid;  // three blocks
    std::vector<std::string> lines;
    std::vector<uint16_t> rates;
    std::string dtds;
  } rows[] = {
      {"lost rates become VICs of 1080p: 120 and 24 Hz; 85 Hz is not wanted",
       Edid(hd).Extension(Cta().Vdb({16})).Extension(Section().Block(0x06, 0x40, {63, 32}).Block(0x06, 0, {0x4F})),
       {"[INFO:EDID_HighRefreshRate]: remain frameRate(2): 120, 24,\n[WARN:FillWith1080pVIC]: fill vic63, "
        "1080p120\n[WARN:FillWith1080pVIC]: fill vic32, 1080p24\n"},
       {120, 60, 24},
       "1920x1080 148500, "},
      {"a rate that 1080p has no VIC for",
       Edid(hd).Extension(Cta().Vdb({16})).Extension(Formulas({240})),
       {"[WARN:FillWithVIC]: fill vic57, 720x480@240\n"},
       {240, 60},
       "1920x1080 148500, "},
      {"no VIC at all: a formula, within the limit",
       Edid(hd).Extension(Cta().Vdb({16})).Extension(Formulas({144, 255})),
       {"[ERR:EDID_HighRefreshRate]: frameRate:255 not support, drop\n", "fill dtd 1080p144\n"},
       {144, 60},
       "1920x1080 148500, 1920x1080 332880, "},
      {"75 Hz is neither wanted nor high",
       Edid(hd).Extension(Cta().Vdb({16})).Extension(Formulas({75})),
       {},
       {60},
       "1920x1080 148500, "},
      {"room for two VICs only",
       Edid(hd).Extension(Full()).Extension(Formulas({30, 25, 24})),
       {"remain frameRate(3): 30, 25, 24,\n"},
       {60, 30, 25},
       "1920x1080 148500, "},
      {"a slow timing makes room for the formula",
       Edid(small).Dtd(k720p60).Extension(Full()).Extension(Formulas({144})),
       {"[WARN:EDID_HighRefreshRate]: no enough sapce, drop DTD:  1280x720@60.00 74250KHz,\n", "fill dtd 1080p144\n"},
       {144, 60},
       "1920x1080 148500, 1920x1080 332880, "},
      {"no timing can make room",
       Edid(none).Extension(Full()).Extension(Formulas({165, 144})),
       {"[WARN:EDID_HighRefreshRate]: no enough sapce, drop frameRate:  144Hz, 165Hz,\n"},
       {60},
       "1920x1080 148500, "},
      {"an uncommon descriptor makes room",
       Edid(small).Descriptor(0xFF, {0, 'A', 0x0A}).Extension(Full()).Extension(Formulas({144})),
       {"[INFO:EDID_HighRefreshRate]: dtdSpaceLimits=1, dtdSpaceLimitsMax=2\n",
        "[WARN:DeleteUncommonDesc]: delete Display Product Serial Number\n", "fill dtd 1080p144\n"},
       {144, 60},
       "1920x1080 148500, 1920x1080 332880, "},
      {"what no descriptor can hold is made by formula, slow or fast, or goes",
       Edid(hd)
           .Extension(Cta().Vdb({16}))
           .Extension(Section().TypeI({Sized(AtClock(k1080p60, 426600), 1920, 1080, 4400),
                                       Sized(AtClock(k720p60, 511200), 1280, 720, 4400),
                                       Sized(AtClock(k1080p60, 372600), 5120, 1080, 400)})),
       {"[WARN:DeleteUnspportDTD]: 5120x1080@60.00 372600KHz outof DTD range, drop\n",
        "delete invalid dtd, dtdCnt=3\n"},
       {120, 60},
       "1920x1080 148500, 1920x1080 138500, 1280x720 124390, "},
      {"the first of each format stays, the others run faster",
       Edid(small).Dtd(k720p60).Extension(Full()).Extension(Section().TypeI({AtClock(k1080p60, 356400), ntsc})),
       {"[WARN:DeleteRepeatDTD]: 1920x1080@144 148500KHz\n[WARN:DeleteRepeatDTD]: 1280x720@60 "
        "74250KHz\n[INFO:EDID_HighRefreshRate]: delete repeat "
        "dtd, dtdCnt=2\n"},
       {144, 60},
       "1920x1080 148500, 1280x720 178200, "},
      {"a rate of 1000/1001 stays one",
       Edid(small).Dtd(ntsc).Extension(Full()).Extension(Section().TypeI({AtClock(k1080p60, 356400)})),
       {"delete repeat dtd, dtdCnt=2\n"},
       {144, 60},
       "1920x1080 148500, 1280x720 178020, "},
      {"the fast ones before the large ones",
       Edid(hd).Name("x").Dtd(k2160p60).Dtd(k720p60).Extension(Full()).Extension(
           Section().TypeI({AtClock(k1080p60, 297000), p900})),
       {"dtdList(3): 1920x1080@60.00 148500KHz, 1600x900@120.00 213192KHz, 1280x720@120.00 148500KHz,\n"},
       {120, 60},
       "1920x1080 148500, 1600x900 213190, 1280x720 148500, "},
      {"the large ones of the slow ones",
       Edid(small).Dtd(k720p60).Extension(Full()).Extension(Section().TypeI({p900})),
       {"dtdList(2): 1920x1080@60.00 148500KHz, 1600x900@60.00 106596KHz,\n"},
       {60},
       "1920x1080 148500, 1600x900 106590, "},
      {"short of space from the start",
       Edid(hd)
           .Name("reedid")
           .Descriptor(0xFD, range)
           .Descriptor(0xFF, {0, 'A', 0x0A})
           .Extension(Full())
           .Extension(Section().TypeI({k1080p60, Sized(k1080p60, 1720, 1080)})),
       {"[WARN:DeleteRepeatDTD]: 1920x1080@60 148500KHz\n", "[WARN:DeleteUncommonDesc]: delete Display Range Limits\n"},
       {60},
       "1920x1080 148500, 1720x1080 135000, "},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Outcome outcome = HighRefresh(row.edid.Build());
    EXPECT_EQ(outcome.image.size(), 256u);
    EXPECT_EQ(outcome.rates, row.rates);
    EXPECT_EQ(outcome.dtds, row.dtds);
    for (const std::string& line : row.lines)
      EXPECT_NE(outcome.log.find(line), std::string::npos) << line << "not in\n" << outcome.log;
  }
}

TEST(HighRefresh, DropsBlockMapsAndOverrides) {
  ByteVector map(128);
  map[0] = 0xF0;
  FixChecksum(map);
  const Cta cta = Cta().Vdb({0x90});
  EXPECT_EQ(HighRefresh(Edid().Dtd(k1080p60).Extension(map).Extension(Cta(cta).Extended(120, {2})).Build()).image,
            Edid().Dtd(k1080p60).Extension(cta).Build());
  EXPECT_EQ(LogOf([] { EXPECT_EQ(EDID_HighRefreshRate(nullptr), -1); }),
            Err("EDID_HighRefreshRate", "invalid parameters"));
  EXPECT_EQ(LogOf([] { DeleteEODB(nullptr); }), Err("DeleteEODB", "invalid parameters"));
}

}  // namespace
}  // namespace reedid::test
