#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/data_block.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

Owned<CeaBlock> OpenCea(const ByteVector& bytes, uint8_t type = EDID_BLOCK_CEA) {
  const ExactBytes exact(bytes);
  const EdidBlock block = {type, 128, static_cast<uint16_t>(exact.size()), exact.data()};
  return Owned<CeaBlock>(CEA_Open(&block));
}

ByteVector Generated(const CeaBlock& model) {
  Block out(0, ByteVector(128, 0xEE));
  return CEA_GenerateBlock(&model, &out) == 0 ? out.storage : ByteVector();
}

// The first byte of each payload, which the tests below use as a name.
ByteVector Names(const CeaBlock& model) {
  ByteVector names;
  for (unsigned i = 0; i < model.dataBlockCount; ++i) names.push_back(model.dataBlocks[i].bytes[1]);
  return names;
}

const ByteVector kFull(31, 1);

TEST(CeaModel, WalksDataBlocksAndDtds) {
  DtdTiming noPorch = k720p60;
  noPorch.hfrontPorch = 0;
  DtdTiming noSync = k720p60;
  noSync.vsyncWidth = 0;
  Cta six;
  for (int i = 0; i < 6; ++i) six.Dtd(k720p60);
  const Cta full = Cta().Vdb(kFull).Vdb(kFull).Vdb(kFull);
  struct Case {
    const char* name;
    Cta cta;
    std::vector<int> sizes;
    int dtds, freeSpace;
  };
  const Case cases[] = {
      {"nothing", Cta(), {}, 0, 123},
      {"blocks and DTDs", Cta().Vdb({16}).Hdmi(0x1000).Dtd(k1080p60).Dtd(k720p60), {2, 8}, 2, 127 - 14 - 36},
      {"six DTDs", six, {}, 6, 15},
      {"display descriptor ends the DTDs", Cta().Dtd(k720p60).Dtd(AtClock(k720p60, 10 * 10)).DtdOffset(4), {}, 2, 87},
      {"no porch ends them", Cta().Dtd(k720p60).Dtd(noPorch).Dtd(k720p60), {}, 1, 105},
      {"no sync ends them", Cta().Dtd(noSync).Dtd(k720p60), {}, 0, 123},
      {"tag 0 ends the blocks", Cta().Vdb({16}).Block(0, {}).Vdb({31}), {2}, 0, 118},
      {"padding is not free", Cta().Vdb({16}).DtdOffset(20), {2}, 0, 107},
      {"a block past the DTD offset", Cta().Vdb({16}).Vdb({1, 2, 3}).DtdOffset(9), {2}, 0, 118},
      {"a block up to the DTD offset", Cta().Vdb({16}).Vdb({1, 2, 3}).DtdOffset(10), {2, 4}, 0, 117},
      {"offset 0", Cta().Vdb({16}).Vdb({31}).DtdOffset(0), {2, 2}, 0, 0},
      {"offset 3", Cta().Vdb({16}).DtdOffset(3), {2}, 0, 0},
      {"offset 4 hides the blocks", Cta().Vdb({16}).DtdOffset(4), {}, 0, 123},
      {"offset 125", Cta().Vdb({16}).DtdOffset(125), {2}, 0, 2},
      {"offset 126", Cta().Vdb({16}).DtdOffset(126), {2}, 0, 0},
      {"121 bytes of blocks", Cta(full).Vdb(ByteVector(24)).DtdOffset(125), {32, 32, 32, 25}, 0, 2},
      {"122 bytes of blocks", Cta(full).Vdb(ByteVector(25)).DtdOffset(0), {32, 32, 32, 26}, 0, 0},
      {"123 bytes of blocks", Cta(full).Vdb(ByteVector(26)).DtdOffset(0), {32, 32, 32}, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Owned<CeaBlock> model = OpenCea(c.cta.Build());
    ASSERT_NE(model, nullptr);
    ASSERT_EQ(model->dataBlockCount, c.sizes.size());
    for (size_t i = 0; i < c.sizes.size(); ++i) EXPECT_EQ(model->dataBlocks[i].size, c.sizes[i]);
    EXPECT_EQ(model->dataBlocks == nullptr, c.sizes.empty());
    EXPECT_EQ(model->dtdCount, c.dtds);
    EXPECT_EQ(model->dtds == nullptr, c.dtds == 0);
    EXPECT_EQ(model->freeSpace, c.freeSpace);
  }
}

TEST(CeaModel, ReadsAndWritesTheHeader) {
  for (unsigned flags = 0; flags < 256; flags += 0x11) {
    const ByteVector bytes = Cta().Revision(7).Flags(static_cast<uint8_t>(flags)).Extended(9, {1}).Build();
    const Owned<CeaBlock> model = OpenCea(bytes);
    EXPECT_EQ(model->revision, 7);
    EXPECT_EQ(model->underscan << 7 | model->basicAudio << 6 | model->ycbcr444 << 5 | model->ycbcr422 << 4 |
                  model->nativeDtdCount,
              flags);
    EXPECT_EQ(model->dataBlocks[0].extTag, 9);
    EXPECT_EQ(Generated(*model), bytes);
  }
  const Owned<CeaBlock> model = OpenCea(Cta().Vdb({16}).Build());
  model->nativeDtdCount = 0x2F;
  model->underscan = model->basicAudio = 2;
  EXPECT_EQ(Generated(*model)[3], 0x2F) << "a large count spills, flags are bit 0";

  Cta single = Cta();  // an extended block of one byte at the end of the data: its code is what follows
  ByteVector bytes = single.Vdb(kFull).Vdb(kFull).Vdb(kFull).Vdb(ByteVector(24)).Block(7, {}).DtdOffset(0).Build();
  bytes[126] = 0x42;
  FixChecksum(bytes);
  const Owned<CeaBlock> last = OpenCea(bytes);
  ASSERT_EQ(last->dataBlockCount, 5);
  EXPECT_EQ(last->dataBlocks[4].extTag, 0x42);
}

TEST(CeaModel, WarnsOfAWrongChecksumAndRefusesTheRest) {
  ByteVector bytes = Cta().Build();
  const std::string bad = Err("CEA_Open", "invalid parameters");
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(OpenCea(ByteVector(127)), nullptr); }), bad);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(OpenCea(bytes, EDID_BLOCK_MAP), nullptr); }), bad);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_Open(nullptr), nullptr); }), bad);
  bytes[1] ^= 1;  // revision 2: the right sum is 0xF8
  Owned<CeaBlock> model;
  EXPECT_EQ(LogOf([&] { model = OpenCea(bytes); }), Warn("CEA_Open", "checksum error(f7,f8)"));
  EXPECT_EQ(model->checksumValid, 0);
  EXPECT_EQ(model->checksum, 0xF7);
  bytes[0] = 0x70;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(OpenCea(bytes), nullptr); }), Err("CEA_Open", "error extension tag: 70"));
}

