#include "tests/support/model.h"

#include "tests/support/codec.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"

namespace reedid::test {
namespace {

Opened<DispIdBlock> OpenSection(const ByteVector& bytes, uint8_t type = EDID_BLOCK_DISPID_FIRST,
                                const std::string& log = "") {
  return OpenModel<DispIdBlock>(bytes, type, log);
}

// Tag and size of each data block, and the bytes in use.
std::string State(const DispIdBlock& model) {
  std::string text;
  for (unsigned i = 0; i < model.dataBlockCount; ++i) {
    text += std::to_string(model.dataBlocks[i].tag) + ":" + std::to_string(model.dataBlocks[i].size) + " ";
  }
  return text + "used " + std::to_string(model.payloadUsed);
}

ByteVector With(ByteVector bytes, size_t at, uint8_t value) {
  bytes.at(at) = value;
  FixChecksum(bytes);
  return bytes;
}

using Entry = Held<DispIdDataBlock>;

TEST(Section, WalksDataBlocks) {
  const ByteVector two = Section().Block(1, 0, {1}).Block(2, 0, {1, 2}).Build();
  const ByteVector wide = Section().Block(9, 0, ByteVector(248)).Build();
  const auto warning = [](const char* count) {
    return Warn("DispID_Open", std::string("invalid number of payload bytes: ") + count);
  };
  struct Case {
    const char* name;
    ByteVector bytes;
    const char* state;
    std::string log = "";
  };
  const Case cases[] = {
      {"padding only", Section().Build(9), "used 0"},
      {"blocks and padding", Section().Block(1, 0, {1}).Block(2, 0, {}).Build(7), "1:4 2:3 used 7"},
      {"tag 0 with a payload is a block", Section().Block(0, 0, {1}).Block(5, 0, {}).Build(), "0:4 5:3 used 7"},
      {"padding ends the walk", Section().Block(1, 0, {}).Block(0, 0, {}).Block(2, 0, {}).Build(), "1:3 used 3"},
      {"a rest of two bytes", Section().Block(1, 0, {1}).Build(2), "1:4 used 4"},
      {"the last block reaches into the checksum", With(two, 10, 3), "1:4 used 4"},
      {"248 bytes", wide, "9:251 used 251"},
      {"249 bytes", With(wide, 6, 249), "9:252 used 252", warning("249")},
      {"253 bytes wrap", With(wide, 6, 253), "9:0 used 0", warning("253")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Opened<DispIdBlock> model = OpenSection(c.bytes, EDID_BLOCK_DISPID_FIRST, c.log);
    EXPECT_EQ(State(*model), c.state);
    EXPECT_EQ(model->dataBlocks == nullptr, model->dataBlockCount == 0);
  }
}

TEST(Section, ReadsTheHeader) {
  const struct {
    uint8_t version, productType;
    const char* fields;
  } rows[] = {{0x12, 0xF3, "productType=3 revision=2 version"},
              {0x20, 1, "productType version=2"},
              {0x20, 0, "version=2"},
              {0x21, 15, "productType=0x1F revision version=2"}};
  for (const auto& row : rows) {
    const ByteVector bytes = Section(row.version, row.productType).ExtensionCount(2).Block(0x21, 0xAD, {7}).Build();
    const Opened<DispIdBlock> model = OpenSection(bytes, EDID_BLOCK_DISPID_NEXT);
    const std::string rest =
        " type=5 extensionCount=2 dataBlockCount payloadUsed=4 sectionSize=9 checksumValid checksum=";
    EXPECT_EQ(ToText(Json(*model)), ToText(FromText(row.fields + rest + std::to_string(bytes.back()))));
    EXPECT_EQ(model->dataBlocks[0].revision, 5);
    EXPECT_EQ(model->dataBlocks[0].headerFlags, 0x15);
  }
}

TEST(Section, RefusesOrWarns) {
  const ByteVector good = Section().Block(1, 0, {1}).Build();
  ByteVector extension = Section().Block(1, 0, {1}).BuildExtension(), badSum = extension, tooLong(300);
  badSum.back() = 0xAA;
  tooLong[0] = 0x10;
  tooLong[1] = 255;
  const std::string bad = "invalid parameters", forced = "?invalid bytes in section: 260, force to 251|";
  const struct {
    uint8_t type;
    ByteVector bytes;
    int valid;  // -1: does not open
    std::string messages;
  } cases[] = {
      {4, {0x12, 0, 2, 0}, -1, bad},
      {3, good, -1, "invalid block type: 3"},
      {7, good, -1, "invalid block type: 7"},
      {6, ByteVector(extension.begin(), extension.end() - 1), -1, bad},
      {6, With(extension, 0, 0x02), -1, bad},
      {5, With(good, 0, 0x05), -1, "error version: 0.5"},
      {5, With(good, 1, 5), -1, bad},  // longer than its block
      {5, tooLong, 0, forced + "?checksum error(00,f1)"},
      {5, ByteVector(tooLong.begin(), tooLong.begin() + 255), -1, forced + bad},
      {6, extension, 1, ""},
      {4, Concat({ByteVector(good.begin(), good.end() - 1), {0}}), 0, "?checksum error(00,e5)"},
      {6, badSum, 0, "?checksum error(aa,90)"},
      {6, With(extension, 2, 200), 0, "?invalid bytes in section: 205, force to 121|?checksum error(70,21)"},
  };
  for (const auto& c : cases) {
    const Opened<DispIdBlock> model = OpenSection(c.bytes, c.type, Lines("DispID_Open", c.messages));
    EXPECT_EQ(model == nullptr ? -1 : model->checksumValid, c.valid) << c.messages;
  }
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_Open(nullptr), nullptr); }), Lines("DispID_Open", bad));
}

