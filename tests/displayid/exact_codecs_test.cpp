// The DisplayID codecs whose setters refuse what their getters would not give back: what blocks say, each bit, and what
// is refused.
#include "tests/support/codec.h"

namespace reedid::test {
namespace {

TEST(DispIdExactCodecs, ReadAndWriteBack) {
  struct Row {
    const char* codec;
    const char* block;
    const char* record;
    const char* again = nullptr;  // when it differs
  };
  const Row rows[] = {
      {"Adaptive-Sync", "2B 00 0C 27 00 3C A4 00 00 27 00 30 3B 00 00",
       "descriptorSize=6 count=2 ranges/0/nativeRange ranges/0/increaseNoJitter ranges/0/decreaseNoJitter "
       "ranges/0/mode ranges/0/minRefresh=60 ranges/0/maxRefresh=165 ranges/1/nativeRange ranges/1/increaseNoJitter "
       "ranges/1/decreaseNoJitter ranges/1/mode ranges/1/minRefresh=48 ranges/1/maxRefresh=60"},
      {"Adaptive-Sync", "2B 10 07 33 08 30 8F 01 10 5A",
       "descriptorSize=7 count ranges/0/nativeRange ranges/0/increaseNoJitter ranges/0/noSeamless "
       "ranges/0/decreaseNoJitter ranges/0/maxIncrease=8 ranges/0/minRefresh=48 ranges/0/maxRefresh=400 "
       "ranges/0/maxDecrease=16 ranges/0/extra=90,"},
      {"Adaptive-Sync", "2B 01 08 00 00 1E 77 00 00 01 02",
       "revision descriptorSize=6 count ranges/0/minRefresh=30 ranges/0/maxRefresh=120", "2B 01 06 00 00 1E 77 00 00"},
      {"tiles", "12 00 16 8A 10 00 00 7F 07 6F 08 00 00 00 00 00 41 43 52 B1 06 00 00 00 00",
       "singleEnclosure someTilesBehavior oneTileBehavior=2 hTiles=2 vTiles=1 tileWidth=1920 tileHeight=2160 "
       "vendorId=65,67,82, productCode=1713"},
      {"tiles 2.0", "28 00 16 C2 10 10 00 FF 09 3F 0B 0A 05 05 06 07 00 10 FA 34 12 01 00 00 00",
       "singleEnclosure bezelPresent oneTileBehavior=2 hTiles=2 vTiles=1 hLocation=1 tileWidth=2560 tileHeight=2880 "
       "pixelMultiplier=10 bezelTop=5 bezelBottom=5 bezelRight=6 bezelLeft=7 vendorId=0,16,250, productCode=4660 "
       "serialNumber=1"},
      {"interface features", "26 00 09 07 07 03 00 00 00 50 00 00",
       "rgbDepths=7 ycc444Depths=7 ycc422Depths=3 colorEotfs=0x50"},
      {"interface features", "26 00 0B 07 07 03 03 08 E0 50 00 02 44 88",
       "rgbDepths=7 ycc444Depths=7 ycc422Depths=3 ycc420Depths=3 min420PixelRate=8 audio32k audio44k1 audio48k "
       "colorEotfs=0x50 additionalCount=2 additional/0/colorSpace=4 additional/0/eotf=4 additional/1/colorSpace=8 "
       "additional/1/eotf=8"},
      // More are announced than there are.
      {"interface features", "26 00 0A 04 00 00 00 00 00 41 00 05 66",
       "rgbDepths=4 colorEotfs=0x41 additionalCount additional/0/colorSpace=6 additional/0/eotf=6",
       "26 00 0A 04 00 00 00 00 00 41 00 01 66"},
      {"display interface", "0F 00 0A A4 14 0E 0E 07 01 20 45 00 00",
       "interfaceType=10 links=4 version=1 release=4 rgbDepths=14 ycc444Depths=14 ycc422Depths=7 contentProtection "
       "protectionVersion=2 spreadType=1 spreadPercent=5"},
      {"display interface", "0F 00 0A 74 21 0E 0E 07 01 23 00 00 00",
       "interfaceType=7 links=4 version=2 release=1 rgbDepths=14 ycc444Depths=14 ycc422Depths=7 contentProtection "
       "protectionVersion=2 protectionRelease=3"},
      {"ContainerID", "29 00 10 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF",
       "id=0,0x11,0x22,0x33,0x44,0x55,0x66,0x77,0x88,0x99,0xAA,0xBB,0xCC,0xDD,0xEE,0xFF"},
      {"vendor", "7F 81 07 FA 10 00 04 01 00 00", "revision=1 flags=16 vendor=250,16,0, length=4 data=4,1,"},
      {"vendor 2.0", "7E 00 03 00 10 FA", "vendor=0,16,250,"},
      {"VESA vendor", "7E 00 05 3A 02 92 81 00", "structureType=1 nativeColor"},
      {"VESA vendor", "7E 00 05 3A 02 92 00 20", "multiSst=1"},
      {"VESA vendor", "7E 00 07 3A 02 92 01 48 0C 08",
       "structureType=1 overlapPixels=8 multiSst=2 dscPresent dscBppX16=200"},
      {"colours", "02 01 0D 31 DD 5A 4F 37 14 AA 68 B2 0A 01 45 54",
       "revision primaryCount=3 whiteCount=1 primaries/0/x=2781 primaries/0/y=1269 primaries/1/x=1079 "
       "primaries/1/y=2721 primaries/2/x=616 primaries/2/y=171 whites/0/x=1281 whites/0/y=1348"},
      {"colours", "02 89 05 01 00 01 45 54",
       "revision cie1976 transferId=1 whiteCount=1 whites/0/x=1281 whites/0/y=1348"},
      {"transfer", "0E 11 07 20 05 01 02 03 04 78",
       "revision identifier=1 fourParameters length=6 curves=5,1,2,3,4,120"},
      {"stereo", "10 41 06 02 00 01 02 04 09",
       "revision timingSupport=1 parameterCount=1 parameters=1, codeLength=3 codes=2,4,9"},
      {"stereo", "10 81 04 02 03 05 7F", "revision timingSupport=2 method=3 parameterCount=1 parameters=5,",
       "10 81 03 02 03 05"},
      {"brightness", "2E 00 06 18 10 40 5E D0 60",
       "minSdrLuminance=0x1018 maxSdrLuminance=0x5E40 maxBoostLuminance=0x60D0"},
      {"display device", "0C 00 0D 15 50 7F 07 37 04 4E 00 01 19 19 08 05",
       "technology=0x15 operatingMode=5 nativeWidth=1920 nativeHeight=1080 aspectRatioX100=178 subPixels=1 hPitch=25 "
       "vPitch=25 bitDepth=8 responseTime=5"},
      {"power sequencing", "0D 00 06 25 19 19 32 19 19",
       "minT1=2 maxT1=5 maxT2=25 maxT3=25 minT4=50 minT5=25 minT6=25"},
      {"head-mounted",
       "2C 01 4F 01 01 00 80 07 38 04 80 07 38 04 80 07 38 04 00 00 A0 00 A0 14 02 11 00 B0 00 40 00 00 00 B0 00 40 0F "
       "03 "
       "3D 32 1E 19 1E 19 1E 19 1E 19 1E 19 1E 19 1E 19 1E 19 00 00 D0 07 00 00 D0 07 00 00 07 44 00 00 70 44 00 00 07 "
       "44 "
       "00 00 70 44 01 00",
       "revision dualLayer=1 displays=2 streams=1 layers=1 rightX=1920 rightY=1080 leftX=1920 leftY=1080 width=1920 "
       "height=1080 rightLens=40960 leftLens=40960 interocularAngle=532 lensAdjustable ipdUseful lensMin=45056 "
       "lensRange=16384 ipdMin=45056 ipdRange=16384 rightDisplay leftDisplay rightEye leftEye foveated=3 hFov=12861 "
       "rightFov=6430,6430,6430,6430 leftFov=6430,6430,6430,6430 rightFocal=131072000 leftFocal=131072000 "
       "rightCenterY=0x44070000 rightCenterX=0x44700000 leftCenterY=0x44070000 leftCenterX=0x44700000 layer0Streams=1"},
      {"layer", "2D 01 14 00 36 74 00 01 01 00 00 00 30 00 0A FF 0E 87 00 00 00 00 01",
       "revision vendorId=0,0x36,0x74 productCode=256 serialNumber=1 configurable cropping lensCorrection=2 "
       "lensConfigurable=2 gamma=3 degamma=3 mura=3 blankingData=3 reprojection=2 reprojectionSwitchable=3 scalings=7 "
       "scalingConfigurable layerStreams=1"},
      {"CTA blocks", "81 00 0B E3 05 F2 00 E6 06 05 01 6B 66 07", "0=0xE3,5,0xF2,0 1=0xE6,6,5,1,0x6B,0x66,7"},
      // Cut short, and padded.
      {"CTA blocks", "81 03 06 72 1A 00 00 03 01", "0=0x72,0x1A,0,0,3,1"},
      {"CTA blocks", "81 00 06 E2 00 4A 00 00 00", "0=0xE2,0,0x4A", "81 00 03 E2 00 4A"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.block);
    const ByteVector block = Hex(row.block);
    CheckReadBlock(CodecOf<DispIdDataBlock>(row.codec), block, row.record, row.again ? Hex(row.again) : block);
  }
}

TEST(DispIdExactCodecs, PlaceEachBit) {
  const BitsRow rows[] = {
      {"Adaptive-Sync", "00 00*6", 1, "ranges/0/",
       "nativeRange increaseNoJitter mode:2 noSeamless decreaseNoJitter -:2 maxIncrease:8 minRefresh:8 maxRefresh:8 "
       "maxRefresh:2@256 -:6 maxDecrease:8"},
      {"tiles", "00 00*22", 0, "",
       "revision:3 -:5 oneTileBehavior:3 someTilesBehavior:2 - bezelPresent singleEnclosure vTiles:4 hTiles:4 "
       "vLocation:4 hLocation:4 vLocation:2@16 hLocation:2@16 vTiles:2@16 hTiles:2@16 tileWidth:16 tileHeight:16 "
       "pixelMultiplier:8 bezelTop:8 bezelBottom:8 bezelRight:8 bezelLeft:8 vendorId/0:8 vendorId/1:8 vendorId/2:8 "
       "productCode:16 serialNumber:32"},
      {"interface features", "00 00*8 07 00*7", 0, "",
       "revision:3 -:5 rgbDepths:6 -:2 ycc444Depths:6 -:2 ycc422Depths:5 -:3 ycc420Depths:5 -:3 min420PixelRate:8 -:5 "
       "audio48k audio44k1 audio32k colorEotfs:7 - -:8 ?:3 -:5 additional/0/eotf:4 additional/0/colorSpace:4 ?:48"},
      {"display interface", "00 00*10", 0, "",
       "revision:3 -:5 links:4 interfaceType:4 release:4 version:4 rgbDepths:6 -:2 ycc444Depths:6 -:2 ycc422Depths:5 "
       "-:3 contentProtection:4 -:4 protectionRelease:4 protectionVersion:4 spreadPercent:4 -:2 spreadType:2 "
       "attribute1:8 attribute2:8"},
      {"VESA vendor", "00*4", 0, "",
       "structureType:3 -:4 nativeColor overlapPixels:4 - multiSst:2 - dscBppX16:6@16 -:2 dscBppX16:4 -:4"},
      {"colours", "00*12", 0, "",
       "primaries/0/x:12 primaries/0/y:12 primaries/1/x:12 primaries/1/y:12 primaries/2/x:12 primaries/2/y:12 "
       "whites/0/x:12 whites/0/y:12"},
      {"standard colours", "00*7", 0, "",
       "standardColorSpace:8 whites/0/x:12 whites/0/y:12 whites/1/x:12 whites/1/y:12"},
      {"brightness", "00 00*6", 0, "", "revision:3 -:5 minSdrLuminance:16 maxSdrLuminance:16 maxBoostLuminance:16"},
      {"display device", "00 00 00 01 00 01 00*8", 0, "",
       "revision:3 -:5 technology:8 -:2 backlightDimmable backlightSwitchable operatingMode:4 ? nativeWidth:15@2 ? "
       "nativeHeight:15@2 aspectRatioX100:8 scanDirection:2 zeroPixel:2 rotation:2 orientation:2 subPixels:8 hPitch:8 "
       "vPitch:8 bitDepth:4 -:4 responseTime:7 whiteToBlack"},
      {"power sequencing", "00 00*6", 0, "",
       "revision:3 -:5 maxT1:4 minT1:4 maxT2:6 -:2 maxT3:6 -:2 minT4:7 - minT5:6 -:2 minT6:6 -:2"},
      {"head-mounted", "00 00*79", 0, "",
       "revision:3 -:5 dualLayer:2 -:2 interleaveStacked extendedMode:2 - displays:4 streams:4 layers:4 "
       "layerMetadata:2 replication:2 rightX:16 rightY:16 leftX:16 leftY:16 width:16 height:16 rightRotation:3 - "
       "leftRotation:3 - rightLens:16 leftLens:16 interocularAngle:16 lensAdjustable lensMotion:2 lensDistance "
       "ipdUseful -:3 lensMin:16 lensRange:16 ipdOffset:15 ? ipdMin:16 ipdRange:16 rightDisplay leftDisplay rightEye "
       "leftEye -:4 foveated:2 -:6 hFov:16 rightFov/0:16 rightFov/1:16 rightFov/2:16 rightFov/3:16 leftFov/0:16 "
       "leftFov/1:16 leftFov/2:16 leftFov/3:16 rightFocal:32 leftFocal:32 rightCenterY:32 rightCenterX:32 "
       "leftCenterY:32 leftCenterX:32 layer0Streams:2 layer1Streams:2 -:12"},
      {"layer", "00 00*20", 0, "",
       "revision:3 -:5 vendorId/0:8 vendorId/1:8 vendorId/2:8 productCode:16 serialNumber:32 layer:4 configurable "
       "cropping -:2 -:8 lensCorrection:2 lensConfigurable:2 -:4 gamma:2 degamma:2 mura:2 blankingData:2 "
       "reprojection:2 reprojectionSwitchable:2 -:4 scalings:7 scalingConfigurable otherScaling/0:8 otherScaling/1:8 "
       "otherScaling/2:8 otherScaling/3:8 layerStreams:2 -:6"},
  };
  for (const auto& row : rows) CheckBits<DispIdDataBlock>(row);
}

TEST(DispIdExactCodecs, RefuseWhatTheyCannotHold) {
  const WriteRow rows[] = {
      {"Adaptive-Sync", "descriptorSize=5", kRefused},
      {"Adaptive-Sync", "descriptorSize=14", kRefused},
      {"Adaptive-Sync", "descriptorSize=6 count=42", kRefused},
      {"Adaptive-Sync", "descriptorSize=7 count=36", kRefused},
      {"Adaptive-Sync", "descriptorSize=6 count ranges/0/maxRefresh=1025", kRefused},
      {"tiles", "hTiles=65 vTiles=1 tileWidth=1 tileHeight=1", kRefused},
      {"tiles", "hTiles=1 vTiles=1 tileWidth=65537 tileHeight=1", kRefused},
      {"interface features", "additionalCount=8", kRefused},
      {"colours", "primaryCount=8", kRefused},
      {"colours", "whiteCount=16", kRefused},
      {"display device", "nativeWidth=1 aspectRatioX100=100", kRefused},
      {"vendor", "length=246", kRefused},
      {"VESA vendor", "dscBppX16=1", kRefused},
      {"CTA blocks", "0=0xE2,0 1=0xE2,0,0x4A", kRefused},  // cut short, and not the last
      {"CTA blocks", "0=0xE1,0,0x4A", kRefused},
      {"CTA blocks", "0=0,", kRefused},
  };
  for (WriteRow row : rows) {
    row.messages = "invalid parameters";
    CheckWrite<DispIdDataBlock>(row);
  }
  const Held<DispIdDataBlock> apple(Hex("7E 00 05 00 10 FA 81 00"));
  Json record;
  EXPECT_EQ(LogOf([&] {
              EXPECT_EQ(
                  Get(CodecOf<DispIdDataBlock>("VESA vendor"), static_cast<const DispIdDataBlock*>(&apple), &record),
                  -1);
            }),
            Err("DispID20_GetVesaVendor", "invalid OUI(0010fa)"));
}

// The blocks that are handed out are those that the codecs of CTA-861 take.
TEST(DispIdExactCodecs, HandOutCtaBlocks) {
  const Held<DispIdDataBlock> entry(Hex("81 00 10 72 1A 00 00 03 01 3C A5 00 00 53 50 53 50 A5 00"));
  CeaDataBlock blocks[2] = {};
  AmdVsdbRecord record = {};
  ASSERT_EQ(DispID20_GetCtaCnt(&entry), 1);
  ASSERT_EQ(DispID20_GetCtaBlocks(&entry, blocks, 2), 0);
  EXPECT_EQ(blocks[0].bytes, entry.bytes + 3);
  ASSERT_EQ(CEA_GetAmdVSDB(&blocks[0], &record), 0);
  EXPECT_EQ(record.maxRefresh, 165);
  // Into the bytes that they stand in.
  DispIdDataBlock same = entry;
  ASSERT_EQ(DispID20_SetCtaBlocks(blocks, 1, &same), 0);
  EXPECT_EQ(ByteVector(same.bytes, same.bytes + same.size),
            Hex("81 00 10 72 1A 00 00 03 01 3C A5 00 00 53 50 53 50 A5 00"));
}

}  // namespace
}  // namespace reedid::test
