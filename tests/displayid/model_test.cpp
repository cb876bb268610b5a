#include <gtest/gtest.h>

#include "tests/support/codec.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

Owned<DispIdBlock> OpenSection(const ByteVector& bytes, uint8_t type = EDID_BLOCK_DISPID_FIRST) {
  const ExactBytes exact(bytes);
  const EdidBlock block = {type, 256, static_cast<uint16_t>(exact.size()), exact.data()};
  return Owned<DispIdBlock>(DispID_Open(&block));
}

ByteVector Tags(const DispIdBlock& model) {
  ByteVector tags;
  for (unsigned i = 0; i < model.dataBlockCount; ++i) tags.push_back(model.dataBlocks[i].tag);
  return tags;
}

using Entry = Held<DispIdDataBlock>;

TEST(Section, WalksDataBlocks) {
  const std::string open = "DispID_Open";
  ByteVector cut = Section().Block(1, 0, {1}).Block(2, 0, {1, 2}).Build();
  cut.at(10) = 3;  // the second block reaches one byte into the checksum
  FixChecksum(cut);
  ByteVector wide = Section().Block(9, 0, ByteVector(248)).Build();
  wide.at(6) = 249;
  FixChecksum(wide);
  ByteVector widest = wide;
  widest.at(6) = 253;
  FixChecksum(widest);
  struct Case {
    const char* name;
    ByteVector bytes;
    std::vector<int> sizes;
    int used;
    std::string log;
  };
  const Case cases[] = {
      {"no payload", Section().Build(), {}, 0, ""},
      {"padding only", Section().Build(9), {}, 0, ""},
      {"blocks and padding", Section().Block(1, 0, {1}).Block(2, 0, {}).Build(7), {4, 3}, 7, ""},
      {"tag 0 with a payload is a block", Section().Block(0, 0, {1}).Block(5, 0, {}).Build(), {4, 3}, 7, ""},
      {"padding ends the walk", Section().Block(1, 0, {}).Block(0, 0, {}).Block(2, 0, {}).Build(), {3}, 3, ""},
      {"a rest of two bytes", Section().Block(1, 0, {1}).Build(2), {4}, 4, ""},
      {"the last block reaches too far", cut, {4}, 4, ""},
      {"248 bytes", Section().Block(9, 0, ByteVector(248)).Build(), {251}, 251, ""},
      {"249 bytes", wide, {252}, 252, Warn(open, "invalid number of payload bytes: 249")},
      {"253 bytes wrap", widest, {0}, 0, Warn(open, "invalid number of payload bytes: 253")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Owned<DispIdBlock> model;
    EXPECT_EQ(LogOf([&] { model = OpenSection(c.bytes); }), c.log);
    ASSERT_NE(model, nullptr);
    ASSERT_EQ(model->dataBlockCount, c.sizes.size());
    EXPECT_EQ(model->dataBlocks == nullptr, c.sizes.empty());
    size_t at = 4;
    for (size_t i = 0; i < c.sizes.size(); ++i) {
      const DispIdDataBlock& entry = model->dataBlocks[i];
      EXPECT_EQ(entry.size, c.sizes[i]);
      ASSERT_NE(entry.bytes, nullptr);
      for (unsigned b = 0; b < entry.size; ++b) EXPECT_EQ(entry.bytes[b], c.bytes[at + b]);
      at += entry.size;
    }
    EXPECT_EQ(model->payloadUsed, c.used);
    EXPECT_EQ(model->sectionSize, c.bytes.size());
  }
}

TEST(Section, ReadsTheHeader) {
  const struct {
    uint8_t version, productType;
    const char* fields;
  } rows[] = {{0x12, 0xF3, "productType=3 revision=2 version"},
              {0x20, 1, "productType version=2"},
              {0x20, 0, "version=2"},
              {0x20, 3, "productType=0x13 version=2"},
              {0x21, 15, "productType=0x1F revision version=2"}};
  for (const auto& row : rows) {
    const ByteVector bytes = Section(row.version, row.productType).ExtensionCount(2).Block(0x21, 0xAD, {7}).Build();
    const Owned<DispIdBlock> model = OpenSection(bytes, EDID_BLOCK_DISPID_NEXT);
    const std::string rest =
        " type=5 extensionCount=2 dataBlockCount payloadUsed=4 sectionSize=9 checksumValid checksum=";
    EXPECT_EQ(ToText(Json(*model)), ToText(FromText(row.fields + rest + std::to_string(bytes.back()))));
    EXPECT_EQ(model->dataBlocks[0].revision, 5);
    EXPECT_EQ(model->dataBlocks[0].headerFlags, 0x15);
  }
}

TEST(Section, RefusesOrWarns) {
  const ByteVector good = Section().Block(1, 0, {1}).Build();
  const ByteVector extension = Section().Block(1, 0, {1}).BuildExtension();
  const auto with = [](ByteVector bytes, size_t at, uint8_t value, bool fix = true) {
    bytes.at(at) = value;
    if (fix) FixChecksum(bytes);
    return bytes;
  };
  ByteVector tooLong(300);
  tooLong[0] = 0x10;
  tooLong[1] = 255;
  const std::string bad = "[ERR:DispID_Open]: invalid parameters\n";
  const std::string forced = Warn("DispID_Open", "invalid bytes in section: 260, force to 251");
  const ByteVector byte1Is200 = with(extension, 2, 200);
  struct Case {
    const char* name;
    uint8_t type;
    ByteVector bytes;
    int valid;  // -1: does not open
    std::string log;
  };
  const Case cases[] = {
      {"four bytes", 4, {0x12, 0, 2, 0}, -1, bad},
      {"type 3", 3, good, -1, Err("DispID_Open", "invalid block type: 3")},
      {"type 7", 7, good, -1, Err("DispID_Open", "invalid block type: 7")},
      {"extension of 127 bytes", 6, ByteVector(extension.begin(), extension.end() - 1), -1, bad},
      {"extension without its tag", 6, with(extension, 0, 0x02), -1, bad},
      {"version 0", 5, with(good, 0, 0x05), -1, Err("DispID_Open", "error version: 0.5")},
      {"longer than its block", 5, with(good, 1, 5), -1, bad},
      {"longer than 256, block too", 5, tooLong, 0, forced + Warn("DispID_Open", "checksum error(00,f1)")},
      {"longer than 256", 5, ByteVector(tooLong.begin(), tooLong.begin() + 255), -1, forced + bad},
      {"right", 4, good, 1, ""},
      {"right extension", 6, extension, 1, ""},
      {"section's checksum", 4, with(good, 8, 0, false), 0, Warn("DispID_Open", "checksum error(00,e5)")},
      {"block's checksum", 6, with(extension, 127, 0xAA, false), 0, Warn("DispID_Open", "checksum error(aa,90)")},
      {"forced to 126", 6, byte1Is200, 0,
       Warn("DispID_Open", "invalid bytes in section: 205, force to 121") +
           Warn("DispID_Open", "checksum error(70,21)")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Owned<DispIdBlock> model;
    EXPECT_EQ(LogOf([&] { model = OpenSection(c.bytes, c.type); }), c.log);
    EXPECT_EQ(model == nullptr ? -1 : model->checksumValid, c.valid);
  }
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_Open(nullptr), nullptr); }), bad);
}

