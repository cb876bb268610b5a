// The codecs of the CTA data blocks: what each bit means, values that are more than bits, sizes, refusals.
#include "tests/support/codec.h"

namespace reedid::test {
namespace {

// The capability map belongs to a video block: here VIC 1 to 9 and 154.
const DataBlock kMapped(Hex("4A 01 02 03 04 05 06 07 08 09 DA"));

int32_t GetMap(const CeaDataBlock* entry, Vic420Record* record) {
  return CEA_Get420CMDB(&kMapped, entry, record);
}

int32_t SetMap(const Vic420Record* record, CeaDataBlock* entry) {
  return CEA_Set420CMDB(record, &kMapped, entry);
}

// A short audio descriptor as its numbers in the order of the record: format, extended format, channels, seven rates,
// three depths, bit rate, the format's own.
int32_t GetAudio(const CeaDataBlock* entry, Json* json) {
  AdbRecord record;
  const int32_t result = CEA_GetADB(entry, json == nullptr ? nullptr : &record);
  if (result != 0 || json == nullptr) return result;
  *json = Json::array();
  for (unsigned i = 0; i < record.sadCount; ++i) {
    const auto* numbers = reinterpret_cast<const uint8_t*>(&record.sads[i]);
    json->push_back(ByteVector(numbers, numbers + sizeof record.sads[i]));
  }
  if (record.sadCount == 1) *json = Json((*json)[0]);
  return result;
}

int32_t SetAudio(const Json* json, CeaDataBlock* entry) {
  AdbRecord record = {};
  if (json != nullptr && json->is_array()) {
    const bool single = (*json)[0].is_number();
    record.sadCount = single ? uint8_t{1} : static_cast<uint8_t>(json->size());
    for (unsigned i = 0; i < record.sadCount && i < 10; ++i) {
      const ByteVector numbers = single ? *json : (*json)[i];
      std::memcpy(&record.sads[i], numbers.data(), numbers.size());
    }
  }
  return CEA_SetADB(json == nullptr ? nullptr : &record, entry);
}

int32_t GetTimingCode(const CeaDataBlock* entry, TimingCodeRecord* record, uint32_t) {
  return CEA_GetTimingCode(entry, record);
}

int32_t GetTypeX(const CeaDataBlock* entry, Json* json) {
  size_t count = 0;
  if (entry != nullptr && entry->bytes != nullptr && entry->size >= 9) {
    count = (entry->size - 3u) / (6 + (entry->bytes[2] >> 4 & 7u));
  }
  return GetRecords<CvtTiming>(count, json, [&](CvtTiming* timings) { return CEA_Get6ByteCVT(entry, timings); });
}

#define CODEC(name, head, get, set, min, max) \
  { "CEA_Get" #name, "CEA_Set" #name, head, get, set, min, max }
#define RECORD_CODEC(name, Record, head, min, max)                                          \
  {                                                                                         \
    "CEA_Get" #name, "CEA_Set" #name, head, GetRecord<Record, CEA_Get##name, CeaDataBlock>, \
        SetRecord<Record, CEA_Set##name, CeaDataBlock>, min, max                            \
  }
using CtaCodec = Codec<CeaDataBlock>;
const CtaCodec kVdb = RECORD_CODEC(VDB, VdbRecord, "40", 2, 32);
const CtaCodec kAdb = CODEC(ADB, "20", GetAudio, SetAudio, 4, 31);
const CtaCodec kSadb = RECORD_CODEC(SADB, SpeakerRecord, "80", 4, 31);
const CtaCodec kCdb = RECORD_CODEC(CDB, ColorimetryRecord, "E0 05", 4, 31);
const CtaCodec kVcdb = RECORD_CODEC(VCDB, VideoCapRecord, "E0 00", 3, 31);
const CtaCodec k420Vdb = RECORD_CODEC(420VDB, Vic420Record, "E0 0E", 3, 32);
const CtaCodec k420Map = CODEC(420CMDB, "E0 0F", (GetRecord<Vic420Record, GetMap, CeaDataBlock>),
                               (SetRecord<Vic420Record, SetMap, CeaDataBlock>), 3, 6);
const CtaCodec kH14b = RECORD_CODEC(H14bVSDB, H14bRecord, "60 03 0C 00", 6, 31);
const CtaCodec kForum = RECORD_CODEC(HFVSDB, HfVsdbRecord, "60 D8 5D C4", 8, 31);
const CtaCodec kHdr = RECORD_CODEC(StaticHDR, StaticHdrRecord, "E0 06", 4, 31);
const CtaCodec kTypeVii = RECORD_CODEC(20ByteDTD, Cea20ByteDtdRecord, "E0 22", 23, 32);
const CtaCodec kCodes = CODEC(TimingCode, "E0 23", (GetCodes<GetTimingCode, CeaDataBlock>),
                              (SetCodes<CEA_SetTimingCode, CeaDataBlock>), 4, 32);
const CtaCodec kTypeX =
    CODEC(6ByteCVT, "E0 2A", GetTypeX, (SetRecords<CvtTiming, CEA_Set6ByteCVT, CeaDataBlock>), 9, 32);
#undef CODEC
#undef RECORD_CODEC

TEST(CtaCodecs, PlaceEachBit) {
  const BitsRow<CeaDataBlock> rows[] = {
      {kSadb, "00*3", 0, "",
       "FL_FR LFE1 FC BL_BR BC FLc_FRc RLC_RRC FLw_FRw TpFL_TpFR TpC TpFC LS_RS LFE2 TpBC SiL_SiR TpSiL_TpSiR "
       "TpBL_TpBR BtFC BtFL_BtFR TpLS_TpRS -:4"},
      {kCdb, "00 00", 0, "",
       "xvYCC601 xvYCC709 sYCC601 opYCC601 opRGB BT2020cYCC BT2020YCC BT2020RGB metadataProfiles:4 -:2 ICtCp DCI_P3"},
      {kVcdb, "00", 0, "", "S_CE:2 S_IT:2 S_PT:2 QS QY"},
      {kH14b, "10 00 00 00 00", 0, "",
       "physAddr:4@256 ? physAddr:3@8192 physAddr:8 DVI_Dual -:2 DC_Y444 DC_30bit DC_36bit DC_48bit supportsAI "
       "max_TMDS_Clock:8*5 "
       "cnc/#:4 - ?:3"},
      {kForum, "00*5 40 01 80 00 01", 0, "",
       "version:8 TMDS_Character_Rate:8*5 osdDisparity3d dualView independentView lte340Scramble ccbpci - rrCapable "
       "scdcPresent dc30bit420 dc36bit420 dc48bit420 - Max_FRL_Rate:4 fapaStartLocation allm fva cnmVrr cinemaVrr "
       "mDelta "
       "-:2 VRRmin:6 ? VRRmax@512 ? VRRmax:7@2 dsc10bpc dsc12bpc dsc16bpc dscAllBpp -:2 dscNative420 ? DSC_MaxSlices:4 "
       "DSC_Max_FRL_Rate:4 ? DSC_TotalChunkKBytes:5@2 -:2"},
      {kHdr, "00 00 01 01 01", 0, "",
       "eotfSdr eotfHdr eotfPq eotfHlg -:4 staticMetadataType1 -:7 ? maxLuminance:7@2 ? maxFrameAvgLuminance:7@2 ? "
       "minLuminance:7@2"},
      {kTypeVii, "02 00*20", 0, "timing/",
       "?:7 - pixelClock:24 aspectRatio:4 interlaced -:2 ? hactive:16 hblank:16 hfrontPorch:15 hsyncPositive "
       "hsyncWidth:16 "
       "vactive:16 vblank:16 vfrontPorch:15 vsyncPositive vsyncWidth:16"},
  };
  for (const auto& row : rows) CheckBits(row);
}

TEST(CtaCodecs, ReadAndWriteBack) {
  const ReadRow<CeaDataBlock> rows[] = {
      // No native mark: the first; else the last one marked. 193 and up are the upper VICs, less 64.
      {kVdb, "10 1F", "nativeVic=16 vicCount=2 vics=16,31", "90 1F"},
      {kVdb, "10 84 83 05", "nativeVic=3 vicCount=4 vics=16,4,3,5", "10 04 83 05"},
      {kVdb, "80 81 C0", "nativeVic=64 vicCount=3 vics=128,1,64", "80 01 C0"},
      {kVdb, "7F C1 FF", "nativeVic=127 vicCount=3 vics=127,129,191"},
      {k420Vdb, "60 90 DA", "vicCount=3 vics=96,16,154", "60 10 DA"},
      // A map that ends early, and bits without a descriptor.
      {k420Map, "05 02", "vicCount=3 vics=1,3,154"},
      {k420Map, "FF", "vicCount=8 vics=1,2,3,4,5,6,7,8", "FF 00"},
      {k420Map, "00 FD FF FF", "vicCount=1 vics=9,", "00 01"},
      {kAdb, "0F 7F 07", "1,0,8,1,1,1,1,1,1,1,1,1,1"},
      {kAdb, "89 84 F9", "1,0,2,0,0,1,0,0,0,0,1", "09 04 01"},           // reserved bits
      {kAdb, "15 07 50", "2,0,6,1,1,1,0,0,0,0,0,0,0,0x50"},              // AC-3
      {kAdb, "41 02 FF", "8,0,2,0,1,0,0,0,0,0,1,1,1,0xFF"},              // a bit rate that looks like depths
      {kAdb, "4F 00 01", "9,0,8,0,0,0,0,0,0,0,1,0,0,0,1"},               // the first with a byte of its own
      {kAdb, "68 10 FF", "13,0,1,0,0,0,0,1,0,0,1,1,1,0,0xFF"},           // the last one
      {kAdb, "70 20 FE", "14,0,1,0,0,0,0,0,1,0,0,1,1,0,6", "70 20 06"},  // WMA Pro
      {kAdb, "79 FF 27", "15,4,2,1,1,1,1,1,0,0,1,1,1,0,7", "79 1F 27"},  // extended formats
      {kAdb, "79 60 51", "15,10,2,0,0,0,0,0,0,0,1,0,0,0,1", "79 00 51"},
      {kAdb, "7B 7F 5F", "15,11,3,1,1,1,1,1,1,1,1,1,1,0,3", "7B 7F 5B"},
      {kAdb, "7F 7F 65", "15,12,8,0,1,1,0,1,0,1,1,0,1,0,5", "78 56 65"},
      {kAdb, "FD 84 6B", "15,13,30,0,0,1,0,0,0,0,1,1"},
      {kAdb, "7D 04 6F", "15,13,6,0,0,1,0,0,0,0,1,1,1"},
      {kAdb, "7A 04 1F", "15,3,3,0,0,1,0,0,0,0,1,1,1", "7A 04 18"},
      {kAdb, "00 01 FF", "0,0,1,1,0,0,0,0,0,0,1,1,1", "00 01 07"},
      {kAdb, "09 04 01 0F 7F", "1,0,2,0,0,1,0,0,0,0,1", "09 04 01"},  // a rest of two bytes
      {kAdb, "09 04 01 0A 04 01", "0=1,0,2,0,0,1,0,0,0,0,1 1=1,0,3,0,0,1,0,0,0,0,1"},
      // As far as the block reaches. Latencies count half milliseconds above 1, the interlaced pair needs no flag.
      {kH14b, "12 34", "physAddr=0x1234", "12 34 00 00 00"},
      {kH14b, "12 34 F9", "physAddr=0x1234 supportsAI DC_48bit DC_36bit DC_30bit DC_Y444 DVI_Dual", "12 34 F9 00 00"},
      {kH14b, "12 34 00 3C", "physAddr=0x1234 max_TMDS_Clock=300", "12 34 00 3C 00"},
      {kH14b, "10 00 00 1E 80 0B 15",
       "physAddr=0x1000 max_TMDS_Clock=150 latencyPresent videoLatency=20 audioLatency=40"},
      {kH14b, "10 00 00 1E C0 0B 15 1F 29",
       "physAddr=0x1000 max_TMDS_Clock=150 latencyPresent iLatencyPresent videoLatency=20 audioLatency=40 "
       "iVideoLatency=60 iAudioLatency=80"},
      {kH14b, "10 00 00 1E 80 0B", "physAddr=0x1000 max_TMDS_Clock=150 latencyPresent", "10 00 00 1E 80 00 00"},
      {kH14b, "10 00 00 1E E0 01 01 01 01 18 60 01 02 03 04",
       "physAddr=0x1000 max_TMDS_Clock=150 latencyPresent iLatencyPresent hdmiVideoPresent imageSize=3 hdmiVicLen=3 "
       "hdmiVics=1,2,3,",
       "10 00 00 1E E0 00 00 00 00 18 60 01 02 03"},
      {kH14b, "10 00 00 1E 20 08 20 04",
       "physAddr=0x1000 max_TMDS_Clock=150 hdmiVideoPresent imageSize hdmiVicLen hdmiVics=4,"},
      {kH14b, "10 00 00 1E 20 18", "physAddr=0x1000 max_TMDS_Clock=150 hdmiVideoPresent", "10 00 00 1E 20 00 00"},
      {kH14b, "10 00 00 1E 00 18 20 04", "physAddr=0x1000 max_TMDS_Clock=150", "10 00 00 1E 00"},
      {kForum, "01 78 80 60", "version TMDS_Character_Rate=600 scdcPresent Max_FRL_Rate=6"},
      {kForum, "01 78 80 60 02 F0", "version TMDS_Character_Rate=600 scdcPresent Max_FRL_Rate=6 allm",
       "01 78 80 60 02"},
      {kForum, "01 78 80 60 02 F0 20 80 61",
       "version TMDS_Character_Rate=600 scdcPresent Max_FRL_Rate=6 allm VRRmin=48 VRRmax=0x320",
       "01 78 80 60 02 F0 20"},
      {kForum, "01 78 80 60 02 F0 20 80 61 3F",
       "version TMDS_Character_Rate=600 scdcPresent Max_FRL_Rate=6 allm VRRmin=48 VRRmax=0x320 DSC_1p2 "
       "DSC_Max_FRL_Rate=6 DSC_MaxSlices DSC_TotalChunkKBytes=64",
       "01 78 80 60 02 F0 20 80 61 FF"},
      // What a block does not hold stays as it was in the record.
      {kHdr, "05 01", "eotfSdr eotfPq staticMetadataType1 maxLuminance=238 maxFrameAvgLuminance=238 minLuminance=238",
       "05 01 EE EE EE"},
      {kHdr, "05 01 40 41 42 43",
       "eotfSdr eotfPq staticMetadataType1 maxLuminance=64 maxFrameAvgLuminance=65 minLuminance=66", "05 01 40 41 42"},
      {kTypeVii, "5A 4F 10 09 84 FF 0E 2F 02 AF 80 57 00 6F 08 59 00 07 80 09 00 00*5",
       "extraBytes=5 flagBit3 preferred timing/aspectRatio=4 timing/hactive=3840 timing/hblank=560 "
       "timing/hfrontPorch=176 timing/hsyncPositive timing/hsyncWidth=88 timing/pixelClock=0x91050 timing/vactive=2160 "
       "timing/vblank=90 timing/vfrontPorch=8 timing/vsyncPositive timing/vsyncWidth=10"},
      {kCodes, "62 04 61", "codeType=1 reserved=1 codeCount=2 codes=4,97"},
      {kTypeX, "00 02 7F 07 37 04 3B", "formula=2 hactive=1920 vactive=1080 frameRate=60"},
      {kTypeX, "10 93 7F 07 37 04 2B 4D 02 7F 07 37 04 3B 00",
       "0/formula=3 0/flagB 0/ycc420 0/hactive=1920 0/vactive=1080 0/frameRate=300 0/extraBits42=3 0/extraBits75=2 "
       "1/formula=2 1/hactive=1920 1/vactive=1080 1/frameRate=60"},
  };
  for (const auto& row : rows) CheckRead(row);
}

TEST(CtaCodecs, WriteWhatFits) {
  const char* const noFrl = "should set Max_FRL_Rate > 0 and DSC_Max_FRL_Rate > 0 when DSC_1p2=1";
  const WriteRow<CeaDataBlock> rows[] = {
      {kVdb, "vicCount=3 vics=16,4,16 nativeVic=16", "90 04 90"},
      {kVdb, "vicCount=2 vics=64,65 nativeVic=65", "40 41"},  // VIC 65 and up cannot be marked
      {kVdb, "vicCount=4 vics=129,155,191,192", "C1 DB FF 00"},
      {kVdb, "vicCount=1", "80"},
      {kVdb, "", ""},
      {kVdb, "vicCount=31 nativeVic=1", "00*31"},
      {kVdb, "vicCount=32", kRefused, "invalid parameters"},
      {k420Vdb, "vicCount=30", "00*30"},
      {k420Vdb, "vicCount=31", kRefused, "invalid parameters"},
      {k420Map, "vicCount=1 vics=99,", "00 00"},
      {k420Map, "vicCount=11 vics=1,", kRefused, "420 also vic exceeds 444 vic, please check"},
      {k420Map, "vicCount=32", kRefused, "invalid parameters"},
      {kAdb, "1,0,0", "0F 00 00"},  // channels wrap
      {kAdb, "1,0,9", "08 00 00"},
      {kAdb, "1,0,1,2,3,2,3,2,3,2,3,2,3", "08 2A 05"},  // flags by bit 0
      {kAdb, "17,0,1,0,0,0,0,0,0,0,1,0,0,9,9", "08 00 01"},
      {kAdb, "9,0,1,0,0,0,0,0,0,0,1,1,1", "48 00 00"},  // depths belong to L-PCM
      {kAdb, "15,12,8,1,1,1,1,1,1,1,1,1,1,0,255", "78 56 67"},
      {kAdb, "15,13,32,0,0,0,0,0,0,0,0,0,0,0,7", "FF 80 68"},
      {kVcdb, "QY=2 QS=2 S_PT=4 S_IT=4 S_CE=4", "00"},
      {kCdb, "xvYCC601=2 metadataProfiles=0x25 DCI_P3=3", "00 85"},
      {kH14b, "max_TMDS_Clock=25", "00 00 00 05 00", "?invalid phyaddr: 0000"},
      {kH14b, "physAddr=0xFFFF max_TMDS_Clock=24", "FF FF 00 04 00",
       "?invalid phyaddr: FFFF|invalid max_TMDS_Clock: 24MHz"},
      {kH14b, "physAddr=1 max_TMDS_Clock=1299 supportsAI=3 DVI_Dual=2", "00 01 80 03 00"},  // rounds down and wraps
      {kH14b, "physAddr=1 max_TMDS_Clock=25 latencyPresent videoLatency=21 audioLatency=510", "00 01 00 05 80 0B 00"},
      {kH14b, "physAddr=1 max_TMDS_Clock=25 iLatencyPresent videoLatency=9", "00 01 00 05 40"},
      {kH14b, "physAddr=1 max_TMDS_Clock=25 hdmiVideoPresent imageSize=7 hdmiVicLen=2 hdmiVics=0,4",
       "00 01 00 05 20 18 40 00 04"},
      {kH14b, "physAddr=1 max_TMDS_Clock=25 hdmiVideoPresent hdmiVicLen=8", "00 01 00 05 20 00*10"},
      {kH14b, "hdmiVicLen=9", kRefused, "invalid parameters"},
      {kForum, "", "00*4"},
      {kForum, "TMDS_Character_Rate=300 Max_FRL_Rate=1", "00 3C 00 10"},
      {kForum, "TMDS_Character_Rate=299 Max_FRL_Rate=1", "00 3B 00 10",
       "invalid FRL_Rate 1 or TMDS_Character_Rate 299"},
      {kForum, "TMDS_Character_Rate=599 Max_FRL_Rate=2", "00 77 00 20",
       "invalid FRL_Rate 2 or TMDS_Character_Rate 599"},
      {kForum, "TMDS_Character_Rate=600 Max_FRL_Rate=6", "00 78 00 60"},
      {kForum, "fva=2", "00*4"},
      {kForum, "VRRmax=100 VRRmin=48", "00*5 30 64"},
      {kForum, "VRRmax=0x5FF", "00*5 40 FF"},
      {kForum, "VRRmax=99 VRRmin=65", "00*5 01 63", "invalid VRRmin 65|invalid VRRmax 99"},
      {kForum, "VRRmin=49 DSC_Max_FRL_Rate=3 dsc10bpc", "00*4"},  // not without VRRmax and DSC
      {kForum, "Max_FRL_Rate=1 TMDS_Character_Rate=600 VRRmax=100 VRRmin=49", "00 78 00 10 00 31 64",
       "invalid VRRmin 49"},
      {kForum, "DSC_1p2 DSC_Max_FRL_Rate=3 DSC_MaxSlices=0x12 DSC_TotalChunkKBytes=63", "00*7 80 32 3E", noFrl},
      {kForum, "TMDS_Character_Rate=600 Max_FRL_Rate=5 DSC_1p2", "00 78 00 50 00*3 80 00 FF",
       "should set Max_FRL_Rate > 0 and DSC_Max_FRL_Rate > 0 when DSC_1p2=1|should set DSC_MaxSlices > 0 when "
       "DSC_1p2=1|should set DSC_TotalChunkKBytes > 0 when DSC_1p2=1"},
      {kHdr, "eotfSdr eotfHdr=2 eotfPq=3", "05 00"},
      {kHdr, "eotfHlg maxLuminance=0x80", "08 00 80"},
      {kHdr, "maxFrameAvgLuminance=0x70", "00 00 00 70"},
      {kHdr, "minLuminance=0x40", "00*4 40"},
      // The mark of the record counts, not that of the timing.
      {kTypeVii,
       "timing/preferred timing/pixelClock=1 timing/hactive=1 timing/hblank=1 timing/hfrontPorch=1 "
       "timing/hsyncWidth=1 timing/vactive=1 timing/vblank=1 timing/vfrontPorch=1 timing/vsyncWidth=1",
       "02 00*20"},
      {kCodes, "codeCount=29 codes=7,", "02 07 00*28"},
      {kCodes, "codeCount=30", kRefused, "invalid parameters"},
      {kCodes, "", kRefused, "invalid parameters"},
      // Descriptors are as long as the first rate needs.
      {kTypeX, "0/frameRate=60 0/hactive=1 0/vactive=1 1/frameRate=300 1/hactive=1 1/vactive=1", "00 00*5 3B 00*5 2B"},
      {kTypeX, "0/frameRate=256 0/hactive=1 0/vactive=1 1/frameRate=1 1/hactive=1 1/vactive=1", "00 00*5 FF 00*6"},
  };
  for (const auto& row : rows) CheckWrite(row);
}

TEST(CtaCodecs, TakeTheirTagsAndSizesOnly) {
  for (const CtaCodec* codec :
       {&kVdb, &kAdb, &kSadb, &kCdb, &kVcdb, &k420Vdb, &k420Map, &kH14b, &kForum, &kHdr, &kTypeVii, &kCodes, &kTypeX}) {
    CheckSizes(*codec, {0x00, 0xF7});
    CheckRefusals(*codec, codec->getter, codec->setter);
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
