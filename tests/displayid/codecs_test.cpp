// The codecs of the DisplayID data blocks: what each bit means, values that are more than bits, limits, sizes,
// refusals. A payload here begins with the header's byte 1, revision and flags.
#include "tests/support/codec.h"

namespace reedid::test {
namespace {

TEST(DispIdCodecs, PlaceEachBit) {
  const char* const twenty =
      "aspectRatio:4 interlaced -:2 preferred hactive:16 hblank:16 hfrontPorch:15 hsyncPositive hsyncWidth:16 "
      "vactive:16 vblank:16 vfrontPorch:15 vsyncPositive vsyncWidth:16";
  const std::string typeI = std::string("pixelClock:24*10 ") + twenty, typeVii = std::string("pixelClock:24 ") + twenty;
  const std::string typeVi =
      "pixelClock:22 ? preferred hactive:14 - hsyncPositive vactive:14 - vsyncPositive hblank:8 hfrontPorch:8 "
      "hblank:4@256 hfrontPorch:4@256 hsyncWidth:8 vblank:8 vfrontPorch:8 vsyncWidth:4 -:3 interlaced ";
  const std::string typeIx = "formula:2 ? - flagA -:2 ycc420 hactive:16 vactive:16 frameRate:8 ";
  const std::string typeIx3 = "?:3 - flagB -:2 ycc420 hactive:16 vactive:16 frameRate:8";
  const BitsRow rows[] = {
      {"DPDB", "00 00*12", 1, "",
       "hImageSize:16 vImageSize:16 hPixels:16 vPixels:16 deinterlacing supportsAI fixedPixelFormat fixedTiming "
       "powerManagement audioOverride separateAudio audio gammaX100:7 ? ?:8 overallColorDepth:4 nativeColorDepth:4"},
      {"DPDB 2.0", "00 00*29", 1, "",
       "hImageSize:16 vImageSize:16 hPixels:16 vPixels:16 features:8 redX:12 redY:12 greenX:12 greenY:12 blueX:12 "
       "blueY:12 whiteX:12 whiteY:12 maxLuminanceFull:16 maxLuminance10:16 minLuminance:16 ?:3 - technology:3 - "
       "gammaX100:8"},
      {"DPDB 2.0", "80 00*4 00*25", 1, "", "hImageSize:16*10 vImageSize:16*10 hPixels:16 vPixels:16 ?:168"},
      {"type I", "01 00*20", 1, "", typeI},
      {"type VII", "A2 00*20", 1, "", typeVii},
      {"type II", "00 00*11", 1, "",
       "pixelClock:24*10 -:2 vsyncPositive hsyncPositive interlaced -:2 preferred hactive:9*8 hblank:7*8 "
       "hsyncWidth:4*8 "
       "hfrontPorch:4*8 vactive:12 -:4 vblank:8 vsyncWidth:4 vfrontPorch:4"},
      {"type VI", "28 00*14", 1, "", typeVi},
      {"type VI", "00 00 00 40 00*11 98 00 00", 1, "", (typeVi + "?:8 hImageSize:12 vImageSize:4")},
      {"type III", "01 00*3", 1, "", "aspectRatio:4 formula:3 preferred hactive:8*8 frameRate:7 interlaced"},
      {"type V", "00 00*7", 1, "", "formula:2 -:2 flagA -:2 preferred -:8 hactive:16 vactive:16 frameRate:8"},
      {"type IX", "60 00*6", 1, "", typeIx},
      {"type IX", "00 03 00*5", 1, "", typeIx3},
      {"type X", "10 00*7", 1, "", (typeIx + "frameRate:2@256 extraBits42:3 extraBits75:3")},
      {"range limits", "00 00*15", 1, "",
       "minPixelClock:24*10 maxPixelClock:24*10 minHRate:8 maxHRate:8 minHBlank:16 minVRate:8 maxVRate:8 minVBlank:16 "
       "-:4 discreteFrequency cvtReduced cvtStandard interlaced"},
      {"range limits 2.0", "49 00*9", 1, "",
       "minPixelClock:24 maxPixelClock:24 minVRate:8 maxVRate:8 -:7 seamlessTransition"},
  };
  for (const auto& row : rows) CheckBits<DispIdDataBlock>(row);
}

TEST(DispIdCodecs, ReadAndWriteBack) {
  const ReadRow rows[] = {
      {"PIDB", "00 52 45 44 34 12 78 56 34 82 35 1A 02 54 56",
       "manufacturerId=82,69,68, productCode=0x1234 serialNumber=0x82345678 week=53 year=2026 nameLength=2 name=TV"},
      {"PIDB 2.0", "00 52 45 44 34 12 78 56 34 82 FF FF 00",
       "manufacturerId=82,69,68, productCode=0x1234 serialNumber=0x82345678 week=255 year=2255"},
      {"PIDB", "00 00*11 05 6E 6E", "year=2000 nameLength=2 name=nn", "00 00*11 02 6E 6E"},  // ends with its block
      {"PIDB", "00 00*11 01 6E 6E", "year=2000 nameLength name=n", "00 00*11 01 6E"},
      {"PIDB", "00 00*11 09", "year=2000", "00 00*12"},
      {"DPDB", "00 10 27 20 17 80 07 38 04 A5 FF 00 97",
       "hImageSize=10000 vImageSize=5920 hPixels=1920 vPixels=1080 audio audioOverride fixedPixelFormat deinterlacing "
       "aspectRatioX100=100 nativeColorDepth=10 overallColorDepth=8"},
      {"DPDB 2.0", "80 E8 FD 00*6 00 34 12 56 00*15 12 78",
       "sizeIn1mm hImageSize=650000 redX=0x234 redY=0x561 colorDepth=8 technology gammaX100=220"},
      {"DPDB 2.0", "00 00*27 07 00", "colorDepth=18 gammaX100=100"},
      {"type VI", "00 00*14 00 00 40 00*11 97 00 00",
       "0/pixelClock 0/hactive 0/hblank 0/hfrontPorch 0/hsyncWidth 0/vactive 0/vblank 0/vfrontPorch 0/vsyncWidth "
       "0/aspectRatio=8 1/pixelClock 1/hactive 1/hblank 1/hfrontPorch 1/hsyncWidth 1/vactive 1/vblank 1/vfrontPorch "
       "1/vsyncWidth 1/aspectRatio=4 1/hImageSize 1/vImageSize",
       "00 00*14 00 00 40 00*11 98 00 00"},
      {"type V", "00 11 FF 7F 07 37 04 FF", "formula=3 flagA aspectRatio=8 hactive=1920 vactive=1080 frameRate=256",
       "00 11 00 7F 07 37 04 FF"},
      {"type X", "20 93 7F 07 37 04 57 4D FF",
       "formula=3 flagB ycc420 hactive=1920 vactive=1080 frameRate=344 extraBits42=3 extraBits75=2",
       "20 93 7F 07 37 04 57 4D 00"},
      {"type IV", "41 04 61", "codeType=1 reserved=0xEE codeCount=2 codes=4,97"},
      {"type VIII", "86 04 61 76", "codeType=2 reserved=0xEE codeCount=3 codes=4,97,118"},
      {"range limits", "00 0F 27 00 FF FF FF 1E A0 50 01 18 90 0C 00 A0",
       "minPixelClock=100000 maxPixelClock=167772160 minHRate=30 maxHRate=160 minHBlank=0x150 minVRate=24 maxVRate=144 "
       "minVBlank=12 interlaced cvtReduced"},
      {"serial number", "00 41 2D 31 37", "text=A-17"},
  };
  for (const auto& row : rows) CheckRead<DispIdDataBlock>(row);
}

// Aspect ratios of type VI are numbers; one off the table means hundredths.
TEST(DispIdCodecs, CodeAspectRatiosOfTypeVi) {
  const struct {
    uint8_t value;
    unsigned code;
    uint8_t again;
  } rows[] = {{85, 0, 86},   {86, 0, 86},   {106, 1, 107}, {107, 1, 107}, {113, 2, 113}, {114, 2, 113},
              {136, 5, 137}, {137, 5, 137}, {142, 3, 142}, {143, 3, 142}, {151, 4, 152}, {152, 4, 152},
              {161, 7, 162}, {162, 7, 162}, {202, 6, 202}, {203, 6, 202}, {84, 98, 83},  {255, 298, 254}};
  const auto& typeVi = CodecOf<DispIdDataBlock>("type VI");
  for (const auto& row : rows) {
    ByteVector block = Hex("13 00 11 00 00 40 00*14");
    block[17] = row.value;
    Json record;
    const Held<DispIdDataBlock> entry(block);
    ASSERT_EQ(Get<DispIdDataBlock>(typeVi, &entry, &record), 0);
    EXPECT_EQ(record["aspectRatio"], row.code) << int{row.value};
    Blank<DispIdDataBlock> target(20);
    ASSERT_EQ(Set<DispIdDataBlock>(typeVi, &record, &target), 0);
    EXPECT_EQ(target.bytes[17], row.again) << int{row.value};
  }
}

// Setters keep the header's revision 5 and flags 0x12 (0x95 as a byte) or write their own.
TEST(DispIdCodecs, WriteWhatFits) {
  const std::string plain =
      "hactive=1920 hblank=280 hfrontPorch=88 hsyncWidth=44 vactive=1080 vblank=45 vfrontPorch=4 vsyncWidth=5 "
      "hsyncPositive vsyncPositive preferred aspectRatio=4 hImageSize=0x123 vImageSize=5 pixelClock=";
  const std::string at148 = plain + "148500", fast = plain + "167772170",
                    noSize = plain + "148500 hImageSize=0 vImageSize=0";
  const std::string slow = "aspectRatio=8 vsyncWidth=0 frameRate=60 hactive=1920 vactive=1080 hblank=1 vblank=1";
  const std::string counts20 = "84 7F 07 17 01 57 80 2B 00 37 04 2C 00 03 80 04 00";
  const std::string typeI = "01 01 3A 00 " + counts20, typeVii = "95 13 44 02 " + counts20;
  const std::string vi = "90 13 44 C2 7F 87 37 84 17 57 01 2B 2C 03 04 98 ";
  const std::string vi41 = vi + "22 41", viFF = vi + "FF FF";
  const std::string longText = "text=" + std::string(249, 's'), text248 = "text=" + std::string(248, 's');
  const WriteRow rows[] = {
      {"PIDB 2.0", "week=54", "00 00*9 36 00 00"},
      {"PIDB 2.0", "week=55 year=2001", "00 00*9 37 01 00", "invalid week:55"},
      {"PIDB 2.0", "week=254 year=1999", "00 00*9 FE FF 00", "invalid week:254|invalid year:1999"},
      {"PIDB 2.0", "week=255 year=2256", "00 00*9 FF 00 00"},
      {"PIDB", "nameLength=1 year=2000", "00 00*11 01 00"},  // a name that is not there is zeroes
      {"PIDB", "nameLength=233", "00 00*11 E9 00*233"},
      {"PIDB", "nameLength=234", kRefused, "invalid parameters"},
      {"DPDB", "aspectRatioX100=100 gammaX100=99", "00 00*9 FF 00 00"},
      {"DPDB 2.0", "colorDepth=6 technology=0", "00 00*27 01 FF"},
      {"DPDB 2.0", "colorDepth=10 sizeIn1mm=2 vImageSize=19", "80 00 00 01 00 00*23 03 FF"},
      {"DPDB 2.0", "colorDepth=2", "00 00*27 07 FF"},
      {"type I", at148, typeI},
      {"type VII", at148, typeVii},
      {"type II", at148, "00 01 3A 00 8C EF 44 A4 37 04 2C 34"},
      {"type VI", at148, vi41},
      {"type VI", noSize, viFF, "invalid parameters"},  // an image size of 0 cannot be told
      // The header stands, and what was written before the record that does not fit. The rate in 16 bits.
      {"type I", fast, "01 00*20", "!invalid timing: 1920x1080@2251 167772170KHz"},
      {"type VII", slow, "95 00*20", "!invalid timing: 1920x1080@60 0KHz"},
      {"type III", "0/frameRate=60 0/hactive=8 1/hactive=8", "01 00 00 3B 00*3", "!invalid timing"},
      {"type V", "formula=1 frameRate=60 hactive=1 vactive=1", "00 00*7", "!invalid parameters"},
      {"type IX", "formula=4 frameRate=60 hactive=1 vactive=1", "95 00*6", "!invalid parameters"},
      {"type IX", "formula=3 flagA frameRate=300 hactive=1 vactive=1", "95 03 00*4 2B"},
      {"type VIII", "codeType=1 codeCount=2 codes=4,97", "45 04 61"},
      {"type IV", "codeCount=248", "01 00*248"},
      {"type IV", "codeCount=249", kRefused, "invalid parameters"},
      {"type VIII", "codeCount=0", kRefused, "invalid parameters"},
      {"type IV", "twoByteCodes=2", kRefused, "Not support 2byte code now!!!"},
      {"range limits", "minPixelClock=10 maxPixelClock=167772169", "00 00*3 FF*3 00*9"},
      {"range limits", "minPixelClock=9 maxPixelClock=167772170", "00 FF*3 00*3 00*9", "invalid pclk|invalid pclk"},
      {"range limits 2.0", "minPixelClock=1 maxPixelClock=0x1000000", "95 00*3 FF*3 00*3"},
      {"range limits 2.0", "minPixelClock=0 maxPixelClock=0x1000001", "95 FF*3 00*3 00*3", "invalid pclk|invalid pclk"},
      {"serial number", "", "00"},
      {"serial number", text248, "00 73*248"},
      {"serial number", longText, "00 73*248", "invalid parameters"},
      {"VESA map", "1,1,1,1,1,1,1", kRefused, "invalid parameters"},
      {"CTA map", "1,1,1,1,1,1,1,1,1", kRefused, "invalid parameters"},
  };
  for (const auto& row : rows) CheckWrite<DispIdDataBlock>(row);
}

TEST(DispIdCodecs, RefuseTimingsThatTheFormCannotHold) {
  const char* const plain =
      "pixelClock=148500 hactive=1920 hblank=280 hfrontPorch=88 hsyncWidth=44 vactive=1080 vblank=45 vfrontPorch=4 "
      "vsyncWidth=5 aspectRatio=8";
  const char* const formula = "formula=2 hactive=1920 vactive=1080 frameRate=60";
  const LimitsRow rows[] = {
      {"type I", plain,
       "pixelClock 10 167772169 hactive 1 65535 hblank 1 65535 hfrontPorch 1 32768 hsyncWidth 1 65535 vactive 1 65535 "
       "vblank 1 65535 vfrontPorch 1 32768 vsyncWidth 1 65535"},
      {"type VII", plain, "pixelClock 1 16777216"},
      {"type II", plain,
       "pixelClock 10 167772169 hactive 8 4103 hblank 8 1031 hfrontPorch 8 135 hsyncWidth 8 135 vactive 1 4096 "
       "vblank 1 256 vfrontPorch 1 16 vsyncWidth 1 16"},
      {"type VI", plain,
       "pixelClock 1 4194304 hactive 1 16384 hblank 1 4096 hfrontPorch 1 4096 hsyncWidth 1 256 vactive 1 16384 "
       "vblank 1 256 vfrontPorch 1 256"},
      {"type III", formula, "hactive 8 2055 frameRate 1 128"},
      {"type V", formula, "hactive 1 65535 vactive 1 65535 frameRate 1 256"},
      {"type IX", formula, "hactive 1 65535 vactive 1 65535 frameRate 1 1024"},
  };
  for (const auto& row : rows) CheckLimits<DispIdDataBlock>(row);
}

TEST(DispIdCodecs, RefuseMoreTimingsThanABlockHolds) {
  const struct {
    std::string codec;
    uint8_t tag;
    unsigned min, max;
  } rows[] = {
      {"type I", 0x55, 1, 12},  {"type VII", 0x55, 1, 12}, {"type II", 0x55, 1, 22},
      {"type VI", 0x55, 0, 14}, {"type III", 0x55, 0, 82}, {"type V", 0x55, 1, 35},
      {"type IX", 0x24, 0, 41}, {"type X", 0x2A, 0, 35},  // one extra byte
      {"type IX", 0x03, 1, 0},                            // another tag: never
  };
  const Json timing = FromText(
      "formula=2 pixelClock=1000 hactive=8 hblank=8 hfrontPorch=8 hsyncWidth=8 vactive=1 vblank=1 vfrontPorch=1 "
      "vsyncWidth=1 hImageSize=1 vImageSize=1 frameRate=60");
  for (const auto& row : rows) {
    for (const unsigned count : {0u, 1u, row.max, row.max + 1}) {
      SCOPED_TRACE(testing::Message() << row.codec << " " << count);
      const auto& codec = CodecOf<DispIdDataBlock>(row.codec);
      const Json timings = Json::array_t(count, timing);
      Blank<DispIdDataBlock> target(251, row.tag);
      const bool fits = count >= row.min && count <= row.max;
      EXPECT_EQ(LogOf([&] { EXPECT_EQ(Set<DispIdDataBlock>(codec, &timings, &target), fits ? 0 : -1); }),
                fits ? "" : Err(LogName(codec, codec.setter), "invalid parameters"));
      EXPECT_EQ(target.Untouched(), !fits);
    }
  }
}

TEST(DispIdCodecs, TakeTheirTagsAndSizesOnly) {
  for (const auto& codec : Codecs<DispIdDataBlock>()) {
    CheckSizes(codec, {0x00, 0x46, 0xFE});
    CheckRefusals(codec);
  }
}

// A bitmap's element i + 1 is bit i, and its size counts one byte less than what is written.
TEST(DispIdCodecs, PlaceBitmapsOneByteBeyondTheirSize) {
  const Held<DispIdDataBlock> entry(Hex("07 00 0A 81 00*8 80"));
  const ExactBytes flags(ByteVector(81, 0xAA)), one(ByteVector(1, 0xAA));
  ASSERT_EQ(DispID_GetVESATiming(&entry, flags.data(), 500), 0);
  EXPECT_EQ(ByteVector(flags.data(), flags.data() + 81), Hex("AA 01 00*6 01 00*71 01"));
  ASSERT_EQ(DispID_GetVESATiming(&entry, one.data(), 1), 0);
  EXPECT_EQ(one.data()[0], 0xAA);
  const ByteVector set = Hex("00 01 FE 00*6 01 00*5 01");  // only bit 0 counts
  Blank<DispIdDataBlock> target(5), largest(252), none(5);
  ASSERT_EQ(DispID_SetCEATiming(set.data(), 16, &target), 0);
  EXPECT_EQ(target.All(), Hex("08 90 01 01 CD"));
  EXPECT_EQ(target.size, 4);
  const ByteVector many(2000);
  ASSERT_EQ(DispID_SetVESATiming(many.data(), 1992, &largest), 0);
  EXPECT_EQ(largest.size, 251);
  for (const uint32_t count : {0u, 2000u})
    Quietly([&] { EXPECT_EQ(DispID_SetVESATiming(many.data(), count, &none), -1); });
  EXPECT_TRUE(none.Untouched());
}

TEST(DispIdCodecs, HaveTheirOwnReasons) {
  // The aspect ratio goes to byte 0, over the tag.
  DisplayParamsRecord params = {};
  params.aspectRatioX100 = 178;
  Blank<DispIdDataBlock> target(15), serial(7);
  ASSERT_EQ(DispID_SetDPDB(&params, &target), 0);
  EXPECT_EQ(target.bytes[0], 78);
  EXPECT_EQ(target.bytes[13], 0);
  EXPECT_EQ(target.tag, 0x01);
  // A data string is written as a serial number.
  char text[5];
  ASSERT_EQ(DispID_SetDataString("A-17", &serial), 0);
  EXPECT_EQ(serial.Written(), Hex("0A 00 04 41 2D 31 37"));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_GetSerialNumber(&serial, text, 4), -1); }),
            Err("DispID_GetSerialNumber", "invalid parameters"));
  // As many codes as asked for; two bytes a code are refused.
  uint8_t codes[3] = {9, 9, 9};
  TimingCodeRecord record = {7, 7, 7, 7, codes};
  const Held<DispIdDataBlock> three(Hex("23 86 03 04 61 76")), twoBytes(Hex("06 08 02 01 02"));
  ASSERT_EQ(DispID20_GetTimingCode(&three, &record, 2), 0);
  EXPECT_EQ(record.codeCount, 2);
  EXPECT_EQ(codes[2], 9);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_GetTimingCode(&twoBytes, &record, 2), -1); }),
            Err("GetTimingCode", "Not support 2byte code now!!!"));
  EXPECT_EQ(record.codeCount, 2);
}

