#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/codec.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

Owned<VesaBlock> OpenBase(const ByteVector& bytes, uint8_t type = EDID_BLOCK_VESA) {
  const ExactBytes exact(bytes);
  const EdidBlock block = {type, 128, static_cast<uint16_t>(exact.size()), exact.data()};
  return Owned<VesaBlock>(VESA_Open(&block));
}

// The block that the model generates; empty when it is refused.
ByteVector Generated(const VesaBlock& model) {
  Block out(0, ByteVector(128, 0xEE));
  if (VESA_GenerateBlock(&model, &out) != 0) return {};
  return out.storage;
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
  const ByteVector base = Edid().Set(8, ByteVector(10)).Set(20, ByteVector(108)).Set(8, {0x04, 0x21}).Build();
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
    Quietly([&] { EXPECT_EQ(Generated(*OpenBase(bytes)) == bytes, meanings[bit].name != "-"); });
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
    const Owned<VesaBlock> model = OpenBase(bytes);
    const Json json = *model;
    EXPECT_EQ(ToText(json.at(Json::json_pointer("/" + std::string(row.field)))), row.text);
    EXPECT_EQ(Generated(*model), bytes);
  }
  // The kind of a descriptor: a timing by either byte of its clock, else by the tag.
  const Owned<VesaBlock> model = OpenBase(Edid().Set(54, Hex("00 01 00 FD")).Set(108, Hex("00 00 00 FC")).Build());
  EXPECT_EQ(model->descriptors[0].flag, 1);
  EXPECT_EQ(model->descriptors[3].flag, 0xFC);
}

// Fields that exist in EDID 1.4 only, and what becomes of their bits elsewhere.
TEST(BaseBlock, TellsVersionsApart) {
  struct Case {
    const char* name;
    ByteVector version, screen;
    uint8_t features;
    int h, v, aspect, depth, color;
    ByteVector screenOut;
    uint8_t featuresOut;
  };
  const Case cases[] = {
      {"1.3", {1, 3}, {0x4F, 0}, 0x02, 79, 0, 0, 0, 0, {0x4F, 0}, 0x0A},
      {"1.3, other color type", {1, 3}, {40, 30}, 0x1A, 40, 30, 0, 0, 0, {40, 30}, 0x0A},
      {"2.4", {2, 4}, {0, 0x4F}, 0x18, 0, 79, 0, 0, 0, {0, 0x4F}, 0x08},
      {"1.5", {1, 5}, {0, 0}, 0x00, 0, 0, 0, 0, 0, {0, 0}, 0x08},
      {"1.4 portrait", {1, 4}, {0, 0x4F}, 0x18, 0, 0, 178, 8, 3, {0x4F, 0}, 0x18},
      {"1.4 no size", {1, 4}, {0, 0}, 0x00, 0, 0, 0, 8, 0, {0, 0}, 0x00},
      {"1.4 largest aspect", {1, 4}, {0xFF, 0}, 0x08, 0, 0, 354, 8, 1, {0xFF, 0}, 0x08},
      {"1.4 aspect of 100", {1, 4}, {1, 0}, 0x08, 0, 0, 100, 8, 1, {0, 0}, 0x08},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const ByteVector bytes = Edid().Set(18, c.version).Set(20, {0xA5}).Set(21, c.screen).Set(24, {c.features}).Build();
    const Owned<VesaBlock> model = OpenBase(bytes);
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->hScreenSize, c.h);
    EXPECT_EQ(model->vScreenSize, c.v);
    EXPECT_EQ(model->aspectRatioX100, c.aspect);
    EXPECT_EQ(model->bitDepth, c.depth);
    EXPECT_EQ(model->interfaceType, c.depth == 0 ? 0 : 5);
    EXPECT_EQ(model->colorType, c.color);
    const ByteVector out = Generated(*model);
    ASSERT_EQ(out.size(), 128u);
    EXPECT_EQ(out[20], c.depth == 0 ? 0x80 : 0xA5);
    EXPECT_EQ(ByteVector(out.begin() + 21, out.begin() + 23), c.screenOut);
    EXPECT_EQ(out[24], c.featuresOut);
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
      {"standardTimings/0/hactive=248 standardTimings/0/frameRate=60 standardTimings/0/aspectRatio=5 "
       "standardTimings/0/valid",
       38, "00 00", "invalid std hactive: 248"},
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
    const Owned<VesaBlock> model = OpenBase(Edid().Build());
    FromJson(FromText(row.change), *model);
    ByteVector out;
    EXPECT_EQ(LogOf([&] { out = Generated(*model); }), Lines("VESA_GenerateBlock", row.message));
    ASSERT_EQ(out.size(), 128u);
    const ByteVector bytes = Hex(row.bytes);
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), out.begin() + static_cast<std::ptrdiff_t>(row.at)));
    EXPECT_EQ(GetChecksum(out.data(), 128), out[127]);
  }
}

