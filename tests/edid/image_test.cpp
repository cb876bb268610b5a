#include <gtest/gtest.h>

#include <numeric>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

constexpr uint32_t kEnd = 0xFFFFFFFF;

ByteVector Repeat(const ByteVector& bytes, size_t times) {
  ByteVector all;
  for (size_t i = 0; i < times; ++i) all.insert(all.end(), bytes.begin(), bytes.end());
  return all;
}

uint8_t SumOf(const EdidBlock& block) {
  return static_cast<uint8_t>(std::accumulate(block.bytes, block.bytes + block.size, 0u));
}

TEST(Checksum, CompletesTheSum) {
  ByteVector block(128);
  block[0] = block[1] = 0xFF;
  block[2] = 0x01;
  block[127] = 0x77;  // where the checksum stands is not read
  ByteVector section(256, 1);
  EXPECT_EQ(GetChecksum(block.data(), 128), 0x01u);
  EXPECT_EQ(GetChecksum(block.data(), 1), 0u);
  EXPECT_EQ(GetChecksum(block.data(), 2), 0x01u);
  EXPECT_EQ(GetChecksum(section.data(), 256), 0x01u);
  EXPECT_EQ(GetChecksum(section.data(), 0), 0u);
  section.resize(70000, 1);
  EXPECT_LT(GetChecksum(section.data(), 70000), 256u) << "ends";
}

