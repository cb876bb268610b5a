// Two displays: what both can do, and the sound of one with the picture of the other. Data blocks as hexadecimal text.
#include "reedid/two_displays.h"

#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

// A CTA extension with these data blocks, behind a base block.
ByteVector ImageOf(const ByteVector& blocks, uint8_t flags = 0x40) {
  ByteVector cta = Cta().Flags(flags).Build();
  std::copy(blocks.begin(), blocks.end(), cta.begin() + 4);
  cta[2] = static_cast<uint8_t>(4 + blocks.size());
  FixChecksum(cta);
  return Edid().Dtd(k720p60).Extension(cta).Build();
}

std::string BlocksOf(const EdidHandle* handle) {
  if (handle->blockCount < 2) return "none";
  const uint8_t* cta = handle->blocks[1].bytes;
  return HexOf(ByteVector(cta + 4, cta + cta[2]));
}

struct Row {
  const char* name;
  const char *ours, *theirs, *after;
};

template <class Edit, size_t kCount>
void ExpectRows(Edit edit, const Row (&rows)[kCount]) {
  for (const Row& row : rows) {
    const Image handle(ImageOf(Hex(row.ours))), other(ImageOf(Hex(row.theirs)));
    const ByteVector before = Generate(other.get());
    edit(handle.get(), other.get());
    EXPECT_EQ(BlocksOf(handle.get()), HexOf(Hex(row.after))) << row.name;
    EXPECT_EQ(Generate(other.get()), before) << row.name;
    EXPECT_EQ(handle.Bytes(), Generate(handle.get())) << row.name << ": checksums";
  }
}

constexpr char kV0[] = "F9 01 46 D0 00 00 A7 A4 54 A3 4C 9F 7A 27 0B 14 50 54 81 05 A7 28 00 00 00 00";
constexpr char kV1Long[] = "EE 01 46 D0 00 24 0B 75 00 A8 55 4E 9D 27 0B";
constexpr char kV1LowLatency[] = "EB 01 46 D0 00 2A 18 03 51 59 99 AA";
constexpr char kV1Standard[] = "EB 01 46 D0 00 2A 18 03 50 59 99 AA";
constexpr char kV2All[] = "EB 01 46 D0 00 44 57 53 68 65 87 5F";
constexpr char kV2Standard[] = "EB 01 46 D0 00 48 03 76 82 5E 6D 95";

TEST(TwoDisplays, DolbyVersion1BecomesLowLatencyVersion2) {
  DolbyVisionRecord v1 = {}, v2 = {};
  v1.version = 1;
  v1.size = 15;  // which may hold any chromaticity
  v1.yuv422_12bit = v1.globalDimming = v1.supports2160p60 = v1.colorimetryP3 = 1;
  v1.dmMajor = 5;
  const struct {
    const char* name;
    uint8_t minCode, maxCode;
    uint16_t minPq, maxPq;
  } luminances[] = {{"darkest and least", 0, 0, 0, 2055},
                    {"nearest steps", 127, 12, 620, 2900},
                    {"half a cd/m2 is one", 90, 18, 620, 3095},
                    {"the brightest", 89, 127, 0, 3875}};
  for (const auto& row : luminances) {
    v1.targetMinLuminance = row.minCode;
    v1.targetMaxLuminance = row.maxCode;
    ASSERT_EQ(DolbyV1toV2LowlatencyOnly(&v1, &v2), 0);
    EXPECT_EQ(v2.targetMinPq, row.minPq) << row.name;
    EXPECT_EQ(v2.targetMaxPq, row.maxPq) << row.name;
  }
  EXPECT_EQ(v2.version * 100 + v2.size, 212);
  EXPECT_EQ(v2.yuv422_12bit + v2.globalDimming + v2.dmMajor, 7) << "what both versions have";
  EXPECT_EQ(v2.interfaces + v2.backlightControl + v2.rgb444 + v2.parity, 0);
  EXPECT_EQ(v2.redX, 2560) << "no chromaticity beyond what version 2 holds";
  EXPECT_EQ(v2.greenY, 2048);
  v1.greenY = 4095;
  v1.blueX = 576;
  ASSERT_EQ(DolbyV1toV2LowlatencyOnly(&v1, &v2), 0);
  EXPECT_EQ(v2.greenY, 4080);
  EXPECT_EQ(v2.blueX, 576);
  const DolbyVisionRecord before = v2;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DolbyV1toV2LowlatencyOnly(&before, &v2), -1); }),
            Err("DolbyV1toV2LowlatencyOnly", "invalid parameters"));
  EXPECT_EQ(v2.greenY, 4080);
}

