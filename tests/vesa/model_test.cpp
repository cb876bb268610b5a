#include "tests/support/model.h"

#include <cstring>

#include "tests/support/codec.h"
#include "tests/support/edid_builder.h"

namespace reedid::test {
namespace {

Opened<VesaBlock> OpenBase(const ByteVector& bytes, const std::string& log = "") {
  return OpenModel<VesaBlock>(bytes, EDID_BLOCK_VESA, log);
}

// All zero but for the letters of the maker and the version: each bit is one field's, or none's.
TEST(BaseBlock, PlacesEachBit) {
  const std::vector<Meaning> meanings = MeaningsOf(
      "",
      "?:16 productCode:16 serialNumber:32 week:8 year:8 ?:16 interfaceType:4 ?:3 digitalInput ?:16 gammaX100:8 "
      "continuousFreq preferredNative sRgbDefault colorType:2 activeOff suspend standby greenY:2 greenX:2 redY:2 "
      "redX:2 "
      "whiteY:2 whiteX:2 blueY:2 blueX:2 redX:8@4 redY:8@4 greenX:8@4 greenY:8@4 blueX:8@4 blueY:8@4 whiteX:8@4 "
      "whiteY:8@4 established/#:16 -:7 established/16 ?:704 extensionCount:8");
  const ByteVector base =
      Edid().Set(8, ByteVector(10)).Set(20, ByteVector(18)).Set(54, ByteVector(72)).Set(8, {0x04, 0x21}).Build();
  const auto decoded = [](const ByteVector& bytes) {
    Json json = *OpenBase(bytes);
    json.erase("checksum");
    return json;
  };
  ASSERT_EQ(meanings.size(), 8u * (127 - 8));
  for (size_t bit = 0; bit < meanings.size(); ++bit) {
    if (meanings[bit].name == "?") continue;
    SCOPED_TRACE(std::to_string(8 + bit / 8) + ", bit " + std::to_string(bit % 8));
    ByteVector bytes = base;
    bytes[8 + bit / 8] = static_cast<uint8_t>(bytes[8 + bit / 8] ^ 1u << bit % 8);
    FixChecksum(bytes);
    const Meaning difference = Difference(decoded(base), decoded(bytes));
    EXPECT_EQ(difference.name, meanings[bit].name);
    EXPECT_EQ(difference.weight, meanings[bit].weight);
    const Opened<VesaBlock> model = OpenBase(bytes);
    const std::string log = "invalid week:" + std::to_string(model->week);
    const ByteVector out = Generated(*model, model->week < 55 ? "" : Err("VESA_GenerateBlock", log));
    EXPECT_EQ(out == bytes, meanings[bit].name != "-");
  }
}

TEST(BaseBlock, DecodesWhatIsNotJustBits) {
  const struct {
    size_t at;
    const char* bytes;
    const char* field;
    const char* text;
  } rows[] = {
      {8, "04 43", "manufacturer", "ABC"},
      {20, "85", "bitDepth", ""},
      {20, "F5", "bitDepth", "18"},
      {20, "20", "bitDepth", "8"},  // of an analog input
      {23, "FF", "gammaX100", ""},
      {38, "D1 C0", "standardTimings/0", "aspectRatio=4 frameRate=60 hactive=1920 valid"},
      {38, "D1 45", "standardTimings/0", "aspectRatio=2 frameRate=65 hactive=1920 valid"},
      {38, "D1 85", "standardTimings/0", "aspectRatio frameRate=65 hactive=1920 valid"},
      {38, "01 02", "standardTimings/0", "aspectRatio=5 frameRate=62 hactive=256 valid"},
      {38, "01 01", "standardTimings/0", ""},
      {52, "D1 FF", "standardTimings/7", "aspectRatio=4 frameRate=123 hactive=1920 valid"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.bytes);
    const ByteVector bytes = Edid().Set(row.at, Hex(row.bytes)).Build();
    const Opened<VesaBlock> model = OpenBase(bytes);
    const Json json = *model;
    EXPECT_EQ(ToText(json.at(Json::json_pointer("/" + std::string(row.field)))), row.text);
    EXPECT_EQ(Generated(*model), bytes);
  }
  // The kind of a descriptor: a timing by either byte of its clock, else by the tag.
  const Opened<VesaBlock> model = OpenBase(Edid().Set(54, Hex("00 01 00 FD")).Set(108, Hex("00 00 00 FC")).Build());
  EXPECT_EQ(model->descriptors[0].flag, 1);
  EXPECT_EQ(model->descriptors[3].flag, 0xFC);
}

// Fields that exist in EDID 1.4 only, and what becomes of their bits elsewhere: bytes 18 to 24 and what is written.
TEST(BaseBlock, TellsVersionsApart) {
  const struct {
    const char *bytes, *fields, *out;
  } rows[] = {
      {"01 03 A5 4F 00 78 02", "hScreenSize=79", "01 03 80 4F 00 78 0A"},
      {"01 03 A5 28 1E 78 1A", "hScreenSize=40 vScreenSize=30", "01 03 80 28 1E 78 0A"},
      {"02 04 A5 00 4F 78 18", "vScreenSize=79", "02 04 80 00 4F 78 08"},
      {"01 05 A5 00 00 78 00", "", "01 05 80 00 00 78 08"},
      {"01 04 A5 00 4F 78 18", "aspectRatioX100=178 bitDepth=8 colorType=3 interfaceType=5", "01 04 A5 4F 00 78 18"},
      {"01 04 A5 00 00 78 00", "bitDepth=8 interfaceType=5", "01 04 A5 00 00 78 00"},
      {"01 04 A5 FF 00 78 08", "aspectRatioX100=354 bitDepth=8 colorType interfaceType=5", "01 04 A5 FF 00 78 08"},
      {"01 04 A5 01 00 78 08", "aspectRatioX100=100 bitDepth=8 colorType interfaceType=5", "01 04 A5 00 00 78 08"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.bytes);
    const Opened<VesaBlock> model = OpenBase(Edid().Set(18, Hex(row.bytes)).Build());
    const Json all = *model;
    Json fields;
    for (const char* name :
         {"hScreenSize", "vScreenSize", "aspectRatioX100", "bitDepth", "interfaceType", "colorType"}) {
      fields[name] = all[name];
    }
    EXPECT_EQ(ToText(fields), row.fields);
    EXPECT_EQ(Generated(*model), Edid().Set(18, Hex(row.out)).Build());
  }
}

TEST(BaseBlock, ReportsOddValuesAndWritesThem) {
  const struct {
    const char* change;
    size_t at;
    const char* bytes;
    const char* message = "";
  } rows[] = {
      {"week=54", 16, "36"},
      {"week=55", 16, "37", "invalid week:55"},
      {"week=254", 16, "FE", "invalid week:254"},
      {"week=255", 16, "FF"},  // a model year
      {"year=1989", 17, "FF", "invalid year:1989"},
      {"year=2246", 17, "00"},
      {"gammaX100=99", 23, "FF"},
      {"gammaX100=100", 23, "00"},
      {"bitDepth=7", 20, "95"},
      {"bitDepth=2", 20, "F5"},
      {"digitalInput=2 standby=2", 20, "25"},  // flags by bit 0
      {"established=3,0,0,0,0,0,0,0,0,3", 35, "01 02 00"},
      {"established/16=2", 35, "00 00 80"},  // the last by any bit
      {"standardTimings/0/hactive=255 standardTimings/0/frameRate=60 standardTimings/0/aspectRatio=5 "
       "standardTimings/0/valid",
       38, "00 00", "invalid std hactive: 255"},
      {"standardTimings/1/hactive=256 standardTimings/1/frameRate=59 standardTimings/1/aspectRatio=2 "
       "standardTimings/1/valid",
       40, "01 7F", "invalid std refresd rate: 59"},
      {"standardTimings/1/hactive=256 standardTimings/1/frameRate=124 standardTimings/1/aspectRatio=1 "
       "standardTimings/1/valid",
       40, "01 80"},
      {"standardTimings/7/hactive=1920 standardTimings/7/frameRate=60 standardTimings/7/aspectRatio=6 "
       "standardTimings/7/valid",
       52, "D1 C0", "invalid std aspect ratio: 6"},
      {"standardTimings/0/hactive=1920 standardTimings/0/frameRate=60", 38, "01 01"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.change);
    const Opened<VesaBlock> model = OpenBase(Edid().Build());
    FromJson(FromText(row.change), *model);
    ByteVector out = Generated(*model, Lines("VESA_GenerateBlock", row.message));
    EXPECT_EQ(GetChecksum(out.data(), 128), out.at(127));
    const ByteVector bytes = Hex(row.bytes);
    EXPECT_EQ(HexOf({out.data() + row.at, out.data() + row.at + bytes.size()}), HexOf(bytes));
  }
}

TEST(BaseBlock, RefusesWhatIsNoBaseBlock) {
  const ByteVector edid = Edid().Build(), headerOnly = Hex("00 FF*6 00*249");
  const std::string bad = Err("VESA_Open", "invalid parameters");
  EXPECT_EQ(OpenBase(ByteVector(127), bad), nullptr);
  EXPECT_EQ(OpenBase(ByteVector(256), bad), nullptr);
  EXPECT_EQ(OpenModel<VesaBlock>(edid, EDID_BLOCK_UNKNOWN, bad), nullptr);
  EXPECT_EQ(OpenBase(Edid().Set(7, {1}).Build(), Err("VESA_Open", "error edid header")), nullptr);
  const EdidBlock noBytes = {EDID_BLOCK_VESA, 128, 128, nullptr};
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_Open(&noBytes), VESA_Open(nullptr)); }), bad + bad);

  const Opened<VesaBlock> model = OpenBase(edid);
  ByteVector room(256, 0xEE);
  EdidBlock out = {0, 256, 0, room.data()}, small = {0, 127, 0, room.data()}, noRoom = {1, 128, 128, nullptr};
  for (EdidBlock* to : {&small, &noRoom, static_cast<EdidBlock*>(nullptr)}) {
    ExpectRefused({{"VESA_GenerateBlock", [&] { return VESA_GenerateBlock(model.get(), to); }}});
  }
  ExpectRefused({{"VESA_GenerateBlock", [&] { return VESA_GenerateBlock(nullptr, &out); }}});
  EXPECT_EQ(room, ByteVector(256, 0xEE));
  // What is wrong in the model leaves a cleared block.
  const auto refused = [&](const std::string& message) {
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_GenerateBlock(model.get(), &out), -1); }), Err("VESA_GenerateBlock", message));
  };
  for (const char* letters : {"R[D", "REd", "R@D"}) {
    std::memcpy(model->manufacturer, letters, 4);
    refused("invalid manufacturer name " + std::string(letters));
    EXPECT_EQ(HexOf(room), HexOf(headerOnly));
  }
  model->header[7] = 1;
  refused("invalid edid header");
  EXPECT_EQ(room, ByteVector(256));
  EXPECT_EQ(out.type, EDID_BLOCK_VESA);
  EXPECT_EQ(out.size, 128);
}

