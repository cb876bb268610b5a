// VESA's extension blocks: what real ones say, each bit, and what is refused.
#include "tests/support/codec.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"

namespace reedid::test {
namespace {

// A block of these bytes, with zeroes behind them and its checksum.
ByteVector Whole(ByteVector bytes) {
  bytes.resize(128);
  FixChecksum(bytes);
  return bytes;
}

template <class Record>
struct Kind {
  const char* name;
  int32_t (*get)(const EdidBlock*, Record*);
  int32_t (*set)(const Record*, EdidBlock*);
};
constexpr Kind<DisplayInfoRecord> kDisplayInfo = {"DisplayInfo", EDID_GetDisplayInfo, EDID_SetDisplayInfo};
constexpr Kind<VideoTimingsRecord> kVideoTimings = {"VideoTimings", EDID_GetVideoTimings, EDID_SetVideoTimings};

// The record, null when it is refused.
template <class Record>
Json Read(const Kind<Record>& kind, const ByteVector& bytes) {
  Record record;
  const Block block(EDID_BLOCK_UNKNOWN, bytes);
  return kind.get(&block, &record) == 0 ? Json(record) : Json();
}

// The block, empty when it is refused.
template <class Record>
ByteVector Write(const Kind<Record>& kind, const Record& record) {
  Block out(0, ByteVector(128, 0xEE));
  out.size = 0;
  return kind.set(&record, &out) == 0 ? ByteVector(out.bytes, out.bytes + out.size) : ByteVector();
}

template <class Record>
ByteVector Again(const Kind<Record>& kind, const Json& json) {
  Record record = {};
  FromJson(json, record);
  return Write(kind, record);
}

TEST(Extensions, ReadAndWriteBack) {
  const ByteVector info =
      Whole(Hex("40 01 03 00 00 00 00 C8 48 01 A5 00 A5 00 01 02 03 19 19 A8 00 00 00 00 00 00 40 00*12"));
  const Json read = Read(kDisplayInfo, info);
  EXPECT_EQ(ToText(read),
            ToText(FromText("version digitalInterface=3 dataEnable dataEnableHigh hdcp dataFormat=72 minClock "
                            "maxClock=165 crossover=165 subPixelLayout subPixelConfig=2 subPixelShape=3 hPitch=25 "
                            "vPitch=25 fixedPixelFormat viewDirection implementation=2 orientationKind")));
  EXPECT_EQ(Again(kDisplayInfo, read), info);
  const ByteVector timings =
      Whole(Hex("10 01 02 03 01 4D 21 56 A2 51 00 1E 30 48 88 3A 00 00 00 00 00 00 1C 73 0A D0 B0 20 E0 14 10 18 40 3A "
                "00 00 00 00 00 "
                "00 1C 1F 10 10 67 14 10 1B 24 10 E1 C0"));
  VideoTimingsRecord record = {};
  const Block block(EDID_BLOCK_UNKNOWN, timings);
  ASSERT_EQ(EDID_GetVideoTimings(&block, &record), 0);
  EXPECT_EQ(record.dtdCount, 2);
  EXPECT_EQ(record.cvtCount, 3);
  EXPECT_EQ(record.standardCount, 1);
  DtdSlot slot = {};
  DtdTiming timing = {};
  slot.flag = 1;
  std::copy_n(record.items + 18, 18, slot.bytes);
  ASSERT_EQ(VESA_GetDTD(&slot, &timing), 0);
  EXPECT_EQ(timing.pixelClock, 26750u);
  EXPECT_EQ(Write(kVideoTimings, record), timings);
}

TEST(Extensions, PlaceEachBit) {
  const std::vector<Meaning> meanings = MeaningsOf(
      "",
      "digitalInterface:8 standard/0:6 standardKind:2 standard/1:8 standard/2:8 standard/3:8 - packetized doubleClock "
      "hdcp "
      "clockEdge:2 dataEnableHigh dataEnable dataFormat:8 minClock:8 maxClock:16 crossover:16 subPixelLayout:8 "
      "subPixelConfig:8 subPixelShape:8 hPitch:8 vPitch:8 - ddcCi implementation:2 transparent viewDirection:2 "
      "fixedPixelFormat interlaced conditionalUpdate centering scaler stereo:3 legacyModes -:5 rateConversion:2 "
      "frameLock "
      "vFrequency:16 hFrequency:16 projector scanDirection:2 zeroPixel:2 portrait orientationKind:2 defaultColor:8 "
      "preferredColor:8 colorCaps/7 colorCaps/6 colorCaps/5 colorCaps/4 colorCaps/3 colorCaps/2 colorCaps/1 "
      "colorCaps/0 -:2 "
      "colorCaps/13 colorCaps/12 colorCaps/11 colorCaps/10 colorCaps/9 colorCaps/8 -:7 dithering depthBGR/0:8 "
      "depthBGR/1:8 "
      "depthBGR/2:8 depthCbYCr/0:8 depthCbYCr/1:8 depthCbYCr/2:8 -:4 aspectVariable aspectSqueeze aspectZoom "
      "aspectFull -:336 "
      "gammaCount:6 gammaKind:2");
  ASSERT_EQ(meanings.size(), 8u * (82 - 2));
  const Json base = Read(kDisplayInfo, Whole({0x40, 1}));
  for (size_t bit = 0; bit < meanings.size(); ++bit) {
    SCOPED_TRACE(bit);
    ByteVector bytes = Whole({0x40, 1});
    bytes[2 + bit / 8] = static_cast<uint8_t>(1u << bit % 8);
    FixChecksum(bytes);
    const Json read = Read(kDisplayInfo, bytes);
    const Meaning difference = Difference(base, read);
    EXPECT_EQ(difference.name, meanings[bit].name);
    EXPECT_EQ(difference.weight, meanings[bit].weight);
    EXPECT_EQ(Again(kDisplayInfo, read) == bytes, meanings[bit].name != "-");
  }
}

TEST(Extensions, RefuseOtherBlocksAndWhatDoesNotFit) {
  Quietly([] {
    for (const char* bytes : {"41 01", "40 02", "40 00"})
      EXPECT_EQ(Read(kDisplayInfo, Whole(Hex(bytes))), Json()) << bytes;
    EXPECT_EQ(Read(kDisplayInfo, Hex("40 01 00*125")), Json());
    for (const char* bytes : {"40 01", "10 02", "10 01 07", "10 01 06 05"}) {
      EXPECT_EQ(Read(kVideoTimings, Whole(Hex(bytes))), Json()) << bytes;
    }
    EXPECT_NE(Read(kVideoTimings, Whole(Hex("10 01 06 04 01"))), Json());  // all 122 bytes
    for (const char* record : {"", "version=2", "version standard=64,", "version stereo=8", "version hdcp=2"}) {
      EXPECT_EQ(Again(kDisplayInfo, FromText(record)), ByteVector()) << record;
    }
    for (const char* record : {"version dtdCount=7", "version standardCount=255", "version items=1,"}) {
      EXPECT_EQ(Again(kVideoTimings, FromText(record)), ByteVector()) << record;
    }
  });
}

}  // namespace
}  // namespace reedid::test
