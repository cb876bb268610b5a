#include <gtest/gtest.h>

#include "tests/support/data_block.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

ByteVector Forum(const ByteVector& fromByte4) {
  return Concat({{static_cast<uint8_t>(0x63 + fromByte4.size()), 0xD8, 0x5D, 0xC4}, fromByte4});
}

ByteVector H14b(const ByteVector& fromByte4) {
  return Concat({{static_cast<uint8_t>(0x63 + fromByte4.size()), 0x03, 0x0C, 0x00}, fromByte4});
}

TEST(Vsdb, IsKnownByItsOui) {
  struct Case {
    const char* name;
    ByteVector bytes;
    int type;
    bool refused;
  };
  const Case cases[] = {{"HDMI 1.4b", {0x63, 0x03, 0x0C, 0x00}, VSDB_HDMI14B, false},
                        {"HDMI Forum", {0x63, 0xD8, 0x5D, 0xC4}, VSDB_HDMI_FORUM, false},
                        {"other vendor", {0x63, 0x03, 0x0C, 0x01}, VSDB_NONE, false},
                        {"31 bytes", H14b(ByteVector(27)), VSDB_HDMI14B, false},
                        {"32 bytes", H14b(ByteVector(28)), VSDB_NONE, true},
                        {"3 bytes", {0x62, 0x03, 0x0C}, VSDB_NONE, true},
                        {"video block", {0x43, 0x03, 0x0C, 0x00}, VSDB_NONE, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const DataBlock block(c.bytes);
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_GetVSDBType(&block), c.type); }),
              c.refused ? Err("CEA_GetVSDBType", "invalid parameters") : "");
  }
  H14bRecord h14b;
  HfVsdbRecord forum;
  const DataBlock h14bBlock(H14b(ByteVector(5)));
  const DataBlock forumBlock(Forum(ByteVector(5)));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_GetH14bVSDB(&forumBlock, &h14b), -1); }),
            Err("CEA_GetH14bVSDB", "invalid OUI(C45Dd8)"));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_GetHFVSDB(&h14bBlock, &forum), -1); }),
            Err("CEA_GetHFVSDB", "invalid OUI(000C03)"));
}

// Everything that a block can say, cut at every length.
TEST(H14b, ReadsAsFarAsTheBlockReaches) {
  const ByteVector full = H14b({0x12, 0x34, 0xF9, 60, 0xEA, 11, 21, 31, 41, 0x18, 0x60, 1, 2, 3, 4});
  for (size_t size = 6; size <= full.size(); ++size) {
    SCOPED_TRACE(size);
    const DataBlock block(ByteVector(full.begin(), full.begin() + static_cast<std::ptrdiff_t>(size)));
    H14bRecord r;
    ASSERT_EQ(CEA_GetH14bVSDB(&block, &r), 0);
    const auto from = [&](size_t minimum, int value) { return size >= minimum ? value : 0; };
    EXPECT_EQ(r.physAddr, 0x1234);
    EXPECT_EQ(r.supportsAI + r.DC_48bit + r.DC_36bit + r.DC_30bit + r.DC_Y444 + r.DVI_Dual, from(7, 6));
    EXPECT_EQ(r.max_TMDS_Clock, from(8, 300));
    EXPECT_EQ(r.latencyPresent + r.iLatencyPresent + r.hdmiVideoPresent, from(9, 3));
    EXPECT_EQ(r.cnc[1] + r.cnc[3] - r.cnc[0] - r.cnc[2], from(9, 2));
    EXPECT_EQ(r.videoLatency, from(11, 20));
    EXPECT_EQ(r.audioLatency, from(11, 40));
    EXPECT_EQ(r.iVideoLatency, from(13, 60));
    EXPECT_EQ(r.iAudioLatency, from(13, 80));
    // Where 13 bytes hold no latencies but two, the video part is looked for at byte 11; at 10 bytes at byte 9.
    EXPECT_EQ(r.imageSize, from(15, 3));
    EXPECT_EQ(r.hdmiVicLen, from(15, 3));
    for (size_t i = 0; i < 8; ++i) EXPECT_EQ(r.hdmiVics[i], i < 3 ? from(16 + i, static_cast<int>(i) + 1) : 0);
  }
}