TEST(Image, OpensEachKindOfBlock) {
  struct Case {
    uint8_t tag;
    uint8_t type;
    std::string log;
  };
  const Case cases[] = {
      {0x02, EDID_BLOCK_CEA, ""},
      {0x70, EDID_BLOCK_DISPID_EXT, ""},
      {0xF0, EDID_BLOCK_MAP, ""},
      {0x10, EDID_BLOCK_UNKNOWN, Warn("ParseEdid", "unknown extension block(tag=10)")},
      {0x00, EDID_BLOCK_UNKNOWN, Warn("ParseEdid", "unknown extension block(tag=00)")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(int{c.tag});
    ByteVector extension(128);
    extension[0] = c.tag;
    Owned<EdidHandle> handle;
    EXPECT_EQ(LogOf([&] { handle = OpenImage(Edid().Extension(extension).Build()); }), c.log);
    ASSERT_EQ(handle->blockCount, 2);
    EXPECT_EQ(handle->blocks[0].type, EDID_BLOCK_VESA);
    EXPECT_EQ(handle->blocks[1].type, c.type);
    EXPECT_EQ(handle->blocks[1].capacity, 128);
    EXPECT_EQ(handle->blocks[1].size, 128);
  }
}

// What opens, by the length of the data alone: entries' sizes, or null.
TEST(Image, SplitsDataIntoBlocks) {
  const ByteVector base = Edid().Build();
  const ByteVector section = Section().Block(1, 0, ByteVector(13)).Build();  // 21 bytes, byte 3 is 0
  const ByteVector counted = Section().ExtensionCount(1).Build(3);           // 8 bytes
  ByteVector tooLong = Section().Build(250);
  tooLong.resize(260);
  tooLong[1] = 252;
  ByteVector noWarning = {0x12, 9, 2, 0xFF, 0, 0};  // expects 256, that is 0, sections and has none
  const ByteVector header(base.begin(), base.begin() + 7);
  struct Case {
    const char* name;
    ByteVector data;
    bool opens;
    std::vector<uint16_t> sizes;
    std::string log;
  };
  const std::string badSize = Err("ParseEdid", "invalid edid size");
  const auto badCount = [](const char* counts) {
    return Warn("GetSectionCount", "invalid section count(" + std::string(counts) + ")");
  };
  const Case cases[] = {
      {"no data", {}, false, {}, Err("EDID_Open", "invalid parameters")},
      {"EDID of 127 bytes", ByteVector(base.begin(), base.end() - 1), false, {}, badSize},
      {"EDID of 8 bytes", ByteVector(base.begin(), base.begin() + 8), false, {}, badSize},
      {"EDID of 200 bytes", Concat({base, ByteVector(72)}), false, {}, badSize},
      {"part of the EDID header", header, false, {}, ""},
      {"one block", base, true, {128}, ""},
      {"count byte disagrees", Edid().Set(126, {9}).Extension(Cta()).Build(), true, {128, 128}, ""},
      {"256 blocks", Repeat(base, 256), true, {}, ""},
      {"257 blocks", Repeat(base, 257), true, {128}, ""},
      {"DisplayID of 4 bytes", {0x12, 0, 2, 0}, false, {}, Err("ParseDisplayID", "invalid displayid size")},
      {"smallest section", {0x12, 0, 2, 0, 0xEC}, true, {5}, ""},
      {"section and a rest", Concat({section, {0x12, 0, 0, 0}}), true, {21}, ""},
      {"rest of one byte", Concat({section, {0x12}}), true, {21}, ""},
      {"two sections, counted", Concat({counted, section}), true, {8, 21}, ""},
      {"two sections, not counted", Concat({section, counted}), true, {21, 8}, badCount("1, 2")},
      {"second section cut",
       Concat({counted, ByteVector(section.begin(), section.end() - 1)}),
       true,
       {8},
       badCount("2, 1")},
      {"section of 257 bytes", tooLong, false, {}, badCount("1, 0")},
      {"section of 256 bytes", Section().Build(251), true, {256}, ""},
      {"behind it one of 257", Concat({counted, tooLong}), true, {8}, badCount("2, 1")},
      {"no section, none expected", noWarning, false, {}, ""},
      {"256 sections", Repeat({0x12, 0, 2, 0, 0xEC}, 256), false, {}, badCount("1, 0")},
      {"257 sections", Repeat({0x12, 0, 2, 0, 0xEC}, 257), true, {5}, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const ExactBytes exact(c.data);
    Owned<EdidHandle> handle;
    EXPECT_EQ(LogOf([&] { handle.reset(EDID_Open(exact.data(), exact.size())); }), c.log);
    ASSERT_EQ(handle != nullptr, c.opens);
    if (!c.opens) continue;
    ASSERT_NE(handle->blocks, nullptr);
    ASSERT_EQ(handle->blockCount, c.sizes.size());
    const bool edid = isEdidHeader(exact.data());
    size_t at = 0;
    for (unsigned i = 0; i < handle->blockCount; ++i) {
      const EdidBlock& block = handle->blocks[i];
      EXPECT_EQ(block.size, c.sizes[i]);
      EXPECT_EQ(block.capacity, edid ? 128 : 256);
      EXPECT_EQ(block.type, edid ? (i == 0 ? EDID_BLOCK_VESA : EDID_BLOCK_CEA)
                                 : (i == 0 ? EDID_BLOCK_DISPID_FIRST : EDID_BLOCK_DISPID_NEXT));
      EXPECT_TRUE(std::equal(block.bytes, block.bytes + block.size, c.data.begin() + static_cast<std::ptrdiff_t>(at)));
      for (unsigned free = block.size; free < block.capacity; ++free) ASSERT_EQ(block.bytes[free], 0);
      at += block.size;
    }
  }
}

// An edit keeps the count and the checksum of block 0, and only these, true.
TEST(Image, AddsAtMinOfIndexAndCount) {
  ByteVector marked(128, 0x5A);  // an extension with a wrong checksum
  for (const uint32_t index : {0u, 1u, 2u, 7u, kEnd}) {
    SCOPED_TRACE(index);
    const Owned<EdidHandle> handle = OpenImage(Edid().Extension(Cta()).Build());
    const Block added(77, marked, 200);
    ASSERT_EQ(EDID_AddBlock(handle.get(), &added, index), 0);
    ASSERT_EQ(handle->blockCount, 3);
    const uint32_t place = std::min(index, 2u);
    const EdidBlock& entry = handle->blocks[place];
    EXPECT_EQ(entry.type, 77);
    EXPECT_EQ(entry.capacity, 200);
    EXPECT_EQ(entry.size, 128);
    EXPECT_EQ(entry.bytes[199], 0) << "room up to the capacity";
    EXPECT_EQ(handle->blocks[place == 0 ? 1 : 0].type, EDID_BLOCK_VESA);
    EXPECT_EQ(handle->blocks[place == 2 ? 1 : 2].type, EDID_BLOCK_CEA);
    EXPECT_EQ(SumOf(handle->blocks[0]), 0);
    EXPECT_EQ(handle->blocks[0].bytes[place == 0 ? 3 : 126], 2);
    EXPECT_EQ(ByteVector(entry.bytes, entry.bytes + 128) == marked, place > 0);
  }
}

TEST(Image, AddsTheFirstBlockOfAnEmptyHandle) {
  const ByteVector base = Edid().Set(126, {5}).Build();
  ByteVector edid = base;
  edid[126] = 0;
  FixChecksum(edid);
  struct Case {
    const char* name;
    ByteVector bytes;
    ByteVector expected;
  };
  const Case cases[] = {
      {"base block", base, edid},
      {"section", {0x12, 0, 2, 7, 0x55}, {0x12, 0, 2, 0, 0xEC}},
      {"too short for a count", {0x12, 0x34, 0x99}, {0x12, 0x34, 0xBA}},
      {"a single byte", {0x12}, {0x00}},
      {"header without a count",
       {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 1},
       {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 6}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EdidHandle handle = {200, nullptr};  // emptied by its owner; the count means nothing without an array
    Block block(1, c.bytes);
    block.capacity = 0;
    ASSERT_EQ(EDID_AddBlock(&handle, &block, 3), 0);
    ASSERT_EQ(handle.blockCount, 1);
    EXPECT_EQ(ByteVector(handle.blocks[0].bytes, handle.blocks[0].bytes + c.bytes.size()), c.expected);
    EXPECT_EQ(EDID_DeleteBlock(&handle, handle.blocks), 0);
    EXPECT_EQ(handle.blockCount, 0);
    EXPECT_EQ(EDID_DeleteBlock(&handle, handle.blocks), 0) << "empty, still valid";
    ASSERT_EQ(EDID_AddBlock(&handle, &block, 0), 0);
    EXPECT_EQ(handle.blockCount, 1);
    std::free(handle.blocks[0].bytes);
    std::free(handle.blocks);
  }
}

TEST(Image, RefusesA256thBlock) {
  const Owned<EdidHandle> handle = OpenImage(Concat({Edid().Build(), Repeat(Cta().Build(), 254)}));
  ASSERT_EQ(handle->blockCount, 255);
  EdidBlock* blocks = handle->blocks;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_AddBlock(handle.get(), blocks, 0), -1); }),
            Err("EDID_AddBlock", "invalid parameters"));
  EXPECT_EQ(handle->blocks, blocks);
  EXPECT_EQ(EDID_DeleteBlock(handle.get(), &blocks[254]), 0);
  EXPECT_EQ(EDID_AddBlock(handle.get(), blocks, 0), 0) << "a copy of its own entry";
}