TEST(Section, IsGeneratedByItsKind) {
  const auto section = [](uint8_t product, uint8_t count) {
    return Section(0x20, product).ExtensionCount(count).Block(0x21, 0x80, {1, 2});
  };
  const struct {
    uint8_t type;
    const char* change;
    uint16_t capacity;
    ByteVector out;  // the generated block; empty: refused
    const char* error = "";
    bool cleared = true;
  } rows[] = {
      {4, "", 256, section(0, 7).Build(10)},               // a first section has no product
      {5, "", 20, section(3, 0).Build(10)},                // the others no count
      {6, "", 128, section(3, 0).BuildExtension()},        // nor an extension
      {5, "productType=0", 256, section(0, 0).Build(10)},  // the first alone needs one
      {5, "", 5, {}, "invalid parameters", false},
      {5, "", 19, {}, "invalid section size: 20"},
      {6, "", 127, {}, "invalid parameters"},
      {5, "sectionSize=257", 300, {}, "invalid section size: 257"},
      {6, "type=3", 256, {}, "invalid block type: 3", false},
      {5, "version=0", 256, {}, "error version: 0.0", false},
      {4, "productType=0", 256, {}, "invalid product type: 0", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << int{row.type} << " " << row.change << " " << row.capacity);
    const Opened<DispIdBlock> model =
        OpenSection(row.type == 6 ? section(3, 7).BuildExtension() : section(3, 7).Build(10), row.type);
    FromJson(FromText(row.change), *model);
    Block out(99, ByteVector(row.capacity, 0xEE));
    int32_t result = 0;
    EXPECT_EQ(LogOf([&] { result = DispID_GenerateBlock(model.get(), &out); }),
              Lines("DispID_GenerateBlock", row.error));
    EXPECT_EQ(result, row.out.empty() ? -1 : 0);
    EXPECT_EQ(out.storage.back() == 0xEE, !row.cleared);
    if (row.out.empty()) continue;
    EXPECT_EQ(out.type, row.type);
    EXPECT_EQ(HexOf(ByteVector(out.bytes, out.bytes + out.size)), HexOf(row.out));
  }
}