TEST(H14b, FindsTheVideoPart) {
  struct Case {
    const char* name;
    ByteVector bytes;
    int imageSize, vicLen, firstVic;
  };
  const Case cases[] = {
      {"without latencies", H14b({0x10, 0, 0, 30, 0x20, 0x08, 0x20, 4}), 1, 1, 4},
      {"latency flag without its bytes", H14b({0x10, 0, 0, 30, 0xA0, 0x10}), 0, 0, 0},
      {"12 bytes with latencies, no more", H14b({0x10, 0, 0, 30, 0xA0, 1, 1, 0x10}), 0, 0, 0},
      {"13 bytes are all latencies", H14b({0x10, 0, 0, 30, 0xA0, 1, 1, 0x10, 0x20}), 0, 0, 0},
      {"15 bytes", H14b({0x10, 0, 0, 30, 0xA0, 1, 1, 0, 0, 0x10, 0xE0}), 2, 7, 0},
      {"not announced", H14b({0x10, 0, 0, 30, 0x00, 0x18, 0x20, 4}), 0, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const DataBlock block(c.bytes);
    H14bRecord r;
    ASSERT_EQ(CEA_GetH14bVSDB(&block, &r), 0);
    EXPECT_EQ(r.imageSize, c.imageSize);
    EXPECT_EQ(r.hdmiVicLen, c.vicLen);
    EXPECT_EQ(r.hdmiVics[0], c.firstVic);
  }
}

TEST(H14b, Encodes) {
  struct Case {
    const char* name;
    std::function<void(H14bRecord&)> change;  // of 1.0.0.0 and 150 MHz
    ByteVector fromByte4;
    std::string log;
    ByteVector beyond = {};  // behind the declared size
  };
  const auto clock = [](const char* mhz) {
    return Err("CEA_SetH14bVSDB", "invalid max_TMDS_Clock: " + std::string(mhz) + "MHz");
  };
  const Case cases[] = {
      {"plain", [](H14bRecord&) {}, {0x10, 0, 0, 30, 0}, ""},
      {"AI", [](H14bRecord& r) { r.supportsAI = 3; }, {0x10, 0, 0x80, 30, 0}, ""},
      {"48 bit", [](H14bRecord& r) { r.DC_48bit = 1; }, {0x10, 0, 0x40, 30, 0}, ""},
      {"36 bit", [](H14bRecord& r) { r.DC_36bit = 1; }, {0x10, 0, 0x20, 30, 0}, ""},
      {"30 bit", [](H14bRecord& r) { r.DC_30bit = 1; }, {0x10, 0, 0x10, 30, 0}, ""},
      {"Y444", [](H14bRecord& r) { r.DC_Y444 = 1; }, {0x10, 0, 0x08, 30, 0}, ""},
      {"dual", [](H14bRecord& r) { r.DVI_Dual = 3; }, {0x10, 0, 0x01, 30, 0}, ""},
      {"content", [](H14bRecord& r) { r.cnc[0] = r.cnc[3] = 1; }, {0x10, 0, 0, 30, 0x09}, ""},
      {"address 0",
       [](H14bRecord& r) { r.physAddr = 0; },
       {0, 0, 0, 30, 0},
       Warn("CEA_SetH14bVSDB", "invalid phyaddr: 0000")},
      {"no address, slow",
       [](H14bRecord& r) { r.physAddr = 0xFFFF, r.max_TMDS_Clock = 24; },
       {0xFF, 0xFF, 0, 4, 0},
       Warn("CEA_SetH14bVSDB", "invalid phyaddr: FFFF") + clock("24")},
      {"25 MHz", [](H14bRecord& r) { r.max_TMDS_Clock = 25; }, {0x10, 0, 0, 5, 0}, ""},
      {"clock rounds down and wraps", [](H14bRecord& r) { r.max_TMDS_Clock = 1299; }, {0x10, 0, 0, 3, 0}, ""},
      {"latencies",
       [](H14bRecord& r) { r.latencyPresent = 1, r.videoLatency = 21, r.audioLatency = 510; },
       {0x10, 0, 0, 30, 0x80, 11, 0},
       ""},
      {"interlaced ones",
       [](H14bRecord& r) { r.latencyPresent = r.iLatencyPresent = 1, r.iAudioLatency = 2; },
       {0x10, 0, 0, 30, 0xC0, 0, 0, 0, 2},
       ""},
      {"interlaced flag alone",
       [](H14bRecord& r) { r.iLatencyPresent = 1, r.videoLatency = 9; },
       {0x10, 0, 0, 30, 0x40},
       ""},
      {"video",
       [](H14bRecord& r) { r.hdmiVideoPresent = 1, r.imageSize = 7, r.hdmiVicLen = 2, r.hdmiVics[1] = 4; },
       {0x10, 0, 0, 30, 0x20, 0x18, 0x40, 0, 4},
       ""},
      {"video always behind four latencies",
       [](H14bRecord& r) { r.latencyPresent = r.hdmiVideoPresent = 1, r.hdmiVicLen = 1, r.hdmiVics[0] = 3; },
       {0x10, 0, 0, 30, 0xA0, 0, 0, 0, 0, 0},
       "",
       {0x20, 3}},
      {"eight VICs do not fit their count",
       [](H14bRecord& r) { r.hdmiVideoPresent = 1, r.hdmiVicLen = 8; },
       {0x10, 0, 0, 30, 0x20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
       ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    H14bRecord record = {};
    record.physAddr = 0x1000;
    record.max_TMDS_Clock = 150;
    c.change(record);
    BlankDataBlock entry;
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_SetH14bVSDB(&record, &entry), 0); }), c.log);
    EXPECT_EQ(entry.Written(), H14b(c.fromByte4));
    const uint8_t* behind = entry.bytes + entry.size;
    EXPECT_EQ(ByteVector(behind, behind + c.beyond.size()), c.beyond);
  }
  H14bRecord record = {};
  record.hdmiVicLen = 9;
  BlankDataBlock entry;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_SetH14bVSDB(&record, &entry), -1); }),
            Err("CEA_SetH14bVSDB", "invalid parameters"));
  EXPECT_EQ(entry.bytes[0], 0xEE);
}

