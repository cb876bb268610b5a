#include <gtest/gtest.h>

#include <cstring>

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

TEST(BaseBlock, DecodesEachField) {
  struct Case {
    const char* name;
    uint8_t revision;
    size_t at;
    ByteVector bytes;
    std::function<unsigned(const VesaBlock&)> field;
    unsigned value;
  };
#define FIELD(expression) [](const VesaBlock& m) { return static_cast<unsigned>(m.expression); }
  const Case cases[] = {
      {"letter 1", 4, 8, {0x04, 0x43}, FIELD(manufacturer[0]), 'A'},
      {"letter 2", 4, 8, {0x04, 0x43}, FIELD(manufacturer[1]), 'B'},
      {"letter 3", 4, 8, {0x04, 0x43}, FIELD(manufacturer[2]), 'C'},
      {"product", 4, 10, {0x12, 0x34}, FIELD(productCode), 0x3412},
      {"serial number", 4, 12, {0x12, 0x34, 0x56, 0x78}, FIELD(serialNumber), 0x78563412},
      {"week", 4, 16, {54}, FIELD(week), 54},
      {"year", 4, 17, {0x1E}, FIELD(year), 2020},
      {"digital", 3, 20, {0x80}, FIELD(digitalInput), 1},
      {"depth undefined", 4, 20, {0x85}, FIELD(bitDepth), 0},
      {"depth 8", 4, 20, {0xA5}, FIELD(bitDepth), 8},
      {"depth reserved", 4, 20, {0xF5}, FIELD(bitDepth), 18},
      {"depth of an analog input", 4, 20, {0x20}, FIELD(bitDepth), 8},
      {"interface", 4, 20, {0x85}, FIELD(interfaceType), 5},
      {"width", 4, 21, {60, 34}, FIELD(hScreenSize), 60},
      {"height", 4, 21, {60, 34}, FIELD(vScreenSize), 34},
      {"landscape", 4, 21, {0x4F, 0}, FIELD(aspectRatioX100), 178},
      {"gamma", 4, 23, {120}, FIELD(gammaX100), 220},
      {"no gamma", 4, 23, {0xFF}, FIELD(gammaX100), 0},
      {"standby", 4, 24, {0x80}, FIELD(standby), 1},
      {"suspend", 4, 24, {0x40}, FIELD(suspend), 1},
      {"active off", 4, 24, {0x20}, FIELD(activeOff), 1},
      {"color type", 4, 24, {0x10}, FIELD(colorType), 2},
      {"sRGB", 4, 24, {0x04}, FIELD(sRgbDefault), 1},
      {"preferred native", 4, 24, {0x02}, FIELD(preferredNative), 1},
      {"continuous", 4, 24, {0x01}, FIELD(continuousFreq), 1},
      {"red x", 4, 25, {0x80, 0, 0x01}, FIELD(redX), 6},
      {"red y", 4, 25, {0x20, 0, 0, 0x01}, FIELD(redY), 6},
      {"green x", 4, 25, {0x08, 0, 0, 0, 0x01}, FIELD(greenX), 6},
      {"green y", 4, 25, {0x02, 0, 0, 0, 0, 0x01}, FIELD(greenY), 6},
      {"blue x", 4, 25, {0, 0x80, 0, 0, 0, 0, 0x01}, FIELD(blueX), 6},
      {"blue y", 4, 25, {0, 0x20, 0, 0, 0, 0, 0, 0x01}, FIELD(blueY), 6},
      {"white x", 4, 25, {0, 0x08, 0, 0, 0, 0, 0, 0, 0x01}, FIELD(whiteX), 6},
      {"white y", 4, 25, {0, 0x02, 0, 0, 0, 0, 0, 0, 0, 0x01}, FIELD(whiteY), 6},
      {"first established", 4, 35, {0x01, 0, 0}, FIELD(established[0]), 1},
      {"established 15", 4, 35, {0, 0x80, 0}, FIELD(established[15]), 1},
      {"established 16", 4, 35, {0, 0, 0x80}, FIELD(established[16]), 1},
      {"standard timing", 4, 38, {0xD1, 0xC0}, FIELD(standardTimings[0].hactive), 1920},
      {"16:9", 4, 38, {0xD1, 0xC0}, FIELD(standardTimings[0].aspectRatio), ASPECT_16_9},
      {"4:3", 4, 38, {0xD1, 0x45}, FIELD(standardTimings[0].aspectRatio), ASPECT_4_3},
      {"5:4", 4, 38, {0xD1, 0x85}, FIELD(standardTimings[0].aspectRatio), ASPECT_5_4},
      {"16:10 in 1.3 too", 3, 38, {0xD1, 0x05}, FIELD(standardTimings[0].aspectRatio), ASPECT_16_10},
      {"rate", 4, 52, {0xD1, 0xFF}, FIELD(standardTimings[7].frameRate), 123},
      {"01 02 is a timing", 4, 38, {0x01, 0x02}, FIELD(standardTimings[0].valid), 1},
      {"DTD by its second byte", 4, 54, {0x00, 0x01, 0, 0xFD}, FIELD(descriptors[0].flag), 1},
      {"descriptor 3", 4, 108, {0, 0, 0, 0xFC}, FIELD(descriptors[3].flag), 0xFC},
      {"extensions", 4, 126, {3}, FIELD(extensionCount), 3},
  };
#undef FIELD
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    // Everything else is 0, so that only the bits at hand can make the value.
    ByteVector bytes = Edid(c.revision).Set(8, ByteVector(10)).Set(20, ByteVector(108)).Set(8, {0x04, 0x21}).Build();
    std::copy(c.bytes.begin(), c.bytes.end(), bytes.begin() + static_cast<std::ptrdiff_t>(c.at));
    FixChecksum(bytes);
    const Owned<VesaBlock> model = OpenBase(bytes);
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(c.field(*model), c.value);
    EXPECT_EQ(model->checksumValid, 1);
    if (c.revision != 4) continue;
    ByteVector again;
    LogOf([&] { again = Generated(*model); });  // the standard timings of zeroes are reported
    EXPECT_EQ(again, bytes);
  }
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
  struct Case {
    const char* name;
    std::function<void(VesaBlock&)> change;
    std::string message;  // empty: none
    size_t at;
    ByteVector bytes;
  };
  const Case cases[] = {
      {"week 54", [](VesaBlock& m) { m.week = 54; }, "", 16, {54}},
      {"week 55", [](VesaBlock& m) { m.week = 55; }, "invalid week:55", 16, {55}},
      {"week 254", [](VesaBlock& m) { m.week = 254; }, "invalid week:254", 16, {254}},
      {"model year", [](VesaBlock& m) { m.week = 255; }, "", 16, {255}},
      {"year 1989", [](VesaBlock& m) { m.year = 1989; }, "invalid year:1989", 17, {0xFF}},
      {"year 2246", [](VesaBlock& m) { m.year = 2246; }, "", 17, {0}},
      {"gamma 0.99", [](VesaBlock& m) { m.gammaX100 = 99; }, "", 23, {0xFF}},
      {"gamma 1.00", [](VesaBlock& m) { m.gammaX100 = 100; }, "", 23, {0}},
      {"depth 7", [](VesaBlock& m) { m.bitDepth = 7; }, "", 20, {0x95}},
      {"depth 2", [](VesaBlock& m) { m.bitDepth = 2; }, "", 20, {0xF5}},
      {"flags by bit 0", [](VesaBlock& m) { m.digitalInput = m.standby = 2; }, "", 20, {0x25}},
      {"established by bit 0", [](VesaBlock& m) { m.established[0] = m.established[9] = 3; }, "", 35, {1, 2, 0}},
      {"the last by any bit", [](VesaBlock& m) { m.established[16] = 2; }, "", 35, {0, 0, 0x80}},
      {"std width",
       [](VesaBlock& m) {
         m.standardTimings[0] = {1, 60, 248, ASPECT_16_10};
       },
       "invalid std hactive: 248",
       38,
       {0x00, 0x00}},
      {"std rate",
       [](VesaBlock& m) {
         m.standardTimings[1] = {1, 59, 256, ASPECT_4_3};
       },
       "invalid std refresd rate: 59",
       40,
       {0x01, 0x7F}},
      {"std rate of 124",
       [](VesaBlock& m) {
         m.standardTimings[1] = {1, 124, 256, ASPECT_5_4};
       },
       "",
       40,
       {0x01, 0x80}},
      {"std aspect",
       [](VesaBlock& m) {
         m.standardTimings[7] = {1, 60, 1920, ASPECT_64_27};
       },
       "invalid std aspect ratio: 6",
       52,
       {0xD1, 0xC0}},
      {"std unused",
       [](VesaBlock& m) {
         m.standardTimings[0] = {0, 60, 1920, 4};
       },
       "",
       38,
       {0x01, 0x01}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Owned<VesaBlock> model = OpenBase(Edid().Build());
    c.change(*model);
    ByteVector out;
    EXPECT_EQ(LogOf([&] { out = Generated(*model); }), c.message.empty() ? "" : Err("VESA_GenerateBlock", c.message));
    ASSERT_EQ(out.size(), 128u);
    const auto from = out.begin() + static_cast<std::ptrdiff_t>(c.at);
    EXPECT_EQ(ByteVector(from, from + static_cast<std::ptrdiff_t>(c.bytes.size())), c.bytes);
    EXPECT_EQ(GetChecksum(out.data(), 128), out[127]);
  }
}

