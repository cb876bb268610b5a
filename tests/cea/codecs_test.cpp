// The codecs of the CTA data blocks: what each bit means, values that are more than bits, sizes, refusals.
#include "tests/support/codec.h"

namespace reedid::test {
namespace {

TEST(CtaCodecs, PlaceEachBit) {
  const BitsRow rows[] = {
      {"SADB", "00*3", 0, "",
       "FL_FR LFE1 FC BL_BR BC FLc_FRc RLC_RRC FLw_FRw TpFL_TpFR TpC TpFC LS_RS LFE2 TpBC SiL_SiR TpSiL_TpSiR "
       "TpBL_TpBR BtFC BtFL_BtFR TpLS_TpRS -:4"},
      {"CDB", "00 00", 0, "",
       "xvYCC601 xvYCC709 sYCC601 opYCC601 opRGB BT2020cYCC BT2020YCC BT2020RGB metadataProfiles:4 -:2 ICtCp DCI_P3"},
      {"VCDB", "00", 0, "", "S_CE:2 S_IT:2 S_PT:2 QS QY"},
      {"H14bVSDB", "10 00 00 00 00", 0, "",
       "physAddr:4@256 ? physAddr:3@8192 physAddr:8 DVI_Dual -:2 DC_Y444 DC_30bit DC_36bit DC_48bit supportsAI "
       "max_TMDS_Clock:8*5 "
       "cnc/#:4 - ?:3"},
      {"HFVSDB", "00*5 40 01 80 00 01", 0, "",
       "version:8 TMDS_Character_Rate:8*5 osdDisparity3d dualView independentView lte340Scramble ccbpci - rrCapable "
       "scdcPresent dc30bit420 dc36bit420 dc48bit420 - Max_FRL_Rate:4 fapaStartLocation allm fva cnmVrr cinemaVrr "
       "mDelta "
       "-:2 VRRmin:6 ? VRRmax@512 ? VRRmax:7@2 dsc10bpc dsc12bpc dsc16bpc dscAllBpp -:2 dscNative420 ? DSC_MaxSlices:4 "
       "DSC_Max_FRL_Rate:4 ? DSC_TotalChunkKBytes:5@2 -:2"},
      {"StaticHDR", "00 00 01 01 01", 0, "",
       "eotfSdr eotfHdr eotfPq eotfHlg -:4 staticMetadataType1 -:7 ? maxLuminance:7@2 ? maxFrameAvgLuminance:7@2 ? "
       "minLuminance:7@2"},
      {"CTA type VII", "02 00*20", 0, "timing/",
       "?:7 - pixelClock:24 aspectRatio:4 interlaced -:2 ? hactive:16 hblank:16 hfrontPorch:15 hsyncPositive "
       "hsyncWidth:16 "
       "vactive:16 vblank:16 vfrontPorch:15 vsyncPositive vsyncWidth:16"},
  };
  for (const auto& row : rows) CheckBits<CeaDataBlock>(row);
}

TEST(CtaCodecs, ReadAndWriteBack) {
  const ReadRow rows[] = {
      // No native mark: the first; else the last one marked. 193 and up are the upper VICs, less 64.
      {"VDB", "10 1F", "nativeVic=16 vicCount=2 vics=16,31", "90 1F"},
      {"VDB", "10 84 83 05", "nativeVic=3 vicCount=4 vics=16,4,3,5", "10 04 83 05"},
      {"VDB", "80 81 C0", "nativeVic=64 vicCount=3 vics=128,1,64", "80 01 C0"},
      {"VDB", "7F C1 FF", "nativeVic=127 vicCount=3 vics=127,129,191"},
      {"420VDB", "60 90 DA", "vicCount=3 vics=96,16,154", "60 10 DA"},
      // A map that ends early, and bits without a descriptor.
      {"420CMDB", "05 02", "vicCount=3 vics=1,3,154", "05 02 00 00"},
      {"420CMDB", "FF", "vicCount=8 vics=1,2,3,4,5,6,7,8", "FF 00*3"},
      {"420CMDB", "00 01 00 E0", "vicCount=2 vics=9,30", "00 01 00 20"},
      {"ADB", "0F 7F 07", "1,0,8,1,1,1,1,1,1,1,1,1,1"},
      {"ADB", "89 84 F9", "1,0,2,0,0,1,0,0,0,0,1", "09 04 01"},           // reserved bits
      {"ADB", "15 07 50", "2,0,6,1,1,1,0,0,0,0,0,0,0,0x50"},              // AC-3
      {"ADB", "41 02 FF", "8,0,2,0,1,0,0,0,0,0,1,1,1,0xFF"},              // a bit rate that looks like depths
      {"ADB", "4F 00 01", "9,0,8,0,0,0,0,0,0,0,1,0,0,0,1"},               // the first with a byte of its own
      {"ADB", "68 10 FF", "13,0,1,0,0,0,0,1,0,0,1,1,1,0,0xFF"},           // the last one
      {"ADB", "70 20 FE", "14,0,1,0,0,0,0,0,1,0,0,1,1,0,6", "70 20 06"},  // WMA Pro
      {"ADB", "79 FF 27", "15,4,2,1,1,1,1,1,0,0,1,1,1,0,7", "79 1F 27"},  // extended formats
      {"ADB", "79 60 51", "15,10,2,0,0,0,0,0,0,0,1,0,0,0,1", "79 00 51"},
      {"ADB", "7B 7F 5F", "15,11,3,1,1,1,1,1,1,1,1,1,1,0,3", "7B 7F 5B"},
      {"ADB", "7F 7F 65", "15,12,8,0,1,1,0,1,0,1,1,0,1,0,5", "78 56 65"},
      {"ADB", "FD 84 6B", "15,13,30,0,0,1,0,0,0,0,1,1"},
      {"ADB", "7D 04 6F", "15,13,6,0,0,1,0,0,0,0,1,1,1"},
      {"ADB", "7A 04 1F", "15,3,3,0,0,1,0,0,0,0,1,1,1", "7A 04 18"},
      {"ADB", "00 01 FF", "0,0,1,1,0,0,0,0,0,0,1,1,1", "00 01 07"},
      {"ADB", "09 04 01 0F 7F", "1,0,2,0,0,1,0,0,0,0,1", "09 04 01"},  // a rest of two bytes
      {"ADB", "09 04 01 0A 04 01", "0=1,0,2,0,0,1,0,0,0,0,1 1=1,0,3,0,0,1,0,0,0,0,1"},
      // As far as the block reaches. Latencies count half milliseconds above 1, the interlaced pair needs no flag.
      {"H14bVSDB", "12 34", "physAddr=0x1234", "12 34 00 00 00"},
      {"H14bVSDB", "12 34 F9", "physAddr=0x1234 supportsAI DC_48bit DC_36bit DC_30bit DC_Y444 DVI_Dual",
       "12 34 F9 00 00"},
      {"H14bVSDB", "12 34 00 3C", "physAddr=0x1234 max_TMDS_Clock=300", "12 34 00 3C 00"},
      {"H14bVSDB", "10 00 00 1E 80 0B 15",
       "physAddr=0x1000 max_TMDS_Clock=150 latencyPresent videoLatency=20 audioLatency=40"},
      {"H14bVSDB", "10 00 00 1E C0 0B 15 1F 29",
       "physAddr=0x1000 max_TMDS_Clock=150 latencyPresent iLatencyPresent videoLatency=20 audioLatency=40 "
       "iVideoLatency=60 iAudioLatency=80"},
      {"H14bVSDB", "10 00 00 1E 80 0B", "physAddr=0x1000 max_TMDS_Clock=150 latencyPresent", "10 00 00 1E 80 00 00"},
      {"H14bVSDB", "10 00 00 1E E0 01 01 01 01 18 60 01 02 03 04",
       "physAddr=0x1000 max_TMDS_Clock=150 latencyPresent iLatencyPresent hdmiVideoPresent imageSize=3 hdmiVicLen=3 "
       "hdmiVics=1,2,3,",
       "10 00 00 1E E0 00 00 00 00 18 60 01 02 03"},
      {"H14bVSDB", "10 00 00 1E 20 08 20 04",
       "physAddr=0x1000 max_TMDS_Clock=150 hdmiVideoPresent imageSize hdmiVicLen hdmiVics=4,"},
      {"H14bVSDB", "10 00 00 1E 20 18", "physAddr=0x1000 max_TMDS_Clock=150 hdmiVideoPresent", "10 00 00 1E 20 00 00"},
      {"H14bVSDB", "10 00 00 1E 00 18 20 04", "physAddr=0x1000 max_TMDS_Clock=150", "10 00 00 1E 00"},
      {"HFVSDB", "01 78 80 60", "version TMDS_Character_Rate=600 scdcPresent Max_FRL_Rate=6"},
      {"HFVSDB", "01 78 80 60 02 F0", "version TMDS_Character_Rate=600 scdcPresent Max_FRL_Rate=6 allm",
       "01 78 80 60 02"},
      {"HFVSDB", "01 78 80 60 02 F0 20 80 61",
       "version TMDS_Character_Rate=600 scdcPresent Max_FRL_Rate=6 allm VRRmin=48 VRRmax=0x320",
       "01 78 80 60 02 F0 20"},
      {"HFVSDB", "01 78 80 60 02 F0 20 80 61 3F",
       "version TMDS_Character_Rate=600 scdcPresent Max_FRL_Rate=6 allm VRRmin=48 VRRmax=0x320 DSC_1p2 "
       "DSC_Max_FRL_Rate=6 DSC_MaxSlices DSC_TotalChunkKBytes=64",
       "01 78 80 60 02 F0 20 80 61 FF"},
      // What a block does not hold stays as it was in the record.
      {"StaticHDR", "05 01",
       "eotfSdr eotfPq staticMetadataType1 maxLuminance=238 maxFrameAvgLuminance=238 minLuminance=238",
       "05 01 EE EE EE"},
      {"StaticHDR", "05 01 40 41 42 43",
       "eotfSdr eotfPq staticMetadataType1 maxLuminance=64 maxFrameAvgLuminance=65 minLuminance=66", "05 01 40 41 42"},
      {"CTA type VII", "5A 4F 10 09 84 FF 0E 2F 02 AF 80 57 00 6F 08 59 00 07 80 09 00 00*5",
       "extraBytes=5 flagBit3 preferred timing/aspectRatio=4 timing/hactive=3840 timing/hblank=560 "
       "timing/hfrontPorch=176 timing/hsyncPositive timing/hsyncWidth=88 timing/pixelClock=0x91050 timing/vactive=2160 "
       "timing/vblank=90 timing/vfrontPorch=8 timing/vsyncPositive timing/vsyncWidth=10"},
      {"CTA type VIII", "62 04 61", "codeType=1 reserved=1 codeCount=2 codes=4,97"},
      {"CTA type X", "00 02 7F 07 37 04 3B", "formula=2 hactive=1920 vactive=1080 frameRate=60"},
      {"CTA type X", "10 93 7F 07 37 04 2B 4D 02 7F 07 37 04 3B 00",
       "0/formula=3 0/flagB 0/ycc420 0/hactive=1920 0/vactive=1080 0/frameRate=300 0/extraBits42=3 0/extraBits75=2 "
       "1/formula=2 1/hactive=1920 1/vactive=1080 1/frameRate=60"},
  };
  for (const auto& row : rows) CheckRead<CeaDataBlock>(row);
}

TEST(CtaCodecs, WriteWhatFits) {
  const char* const noFrl = "should set Max_FRL_Rate > 0 and DSC_Max_FRL_Rate > 0 when DSC_1p2=1";
  const WriteRow rows[] = {
      {"VDB", "vicCount=3 vics=16,4,16 nativeVic=16", "90 04 90"},
      {"VDB", "vicCount=2 vics=64,65 nativeVic=65", "40 41"},  // VIC 65 and up cannot be marked
      {"VDB", "vicCount=4 vics=129,155,191,192", "C1 DB FF 00"},
      {"VDB", "vicCount=1", "80"},
      {"VDB", "", ""},
      {"VDB", "vicCount=31 nativeVic=1", "00*31"},
      {"VDB", "vicCount=32", kRefused, "invalid parameters"},
      {"420VDB", "vicCount=30", "00*30"},
      {"420VDB", "vicCount=31", kRefused, "invalid parameters"},
      {"420CMDB", "vicCount=1 vics=99,", "00*4"},
      {"420CMDB", "vicCount=31 vics=1,", kRefused, "420 also vic exceeds 444 vic, please check"},
      {"420CMDB", "vicCount=32", kRefused, "invalid parameters"},
      {"ADB", "1,0,0", "0F 00 00"},  // channels wrap
      {"ADB", "1,0,9", "08 00 00"},
      {"ADB", "1,0,1,2,3,2,3,2,3,2,3,2,3", "08 2A 05"},  // flags by bit 0
      {"ADB", "17,0,1,0,0,0,0,0,0,0,1,0,0,9,9", "08 00 01"},
      {"ADB", "9,0,1,0,0,0,0,0,0,0,1,1,1", "48 00 00"},  // depths belong to L-PCM
      {"ADB", "15,12,8,1,1,1,1,1,1,1,1,1,1,0,255", "78 56 67"},
      {"ADB", "15,13,32,0,0,0,0,0,0,0,0,0,0,0,7", "FF 80 68"},
      {"VCDB", "QY=2 QS=2 S_PT=4 S_IT=4 S_CE=4", "00"},
      {"CDB", "xvYCC601=2 metadataProfiles=0x25 DCI_P3=3", "00 85"},
      {"H14bVSDB", "max_TMDS_Clock=25", "00 00 00 05 00", "?invalid phyaddr: 0000"},
      {"H14bVSDB", "physAddr=0xFFFF max_TMDS_Clock=24", "FF FF 00 04 00",
       "?invalid phyaddr: FFFF|invalid max_TMDS_Clock: 24MHz"},
      {"H14bVSDB", "physAddr=1 max_TMDS_Clock=1299 supportsAI=3 DVI_Dual=2",
       "00 01 80 03 00"},  // rounds down and wraps
      {"H14bVSDB", "physAddr=1 max_TMDS_Clock=25 latencyPresent videoLatency=21 audioLatency=510",
       "00 01 00 05 80 0B 00"},
      {"H14bVSDB", "physAddr=1 max_TMDS_Clock=25 iLatencyPresent videoLatency=9", "00 01 00 05 40"},
      {"H14bVSDB", "physAddr=1 max_TMDS_Clock=25 hdmiVideoPresent imageSize=7 hdmiVicLen=2 hdmiVics=0,4",
       "00 01 00 05 20 18 40 00 04"},
      {"H14bVSDB", "physAddr=1 max_TMDS_Clock=25 hdmiVideoPresent hdmiVicLen=8", "00 01 00 05 20 00*10"},
      {"H14bVSDB", "hdmiVicLen=9", kRefused, "invalid parameters"},
      {"HFVSDB", "", "00*4"},
      {"HFVSDB", "TMDS_Character_Rate=300 Max_FRL_Rate=1", "00 3C 00 10"},
      {"HFVSDB", "TMDS_Character_Rate=299 Max_FRL_Rate=1", "00 3B 00 10",
       "invalid FRL_Rate 1 or TMDS_Character_Rate 299"},
      {"HFVSDB", "TMDS_Character_Rate=599 Max_FRL_Rate=2", "00 77 00 20",
       "invalid FRL_Rate 2 or TMDS_Character_Rate 599"},
      {"HFVSDB", "TMDS_Character_Rate=600 Max_FRL_Rate=6", "00 78 00 60"},
      {"HFVSDB", "fva=2", "00*4"},
      {"HFVSDB", "VRRmax=100 VRRmin=48", "00*5 30 64"},
      {"HFVSDB", "VRRmax=0x5FF", "00*5 40 FF"},
      {"HFVSDB", "VRRmax=99 VRRmin=65", "00*5 01 63", "invalid VRRmin 65|invalid VRRmax 99"},
      {"HFVSDB", "VRRmin=49 DSC_Max_FRL_Rate=3 dsc10bpc", "00*4"},  // not without VRRmax and DSC
      {"HFVSDB", "Max_FRL_Rate=1 TMDS_Character_Rate=600 VRRmax=100 VRRmin=49", "00 78 00 10 00 31 64",
       "invalid VRRmin 49"},
      {"HFVSDB", "DSC_1p2 DSC_Max_FRL_Rate=3 DSC_MaxSlices=0x12 DSC_TotalChunkKBytes=63", "00*7 80 32 3E", noFrl},
      {"HFVSDB", "TMDS_Character_Rate=600 Max_FRL_Rate=5 DSC_1p2", "00 78 00 50 00*3 80 00 FF",
       "should set Max_FRL_Rate > 0 and DSC_Max_FRL_Rate > 0 when DSC_1p2=1|should set DSC_MaxSlices > 0 when "
       "DSC_1p2=1|should set DSC_TotalChunkKBytes > 0 when DSC_1p2=1"},
      {"StaticHDR", "eotfSdr eotfHdr=2 eotfPq=3", "05 00"},
      {"StaticHDR", "eotfHlg maxLuminance=0x80", "08 00 80"},
      {"StaticHDR", "maxFrameAvgLuminance=0x70", "00 00 00 70"},
      {"StaticHDR", "minLuminance=0x40", "00*4 40"},
      // The mark of the record counts, not that of the timing.
      {"CTA type VII",
       "timing/preferred timing/pixelClock=1 timing/hactive=1 timing/hblank=1 timing/hfrontPorch=1 "
       "timing/hsyncWidth=1 timing/vactive=1 timing/vblank=1 timing/vfrontPorch=1 timing/vsyncWidth=1",
       "02 00*20"},
      {"CTA type VIII", "codeCount=29 codes=7,", "02 07 00*28"},
      {"CTA type VIII", "codeCount=30", kRefused, "invalid parameters"},
      {"CTA type VIII", "", kRefused, "invalid parameters"},
      // Descriptors are as long as the first rate needs.
      {"CTA type X", "0/frameRate=60 0/hactive=1 0/vactive=1 1/frameRate=300 1/hactive=1 1/vactive=1",
       "00 00*5 3B 00*5 2B"},
      {"CTA type X", "0/frameRate=256 0/hactive=1 0/vactive=1 1/frameRate=1 1/hactive=1 1/vactive=1",
       "00 00*5 FF 00*6"},
  };
  for (const auto& row : rows) CheckWrite<CeaDataBlock>(row);
}

TEST(CtaCodecs, TakeTheirTagsAndSizesOnly) {
  for (const auto& codec : Codecs<CeaDataBlock>()) {
    CheckSizes(codec, {0x00, 0xF7});
    CheckRefusals(codec);
  }
}

TEST(CtaCodecs, RefuseForTheirOwnReasons) {
  AdbRecord audio = {};
  audio.sadCount = 11;
  BlankDataBlock target, shared;
  const auto refused = [](const char* name, const char* message, const std::function<int32_t()>& call,
                          int32_t result = -1) {
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(call(), result); }), Err(name, message));
  };
  refused("CEA_SetADB", "invalid parameters", [&] { return CEA_SetADB(&audio, &target); });
  audio.sadCount = 10;
  EXPECT_EQ(CEA_SetADB(&audio, &shared), 0);
  EXPECT_EQ(shared.size, 31);
  H14bRecord h14b = {};
  HfVsdbRecord forum;
  const DataBlock h14bBlock(Hex("68 03 0C 00 00*5")), forumBlock(Hex("68 D8 5D C4 00*5"));
  refused("CEA_GetH14bVSDB", "invalid OUI(C45Dd8)", [&] { return CEA_GetH14bVSDB(&forumBlock, &h14b); });
  refused("CEA_GetHFVSDB", "invalid OUI(000C03)", [&] { return CEA_GetHFVSDB(&h14bBlock, &forum); });
  Cea20ByteDtdRecord timing = {};
  refused("Set20ByteDTD", "invalid timing: 0x0@0 0KHz", [&] { return CEA_Set20ByteDTD(&timing, &target); });
  uint8_t codes[2];
  TimingCodeRecord codeRecord = {0, 0, 0, 7, codes};
  const DataBlock twoBytes(Hex("E4 23 2A 04 61"));
  refused("GetTimingCode", "Not support 2byte code now!!!", [&] { return CEA_GetTimingCode(&twoBytes, &codeRecord); });
  EXPECT_EQ(codeRecord.reserved, 1) << "told all the same";
  EXPECT_EQ(codeRecord.codeCount, 7);
  const std::vector<CvtTiming> five(5, {2, 0, 1, 1, 0, 0, 0, 0, 0, 1, 0, 0});
  refused("CEA_Set6ByteCVT", "invalid parameters", [&] { return CEA_Set6ByteCVT(five.data(), 0, &target); });
  refused("CEA_Set6ByteCVT", "invalid parameters", [&] { return CEA_Set6ByteCVT(five.data(), 5, &target); });
  const DataBlock audioBlock(Hex("22 01 02"));
  const Vic420Record one = {1, {16}};
  refused("CEA_Set420CMDB", "invalid parameters", [&] { return CEA_Set420CMDB(&one, &audioBlock, &target); });
  EXPECT_TRUE(target.Untouched());
  // The map may be written over the video block itself, and the HDMI video part stands behind four latencies even when
  // the size does not reach that far.
  const VdbRecord twoVics = {0, 2, {4, 16}};
  ASSERT_EQ(CEA_SetVDB(&twoVics, &shared), 0);
  ASSERT_EQ(CEA_Set420CMDB(&one, &shared, &shared), 0);
  EXPECT_EQ(shared.Written(), Hex("E2 0F 02"));
  h14b = {};
  h14b.physAddr = 1;
  h14b.max_TMDS_Clock = 25;
  h14b.latencyPresent = h14b.hdmiVideoPresent = h14b.hdmiVicLen = 1;
  h14b.hdmiVics[0] = 3;
  ASSERT_EQ(CEA_SetH14bVSDB(&h14b, &shared), 0);
  EXPECT_EQ(shared.Written(), Hex("6D 03 0C 00 00 01 00 05 A0 00 00 00 00 00 20 03"));
}

