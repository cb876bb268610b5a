#include <cstdlib>
#include <numeric>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/model.h"

namespace reedid::test {
namespace {

ByteVector Repeat(const ByteVector& bytes, size_t times) {
  ByteVector all;
  for (size_t i = 0; i < times; ++i) all = Concat({all, bytes});
  return all;
}

// Type, capacity and size of each block.
std::string Blocks(const EdidHandle& handle) {
  std::string text;
  for (unsigned i = 0; i < handle.blockCount; ++i) {
    const EdidBlock& block = handle.blocks[i];
    for (const int number : {int{block.type}, int{block.capacity}}) text += std::to_string(number) + "/";
    text += std::to_string(block.size) + " ";
  }
  return text;
}

// The types of the blocks, and of the first what its bytes add up to and its count, at byte 3 of sections.
std::string State(const EdidHandle& handle) {
  std::string text;
  for (unsigned i = 0; i < handle.blockCount; ++i) text += std::to_string(handle.blocks[i].type) + " ";
  const EdidBlock& first = handle.blocks[0];
  const unsigned sum = std::accumulate(first.bytes, first.bytes + first.size, 0u) & 0xFF;
  return text + "sum " + std::to_string(sum) + " count " +
         std::to_string(first.bytes[isEdidHeader(first.bytes) ? 126 : 3]);
}

TEST(Checksum, CompletesTheSum) {
  ByteVector block = Hex("FF FF 01 00*124 77"), section(70000, 1);  // where the checksum stands is not read
  EXPECT_EQ(GetChecksum(block.data(), 128), 0x01u);
  EXPECT_EQ(GetChecksum(block.data(), 1), 0u);
  EXPECT_EQ(GetChecksum(block.data(), 2), 0x01u);
  EXPECT_EQ(GetChecksum(section.data(), 256), 0x01u);
  EXPECT_EQ(GetChecksum(section.data(), 0), 0u);
  EXPECT_LT(GetChecksum(section.data(), 70000), 256u) << "ends";
}

// What opens, by the length of the data and the tags of its extensions.
TEST(Image, SplitsDataIntoBlocks) {
  const ByteVector base = Edid().Build(), section = Section().Block(1, 0, ByteVector(13)).Build(),
                   counted = Section().ExtensionCount(1).Build(3);  // 21 bytes, 8 bytes
  ByteVector tooLong = Section().Build(250);
  tooLong.resize(260);
  tooLong[1] = 252;
  const auto cut = [](const ByteVector& bytes, int size) { return ByteVector(bytes.begin(), bytes.begin() + size); };
  const auto tagged = [&base](uint8_t tag) { return Concat({base, {tag}, ByteVector(127)}); };
  const auto unknown = [](const char* tag) {
    return Warn("ParseEdid", "unknown extension block(tag=" + std::string(tag) + ")");
  };
  const auto badCount = [](const char* counts) {
    return Warn("GetSectionCount", "invalid section count(" + std::string(counts) + ")");
  };
  const std::string badSize = Err("ParseEdid", "invalid edid size");
  const struct {
    ByteVector data;
    const char* blocks;  // null: does not open
    std::string log = "";
  } cases[] = {
      {tagged(0x70), "1/128/128 6/128/128 "},
      {tagged(0xF0), "1/128/128 2/128/128 "},
      {tagged(0x10), "1/128/128 0/128/128 ", unknown("10")},
      {{}, nullptr, Err("EDID_Open", "invalid parameters")},
      {cut(base, 127), nullptr, badSize},
      {cut(base, 8), nullptr, badSize},
      {Concat({base, ByteVector(72)}), nullptr, badSize},
      {cut(base, 7), nullptr},  // part of the header
      {base, "1/128/128 "},
      {Concat({base, Cta().Build()}), "1/128/128 3/128/128 "},
      {Repeat(base, 256), ""},
      {Repeat(base, 257), "1/128/128 "},
      {{0x12, 0, 2, 0}, nullptr, Err("ParseDisplayID", "invalid displayid size")},
      {{0x12, 0, 2, 0, 0xEC}, "4/256/5 "},
      {Concat({section, {0x12, 0, 0, 0}}), "4/256/21 "},
      {Concat({section, {0x12}}), "4/256/21 "},
      {Concat({counted, section}), "4/256/8 5/256/21 "},
      {Concat({section, counted}), "4/256/21 5/256/8 ", badCount("1, 2")},
      {Concat({counted, cut(section, 20)}), "4/256/8 ", badCount("2, 1")},
      {tooLong, nullptr, badCount("1, 0")},  // 257 bytes
      {Section().Build(251), "4/256/256 "},
      {Concat({counted, tooLong}), "4/256/8 ", badCount("2, 1")},
      {Hex("12 09 02 FF 00 00"), nullptr},  // expects 256, that is 0, sections and has none
      {Repeat(Section().Build(), 256), nullptr, badCount("1, 0")},
      {Repeat(Section().Build(), 257), "4/256/5 "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(HexOf(c.data).substr(0, 400));
    const ExactBytes exact(c.data);
    Image handle;
    EXPECT_EQ(LogOf([&] { handle = Image(EDID_Open(exact.data(), exact.size())); }), c.log);
    ASSERT_EQ(static_cast<bool>(handle), c.blocks != nullptr);
    EXPECT_EQ(!handle ? "" : Blocks(*handle), c.blocks == nullptr ? "" : c.blocks);
  }
}

// An edit keeps the count and the checksum of block 0, and only these, true.
TEST(Image, AddsAndDeletes) {
  const Image handle(Edid().Extension(Cta()).Build());
  EdidHandle* image = handle.get();
  const ByteVector marked(128, 0x5A);  // an extension with a wrong checksum
  const Block added(77, marked, 200);
  const auto add = [&](uint32_t index) { return [&, index] { return EDID_AddBlock(image, &added, index); }; };
  const auto remove = [&](unsigned index) {
    return [image, index] {
      image->blocks[0].bytes[20] ^= 0x55;
      return EDID_DeleteBlock(image, &image->blocks[index]);
    };
  };
  const auto removeOther = [&] {
    const EdidBlock equal = image->blocks[1];  // at another address
    return EDID_DeleteBlock(image, &equal);
  };
  const auto removeStale = [&] { return EDID_DeleteBlock(image, image->blocks + image->blockCount); };
  ExpectSteps([image] { return State(*image); }, {{add(1), "1 77 3 sum 0 count 2"},
                                                  {add(7), "1 77 3 77 sum 0 count 3"},
                                                  {removeOther, "1 77 3 77 sum 0 count 3"},
                                                  {remove(1), "1 3 77 sum 0 count 2"},
                                                  {add(0), "77 1 3 77 sum 0 count 3"},
                                                  {remove(3), "77 1 3 sum 0 count 2"},
                                                  {remove(0), "1 3 sum 0 count 1"},
                                                  {removeStale, "1 3 sum 0 count 1"},
                                                  {remove(1), "1 sum 0 count 0"},
                                                  {add(0xFFFFFFFF), "1 77 sum 0 count 1"}});
  const EdidBlock& last = image->blocks[1];
  EXPECT_EQ(last.capacity, 200);
  EXPECT_EQ(ByteVector(last.bytes, last.bytes + 200), Concat({marked, ByteVector(72)}));
}

TEST(Image, AddsTheFirstBlockOfAnEmptyHandle) {
  ByteVector counted = Edid().Extension(Cta()).Build();
  counted.resize(128);
  const struct {
    ByteVector bytes, expected;
  } cases[] = {
      {counted, Edid().Build()},
      {Hex("12 00 02 07 55"), Hex("12 00 02 00 EC")},
      {Hex("12 34 99"), Hex("12 34 BA")},  // too short for a count
      {Hex("12"), Hex("00")},
      {Hex("00 FF*6 00 01"), Hex("00 FF*6 00 06")},  // a header without a count
  };
  for (const auto& c : cases) {
    EdidHandle handle = {200, nullptr};  // emptied by its owner; the count means nothing without an array
    Block block(1, c.bytes);
    block.capacity = 0;
    for (int round = 0; round < 2; ++round) {
      ASSERT_EQ(EDID_AddBlock(&handle, &block, 3), 0);
      ASSERT_EQ(handle.blockCount, 1);
      EXPECT_EQ(HexOf(ByteVector(handle.blocks[0].bytes, handle.blocks[0].bytes + block.size)), HexOf(c.expected));
      EXPECT_EQ(EDID_DeleteBlock(&handle, handle.blocks), 0);
      EXPECT_EQ(handle.blockCount, 0);
      EXPECT_EQ(EDID_DeleteBlock(&handle, handle.blocks), 0) << "empty, still valid";
    }
    std::free(handle.blocks);
  }
}

TEST(Image, GeneratesWithTheChecksumThatItHad) {
  const Image handle(Edid().Extension(Cta()).Build());
  const uint8_t stored = handle->blocks[0].bytes[127];
  handle->blocks[0].bytes[126] = 7;
  ByteVector out(256, 0xEE);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_GenerateEdid(handle.get(), out.data(), 255), -1); }),
            Err("EDID_GenerateEdid", "not enough space"));
  EXPECT_EQ(out, ByteVector(256, 0xEE));
  ASSERT_EQ(EDID_GenerateEdid(handle.get(), out.data(), 256), 256);
  EXPECT_EQ(out[126], 1) << "the count is corrected in the output only";
  EXPECT_EQ(out[127], stored);
  EXPECT_EQ(State(*handle), "1 3 sum 0 count 7") << "the handle's checksum covers the handle's count";
}

