// The codecs of CTA data blocks whose setters refuse what their getters would not give back: what real blocks say, each
// bit, and what is refused.
#include "tests/support/codec.h"

namespace reedid::test {
namespace {

TEST(CtaExactCodecs, ReadAndWriteBack) {
  struct Row {
    const char* codec;
    const char* block;
    const char* record;
    const char* again = nullptr;  // when it differs
  };
  const Row rows[] = {
      {"FreeSync 1", "68 1A 00 00 01 01 30 4B E6", "version caps0 minRefresh=48 maxRefresh=75 mccsVcpCode=0xE6"},
      {"FreeSync 2", "6D 1A 00 00 02 0B 30 90 00 05 78 13 7A 12",
       "version=2 caps0 hdrValid localDimming minRefresh=48 maxRefresh=144 eotf0 eotfPq maxLuminance1=120 "
       "minLuminance1=19 maxLuminance2=122 minLuminance2=18"},
      {"FreeSync 2", "6D 1A 00 00 02 0F 3C F0 00 04 73 17 5C 1E",
       "version=2 caps0 hdrValid backlightControl localDimming minRefresh=60 maxRefresh=240 eotfPq maxLuminance1=115 "
       "minLuminance1=23 maxLuminance2=92 minLuminance2=30"},
      // The third version ends with the last byte that says something; what exceeds a byte is told in the 16.
      {"FreeSync 3", "74 1A 00 00 03 03 30 F0 00 A0 73 01 4F 02 F0 00 00 00 00 00 00",
       "version=3 caps0 hdrValid minRefresh=48 maxRefresh=240 eotf5 panelType=2 maxLuminance1=115 minLuminance1 "
       "maxLuminance2=79 minLuminance2=2",
       "6F 1A 00 00 03 03 30 F0 00 A0 73 01 4F 02 F0 00"},
      {"FreeSync 3", "6F 1A 00 00 03 07 30 F0 E9 80 60 01 4B 02 68 01",
       "version=3 caps0 hdrValid backlightControl minRefresh=48 maxRefresh=360 mccsVcpCode=0xE9 panelType=2 "
       "maxLuminance1=96 minLuminance1 maxLuminance2=75 minLuminance2=2"},
      {"FreeSync 3", "74 1A 00 00 03 C1 28 3C 00 00 53 4A 53 4A 3C 00 E0 93 04 00 00",
       "version=3 caps0 panelReplay extraValid minRefresh=40 maxRefresh=60 maxLuminance1=83 minLuminance1=74 "
       "maxLuminance2=83 minLuminance2=74 extra24=300000",
       "72 1A 00 00 03 C1 28 3C 00 00 53 4A 53 4A 3C 00 E0 93 04"},
      {"FreeSync 3", "68 1A 00 00 03 00 28 FF 00", "version=3 minRefresh=40 maxRefresh=255",
       "6F 1A 00 00 03 00 28 FF 00*6 FF 00"},
      {"G-SYNC", "65 4B 04 00 01 01", "version vrrMinRefresh"},
      {"Dolby Vision 0", "F9 01 46 D0 00 00 A7 A4 54 A3 4C 9F 7A 27 0B 14 50 54 81 05 A7 28 00 00 00 00",
       "size=26 dmMajor=2 dmMinor=8 targetMinPq=88 targetMaxPq=2673 redX=2634 redY=1351 greenX=1226 greenY=2547 "
       "blueX=631 blueY=186 whiteX=1281 whiteY=1348"},
      {"Dolby Vision 1", "EE 01 46 D0 00 24 0B 75 00 A8 55 4E 9D 27 0B",
       "version size=15 dmMajor=3 globalDimming colorimetryP3 targetMinLuminance=58 targetMaxLuminance=5 redX=2688 "
       "redY=1360 greenX=1248 greenY=2512 blueX=624 blueY=176"},
      {"Dolby Vision 1", "EB 01 46 D0 00 2A 18 03 51 59 99 AA",
       "version size=12 supports2160p60 dmMajor=4 colorimetryP3 lowLatency targetMinLuminance targetMaxLuminance=12 "
       "redX=2896 redY=1200 greenX=704 greenY=3264 blueX=544 blueY=192"},
      {"Dolby Vision 2", "EB 01 46 D0 00 44 57 53 68 65 87 5F",
       "version=2 size=12 dmMajor=3 backlightMinLuminance=100 globalDimming interfaces=3 rgb444 targetMinPq=200 "
       "targetMaxPq=2705 redX=2816 redY=1200 greenX=832 greenY=2848 blueX=624 blueY=240"},
      {"Dolby Vision 2", "EB 01 46 D0 00 48 03 76 82 5E 6D 95",
       "version=2 size=12 dmMajor=4 backlightMinLuminance=100 interfaces=2 parity targetMaxPq=2965 redX=2768 redY=1312 "
       "greenX=1040 greenY=2800 blueX=592 blueY=208"},
      {"Dolby audio", "E6 11 46 D0 00 70 00", "version centerZone surroundZone heightZone"},
      {"Dolby audio", "E6 11 46 D0 00 70 80", "version centerZone surroundZone heightZone unknownFlag"},
      {"Dolby audio", "E5 11 46 D0 00 70", "version centerZone surroundZone heightZone", "E6 11 46 D0 00 70 00"},
      {"HDR10+", "E5 01 8B 84 90 01", "applicationVersion"},
      {"HDR10+", "E5 01 8B 84 90 79", "applicationVersion fullFramePeakIndex=2 peakIndex=7"},
      {"HDR10+", "E5 01 8B 84 90 95", "applicationVersion fullFramePeakIndex peakIndex=9"},
      {"HDMI 1.4b 3D", "72 03 0C 00 10 00 B8 2D 21 D0 08 01 40 07 3F 40 50 90 A0",
       "physAddr=0x1000 supportsAI DC_36bit DC_30bit DC_Y444 max_TMDS_Clock=225 hdmiVideoPresent cnc=1, "
       "threeD_present threeD_Multi_present=2 imageSize=2 threeD_Structure_ALL=0x140 threeD_MASK=0x73F entryCount=4 "
       "entries/0/twoD_VIC_order=4 entries/1/twoD_VIC_order=5 entries/2/twoD_VIC_order=9 entries/3/twoD_VIC_order=10"},
      {"HDMI 1.4b 3D", "71 03 0C 00 10 00 B8 3C 20 A0 64 01 02 03 01 40 10 40",
       "physAddr=0x1000 supportsAI DC_36bit DC_30bit DC_Y444 max_TMDS_Clock=300 hdmiVideoPresent threeD_present "
       "threeD_Multi_present hdmiVicLen=3 hdmiVics=1,2,3, threeD_Structure_ALL=0x140 entryCount=2 "
       "entries/0/twoD_VIC_order=1 entries/1/twoD_VIC_order=4"},
      {"HDMI 1.4b 3D", "76 03 0C 00 10 00 B8 3C E0 2E FF 21 FF C0 84 01 02 03 04 01 00 7C 00",
       "physAddr=0x1000 supportsAI DC_36bit DC_30bit DC_Y444 max_TMDS_Clock=300 latencyPresent iLatencyPresent "
       "hdmiVideoPresent videoLatency=46 audioLatency=255 iVideoLatency=33 iAudioLatency=255 threeD_present "
       "threeD_Multi_present=2 hdmiVicLen=4 hdmiVics=1,2,3,4, threeD_Structure_ALL=0x100 threeD_MASK=0x7C00"},
      // Structures from 8 on have a second byte.
      {"HDMI 1.4b 3D", "70 03 0C 00 14 00 00 00 20 88 06 20 F0 48 10 59 60",
       "physAddr=0x1400 hdmiVideoPresent threeD_present imageSize entryCount=4 entries/0/twoD_VIC_order=2 "
       "entries/1/twoD_VIC_order=15 entries/2/twoD_VIC_order=4 entries/2/threeD_Structure=8 entries/2/threeD_Detail "
       "entries/3/twoD_VIC_order=5 entries/3/threeD_Structure=9 entries/3/threeD_Detail=6"},
      // What stands behind the lists, half an entry, and lists that the block ends in.
      {"HDMI 1.4b 3D", "6E 03 0C 00 10 00 00 00 20 00 01 30 40 00 00",
       "physAddr=0x1000 hdmiVideoPresent entryCount "
       "entries/0/twoD_VIC_order=3",
       "6B 03 0C 00 10 00 00 00 20 00 01 30"},
      {"HDMI 1.4b 3D", "6C 03 0C 00 10 00 00 00 20 00 02 30 48",
       "physAddr=0x1000 hdmiVideoPresent entryCount "
       "entries/0/twoD_VIC_order=3",
       "6B 03 0C 00 10 00 00 00 20 00 01 30"},
      {"HDMI 1.4b 3D", "6C 03 0C 00 10 00 00 00 20 40 04 01 40",
       "physAddr=0x1000 hdmiVideoPresent "
       "threeD_Multi_present threeD_Structure_ALL=0x140",
       "6C 03 0C 00 10 00 00 00 20 20 02 01 40"},
      {"HDMI 1.4b 3D", "6C 03 0C 00 10 00 00 00 20 00 60 01 02",
       "physAddr=0x1000 hdmiVideoPresent hdmiVicLen=2 "
       "hdmiVics=1,2,",
       "6C 03 0C 00 10 00 00 00 20 00 40 01 02"},
      {"HDMI 1.4b 3D", "65 03 0C 00 12 34", "physAddr=0x1234"},
      {"HDMI Forum in full", "6D D8 5D C4 01 78 80 6B 43 28 78 D3 33 05",
       "version TMDS_Character_Rate=600 scdcPresent Max_FRL_Rate=6 UHD_VIC dc36bit420 dc30bit420 QMS allm "
       "fapaStartLocation VRRmin=40 VRRmax=120 DSC_1p2 dscNative420 QMS_TFRmin dsc12bpc dsc10bpc DSC_Max_FRL_Rate=3 "
       "DSC_MaxSlices=3 DSC_TotalChunkKBytes=6"},
      {"HDMI Forum in full", "6D D8 5D C4 01 78 88 33 1A 30 90 C7 37 18",
       "version TMDS_Character_Rate=600 scdcPresent lte340Scramble Max_FRL_Rate=3 dc36bit420 dc30bit420 cinemaVrr "
       "cnmVrr allm VRRmin=48 VRRmax=144 DSC_1p2 dscNative420 dsc16bpc dsc12bpc dsc10bpc DSC_Max_FRL_Rate=3 "
       "DSC_MaxSlices=7 DSC_TotalChunkKBytes=25"},
      {"HDMI Forum in full", "67 D8 5D C4 01 78 80 00", "version TMDS_Character_Rate=600 scdcPresent"},
      {"sink capability", "EA 79 00 00 01 78 80 00 02 28 3C",
       "version TMDS_Character_Rate=600 scdcPresent allm VRRmin=40 VRRmax=60"},
      {"sink capability", "ED 79 00 00 01 00 00 08 02 00 00 00 00 00", "version UHD_VIC allm DSC_TotalChunkKBytes"},
      {"extension override", "E2 78 02", "extensionBlocks=2"},
      {"audio formats", "2C 57 07 01 67 04 03 5F 7E 03 3D 1E C0",
       "count=4 formats/0/formatCode=10 formats/0/channels=8 formats/0/rate32k formats/0/rate44k1 formats/0/rate48k "
       "formats/0/joc formats/1/formatCode=12 formats/1/channels=8 formats/1/rate48k formats/1/matObjects "
       "formats/1/matNoHash formats/2/formatCode=11 formats/2/channels=8 formats/2/rate44k1 formats/2/rate48k "
       "formats/2/rate88k2 formats/2/rate96k formats/2/rate176k4 formats/2/rate192k formats/2/dtsX "
       "formats/2/formatDependent formats/3/formatCode=7 formats/3/channels=6 formats/3/rate44k1 formats/3/rate48k "
       "formats/3/rate88k2 formats/3/rate96k formats/3/maxBitrate=1536"},
      {"audio formats", "29 78 06 60 7B 04 5B FD 84 6B",
       "count=3 formats/0/formatCode=15 formats/0/extFormatCode=12 formats/0/rate44k1 formats/0/rate48k "
       "formats/1/formatCode=15 formats/1/extFormatCode=11 formats/1/level=3 formats/1/rate48k "
       "formats/1/lowComplexityProfile formats/1/baselineProfile formats/2/formatCode=15 formats/2/extFormatCode=13 "
       "formats/2/channels=30 formats/2/rate48k formats/2/bits16 formats/2/bits20"},
      {"native resolution", "E2 08 91", "reference=145"},
      {"native resolution", "E7 08 81 81 10 0E B0 07", "reference=129 sizeUnit=10 width=3600 height=1968"},
      {"format preference", "E9 0D 91 61 72 81 83 FE 92 A6", "count=8 references=145,97,114,129,131,254,146,166,"},
      {"InfoFrame", "E4 20 00 00 03", "count entries/0/type=3"},
      {"InfoFrame", "E9 20 00 01 01 46 D0 00 02 04",
       "additionalVendor count=3 entries/0/type entries/0/oui=0x46,0xD0, entries/1/type=2 entries/2/type=4"},
      {"InfoFrame", "E7 20 20 00 99 22 07 41",
       "headerLength header=0x99, count entries/0/type=2 "
       "entries/0/payloadLength entries/0/payload=7,",
       "E6 20 20 00 99 22 07"},
      {"room", "EB 13 E2 07 00 00 10 10 08 00 40 00",
       "displayPlace locations speakerCount=3 speakers/FL_FR speakers/LFE1 speakers/FC maxX=16 maxY=16 maxZ=8 "
       "displayY=64"},
      {"speaker location", "E8 14 20 00 61 01 C0 40 00",
       "count=2 entries/0/active entries/1/coordinates entries/1/active entries/1/channel entries/1/speakerId "
       "entries/1/x=-64 entries/1/y=64"},
      {"dynamic HDR", "E6 07 04 04 00 04 04", "count entries/0/type=4 entries/0/flagCount=2 entries/0/flags=4,4"},
      {"dynamic HDR", "E8 07 03 02 00 71 02 03 00",
       "count=2 entries/0/type=2 entries/0/flagCount entries/0/flags=0x71, entries/1/type=3"},
      {"VESA device", "FF 02 92 11 03 00 00 00 0A 40 06 3C 11 0A 18 18 D0 80 83 8F 3C 77 41 02 25 4A 7E 77 00 00 8C 57",
       "interfaceType=9 channels=2 version release contentProtection=3 nativeWidth=2560 nativeHeight=1600 "
       "aspectRatioX100=160 rotation scanDirection subPixels=10 hPitch=24 vPitch=24 dithering=3 noOverdrive audio "
       "audioDelayTold audioDelay=6 rateConversion=2 rateRange=15 nominalRate=60 interfaceDepth=8 displayDepth=8 "
       "extraPrimaries=2 primary4X=149 primary4Y=296 primary5X=504 primary5Y=477 whiteToBlack responseTime=12 "
       "hOverscan=5 vOverscan=7"},
      {"VESA transfer", "AF 06 1B 2C 34 3F 3C 60 43 4B 6C 44 82 4D 3B 42",
       "count=16 samples=6,33,77,129,192,252,348,415,490,598,666,796,873,932,998,1023"},
      {"video formats", "C2 00 07", "descriptorSize=1 count entries/0/rid=7 entries/0/base60 entries/0/factors=3"},
      {"video formats", "C5 81 47 C3 CB 40",
       "ycc420 descriptorSize=2 count=2 entries/0/rid=7 entries/0/rate24 entries/0/base60 entries/0/rate144 "
       "entries/0/factors=3 entries/1/rid=11 entries/1/base50 entries/1/rate24 entries/1/rate144"},
      {"video formats", "C5 02 07 83 01 08",
       "descriptorSize=3 count entries/0/rid=7 entries/0/base60 entries/0/factors=3 entries/0/rate48",
       "C4 02 07 83 01"},
      {"HDMI audio", "EF 12 04 02 01 0B 03 01 01 0B 03 01 0F 00 00 10",
       "maxStreams=1 nonMixed count=2 formats/0/formatCode formats/0/channels=12 formats/0/rate32k formats/0/rate44k1 "
       "formats/0/bits16 formats/1/formatCode formats/1/channels=12 formats/1/rate32k formats/1/rate44k1 "
       "formats/1/bits16 speakers/FL_FR speakers/LFE1 speakers/FC speakers/BL_BR speakerSystem"},
      {"HDMI audio without 3D", "E2 12 03", "maxStreams=4", "E3 12 03 00"},
      {"tone mapping", "E3 7A A1 E2", "version grdmSupport=1 drdm hgigDrdm=2 maxRgb gamut=3"},
      {"tone mapping", "E2 7A 01", "version"},
      {"tone mapping", "F7 7A 80 00 01 00 02 00 03 00 04 00 05 00 06 00 07 00 08 00 09 0A 0B 0C",
       "drdm redX=1 redY=2 greenX=3 greenY=4 blueX=5 blueY=6 whiteX=7 whiteY=8 minBrightness10=9 peakBrightness100=10 "
       "pointCount=1 points/0/percent=11 points/0/peak=12"},
      {"filmmaker mode", "65 FB BB 1A 01 01", "contentType contentSubtype"},
      {"Microsoft", "75 5C 12 CA 03 45 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF",
       "version=3 desktopUsage primaryUse=5 "
       "containerId=0,0x11,0x22,0x33,0x44,0x55,0x66,0x77,0x88,0x99,0xAA,0xBB,0xCC,0xDD,0xEE,0xFF"},
      {"Microsoft", "75 5C 12 CA 01 67 00*16", "version primaryUse=7", "75 5C 12 CA 01 07 00*16"},
      {"product information", "E8 21 00 0C 6E 00 54 56 00", "oui=0,12,110, length=3 name=84,86,"},
      // An entry without a whole type, and one that the block ends in.
      {"dynamic HDR", "E6 07 02 03 00 01 00", "count entries/0/type=3", "E4 07 02 03 00"},
      {"dynamic HDR", "E7 07 02 03 00 03 04 00", "count entries/0/type=3", "E4 07 02 03 00"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.block);
    const ByteVector block = Hex(row.block);
    CheckReadBlock(CodecOf<CeaDataBlock>(row.codec), block, row.record, row.again ? Hex(row.again) : block);
  }
}

TEST(CtaExactCodecs, PlaceEachBit) {
  const BitsRow rows[] = {
      {"FreeSync 3", "00*14 01", 0, "",
       "caps0 hdrValid backlightControl localDimming replayPsrSwitch replaySprs panelReplay extraValid minRefresh:8 "
       "-:8 mccsVcpCode:8 eotf0 eotf1 eotfPq eotf3 eotfPqInterim eotf5 panelType:2 maxLuminance1:8 minLuminance1:8 "
       "maxLuminance2:8 minLuminance2:8 ?:10 -:6 extra24:24 ? extra19:6@2 extra19Valid"},
      {"Dolby Vision 0", "00*20", 0, "",
       "redY:4 redX:4 redX:8@16 redY:8@16 greenY:4 greenX:4 greenX:8@16 greenY:8@16 blueY:4 blueX:4 blueX:8@16 "
       "blueY:8@16 whiteY:4 whiteX:4 whiteX:8@16 whiteY:8@16 targetMaxPq:4 targetMinPq:4 targetMinPq:8@16 "
       "targetMaxPq:8@16 dmMinor:4 dmMajor:4 -:32"},
      {"Dolby Vision 1", "00*6", 0, "",
       "globalDimming targetMaxLuminance:7 colorimetryP3 targetMinLuminance:7 lowLatency:2 blueY:3*16 blueX:3*16 "
       "redY*16 greenX:7*16 redY*32 greenY:7*16 redY:3*64 redX:5*16"},
      {"Dolby Vision 2", "00*6", 0, "",
       "backlightMinLuminance:2*25 globalDimming targetMinPq:5*20 interfaces:2 parity targetMaxPq:5*65 rgb444*2 "
       "greenX:7*16 rgb444 greenY:7*16 blueX:3*16 redX:5*16 blueY:3*16 redY:5*16"},
      {"HDMI 1.4b 3D", "00 00 00 00 01", 0, "",
       "physAddr:8@256 physAddr:8 DVI_Dual -:2 DC_Y444 DC_30bit DC_36bit DC_48bit supportsAI max_TMDS_Clock:8*5 ? "
       "cnc/1 cnc/2 cnc/3 - ?:3"},
      {"sink capability", "00*11 01", 0, "",
       "-:16 version:8 TMDS_Character_Rate:8*5 osdDisparity3d dualView independentView lte340Scramble ccbpci "
       "cableStatus rrCapable scdcPresent dc30bit420 dc36bit420 dc48bit420 UHD_VIC Max_FRL_Rate:4 fapaStartLocation "
       "allm fva cnmVrr cinemaVrr mDelta QMS fapaEndExtended VRRmin:6 VRRmax:2@256 VRRmax:8 dsc10bpc dsc12bpc "
       "dsc16bpc dscAllBpp QMS_TFRmin QMS_TFRmax dscNative420 DSC_1p2 DSC_MaxSlices:4 DSC_Max_FRL_Rate:4 ? "
       "DSC_TotalChunkKBytes:5@2 -:2"},
      {"Dolby audio", "00 00", 0, "",
       "version:3 - centerZone surroundZone heightZone headphoneOnly matPcm48Only -:6 unknownFlag"},
      {"HDR10+", "00", 0, "", "applicationVersion:2 fullFramePeakIndex:2 peakIndex:4"},
      {"VESA device", "00*16 80 00*13", 0, "",
       "channels:4 interfaceType:4 release:4 version:4 contentProtection:8 maxClock:2@256 minClock:6 maxClock:8 "
       "nativeWidth:16 nativeHeight:16 aspectRatioX100:8 scanDirection:2 zeroPixel:2 rotation:2 orientation:2 "
       "subPixels:8 hPitch:8 vPitch:8 -:3 deinterlacing noOverdrive directDrive dithering:2 -:5 audioOverride "
       "separateAudio audio audioDelay:7*2 ? rateRange:6 rateConversion:2 nominalRate:8 displayDepth:4 "
       "interfaceDepth:4 "
       "primary5Y:2 primary5X:2 primary4Y:2 primary4X:2 extraPrimaries:2 -:2 primary6Y:2 primary6X:2 primary4X:8*4 "
       "primary4Y:8*4 primary5X:8*4 primary5Y:8*4 primary6X:8*4 primary6Y:8*4 responseTime:7 whiteToBlack vOverscan:4 "
       "hOverscan:4"},
      {"video formats", "00 00 00", 0, "", "?:2 -:4 fractionalPreferred ycc420 ?:16"},
      {"video formats", "03 00*4", 1, "entries/0/", "rid:6 rate24 base50 factors:6 rate144 base60 rate48 -:15"},
      {"HDMI audio", "00*12", 0, "",
       "formats/0/formatCode:4 -:4 formats/0/channels:5 -:3 formats/0/rate32k formats/0/rate44k1 formats/0/rate48k "
       "formats/0/rate88k2 formats/0/rate96k formats/0/rate176k4 formats/0/rate192k - formats/0/formatDependent:8 ?:32 "
       "speakers/FL_FR speakers/LFE1 speakers/FC speakers/BL_BR speakers/BC speakers/FLc_FRc speakers/RLC_RRC "
       "speakers/FLw_FRw speakers/TpFL_TpFR speakers/TpC speakers/TpFC speakers/LS_RS speakers/LFE2 speakers/TpBC "
       "speakers/SiL_SiR speakers/TpSiL_TpSiR speakers/TpBL_TpBR speakers/BtFC speakers/BtFL_BtFR speakers/TpLS_TpRS "
       "LSd_RSd -:3 -:4 speakerSystem:4"},
  };
  for (const auto& row : rows) CheckBits<CeaDataBlock>(row);
}

TEST(CtaExactCodecs, RefuseOtherVersionsAndVendors) {
  struct Row {
    const char* codec;
    const char* block;
    const char* message;
  };
  const Row rows[] = {
      {"FreeSync 1", "68 1A 00 00 00 01 30 4B E6", "invalid parameters"},
      {"FreeSync 1", "68 1A 00 00 04 01 30 4B E6", "invalid parameters"},
      {"FreeSync 1", "68 1A 00 01 01 01 30 4B E6", "invalid OUI(01001a)"},
      {"G-SYNC", "65 4B 04 00 02 01", "invalid parameters"},
      {"Dolby Vision 0", "E4 01 46 D0 00", "invalid parameters"},
      {"Dolby Vision 0", "EB 01 46 D0 00 00*7", "invalid parameters"},
      {"Dolby Vision 2", "EB 01 46 D0 00 60 00*6", "invalid parameters"},
      {"Dolby Vision 2", "E5 01 8B 84 90 01", "invalid OUI(90848b)"},
      {"Dolby audio", "E5 11 8B 84 90 01", "invalid OUI(90848b)"},
      {"HDR10+", "EB 01 46 D0 00 48 03 76 82 5E 6D 95", "invalid OUI(00D046)"},
      {"Microsoft", "75 5C 12 CA 00 00*17", "invalid parameters"},
      {"Microsoft", "75 5C 12 CA 04 00*17", "invalid parameters"},
      {"product information", "E5 21 00 00 00 01", "invalid parameters"},
      {"HDMI audio", "EB 12 00 02 00*8", "invalid parameters"},  // without speakers
      {"tone mapping", "E4 7A 80 00 00", "invalid parameters"},  // within its gamut
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.block);
    const auto& codec = CodecOf<CeaDataBlock>(row.codec);
    const DataBlock block(Hex(row.block));
    Json record;
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(Get<CeaDataBlock>(codec, &block, &record), -1); }), Err(codec.getter, row.message));
  }
}