TEST(TwoDisplays, DolbyInLowLatencyOnly) {
  const Row rows[] = {
      {"all interfaces", kV2All, "", "EB 01 46 D0 00 44 57 51 68 65 87 5F"},
      {"standard and low latency", kV2Standard, "", "EB 01 46 D0 00 48 03 74 82 5E 6D 95"},
      {"version 1 that offers it", kV1LowLatency, "", "EB 01 46 D0 00 48 00 68 58 98 AA 5C"},
      {"version 1 without it", kV1Standard, "", ""},
      {"version 1 that cannot tell", kV1Long, "", ""},
      {"version 0", kV0, "", ""},
      {"what cannot be read stays", "E4 01 46 D0 00", "", "E4 01 46 D0 00"},
  };
  ExpectRows([](EdidHandle* handle, const EdidHandle*) { EDID_LimitToDolbyLowlatency(handle); }, rows);
}

TEST(TwoDisplays, DolbyOfBoth) {
  const Row rows[] = {
      {"one version", kV2All, kV2Standard, "EB 01 46 D0 00 44 53 52 68 64 87 5F"},
      {"the other way round", kV2Standard, kV2All, "EB 01 46 D0 00 44 53 52 82 5E 6D 95"},
      {"depths of 4:4:4", "EB 01 46 D0 00 44 57 53 69 64 87 5F", kV2All, kV2All},
      {"itself", kV1LowLatency, kV1LowLatency, kV1LowLatency},
      {"version 0 with itself", kV0, kV0, kV0},
      {"no block", kV2All, "", ""},
      {"no block that can be read", kV2All, "E4 01 46 D0 00", ""},
      {"version 1 beside 2", kV1LowLatency, kV2All, "EB 01 46 D0 00 44 53 50 58 98 AA 5C"},
      {"version 2 beside 1", kV2All, kV1LowLatency, "EB 01 46 D0 00 44 53 50 68 64 87 5F"},
      {"version 1 without low latency", kV1Standard, kV2All, ""},
      {"version 2 beside such", kV2All, kV1Long, ""},
      {"version 0 mixes with no other", kV0, kV1LowLatency, ""},
  };
  ExpectRows(EDID_MIX_DolbyVision, rows);
}