TEST(BaseBlock, RefusesWhatIsNoBaseBlock) {
  const ByteVector edid = Edid().Build();
  ByteVector noHeader = edid, headerOnly(edid.begin(), edid.begin() + 8);
  noHeader[7] = 1;
  headerOnly.resize(256);
  const std::string bad = Err("VESA_Open", "invalid parameters");
  const auto refuses = [](const ByteVector& bytes, uint8_t type, const std::string& log) {
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(OpenBase(bytes, type), nullptr); }), log);
  };
  refuses(ByteVector(127), EDID_BLOCK_VESA, bad);
  refuses(ByteVector(256), EDID_BLOCK_VESA, bad);
  refuses(edid, EDID_BLOCK_UNKNOWN, bad);
  refuses(noHeader, EDID_BLOCK_VESA, Err("VESA_Open", "error edid header"));
  const EdidBlock noBytes = {EDID_BLOCK_VESA, 128, 128, nullptr};
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_Open(&noBytes), VESA_Open(nullptr)); }), bad + bad);

  const Owned<VesaBlock> model = OpenBase(edid);
  Block small(1, ByteVector(127, 0xEE)), out(EDID_BLOCK_CEA, ByteVector(256, 0xEE));
  EdidBlock noRoom = {1, 128, 128, nullptr};
  const auto refused = [&](const VesaBlock* from, EdidBlock* to, const std::string& message) {
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_GenerateBlock(from, to), -1); }), Err("VESA_GenerateBlock", message));
  };
  for (EdidBlock* to : {static_cast<EdidBlock*>(&small), &noRoom, static_cast<EdidBlock*>(nullptr)}) {
    refused(model.get(), to, "invalid parameters");
  }
  refused(nullptr, &small, "invalid parameters");
  EXPECT_EQ(small.storage, ByteVector(127, 0xEE));
  // What is wrong in the model leaves a cleared block.
  for (const char* letters : {"R[D", "REd"}) {
    std::memcpy(model->manufacturer, letters, 4);
    refused(model.get(), &out, "invalid manufacturer name " + std::string(letters));
    EXPECT_EQ(out.storage, headerOnly);
  }
  model->header[7] = 1;
  refused(model.get(), &out, "invalid edid header");
  EXPECT_EQ(out.storage, ByteVector(256));
  EXPECT_EQ(out.type, EDID_BLOCK_VESA);
  EXPECT_EQ(out.size, 128);
}

TEST(BaseBlock, WarnsOfAWrongChecksum) {
  ByteVector edid = Edid().Set(126, {0}).Build();
  const uint8_t right = edid[127];
  edid[127] = static_cast<uint8_t>(right ^ 0x0F);
  char text[32];
  std::snprintf(text, sizeof text, "checksum error(%02x,%02x)", edid[127], right);
  Owned<VesaBlock> model;
  EXPECT_EQ(LogOf([&] { model = OpenBase(edid); }), Warn("VESA_Open", text));
  EXPECT_EQ(model->checksumValid, 0);
  EXPECT_EQ(model->checksum, edid[127]);
  EXPECT_EQ(Generated(*model)[127], right);
}

TEST(BaseBlock, DeletesDescriptors) {
  const ByteVector edid = Edid().Dtd(k1080p60).Dtd(k720p60).Descriptor(0xFD, ByteVector(14, 1)).Name("tv").Build();
  const std::vector<uint8_t> flags[] = {
      {1, 0xFD, 0xFC, 0}, {1, 0xFD, 0xFC, 0}, {1, 1, 0xFC, 0}, {1, 1, 0xFD, 0}, {1, 1, 0xFD, 0xFC}};
  for (uint32_t i = 0; i < 5; ++i) {
    SCOPED_TRACE(i);
    const Owned<VesaBlock> model = OpenBase(edid);
    int32_t result = 0;
    EXPECT_EQ(LogOf([&] { result = VESA_DeleteDescriptor(model.get(), i); }),
              i < 4 ? "" : Err("VESA_DeleteDescriptor", "invalid parameters"));
    EXPECT_EQ(result, i < 4 ? 0 : -1);
    for (unsigned slot = 0; slot < 4; ++slot) EXPECT_EQ(model->descriptors[slot].flag, flags[i][slot]);
    EXPECT_EQ(model->descriptors[0].bytes[0], i == 0 ? 0x01 : 0x02);  // 74.25 MHz, 148.5 MHz
    EXPECT_EQ(ByteVector(model->descriptors[3].bytes, model->descriptors[3].bytes + 18) == ByteVector(18), i < 4);
  }
  EXPECT_EQ(VESA_DeleteDescriptor(nullptr, 0), -1);
}

}  // namespace
}  // namespace reedid::test