TEST(Image, RefusesBadArguments) {
  const Image owned(Concat({Edid().Build(), Repeat(Cta().Build(), 254)}));
  EdidHandle *handle = owned.get(), empty = {0, nullptr}, *const none = nullptr;
  Block block(1, Edid().Build());
  EdidBlock noBytes = {1, 128, 128, nullptr}, noSize = {1, 128, 0, block.bytes};
  ByteVector out(128 * 256);
  for (EdidBlock* bad : {static_cast<EdidBlock*>(&block), &noBytes, &noSize, static_cast<EdidBlock*>(nullptr)}) {
    ExpectRefused({{"EDID_AddBlock", [&] { return EDID_AddBlock(handle, bad, 0); }}});  // the first: a 256th block
    if (handle->blockCount == 255) EDID_DeleteBlock(handle, &handle->blocks[254]);
  }
  EXPECT_EQ(EDID_AddBlock(handle, handle->blocks, 0), 0) << "a copy of its own entry";
  for (EdidHandle* bad : {&empty, none}) {
    ExpectRefused({{"EDID_DeleteBlock", [&] { return EDID_DeleteBlock(bad, &block); }},
                   {"EDID_GenerateEdid", [&] { return EDID_GenerateEdid(bad, out.data(), 128); }}});
  }
  ExpectRefused({{"EDID_AddBlock", [&] { return EDID_AddBlock(none, &block, 0); }},
                 {"EDID_DeleteBlock", [&] { return EDID_DeleteBlock(handle, nullptr); }},
                 {"EDID_GenerateEdid", [&] { return EDID_GenerateEdid(handle, nullptr, 65536); }},
                 {"EDID_Open", [&] { return EDID_Open(nullptr, 128) == nullptr ? -1 : 0; }}});
  EXPECT_EQ(handle->blockCount, 255);
  EDID_Close(nullptr);
}

}  // namespace
}  // namespace reedid::test