TEST(Section, AddsReplacesAndDeletesWithinItsSize) {
  const Opened<DispIdBlock> model = OpenSection(Section().Block(1, 0, {1}).Block(2, 0, {1}).Build(20));
  DispIdBlock* m = model.get();
  const Entry three(Hex("03 00 02 00 00")), twelve(Hex("0C 00 09 00*9")), eleven(Hex("0B 00 08 00*8"));
  Block out(0, ByteVector(256));
  const auto generateSmaller = [&] {
    m->sectionSize = 22;
    return DispID_GenerateBlock(m, &out);
  };
  ExpectSteps([&] { return State(*m); },
              {{[&] { return DispID_AddDB(m, &three, 1); }, "1:4 3:5 2:4 used 13"},
               {[&] { return DispID_AddDB(m, m->dataBlocks, 0xFFFFFFFF); }, "1:4 3:5 2:4 1:4 used 17"},
               {[&] { return DispID_AddDB(m, &twelve, 0); }, Err("DispID_AddDB", "not enough space, free 11, need 12")},
               {[&] { return DispID_AddDB(m, &eleven, 0); }, "11:11 1:4 3:5 2:4 1:4 used 28"},
               {[&] { return DispID_ReplaceDB(m, &m->dataBlocks[1], &twelve); },
                Err("DispID_ReplaceDB", "not enough space, free 4, need 12")},
               {[&] { return DispID_ReplaceDB(m, m->dataBlocks, &three); }, "3:5 1:4 3:5 2:4 1:4 used 22"},
               {[&] { return DispID_DeleteDB(m, &three); }, "3:5 1:4 3:5 2:4 1:4 used 22"},
               {[&] { return DispID_DeleteDB(m, &m->dataBlocks[4]); }, "3:5 1:4 3:5 2:4 used 18"},
               {generateSmaller, Err("DispID_GenerateBlock", "datablock[3] outof range, offset=18, length=4") +
                                     "3:5 1:4 3:5 2:4 used 18"}});
  EXPECT_EQ(DispID_FindDB(m, 3), &m->dataBlocks[0]);
  EXPECT_EQ(DispID_FindDB(m, 2), &m->dataBlocks[3]);
  EXPECT_EQ(DispID_FindDB(m, 0x103), nullptr);
  // What moved up is written once.
  EXPECT_EQ(DispID_DeleteDB(m, m->dataBlocks), 0);
  ASSERT_EQ(DispID_GenerateBlock(m, &out), 0);
  EXPECT_EQ(HexOf(ByteVector(out.bytes, out.bytes + out.size)),
            HexOf(Section(0x12, 0).Block(1, 0, {1}).Block(3, 0, {0, 0}).Block(2, 0, {1}).Build(4)));
  while (m->dataBlockCount > 0) DispID_DeleteDB(m, m->dataBlocks);
  EXPECT_EQ(m->payloadUsed, 0);
  while (m->dataBlockCount < 255) {
    m->payloadUsed = 0;
    ASSERT_EQ(DispID_AddDB(m, &three, 0), 0);
  }
  m->payloadUsed = 0;
  ExpectRefused({{"DispID_AddDB", [&] { return DispID_AddDB(m, &three, 0); }}});
  EXPECT_EQ(m->dataBlockCount, 255);
}

TEST(Section, RefusesBadArguments) {
  const Opened<DispIdBlock> model = OpenSection(Section().Block(1, 0, {1}).Build(20)),
                            bare = OpenSection(Section().Build(20));
  DispIdDataBlock* entry = model->dataBlocks;
  const Entry small(Hex("01 00"));
  DispIdDataBlock noBytes = {1, 0, 0, 3, nullptr};
  Block out(0, ByteVector(128));
  ExpectRefused({
      {"DispID_GenerateBlock", [&] { return DispID_GenerateBlock(bare.get(), &out); }},
      {"DispID_GenerateBlock", [&] { return DispID_GenerateBlock(model.get(), nullptr); }},
      {"DispID_AddDB", [&] { return DispID_AddDB(nullptr, entry, 0); }},
      {"DispID_AddDB", [&] { return DispID_AddDB(model.get(), &small, 0); }},
      {"DispID_AddDB", [&] { return DispID_AddDB(model.get(), &noBytes, 0); }},
      {"DispID_DeleteDB", [&] { return DispID_DeleteDB(bare.get(), entry); }},
      {"DispID_DeleteDB", [&] { return DispID_DeleteDB(model.get(), nullptr); }},
      {"DispID_ReplaceDB", [&] { return DispID_ReplaceDB(bare.get(), entry, entry); }},
      {"DispID_ReplaceDB", [&] { return DispID_ReplaceDB(model.get(), &noBytes, entry); }},
      {"DispID_ReplaceDB", [&] { return DispID_ReplaceDB(model.get(), entry, &small); }},
  });
  EXPECT_EQ(model->payloadUsed, 4);
}

}  // namespace
}  // namespace reedid::test