TEST(BaseBlock, WarnsOfAWrongChecksum) {
  ByteVector edid = Edid().Build();
  const uint8_t right = std::exchange(edid[127], uint8_t{0x0F});
  char text[32];
  std::snprintf(text, sizeof text, "checksum error(0f,%02x)", right);
  const Opened<VesaBlock> model = OpenBase(edid, Warn("VESA_Open", text));
  EXPECT_EQ(model->checksumValid, 0);
  EXPECT_EQ(model->checksum, 0x0F);
  EXPECT_EQ(Generated(*model)[127], right);
}

TEST(BaseBlock, DeletesDescriptors) {
  const ByteVector edid = Edid().Dtd(k1080p60).Dtd(k720p60).Descriptor(0xFD, ByteVector(14, 1)).Name("tv").Build();
  for (uint32_t i = 0; i < 4; ++i) {
    const Opened<VesaBlock> model = OpenBase(edid);
    EXPECT_EQ(VESA_DeleteDescriptor(model.get(), i), 0);
    ByteVector left = edid;
    left.erase(left.begin() + 54 + 18 * i, left.begin() + 72 + 18 * i);
    left.insert(left.begin() + 108, 18, 0);
    FixChecksum(left);
    EXPECT_EQ(HexOf(Generated(*model)), HexOf(left));
    EXPECT_EQ(model->descriptors[3].flag, 0);
    ExpectRefused({{"VESA_DeleteDescriptor", [&] { return VESA_DeleteDescriptor(model.get(), 4 + i); }}});
  }
  ExpectRefused({{"VESA_DeleteDescriptor", [] { return VESA_DeleteDescriptor(nullptr, 0); }}});
}

}  // namespace
}  // namespace reedid::test