TEST(TwoDisplays, Hdmi14bOfBoth) {
  const Row rows[] = {
      {"flags and clock", "67 03 0C 00 10 00 B8 3C", "67 03 0C 00 21 00 39 2D", "67 03 0C 00 10 00 38 2D"},
      {"a lower clock stays", "67 03 0C 00 10 00 80 1E", "67 03 0C 00 21 00 80 2D", "67 03 0C 00 10 00 80 1E"},
      {"a clock that is not told is 165 MHz", "67 03 0C 00 10 00 00 3C", "65 03 0C 00 10 00",
       "67 03 0C 00 10 00 00 21"},
      {"no block", "67 03 0C 00 10 00 B8 44", "", "67 03 0C 00 10 00 00 21"},
      {"content types, latencies and sizes", "6C 03 0C 00 10 00 00 1E A7 05 06 18 00", "68 03 0C 00 10 00 00 1E 02",
       "6C 03 0C 00 10 00 00 1E A2 05 06 18 00"},
      {"HDMI VICs", "6D 03 0C 00 10 00 00 1E 20 00 60 01 02 03", "6C 03 0C 00 10 00 00 1E 20 00 40 03 01",
       "6C 03 0C 00 10 00 00 1E 20 00 40 01 03"},
      {"HDMI VICs by their VICs", "6B 03 0C 00 10 00 00 1E 20 00 20 01", "41 5F 67 03 0C 00 10 00 00 1E",
       "6B 03 0C 00 10 00 00 1E 20 00 20 01"},
      {"the video part ends with the last", "6B 03 0C 00 10 00 00 1E 20 00 20 01", "67 03 0C 00 10 00 00 1E",
       "67 03 0C 00 10 00 00 1E"},
      {"3D by format, not by place", "43 10 04 1F 6D 03 0C 00 10 00 00 1E 20 80 03 00 16 20",
       "42 04 10 6C 03 0C 00 10 00 00 1E 20 80 02 06 10", "43 10 04 1F 6C 03 0C 00 10 00 00 1E 20 80 02 00 16"},
      {"3D of all becomes that of some", "43 10 04 1F 6C 03 0C 00 10 00 00 1E 20 A0 02 01 41",
       "42 04 10 6C 03 0C 00 10 00 00 1E 20 A0 02 01 01", "43 10 04 1F 6E 03 0C 00 10 00 00 1E 20 C0 04 01 01 00 03"},
      {"side by side in one way", "41 10 6C 03 0C 00 10 00 00 1E 20 80 02 08 00",
       "41 10 6C 03 0C 00 10 00 00 1E 20 A0 02 01 00", "41 10 6C 03 0C 00 10 00 00 1E 20 80 02 08 10"},
      {"no 3D", "41 10 6C 03 0C 00 10 00 00 1E 20 A0 02 01 41", "41 10 67 03 0C 00 10 00 00 1E",
       "41 10 67 03 0C 00 10 00 00 1E"},
  };
  ExpectRows(EDID_MIX_H14bVSDB, rows);
}

TEST(TwoDisplays, HdmiForumOfBoth) {
  const Row rows[] = {
      {"rates and flags", "67 D8 5D C4 01 78 C8 63", "67 D8 5D C4 01 78 80 3E", "67 D8 5D C4 01 78 80 32"},
      {"no block", "41 10 67 D8 5D C4 01 78 80 00", "41 10", "41 10"},
      {"DSC of both", "6D D8 5D C4 01 78 80 60 00 00 00 8B 57 0F", "6D D8 5D C4 01 78 80 60 00 00 00 C3 42 09",
       "6D D8 5D C4 01 78 80 60 00 00 00 83 42 09"},
      {"DSC of one", "6D D8 5D C4 01 78 80 60 02 00 00 8B 57 0F", "68 D8 5D C4 01 78 80 60 06",
       "68 D8 5D C4 01 78 80 60 02"},
      {"DSC without FRL", "6D D8 5D C4 01 78 80 60 02 00 00 8B 57 0F", "6D D8 5D C4 01 78 80 00 02 00 00 8B 57 0F",
       "68 D8 5D C4 01 78 80 00 02"},
      {"variable rates", "6A D8 5D C4 01 78 80 60 00 30 90", "6A D8 5D C4 01 78 80 60 00 28 78",
       "6A D8 5D C4 01 78 80 60 00 30 78"},
      {"up to the timing's own rate", "6A D8 5D C4 01 78 80 60 01 30 00", "6A D8 5D C4 01 78 80 60 01 28 78",
       "6A D8 5D C4 01 78 80 60 01 30 78"},
      {"ranges that do not meet", "6A D8 5D C4 01 78 80 60 01 30 78", "6A D8 5D C4 01 78 80 60 01 14 28",
       "68 D8 5D C4 01 78 80 60 01"},
      {"a sink capability block for it", "E7 79 00 00 01 78 80 60", "67 D8 5D C4 01 78 80 30",
       "E7 79 00 00 01 78 80 30"},
  };
  ExpectRows(EDID_MIX_HFVSDB, rows);
}