// More than a block holds is reported and left out; the DTDs begin where the last entry would end if it stood in the
// place of the refused one.
TEST(CeaModel, LeavesOutWhatDoesNotFit) {
  struct Case {
    const char* name;
    std::vector<size_t> payloads;
    int dtds;
    std::string log;
    int dtdStart;
  };
  const auto block = [](const char* text) { return Err("CEA_GenerateBlock", "datablock[" + std::string(text)); };
  const auto dtd = [](const char* i) { return Err("CEA_GenerateBlock", "DTD[" + std::string(i) + "] outof range"); };
  const Case cases[] = {
      {"121 bytes", {31, 31, 31, 24}, 0, "", 125},
      {"122 bytes", {31, 31, 31, 25}, 0, block("3] outof range, offset=100, length=26"), 126},
      {"a small one behind a refused one", {31, 31, 31, 31, 1}, 0, block("3] outof range, offset=100, length=32"), 102},
      {"start clamped", {31, 31, 31, 31}, 1, block("3] outof range, offset=100, length=32") + dtd("0"), 126},
      {"DTD up to the checksum", {31, 31, 31, 8}, 1, "", 109},
      {"DTD over the checksum", {31, 31, 31, 9}, 1, dtd("0"), 110},
      {"second DTD", {31, 31, 23}, 2, dtd("1"), 92},
      {"empty collection", {}, 1, "", 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Owned<CeaBlock> model = OpenCea(Cta().Vdb({16}).Build());
    CEA_DeleteDataBlock(model.get(), model->dataBlocks);
    ASSERT_NE(model->dataBlocks, nullptr);
    for (const size_t payload : c.payloads) {
      const DataBlock added(Concat({{static_cast<uint8_t>(0x40 | payload)}, ByteVector(payload, 1)}));
      model->freeSpace = 200;
      ASSERT_EQ(CEA_AddDataBlock(model.get(), &added, 99), 0);
    }
    const DtdSlot slot = SlotOf(k720p60);
    model->freeSpace = 200;
    for (int i = 0; i < c.dtds; ++i) ASSERT_EQ(CEA_AddDTD(model.get(), &slot, 0), 0);
    ByteVector out;
    EXPECT_EQ(LogOf([&] { out = Generated(*model); }), c.log);
    ASSERT_EQ(out.size(), 128u);
    EXPECT_EQ(out[2], c.dtdStart);
    EXPECT_EQ(out[127], GetChecksum(out.data(), 128));
  }
}

TEST(CeaModel, AddsReplacesAndDeletesWithinTheFreeSpace) {
  const Owned<CeaBlock> model = OpenCea(Cta().Vdb({1}).Vdb({2}).Dtd(k720p60).Build());
  ASSERT_EQ(model->freeSpace, 101);
  CeaBlock* cea = model.get();
  const DataBlock three({0x22, 3, 3});
  const DataBlock full(Concat({{0x5F}, kFull}));
  EXPECT_EQ(CEA_AddDataBlock(cea, &three, 1), 0);
  EXPECT_EQ(Names(*cea), ByteVector({1, 3, 2}));
  EXPECT_EQ(CEA_AddDataBlock(cea, &cea->dataBlocks[2], 0xFFFFFFFF), 0) << "a copy of its own";
  EXPECT_EQ(Names(*cea), ByteVector({1, 3, 2, 2}));
  EXPECT_EQ(cea->freeSpace, 96);
  EXPECT_EQ(CEA_ReplaceDataBlock(cea, &cea->dataBlocks[0], &cea->dataBlocks[1]), 0);
  EXPECT_EQ(CEA_ReplaceDataBlock(cea, &cea->dataBlocks[0], &cea->dataBlocks[0]), 0) << "by itself";
  EXPECT_EQ(Names(*cea), ByteVector({3, 3, 2, 2}));
  EXPECT_EQ(cea->dataBlocks[0].tag, 1);
  EXPECT_EQ(cea->freeSpace, 95);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(CEA_AddDataBlock(cea, &full, 0), 0);
  EXPECT_EQ(CEA_DeleteDataBlock(cea, &full), 0) << "no entry: nothing happens";
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_AddDataBlock(cea, &full, 0), -1); }),
            Err("CEA_AddDataBlock", "not enough space, free 31, need 32"));
  EXPECT_EQ(CEA_AddDTD(cea, cea->dtds, 7), 0);
  const DtdSlot slot = SlotOf(k1080p60);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_AddDTD(cea, &slot, 0), -1); }),
            Err("CEA_AddDTD", "not enough space, free 13, need 18"));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_ReplaceDataBlock(cea, &cea->dataBlocks[5], &full), -1); }),
            Err("CEA_ReplaceDataBlock", "not enough space, free 15, need 32"));
  EXPECT_EQ(CEA_DeleteDTD(cea, &slot), 0);
  EXPECT_EQ(cea->dtdCount, 2);
  while (cea->dtdCount > 0) EXPECT_EQ(CEA_DeleteDTD(cea, cea->dtds), 0);
  EXPECT_EQ(cea->dtds, nullptr);
  while (cea->dataBlockCount > 0) EXPECT_EQ(CEA_DeleteDataBlock(cea, cea->dataBlocks), 0);
  EXPECT_EQ(CEA_DeleteDataBlock(cea, cea->dataBlocks), 0);
  EXPECT_EQ(cea->freeSpace, 123);
  EXPECT_EQ(Generated(*cea).size(), 128u) << "an emptied collection can be generated";
}