TEST(Section, IsGeneratedByItsKind) {
  const auto section = [](uint8_t product, uint8_t count) {
    return Section(0x20, product).ExtensionCount(count).Block(0x21, 0x80, {1, 2});
  };
  const struct {
    const char* name;
    uint8_t type;
    const char* change;
    uint16_t capacity;
    ByteVector out;  // the generated block; empty: refused
    const char* error = "";
    bool cleared = true;
  } rows[] = {
      {"a first section has no product", 4, "", 256, section(0, 7).Build(10)},
      {"a next one no count", 5, "", 20, section(3, 0).Build(10)},
      {"an extension no count", 6, "", 128, section(3, 0).BuildExtension()},
      {"next without product", 5, "productType=0", 256, section(0, 0).Build(10)},
      {"capacity 5", 5, "", 5, {}, "invalid parameters", false},
      {"capacity 19", 5, "", 19, {}, "invalid section size: 20"},
      {"extension of 127", 6, "", 127, {}, "invalid parameters"},
      {"section of 257", 5, "sectionSize=257", 300, {}, "invalid section size: 257"},
      {"type 3", 6, "type=3", 256, {}, "invalid block type: 3", false},
      {"version 0", 5, "version=0", 256, {}, "error version: 0.0", false},
      {"first without product", 4, "productType=0", 256, {}, "invalid product type: 0", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Owned<DispIdBlock> model =
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
  const Owned<DispIdBlock> model = OpenSection(Section().Block(1, 0, {1}).Block(2, 0, {1}).Build(20));
  DispIdBlock* m = model.get();
  const Entry three(Hex("03 00 02 00 00"));
  EXPECT_EQ(DispID_AddDB(m, &three, 1), 0);
  EXPECT_EQ(DispID_AddDB(m, &m->dataBlocks[0], 0xFFFFFFFF), 0);
  EXPECT_EQ(Tags(*m), ByteVector({1, 3, 2, 1}));
  EXPECT_EQ(m->payloadUsed, 17);
  const Entry twelve(Hex("0C 00 09 00*9")), eleven(Hex("0B 00 08 00*8"));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_AddDB(m, &twelve, 0), -1); }),
            Err("DispID_AddDB", "not enough space, free 11, need 12"));
  EXPECT_EQ(DispID_AddDB(m, &eleven, 0), 0) << "fits exactly";
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_ReplaceDB(m, &m->dataBlocks[1], &twelve), -1); }),
            Err("DispID_ReplaceDB", "not enough space, free 4, need 12"));
  EXPECT_EQ(DispID_ReplaceDB(m, &m->dataBlocks[0], &three), 0);
  EXPECT_EQ(m->payloadUsed, 22);
  EXPECT_EQ(DispID_DeleteDB(m, &three), 0);
  EXPECT_EQ(DispID_DeleteDB(m, &m->dataBlocks[4]), 0);
  EXPECT_EQ(Tags(*m), ByteVector({3, 1, 3, 2}));
  EXPECT_EQ(m->payloadUsed, 18);
  EXPECT_EQ(DispID_FindDB(m, 3), &m->dataBlocks[0]);
  EXPECT_EQ(DispID_FindDB(m, 0x103), nullptr);

  m->sectionSize = 22;  // smaller than its blocks: the last does not stand before the checksum
  Block out(0, ByteVector(256));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_GenerateBlock(m, &out), 0); }),
            Err("DispID_GenerateBlock", "datablock[3] outof range, offset=18, length=4"));
  while (m->dataBlockCount > 0) DispID_DeleteDB(m, m->dataBlocks);
  EXPECT_EQ(m->payloadUsed, 0);
  while (m->dataBlockCount < 255) {
    m->payloadUsed = 0;
    ASSERT_EQ(DispID_AddDB(m, &three, 0), 0);
  }
  m->payloadUsed = 0;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_AddDB(m, &three, 0), -1); }), Err("DispID_AddDB", "invalid parameters"));
  EXPECT_EQ(m->dataBlockCount, 255);
}

TEST(Section, RefusesBadArguments) {
  const Owned<DispIdBlock> model = OpenSection(Section().Block(1, 0, {1}).Build(20));
  const Owned<DispIdBlock> bare = OpenSection(Section().Build(20));
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