TEST(CtaCodecs, KnowVendorsByTheirOui) {
  struct Row {
    const char* block;
    int vsdb, vsvdb;  // -1: refused with a message
  };
  const Row rows[] = {
      {"63 03 0C 00", VSDB_HDMI14B, -1}, {"63 D8 5D C4", VSDB_HDMI_FORUM, -1},
      {"63 03 0C 01", VSDB_NONE, -1},    {"7E 03 0C 00 00*27", VSDB_HDMI14B, -1},
      {"7F 03 0C 00 00*28", -1, -1},     {"62 03 0C", -1, -1},
      {"43 03 0C 00", -1, -1},           {"E4 01 46 D0 00", -1, 1},
      {"E4 01 46 D0 01", -1, 0},         {"E4 06 46 D0 00", -1, -1},
      {"E3 01 46 D0", -1, -1},           {"FF 01 46 D0 00 00*27", -1, -1},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.block);
    const DataBlock block(Hex(row.block));
    const auto log = [](const char* name, int type) { return type < 0 ? Err(name, "invalid parameters") : ""; };
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_GetVSDBType(&block), std::max(row.vsdb, 0)); }),
              log("CEA_GetVSDBType", row.vsdb));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_GetVSVDBType(&block), std::max(row.vsvdb, 0)); }),
              log("CEA_GetVSVDBType", row.vsvdb));
  }
}

}  // namespace
}  // namespace reedid::test