TEST(CeaModel, StartsOverAtTheEndOfItsCounts) {
  const Owned<CeaBlock> model = OpenCea(Cta().Vdb({1}).Dtd(k720p60).Build());
  const DataBlock block({0x41, 9});
  const DtdSlot slot = SlotOf(k1080p60);
  const auto fill = [&](const uint8_t& count, const std::function<int32_t()>& add) {
    while (count != 255) {
      model->freeSpace = 50;
      ASSERT_EQ(add(), 0);
    }
    EXPECT_EQ(add(), 0);
    EXPECT_EQ(count, 0);
  };
  fill(model->dataBlockCount, [&] { return CEA_AddDataBlock(model.get(), &block, 0); });
  EXPECT_EQ(model->freeSpace, 46);
  fill(model->dtdCount, [&] { return CEA_AddDTD(model.get(), &slot, 0); });
  EXPECT_EQ(model->freeSpace, 14);
  EXPECT_NE(model->dataBlocks, nullptr);
  EXPECT_NE(model->dtds, nullptr);
}

TEST(CeaModel, FindsTheFirstOfATag) {
  const Owned<CeaBlock> model = OpenCea(Cta().Extended(5, {1, 1}).Vdb({2}).Vdb({3}).Extended(0, {4}).Build());
  EXPECT_EQ(CEA_FindDataBlock(model.get(), 2, 77), &model->dataBlocks[1]);
  EXPECT_EQ(CEA_FindDataBlock(model.get(), 7, 0), &model->dataBlocks[3]);
  EXPECT_EQ(CEA_FindDataBlock(model.get(), 7, 256), nullptr);
  EXPECT_EQ(CEA_FindDataBlock(model.get(), 3, 0), nullptr);
  EXPECT_EQ(CEA_FindDataBlock(nullptr, 2, 0), nullptr);
}