TEST(CtaExactCodecs, TakeWholeStepsOnly) {
  const WriteRow rows[] = {
      {"Dolby Vision 2", "version=2 size=12 dmMajor=4 backlightMinLuminance=25 targetMinPq=10", kRefused},
      {"Dolby Vision 2", "version=3 size=12", kRefused},
      {"Dolby Vision 1", "version size=13", kRefused},
      {"FreeSync 1", "version maxRefresh=256", kRefused},
      {"FreeSync 2", "version=2 extra19=1", kRefused},
      {"FreeSync 3", "version=3 maxRefresh=1024", kRefused},
      {"VESA device", "aspectRatioX100=100 interfaceDepth=8 displayDepth=8 audioDelayTold audioDelay=3", kRefused},
      {"VESA device", "aspectRatioX100=100 interfaceDepth=8 displayDepth=8 audioDelay=2", kRefused},
      {"VESA transfer", "count=8 samples=0,0,0,0,0,0,300,1023", kRefused},
      {"VESA transfer", "count=9", kRefused},
      {"video formats", "count=31", kRefused},
      {"video formats", "descriptorSize=2 count=16", kRefused},
      {"video formats", "descriptorSize=1 count entries/0/base60", kRefused},
      {"HDMI audio", "maxStreams=1 count=7", kRefused},
      {"tone mapping", "pointCount=1", kRefused},
      {"Microsoft", "version=2 desktopUsage", kRefused},
      {"dynamic HDR", "count=11", kRefused},
      {"dynamic HDR", "count entries/0/flagCount=28", kRefused},
      {"dynamic HDR", "count=2 entries/0/flagCount=25", kRefused},  // a byte too many for the block
  };
  for (WriteRow row : rows) {
    row.messages = "invalid parameters";
    CheckWrite<CeaDataBlock>(row);
  }
}

}  // namespace
}  // namespace reedid::test