TEST(BaseBlock, LeavesAClearedBlockOnRefusal) {
  const ByteVector edid = Edid().Build();
  ByteVector headerOnly(edid.begin(), edid.begin() + 8);
  headerOnly.resize(256);
  struct Case {
    const char* name;
    std::function<void(VesaBlock&)> change;
    std::string message;
    ByteVector bytes;
  };
  const Case cases[] = {
      {"header", [](VesaBlock& m) { m.header[7] = 1; }, "invalid edid header", ByteVector(256)},
      {"letter", [](VesaBlock& m) { std::memcpy(m.manufacturer, "R[D", 4); }, "invalid manufacturer name R[D",
       headerOnly},
      {"small letter", [](VesaBlock& m) { std::memcpy(m.manufacturer, "REd", 4); }, "invalid manufacturer name REd",
       headerOnly},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Owned<VesaBlock> model = OpenBase(edid);
    c.change(*model);
    Block out(EDID_BLOCK_CEA, ByteVector(256, 0xEE));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_GenerateBlock(model.get(), &out), -1); }),
              Err("VESA_GenerateBlock", c.message));
    EXPECT_EQ(out.storage, c.bytes);
    EXPECT_EQ(out.type, EDID_BLOCK_VESA);
    EXPECT_EQ(out.size, 128);
  }
}