TEST(CeaModel, RefusesBadArguments) {
  const Owned<CeaBlock> model = OpenCea(Cta().Vdb({1}).Dtd(k720p60).Build());
  const Owned<CeaBlock> bare = OpenCea(Cta().Build());
  CeaDataBlock* entry = model->dataBlocks;
  const DataBlock block({0x41, 9});
  CeaDataBlock noBytes = {2, 0, 2, nullptr};
  CeaDataBlock noSize = {2, 0, 0, block.bytes};
  DtdSlot notDtd = SlotOf(k720p60);
  notDtd.flag = 0xFC;
  Block out(0, ByteVector(128));
  Block small(0, ByteVector(127));
  const EdidBlock noRoom = {3, 128, 128, nullptr};
  EdidBlock noRoomOut = noRoom;
  ExpectRefused({
      {"CEA_GenerateBlock", [&] { return CEA_GenerateBlock(nullptr, &out); }},
      {"CEA_GenerateBlock", [&] { return CEA_GenerateBlock(bare.get(), &out); }},
      {"CEA_GenerateBlock", [&] { return CEA_GenerateBlock(model.get(), nullptr); }},
      {"CEA_GenerateBlock", [&] { return CEA_GenerateBlock(model.get(), &small); }},
      {"CEA_GenerateBlock", [&] { return CEA_GenerateBlock(model.get(), &noRoomOut); }},
      {"CEA_AddDataBlock", [&] { return CEA_AddDataBlock(nullptr, &block, 0); }},
      {"CEA_AddDataBlock", [&] { return CEA_AddDataBlock(model.get(), nullptr, 0); }},
      {"CEA_AddDataBlock", [&] { return CEA_AddDataBlock(model.get(), &noBytes, 0); }},
      {"CEA_AddDataBlock", [&] { return CEA_AddDataBlock(model.get(), &noSize, 0); }},
      {"CEA_DeleteDataBlock", [&] { return CEA_DeleteDataBlock(nullptr, entry); }},
      {"CEA_DeleteDataBlock", [&] { return CEA_DeleteDataBlock(model.get(), nullptr); }},
      {"CEA_DeleteDataBlock", [&] { return CEA_DeleteDataBlock(bare.get(), entry); }},
      {"CEA_ReplaceDataBlock", [&] { return CEA_ReplaceDataBlock(model.get(), nullptr, &block); }},
      {"CEA_ReplaceDataBlock", [&] { return CEA_ReplaceDataBlock(bare.get(), entry, &block); }},
      {"CEA_ReplaceDataBlock", [&] { return CEA_ReplaceDataBlock(model.get(), &noBytes, &block); }},
      {"CEA_ReplaceDataBlock", [&] { return CEA_ReplaceDataBlock(model.get(), entry, &noSize); }},
      {"CEA_AddDTD", [&] { return CEA_AddDTD(model.get(), nullptr, 0); }},
      {"CEA_AddDTD", [&] { return CEA_AddDTD(model.get(), &notDtd, 0); }},
      {"CEA_DeleteDTD", [&] { return CEA_DeleteDTD(bare.get(), &notDtd); }},
      {"CEA_DeleteDTD", [&] { return CEA_DeleteDTD(model.get(), nullptr); }},
  });
  EXPECT_EQ(small.type, 0);
  EXPECT_EQ(out.type, 0);
  EXPECT_EQ(model->freeSpace, 103);
  CEA_Close(nullptr);
}

}  // namespace
}  // namespace reedid::test
