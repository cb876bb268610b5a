// The codecs of 18-byte descriptors: detailed timings and the display descriptors of the base block.
#include "tests/support/codec.h"

namespace reedid::test {
namespace {

TEST(Descriptors, PlaceEachBit) {
  const std::string rates = "?:8 minVRate:8 maxVRate:8 minHRate:8 maxHRate:8 maxPixelClock:8*10000 ?:8 ";
  const std::string gtf = rates + "-:8 gtfStartFreq:8*2 - gtfC:7 gtfM:16 gtfK:8 - gtfJ:7";
  const std::string cvt = rates +
                          "cvtVersionMinor:4 cvtVersionMajor:4 cvtMaxHactive:2@2048 cvtClockPrecision:6*250 "
                          "cvtMaxHactive:8*8 -:3 cvtAspect/3 cvtAspect/1 cvtAspect/5 cvtAspect/4 cvtAspect/2 "
                          "-:3 cvtStandardBlanking cvtReducedBlanking ?:3 -:4 vStretch vShrink hStretch hShrink "
                          "preferredRefresh:8";
  const BitsRow rows[] = {
      {"DTD", "01 00*16 18", 0, "",
       "? pixelClock:15*10@2 hactive:8 hblank:8 hblank:4@256 hactive:4@256 vactive:8 vblank:8 vblank:4@256 "
       "vactive:4@256 hfrontPorch:8 hsyncWidth:8 vsyncWidth:4 vfrontPorch:4 vsyncWidth:2@16 vfrontPorch:2@16 "
       "hsyncWidth:2@256 hfrontPorch:2@256 hImageSize:8 vImageSize:8 vImageSize:4@256 hImageSize:4@256 -:16 - "
       "hsyncPositive vsyncPositive -:4 interlaced"},
      {"range limits 1.3", "00*6 02 00*7", 0, "", gtf},
      {"range limits 1.4", "00*6 02 00*7", 0, "", gtf},
      {"range limits 1.4", "00*6 04 00*7", 0, "", cvt},
      {"CVT codes", "00*4 01 00*9", 1, "codes/0/",
       "?:8 lines:8*2 -:2 ?:2 lines:4@512 ? rate85 rate75 rate60 rate50 ?:2 - ?:72"},
      {"established timings III", "00*14", 1, "", "version:8 flags/#:48 -:48"},
  };
  for (const auto& row : rows) CheckBits<DtdSlot>(row);
}

TEST(Descriptors, ReadAndWriteBack) {
  const std::string head = "3A 80 18 71 38 2D 40 58 2C 45 00 40 84 63 00 00 ";  // 1080p60, from its second byte
  const std::string fields =
      "hactive=1920 hblank=280 hfrontPorch=88 hsyncWidth=44 vactive=1080 vblank=45 vfrontPorch=4 vsyncWidth=5 "
      "hImageSize=1600 vImageSize=900 aspectRatio=8 ";
  const std::string b1E = "02 " + head + "1E", b1A = "02 " + head + "1A", bFD = "02 " + head + "FD",
                    b9C = "02 " + head + "9C", b16 = "02 " + head + "16", b0E = "02 " + head + "0E",
                    b18 = "02 " + head + "18", f = fields + "pixelClock=148500 frameRate=60 ",
                    both = f + "hsyncPositive vsyncPositive", h = f + "hsyncPositive",
                    v = f + "interlaced vsyncPositive";
  const ReadRow rows[] = {
      {"DTD", b1E, both},
      {"DTD", b1A, h},
      {"DTD", bFD, v, b9C},  // stereo bits
      {"DTD", b16, f, b18},  // composite: nothing is known of the polarities
      {"DTD", b0E, f, b18},
      // The rate is rounded, in 8 bits, and 0 without a total.
      {"DTD", "C1 39 80 18 71 38 2D 40 00*9 18",
       "pixelClock=147850 hactive=1920 hblank=280 vactive=1080 vblank=45 aspectRatio=8 frameRate=60"},
      {"DTD", "02 3A 80 18 71 01 00*11 18",
       "pixelClock=148500 hactive=1920 hblank=280 vactive=1 aspectRatio=8 frameRate=0xAC"},
      {"DTD", "02 3A 80 18 71 00*12 18", "pixelClock=148500 hactive=1920 hblank=280 aspectRatio=8"},
      {"DTD", "02 3A 00*3 38 2D 40 00*9 18", "pixelClock=148500 vactive=1080 vblank=45 aspectRatio=8"},
      {"serial number", "00 41 42 0A 20*10", "text=AB"},
      {"data string", "00 41*13", "text=AAAAAAAAAAAAA"},
      {"product name", "00 41*12 0A", "text=AAAAAAAAAAAA"},
      {"product name", "00 0A 41*12", "text=", "00 0A 20*12"},
      // A rate above 255 has an offset in 1.4, that of the minimum only with that of the maximum.
      {"range limits 1.4", "0A 30 2D 1E 01 3C 01",
       "minVRate=48 maxVRate=300 minHRate=30 maxHRate=256 maxPixelClock=600000 timingFormula=3"},
      {"range limits 1.4", "0F 01 FF 2D 91 3C 00",
       "minVRate=256 maxVRate=510 minHRate=300 maxHRate=400 maxPixelClock=600000"},
      {"range limits 1.4", "05 2C 2D 1E 50 00 03 09*7", "minVRate=44 maxVRate=45 minHRate=30 maxHRate=80",
       "00 2C 2D 1E 50"},
      {"range limits 1.3", "0F 2C 2D 1E 50 00 01", "minVRate=44 maxVRate=45 minHRate=30 maxHRate=80 timingFormula=3",
       "00 2C 2D 1E 50 00 01"},
      {"range limits 1.3", "00*6 04 FF*7", "timingFormula=2", "00*6 04"},
      {"range limits 1.4", "00*6 04 00*4 E0 00 00", "timingFormula=2 cvtPreferredAspect=1", "00*6 04 00*4 60 00 00"},
      {"range limits 1.4", "00*6 04 00*4 20 00 00", "timingFormula=2 cvtPreferredAspect=4"},
      {"range limits 1.4", "00*6 04 00*4 40 00 00", "timingFormula=2 cvtPreferredAspect=5"},
      // The getter reads six bits of the rate, the setter writes five.
      {"standard timings", "00 D1 C0 81 9F 01 01 61 40 95 19 00 FF",
       "0/valid 0/frameRate=60 0/hactive=1920 0/aspectRatio=4 1/valid 1/frameRate=91 1/hactive=1280 1/aspectRatio=1 "
       "3/valid 3/frameRate=60 3/hactive=1024 3/aspectRatio=2 4/valid 4/frameRate=85 4/hactive=1440 4/aspectRatio=5 "
       "5/valid 5/frameRate=123 5/hactive=248 5/aspectRatio=4",
       "00 D1 C0 81 9F 01 01 61 40 95 19 00 DF"},
      {"CVT codes", "00 01 1B 24 39 00*3 FF FC 62 7F 18 04",
       "version codes/0/lines=1080 codes/0/aspectRatio=4 codes/0/preferredRate=60 codes/0/rate50 codes/0/rate60 "
       "codes/0/rate60rb codes/2/lines=8192 codes/2/aspectRatio=3 codes/2/preferredRate=85 codes/2/rate85 "
       "codes/3/lines=768 codes/3/aspectRatio=5 codes/3/preferredRate=50 codes/3/rate75"},
      {"CVT codes", "00 01 7F 10 44",
       "version codes/0/lines=768 codes/0/aspectRatio=2 codes/0/preferredRate=75 codes/0/rate75"},
  };
  for (const auto& row : rows) CheckRead<DtdSlot>(row);
}

TEST(Descriptors, WriteWhatFits) {
  const WriteRow rows[] = {
      {"DTD", "pixelClock=148505 interlaced=3 vsyncPositive=2 hsyncPositive=0xFF", "02 3A 00*15 9A"},
      {"DTD", "pixelClock=655359", "FF FF 00*15 18"},
      {"DTD", "pixelClock=9 frameRate=60 hactive=1920 vactive=1080", "00", "!invalid timing: 1920x1080@60 9KHz"},
      {"DTD", "pixelClock=655360 frameRate=50", "00", "!invalid timing: 0x0@50 655360KHz"},
      {"DTD", "pixelClock=4000000000 hactive=10000 vactive=4000", "00",
       "!invalid timing: 10000x4000@34464 4000000000KHz"},
      {"DTD", "", "00", "!invalid timing: 0x0@0 0KHz"},
      {"serial number", "text=ABCDEFGHIJKLMN", "00 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D"},
      {"range limits 1.4", "minVRate=300 maxVRate=200 minHRate=300 maxHRate=200 timingFormula=3",
       "00 2C C8 2C C8 00 01"},
      {"range limits 1.4", "maxVRate=255 maxHRate=255 timingFormula=3", "00 00 FF 00 FF 00 01"},
      {"range limits 1.4", "maxVRate=256 maxHRate=256 minVRate=255 minHRate=255 timingFormula=3",
       "0A FF 01 FF 01 00 01"},
      {"range limits 1.3", "maxVRate=300 maxHRate=300 timingFormula=3", "00 00 2C 00 2C 00 01"},
      {"range limits 1.4", "maxPixelClock=609999 timingFormula=7", "00*5 3C 01", "invalid timing formula: 7"},
      // Continuous frequencies are not supported.
      {"discrete range limits", "timingFormula=3", "00*6 01"},
      {"discrete range limits", "timingFormula=2", "00*6 04", "?please set supportGTF"},
      {"range limits 1.4", "timingFormula=2 cvtPreferredAspect=3", "00*6 04 00*4 80"},
      {"standard timings", "0/valid 0/frameRate=92 0/hactive=1024 0/aspectRatio=2 1/valid 1/frameRate=59 1/hactive=248",
       "00 61 40 00 DF 01 01 01 01 01 01 01 01",
       "invalid std hactive: 248|invalid std refresd rate: 59|invalid std aspect ratio: 0"},
      {"CVT codes",
       "version codes/0/lines=1 codes/0/aspectRatio=1 codes/0/preferredRate=50 codes/1/lines=2 "
       "codes/1/preferredRate=70",
       "00 01 FF F4 00 00 04", "!invalid aspect ratio: 1|invalid aspect ratio: 0|invalid preferred frame rate: 70"},
  };
  for (const auto& row : rows) CheckWrite<DtdSlot>(row);
  CheckLimits<DtdSlot>({"DTD", "pixelClock=20 frameRate=7",
                        "pixelClock 10 655359 hactive 0 4095 hblank 0 4095 vactive 0 4095 vblank 0 4095 hfrontPorch 0 "
                        "1023 hsyncWidth 0 1023 vfrontPorch 0 63 vsyncWidth 0 63 hImageSize 0 4095 vImageSize 0 4095"});
}

TEST(Descriptors, RefuseOtherSlotsAndLeaveTheOutput) {
  const struct {
    const char* name;
    const char* kind;  // null: a timing, which has no tag
  } rows[] = {
      {"DTD", nullptr},
      {"serial number", "product serail number"},
      {"data string", "alphanumeric data string"},
      {"product name", "product name string"},
      {"range limits 1.4", "range limits"},
      {"standard timings", "standard timings indentifier"},
      {"CVT codes", "CVT 3 byte code"},
      {"established timings III", "established Timing 3"},
  };
  for (const auto& [name, kind] : rows) {
    SCOPED_TRACE(name);
    const Codec<DtdSlot>& codec = CodecOf<DtdSlot>(name);
    const Held<DtdSlot> good(BlockOf(codec, Hex(kind == nullptr ? "01" : "")));
    Json record = Json::object();
    const auto refuses = [&](const DtdSlot* slot, Json* to, const std::string& message) {
      EXPECT_EQ(LogOf([&] { EXPECT_EQ(Get(codec, slot, to), -1); }), Err(codec.getter, message));
    };
    refuses(nullptr, &record, "invalid parameters");
    refuses(&good, nullptr, "invalid parameters");
    for (unsigned at = 0; at < 5; ++at) {
      DtdSlot bad = good;
      bad.flag = kind == nullptr ? uint8_t{2} : uint8_t{1};
      refuses(&bad, &record, "invalid parameters");
      bad.flag = good.flag;
      ++bad.bytes[at];
      if (kind == nullptr || (codec.head == Hex("00 00 00 FD") && at == 4)) continue;  // rate offsets
      refuses(&bad, &record, "invalid " + std::string(kind) + " descriptor");
    }
    Blank<DtdSlot> target;
    EXPECT_EQ(
        LogOf([&] { EXPECT_EQ(Set<DtdSlot>(codec, nullptr, &target) + Set<DtdSlot>(codec, &record, nullptr), -2); }),
        Err(codec.setter, "invalid parameters") + Err(codec.setter, "invalid parameters"));
    EXPECT_TRUE(target.Untouched());
  }
  char text[13];
  const Held<DtdSlot> name(Hex("00 00 00 FC 00*14"));
  Quietly([&] { EXPECT_EQ(VESA_GetProductName(&name, text, 13), -1); });
  DtdSlot slot;
  RangeLimits limits = {};
  Quietly([&] {
    EXPECT_EQ(VESA_SetRangeLimits(nullptr, &limits, &slot) + VESA_GetRangeLimits(nullptr, &slot, &limits), -2);
  });
}

}  // namespace
}  // namespace reedid::test