TEST(BaseBlock, RefusesWhatIsNoBaseBlock) {
  const ByteVector edid = Edid().Build();
  ByteVector noHeader = edid;
  noHeader[7] = 1;
  const std::string bad = Err("VESA_Open", "invalid parameters");
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(OpenBase(ByteVector(127)), nullptr); }), bad);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(OpenBase(ByteVector(256)), nullptr); }), bad);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(OpenBase(edid, EDID_BLOCK_UNKNOWN), nullptr); }), bad);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(OpenBase(noHeader), nullptr); }), Err("VESA_Open", "error edid header"));
  const EdidBlock noBytes = {EDID_BLOCK_VESA, 128, 128, nullptr};
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_Open(&noBytes), nullptr); }), bad);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_Open(nullptr), nullptr); }), bad);

  const Owned<VesaBlock> model = OpenBase(edid);
  Block small(1, ByteVector(127, 0xEE));
  EdidBlock noRoom = {1, 128, 128, nullptr};
  const std::string refused = Err("VESA_GenerateBlock", "invalid parameters");
  for (EdidBlock* out : {static_cast<EdidBlock*>(&small), &noRoom, static_cast<EdidBlock*>(nullptr)}) {
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_GenerateBlock(model.get(), out), -1); }), refused);
  }
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_GenerateBlock(nullptr, &small), -1); }), refused);
  EXPECT_EQ(small.storage, ByteVector(127, 0xEE));
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