TEST(HdmiForum, PlacesEachField) {
  struct Case {
    const char* name;
    uint8_t HfVsdbRecord::*field;
    unsigned byte, low, width;
  };
  using R = HfVsdbRecord;
  const Case cases[] = {
      {"version", &R::version, 4, 0, 8},
      {"scdc", &R::scdcPresent, 6, 7, 1},
      {"rr", &R::rrCapable, 6, 6, 1},
      {"ccbpci", &R::ccbpci, 6, 4, 1},
      {"scramble", &R::lte340Scramble, 6, 3, 1},
      {"independent", &R::independentView, 6, 2, 1},
      {"dual", &R::dualView, 6, 1, 1},
      {"osd", &R::osdDisparity3d, 6, 0, 1},
      {"FRL", &R::Max_FRL_Rate, 7, 4, 4},
      {"dc48", &R::dc48bit420, 7, 2, 1},
      {"dc36", &R::dc36bit420, 7, 1, 1},
      {"dc30", &R::dc30bit420, 7, 0, 1},
      {"mDelta", &R::mDelta, 8, 5, 1},
      {"cinema", &R::cinemaVrr, 8, 4, 1},
      {"cnm", &R::cnmVrr, 8, 3, 1},
      {"fva", &R::fva, 8, 2, 1},
      {"allm", &R::allm, 8, 1, 1},
      {"fapa", &R::fapaStartLocation, 8, 0, 1},
      {"VRRmin", &R::VRRmin, 9, 0, 6},
      {"native 420", &R::dscNative420, 11, 6, 1},
      {"all bpp", &R::dscAllBpp, 11, 3, 1},
      {"16 bpc", &R::dsc16bpc, 11, 2, 1},
      {"12 bpc", &R::dsc12bpc, 11, 1, 1},
      {"10 bpc", &R::dsc10bpc, 11, 0, 1},
      {"DSC FRL", &R::DSC_Max_FRL_Rate, 12, 4, 4},
      {"slices", &R::DSC_MaxSlices, 12, 0, 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    HfVsdbRecord record = {};
    record.VRRmax = 0x100;
    record.DSC_1p2 = record.DSC_TotalChunkKBytes = 1;
    record.*c.field = 0xFF;
    ByteVector expected = Forum({0, 0, 0, 0, 0, 0x40, 0, 0x80, 0, 0});
    const auto mask = static_cast<uint8_t>((1u << c.width) - 1);
    expected[c.byte] = static_cast<uint8_t>(expected[c.byte] | mask << c.low);
    BlankDataBlock entry;
    LogOf([&] { ASSERT_EQ(CEA_SetHFVSDB(&record, &entry), 0); });
    EXPECT_EQ(entry.Written(), expected);
    ASSERT_EQ(CEA_GetHFVSDB(&entry, &record), 0);
    EXPECT_EQ(record.*c.field, mask);
  }
}

TEST(HdmiForum, ReadsAsFarAsTheBlockReaches) {
  const ByteVector full = Forum({1, 120, 0x80, 0x60, 0x02, 0xF0, 0x20, 0x80, 0x61, 0xFF});
  for (size_t size = 8; size <= full.size(); ++size) {
    SCOPED_TRACE(size);
    const DataBlock block(ByteVector(full.begin(), full.begin() + static_cast<std::ptrdiff_t>(size)));
    HfVsdbRecord r;
    ASSERT_EQ(CEA_GetHFVSDB(&block, &r), 0);
    EXPECT_EQ(r.TMDS_Character_Rate, 600);
    EXPECT_EQ(r.Max_FRL_Rate, 6);
    EXPECT_EQ(r.allm, size >= 9);
    EXPECT_EQ(r.VRRmin, size >= 11 ? 48 : 0);
    EXPECT_EQ(r.VRRmax, size >= 11 ? 0x320 : 0);
    EXPECT_EQ(r.DSC_1p2, size >= 14);
    EXPECT_EQ(r.DSC_MaxSlices, size >= 14);
    EXPECT_EQ(r.DSC_TotalChunkKBytes, size >= 14 ? 64 : 0);
  }
}

TEST(HdmiForum, ReportsContradictionsAndWritesThem) {
  using R = HfVsdbRecord;
  struct Case {
    const char* name;
    std::function<void(R&)> change;
    std::vector<std::string> messages;
    ByteVector fromByte5;
  };
  const std::string noFrl = "should set Max_FRL_Rate > 0 and DSC_Max_FRL_Rate > 0 when DSC_1p2=1";
  const Case cases[] = {
      {"smallest", [](R&) {}, {}, {0, 0, 0}},
      {"FRL 1 at 300", [](R& r) { r.TMDS_Character_Rate = 300, r.Max_FRL_Rate = 1; }, {}, {60, 0, 0x10}},
      {"FRL 1 at 299",
       [](R& r) { r.TMDS_Character_Rate = 299, r.Max_FRL_Rate = 1; },
       {"invalid FRL_Rate 1 or TMDS_Character_Rate 299"},
       {59, 0, 0x10}},
      {"FRL 2 at 599",
       [](R& r) { r.TMDS_Character_Rate = 599, r.Max_FRL_Rate = 2; },
       {"invalid FRL_Rate 2 or TMDS_Character_Rate 599"},
       {119, 0, 0x20}},
      {"FRL 6 at 600", [](R& r) { r.TMDS_Character_Rate = 600, r.Max_FRL_Rate = 6; }, {}, {120, 0, 0x60}},
      {"byte 8", [](R& r) { r.fva = 1; }, {}, {0, 0, 0, 0x04}},
      {"flags by bit 0", [](R& r) { r.fva = 2; }, {}, {0, 0, 0}},
      {"VRR", [](R& r) { r.VRRmax = 100, r.VRRmin = 48; }, {}, {0, 0, 0, 0, 48, 100}},
      {"VRR above 8 bits", [](R& r) { r.VRRmax = 0x3FF; }, {}, {0, 0, 0, 0, 0xC0, 0xFF}},
      {"VRR above 10 bits", [](R& r) { r.VRRmax = 0x5FF; }, {}, {0, 0, 0, 0, 0x40, 0xFF}},
      {"odd VRR",
       [](R& r) { r.VRRmax = 99, r.VRRmin = 65; },
       {"invalid VRRmin 65", "invalid VRRmax 99"},
       {0, 0, 0, 0, 1, 99}},
      {"VRRmin alone", [](R& r) { r.VRRmin = 65; }, {}, {0, 0, 0}},
      {"empty DSC",
       [](R& r) { r.DSC_1p2 = 1; },
       {noFrl, "should set DSC_MaxSlices > 0 when DSC_1p2=1", "should set DSC_TotalChunkKBytes > 0 when DSC_1p2=1"},
       {0, 0, 0, 0, 0, 0, 0x80, 0, 0xFF}},
      {"DSC",
       [](R& r) {
         r.TMDS_Character_Rate = 600, r.Max_FRL_Rate = 5, r.DSC_1p2 = 1, r.DSC_Max_FRL_Rate = 3, r.DSC_MaxSlices = 0x12,
         r.DSC_TotalChunkKBytes = 64;
       },
       {},
       {120, 0, 0x50, 0, 0, 0, 0x80, 0x32, 0xFF}},
      {"DSC without FRL",
       [](R& r) { r.DSC_1p2 = 1, r.DSC_Max_FRL_Rate = 3, r.DSC_MaxSlices = 1, r.DSC_TotalChunkKBytes = 63; },
       {noFrl},
       {0, 0, 0, 0, 0, 0, 0x80, 0x31, 62}},
      {"no DSC", [](R& r) { r.dsc10bpc = 1, r.DSC_Max_FRL_Rate = 3; }, {}, {0, 0, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::string log;
    for (const std::string& message : c.messages) log += Err("CEA_SetHFVSDB", message);
    HfVsdbRecord record = {};
    c.change(record);
    BlankDataBlock entry;
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_SetHFVSDB(&record, &entry), 0); }), log);
    EXPECT_EQ(entry.Written(), Forum(Concat({{0}, c.fromByte5})));
  }
}

}  // namespace
}  // namespace reedid::test