// Flags are counted in 8 bits; the last descriptor of the last block lacks a byte.
TEST(DispIdTimingCount, FollowsTagSizeAndFlags) {
  const struct {
    const char* block;
    int32_t count;
  } rows[] = {
      {"03 00 3B 00*59", 2},    {"04 00 20 00*32", 2},
      {"05 00 F8 00*248", 82},  {"06 08 09 00*9", 9},
      {"07 00 0A 00*10", 81},   {"08 00 20 00*32", 1},
      {"08 00 F8 00*248", 193}, {"11 00 14 00*20", 2},
      {"13 00 0D 00*13", 0},    {"22 00 F8 00*248", 12},
      {"23 00 09 00*9", 9},     {"23 08 09 00*9", 4},
      {"24 70 18 00*24", 4},    {"2A 00 1C 00*28", 4},
      {"2A 10 1C 00*28", 4},    {"2A 70 1B 00*27", 2},
      {"09 00 0F 00*15", 0},    {"00 00", -1},
      {"00*252", -1},           {"13 00 3D 00*16 40 00*30 40 00*13", 3},
  };
  for (const auto& row : rows) {
    const Held<DispIdDataBlock> entry(Hex(row.block));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_GetTimingCnt(&entry), row.count) << row.block; }),
              row.count < 0 ? Err("DispID_GetTimingCnt", "invalid parameters") : "");
  }
}

}  // namespace
}  // namespace reedid::test