TEST(TwoDisplays, DataBlocksOfBoth) {
  const Row rows[] = {
      {"formats that the other has, as they stand", "44 90 04 01 5D", "43 01 10 04", "43 90 04 01"},
      {"in another shape", "42 10 02", "42 10 03", "42 10 02"},
      {"the last one becomes 640x480", "41 10", "41 1F", "41 01"},
      {"4:2:0 only", "42 10 61 E2 0F 02", "41 10 E2 0E 61", "41 10 E2 0E 61"},
      {"not in 4:2:0", "43 10 61 60 E2 0F 06", "43 10 61 60 E2 0F 04", "43 10 61 60 E2 0F 04"},
      {"a map of all", "43 10 61 60 E1 0F", "43 10 61 60 E2 0F 04", "43 10 61 60 E2 0F 04"},
      {"overlaps of sound", "23 0F 7F 07 83 4F 00 00", "26 09 07 07 0F 04 01 83 4F 00 00",
       "26 09 07 07 0F 04 01 83 4F 00 00"},
      {"what is covered stays as it is", "26 09 07 07 15 07 50", "29 0F 7F 07 15 07 50 3D 06 C0",
       "26 09 07 07 15 07 50"},
      {"bit rates", "23 15 07 50", "23 16 06 38", "23 15 06 38"},
      {"formats and flags", "26 57 06 03 67 7E 03", "23 57 06 01", "23 57 06 01"},
      {"basic audio alone", "23 0F 7F 07 83 4F 00 00", "", "23 09 07 01 83 01 00 00"},
      {"no more channels than speakers", "23 0F 07 07 83 4F 00 00", "23 0D 07 07 83 0D 00 00",
       "23 0D 07 07 83 0D 00 00"},
      {"other speakers", "23 0F 07 07 83 4F 00 00", "23 0F 07 07 83 2F 00 00", "23 0D 07 07 83 0F 00 00"},
      {"colorimetry", "E3 05 E0 80", "E3 05 C3 01", "E3 05 C0 00"},
      {"no colorimetry", "E3 05 E0 80", "", ""},
      {"ranges selectable, scan as both can", "E2 00 CF", "E2 00 4A", "E2 00 4A"},
      {"curves and luminances", "E6 06 0D 01 60 58 30", "E6 06 05 01 58 00 40", "E6 06 05 01 58 58 40"},
      {"a darker maximum needs a higher code", "E6 06 01 01 80 00 20", "E6 06 05 01 60 00 20", ""},
      {"a luminance that one tells", "E3 06 05 01", "E4 06 05 01 60", "E4 06 05 01 60"},
      {"HDR10+", "E5 01 8B 84 90 4D", "E5 01 8B 84 90 39", "E5 01 8B 84 90 39"},
      {"another vendor's block", "67 1A 00 00 01 01 30 90 64 D8 5D 00 01", "64 D8 5D 00 01", "64 D8 5D 00 01"},
  };
  ExpectRows([](EdidHandle* handle, const EdidHandle* other) { EXPECT_EQ(EDID_LimitToCommon(handle, other), 0); },
             rows);
}