TEST(Image, Deletes) {
  const ByteVector image = Edid().Extension(Cta().Vdb({16})).Extension(Section()).Build();
  struct Case {
    unsigned index;  // 3: not an entry
    std::vector<uint8_t> types;
    uint32_t countByte;
  };
  const Case cases[] = {{0, {EDID_BLOCK_CEA, EDID_BLOCK_DISPID_EXT}, 3},
                        {1, {EDID_BLOCK_VESA, EDID_BLOCK_DISPID_EXT}, 126},
                        {2, {EDID_BLOCK_VESA, EDID_BLOCK_CEA}, 126},
                        {3, {EDID_BLOCK_VESA, EDID_BLOCK_CEA, EDID_BLOCK_DISPID_EXT}, 126}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.index);
    const Owned<EdidHandle> handle = OpenImage(image);
    handle->blocks[0].bytes[126] = 99;
    const EdidBlock other = handle->blocks[0];  // equal content, another address
    EXPECT_EQ(EDID_DeleteBlock(handle.get(), c.index == 3 ? &other : &handle->blocks[c.index]), 0);
    ASSERT_EQ(handle->blockCount, c.types.size());
    for (size_t i = 0; i < c.types.size(); ++i) EXPECT_EQ(handle->blocks[i].type, c.types[i]);
    EXPECT_EQ(handle->blocks[0].bytes[c.countByte], c.types.size() - 1);
    EXPECT_EQ(SumOf(handle->blocks[0]), 0);
  }
}

TEST(Image, GeneratesWithTheChecksumThatItHad) {
  const Owned<EdidHandle> handle = OpenImage(Edid().Extension(Cta()).Build());
  uint8_t* base = handle->blocks[0].bytes;
  const uint8_t stored = base[127];
  base[126] = 7;
  ByteVector out(256, 0xEE);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_GenerateEdid(handle.get(), out.data(), 255), -1); }),
            Err("EDID_GenerateEdid", "not enough space"));
  EXPECT_EQ(out, ByteVector(256, 0xEE));
  ASSERT_EQ(EDID_GenerateEdid(handle.get(), out.data(), 256), 256);
  EXPECT_EQ(out[126], 1) << "the count is corrected in the output only";
  EXPECT_EQ(out[127], stored);
  EXPECT_EQ(base[126], 7);
  EXPECT_EQ(SumOf(handle->blocks[0]), 0) << "the handle's checksum covers the handle's count";
}

TEST(Image, RefusesBadArguments) {
  const Owned<EdidHandle> handle = OpenImage(Edid().Build());
  EdidHandle empty = {0, nullptr};
  EdidBlock block = handle->blocks[0];
  EdidBlock noBytes = {1, 128, 128, nullptr};
  EdidBlock noSize = {1, 128, 0, block.bytes};
  uint8_t out[128];
  ExpectRefused({
      {"EDID_AddBlock", [&] { return EDID_AddBlock(nullptr, &block, 0); }},
      {"EDID_AddBlock", [&] { return EDID_AddBlock(handle.get(), nullptr, 0); }},
      {"EDID_AddBlock", [&] { return EDID_AddBlock(handle.get(), &noBytes, 0); }},
      {"EDID_AddBlock", [&] { return EDID_AddBlock(handle.get(), &noSize, 0); }},
      {"EDID_DeleteBlock", [&] { return EDID_DeleteBlock(nullptr, &block); }},
      {"EDID_DeleteBlock", [&] { return EDID_DeleteBlock(handle.get(), nullptr); }},
      {"EDID_DeleteBlock", [&] { return EDID_DeleteBlock(&empty, &block); }},
      {"EDID_GenerateEdid", [&] { return EDID_GenerateEdid(nullptr, out, 128); }},
      {"EDID_GenerateEdid", [&] { return EDID_GenerateEdid(handle.get(), nullptr, 128); }},
      {"EDID_GenerateEdid", [&] { return EDID_GenerateEdid(&empty, out, 128); }},
      {"EDID_Open", [&] { return EDID_Open(nullptr, 128) == nullptr ? -1 : 0; }},
  });
  EXPECT_EQ(handle->blockCount, 1);
  EDID_Close(nullptr);
}

}  // namespace
}  // namespace reedid::test