// What the base block says, bytes by their places.
TEST(TwoDisplays, BaseBlockOfBoth) {
  const DtdTiming k900p = {88750, 1440, 160, 48, 32, 900, 26, 3, 6, 1, 0, 0, 60, 8, 0, 0, 0, 0, 0};
  const ByteVector cvt = {0, 48, 75, 30, 90, 20, 4, 0x11, 0, 0, 0x10, 0x10, 0, 60};
  const auto range = [](uint8_t minV, uint8_t maxV, uint8_t minH, uint8_t maxH, uint8_t clock, uint8_t formula = 1) {
    return ByteVector{0, minV, maxV, minH, maxH, clock, formula, 0x0A, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20};
  };
  const auto base = [](uint8_t input = 0xA5, uint8_t features = 0x02) {
    return Edid().Set(20, {input}).Set(24, {features}).Set(38, ByteVector(16, 0x01));
  };
  const auto slot = [](const Edid& edid, size_t index) {
    const ByteVector bytes = edid.Build();
    return ByteVector(bytes.begin() + static_cast<long>(54 + 18 * index),
                      bytes.begin() + static_cast<long>(72 + 18 * index));
  };
  const ByteVector dummy = {0, 0, 0, 0x10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  const struct {
    const char* name;
    Edid ours, theirs;
    size_t at;
    ByteVector after;
  } rows[] = {
      {"the first timing that stays is preferred", base().Dtd(k900p).Dtd(k720p60), base().Dtd(k1080p60).Dtd(k720p60),
       54, slot(base().Dtd(k720p60), 0)},
      {"and leaves its slot", base().Dtd(k900p).Dtd(k720p60), base().Dtd(k1080p60).Dtd(k720p60), 72, dummy},
      {"none is left: the best of all becomes one",
       base().Dtd(k900p).Extension(Cta().Vdb({4, 16})),
       base().Dtd(k720p60).Extension(Cta().Vdb({16})),
       54,
       {0x02, 0x3A, 0x80, 0x18, 0x71, 0x38}},
      {"nothing in common: 640x480", base().Dtd(k900p), base().Dtd(k720p60), 54, {0xD5, 0x09, 0x80, 0xA0, 0x20, 0xE0}},
      {"established timings",
       base().Dtd(k720p60).Set(35, {0x29, 0x08, 0x80}),
       base().Dtd(k720p60).Set(35, {0x01, 0x0C, 0x00}),
       35,
       {0x21, 0x08, 0x00}},
      {"standard timings",
       base().Dtd(k720p60).Set(38, {0x81, 0x80, 0xD1, 0xC0}),
       base().Dtd(k1080p60).Dtd(k720p60),
       38,
       {0x01, 0x01, 0xD1, 0xC0}},
      {"range limits meet",
       base().Dtd(k720p60).Descriptor(0xFD, range(40, 75, 30, 90, 17)),
       base().Dtd(k720p60).Descriptor(0xFD, range(48, 144, 15, 80, 20)),
       77,
       {48, 75, 30, 80, 17}},
      {"limits that do not meet stay",
       base().Dtd(k720p60).Descriptor(0xFD, range(40, 75, 30, 90, 17)),
       base().Dtd(k720p60).Descriptor(0xFD, range(100, 144, 30, 90, 17)),
       77,
       {40, 75, 30, 90, 17}},
      {"no formula of one alone",
       base(0xA5, 0x03).Dtd(k720p60).Descriptor(0xFD, cvt),
       base().Dtd(k720p60),
       72 + 10,
       {1, 0x0A, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20}},
      {"and no timings of the source's own",
       base(0xA5, 0x03).Dtd(k720p60).Descriptor(0xFD, cvt),
       base().Dtd(k720p60),
       24,
       {0x02}},
      {"a formula of both",
       base(0xA5, 0x03).Dtd(k720p60).Descriptor(0xFD, cvt),
       base(0xA5, 0x03).Dtd(k720p60).Descriptor(0xFD, cvt),
       72 + 10,
       {4, 0x11}},
      {"bits a colour", base(0xB5).Dtd(k720p60), base(0xA5).Dtd(k720p60), 20, {0xA5}},
      {"a depth that the other does not tell", base(0xB5).Dtd(k720p60), base(0x85).Dtd(k720p60), 20, {0xA5}},
      {"YCbCr", base(0xA5, 0x1A).Dtd(k720p60), base(0xA5, 0x0A).Dtd(k720p60), 24, {0x0A}},
      {"flags of the extension",
       base().Dtd(k720p60).Extension(Cta().Flags(0x70).Vdb({4})),
       base().Dtd(k720p60).Extension(Cta().Flags(0xA0).Vdb({4})),
       128 + 3,
       {0x20}},
      {"beside a display without HDMI 165 MHz",
       base().Dtd(k2160p60).Dtd(k1080p60).Extension(Cta().Hdmi(0x1000, {0, 68})), base().Dtd(k2160p60).Dtd(k1080p60),
       54, slot(base().Dtd(k1080p60), 0)},
      {"and so for that display", base().Dtd(k2160p60).Dtd(k1080p60),
       base().Dtd(k2160p60).Dtd(k1080p60).Extension(Cta().Hdmi(0x1000, {0, 68})), 54, slot(base().Dtd(k1080p60), 0)},
  };
  for (const auto& row : rows) {
    const Image handle(row.ours.Build()), other(row.theirs.Build());
    EXPECT_EQ(EDID_LimitToCommon(handle.get(), other.get()), 0) << row.name;
    const ByteVector bytes = Generate(handle.get());
    const auto from = bytes.begin() + static_cast<long>(row.at);
    EXPECT_EQ(HexOf(ByteVector(from, from + static_cast<long>(row.after.size()))), HexOf(row.after)) << row.name;
  }
}

TEST(TwoDisplays, TheSoundOfTheOther) {
  const Row rows[] = {
      {"where it stood", "41 10 23 09 07 07 67 03 0C 00 10 00 00 1E", "23 0F 7F 07 83 4F 00 00",
       "41 10 23 0F 7F 07 83 4F 00 00 67 03 0C 00 10 00 00 1E"},
      {"behind the video formats", "41 10 67 03 0C 00 10 00 00 1E", "23 0F 7F 07",
       "41 10 23 0F 7F 07 67 03 0C 00 10 00 00 1E"},
      {"rooms, places and vendors", "83 01 00 00 41 10", "E6 11 46 D0 00 70 00 E3 12 00 00 E2 13 00 E2 14 00 E2 00 0F",
       "E6 11 46 D0 00 70 00 E3 12 00 00 E2 13 00 E2 14 00 41 10"},
      {"none", "41 10 23 09 07 07 83 01 00 00", "41 04", "41 10"},
  };
  ExpectRows([](EdidHandle* handle, const EdidHandle* from) { EXPECT_EQ(EDID_TakeAudio(handle, from), 0); }, rows);
}

TEST(TwoDisplays, TheSoundNeedsAPlace) {
  const Image sound(ImageOf(Hex("23 0F 7F 07"), 0x40));
  const Image base(Edid().Dtd(k720p60).Build());
  EXPECT_EQ(EDID_TakeAudio(base.get(), sound.get()), 0);
  EXPECT_EQ(BlocksOf(base.get()), HexOf(Hex("23 0F 7F 07")));
  EXPECT_EQ(base->blocks[1].bytes[3], 0x40);
  EXPECT_EQ(base->blocks[0].bytes[126], 1);

  Cta full;
  for (int i = 0; i < 6; ++i) full.Dtd(k720p60);
  const ByteVector image = Edid().Dtd(k720p60).Extension(full.Vdb({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})).Build();
  const Image crowded(image);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_TakeAudio(crowded.get(), sound.get()), -1); }),
            Err("EDID_TakeAudio", "not enough space"));
  EXPECT_EQ(Generate(crowded.get()), image);
}

TEST(TwoDisplays, NullIsRefused) {
  const Image some(Edid().Build());
  EdidHandle empty = {};
  for (EdidHandle* handle : {static_cast<EdidHandle*>(nullptr), &empty, some.get()}) {
    const EdidHandle* other = handle == some.get() ? &empty : some.get();
    EXPECT_EQ(LogOf([&] { EDID_MIX_DolbyVision(handle, other); }), Err("EDID_MIX_DolbyVision", "invalid parameters"));
    EXPECT_EQ(LogOf([&] { EDID_MIX_H14bVSDB(handle, other); }), Err("EDID_MIX_H14bVSDB", "invalid parameters"));
    EXPECT_EQ(LogOf([&] { EDID_MIX_HFVSDB(handle, other); }), Err("EDID_MIX_HFVSDB", "invalid parameters"));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_LimitToCommon(handle, other), -1); }),
              Err("EDID_LimitToCommon", "invalid parameters"));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_TakeAudio(handle, other), -1); }),
              Err("EDID_TakeAudio", "invalid parameters"));
  }
}

}  // namespace
}  // namespace reedid::test
