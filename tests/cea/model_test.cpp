#include "tests/support/model.h"

#include <span>

#include "tests/support/data_block.h"
#include "tests/support/edid_builder.h"
#include "tests/support/failing_malloc.h"

namespace reedid::test {
namespace {

Opened<CeaBlock> OpenCea(const ByteVector& bytes, const std::string& log = "") {
  return OpenModel<CeaBlock>(bytes, EDID_BLOCK_CEA, log);
}

// The sizes of the data blocks, by which the tests below know them; a '?' where the bytes are not those of the entry.
std::string State(const CeaBlock& model) {
  std::string text;
  for (const CeaDataBlock& block : std::span(model.dataBlocks, model.dataBlockCount)) {
    text += std::to_string(block.size) + (block.size == (block.bytes[0] & 31) + 1 ? " " : "? ");
  }
  return text + "dtds " + std::to_string(model.dtdCount) + " free " + std::to_string(model.freeSpace);
}

const ByteVector kFull(31, 1);

TEST(CeaModel, WalksDataBlocksAndDtds) {
  DtdTiming noPorch = k720p60, noSync = k720p60;
  noPorch.hfrontPorch = noSync.vsyncWidth = 0;
  Cta six;
  for (int i = 0; i < 6; ++i) six.Dtd(k720p60);
  const Cta full = Cta().Vdb(kFull).Vdb(kFull).Vdb(kFull);
  struct Case {
    const char* name;
    Cta cta;
    const char* state;
  };
  const Case cases[] = {
      {"nothing", Cta(), "dtds 0 free 123"},
      {"blocks and DTDs", Cta().Vdb({16}).Hdmi(0x1000).Dtd(k1080p60).Dtd(k720p60), "2 8 dtds 2 free 77"},
      {"six DTDs", six, "dtds 6 free 15"},
      {"display descriptor ends the DTDs", Cta().Dtd(k720p60).Dtd(AtClock(k720p60, 10 * 10)), "dtds 2 free 87"},
      {"no porch ends them", Cta().Dtd(k720p60).Dtd(noPorch).Dtd(k720p60), "dtds 1 free 105"},
      {"no sync ends them", Cta().Dtd(noSync).Dtd(k720p60), "dtds 0 free 123"},
      {"tag 0 ends the blocks", Cta().Vdb({16}).Block(0, {}).Vdb({31}), "2 dtds 0 free 118"},
      {"padding is not free", Cta().Vdb({16}).DtdOffset(20), "2 dtds 0 free 107"},
      {"a block past the DTD offset", Cta().Vdb({16}).Vdb({1, 2, 3}).DtdOffset(9), "2 dtds 0 free 118"},
      {"a block up to the DTD offset", Cta().Vdb({16}).Vdb({1, 2, 3}).DtdOffset(10), "2 4 dtds 0 free 117"},
      {"offset 0", Cta().Vdb({16}).Vdb({31}).DtdOffset(0), "2 2 dtds 0 free 0"},
      {"offset 3", Cta().Vdb({16}).DtdOffset(3), "2 dtds 0 free 0"},
      {"offset 4 hides the blocks", Cta().Vdb({16}).DtdOffset(4), "dtds 0 free 123"},
      {"offset 126", Cta().Vdb({16}).DtdOffset(126), "2 dtds 0 free 0"},
      {"121 bytes of blocks", Cta(full).Vdb(ByteVector(24)).DtdOffset(125), "32 32 32 25 dtds 0 free 2"},
      {"122 bytes of blocks", Cta(full).Vdb(ByteVector(25)).DtdOffset(0), "32 32 32 26 dtds 0 free 0"},
      {"123 bytes of blocks", Cta(full).Vdb(ByteVector(26)).DtdOffset(0), "32 32 32 dtds 0 free 0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Opened<CeaBlock> model = OpenCea(c.cta.Build());
    EXPECT_EQ(State(*model), c.state);
    EXPECT_EQ(model->dataBlocks == nullptr, model->dataBlockCount == 0);
    EXPECT_EQ(model->dtds == nullptr, model->dtdCount == 0);
  }
}

TEST(CeaModel, ReadsAndWritesTheHeader) {
  for (unsigned flags = 0; flags < 256; flags += 0x11) {
    const ByteVector bytes = Cta().Revision(7).Flags(static_cast<uint8_t>(flags)).Extended(9, {1}).Build();
    const Opened<CeaBlock> model = OpenCea(bytes);
    EXPECT_EQ(model->revision, 7);
    EXPECT_EQ(model->underscan << 7 | model->basicAudio << 6 | model->ycbcr444 << 5 | model->ycbcr422 << 4 |
                  model->nativeDtdCount,
              flags);
    EXPECT_EQ(Generated(*model), bytes);
    model->nativeDtdCount = 0x2F;
    model->underscan = model->basicAudio = 2;
    EXPECT_EQ(Generated(*model)[3], 0x2F | (flags & 0x30)) << "a large count spills, flags are bit 0";
  }
  // An extended block of one byte at the end of the data: its code is what follows.
  ByteVector bytes = Cta().Vdb(kFull).Vdb(kFull).Vdb(kFull).Vdb(ByteVector(24)).Block(7, {}).DtdOffset(0).Build();
  bytes[126] = 0x42;
  FixChecksum(bytes);
  EXPECT_EQ(OpenCea(bytes)->dataBlocks[4].extTag, 0x42);
}

TEST(CeaModel, WarnsOfAWrongChecksumAndRefusesTheRest) {
  ByteVector bytes = Cta().Build();
  const std::string bad = Err("CEA_Open", "invalid parameters");
  EXPECT_EQ(OpenCea(ByteVector(127), bad), nullptr);
  EXPECT_EQ(OpenModel<CeaBlock>(bytes, EDID_BLOCK_MAP, bad), nullptr);
  EXPECT_EQ(LogOf([] { EXPECT_EQ(CEA_Open(nullptr), nullptr); }), bad);
  bytes[1] ^= 1;  // revision 2: the right sum is 0xF8
  const Opened<CeaBlock> model = OpenCea(bytes, Warn("CEA_Open", "checksum error(f7,f8)"));
  EXPECT_EQ(model->checksumValid, 0);
  EXPECT_EQ(model->checksum, 0xF7);
  bytes[0] = 0x70;
  EXPECT_EQ(OpenCea(bytes, Err("CEA_Open", "error extension tag: 70")), nullptr);
}

// More than a block holds is reported and left out; the DTDs begin where the last entry would end if it stood in the
// place of the refused one.
TEST(CeaModel, LeavesOutWhatDoesNotFit) {
  struct Case {
    std::vector<size_t> payloads;
    int dtds;
    std::string log;
    int dtdStart;
  };
  const auto block = [](const char* text) { return Err("CEA_GenerateBlock", "datablock[" + std::string(text)); };
  const auto dtd = [](const char* i) { return Err("CEA_GenerateBlock", "DTD[" + std::string(i) + "] outof range"); };
  const Case cases[] = {
      {{31, 31, 31, 24}, 0, "", 125},
      {{31, 31, 31, 25}, 0, block("3] outof range, offset=100, length=26"), 126},
      {{31, 31, 31, 31, 1}, 0, block("3] outof range, offset=100, length=32"), 102},
      {{31, 31, 31, 31}, 1, block("3] outof range, offset=100, length=32") + dtd("0"), 126},  // the start is clamped
      {{31, 31, 31, 8}, 1, "", 109},
      {{31, 31, 31, 9}, 1, dtd("0"), 110},
      {{31, 31, 23}, 2, dtd("1"), 92},
      {{}, 1, "", 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.dtdStart);
    const Opened<CeaBlock> model = OpenCea(Cta().Vdb({16}).Build());
    CEA_DeleteDataBlock(model.get(), model->dataBlocks);
    for (const size_t payload : c.payloads) {
      const DataBlock added(Concat({{static_cast<uint8_t>(0x40 | payload)}, ByteVector(payload, 1)}));
      model->freeSpace = 200;
      ASSERT_EQ(CEA_AddDataBlock(model.get(), &added, 99), 0);
    }
    const DtdSlot slot = SlotOf(k720p60);
    model->freeSpace = 200;
    for (int i = 0; i < c.dtds; ++i) ASSERT_EQ(CEA_AddDTD(model.get(), &slot, 0), 0);
    const ByteVector out = Generated(*model, c.log);
    ASSERT_EQ(out.size(), 128u);
    EXPECT_EQ(out[2], c.dtdStart);
    EXPECT_TRUE(c.log.find("offset=100") == std::string::npos || out[100] == 0) << "nothing follows the refused block";
    EXPECT_EQ(out[127], GetChecksum(out.data(), 128));
  }
}

TEST(CeaModel, AddsReplacesAndDeletesWithinTheFreeSpace) {
  const Opened<CeaBlock> model = OpenCea(Cta().Vdb({1}).Vdb({2, 2}).Dtd(k720p60).Build());
  CeaBlock* cea = model.get();
  const DataBlock four(Hex("23 04*3")), full(Concat({{0x5F}, kFull}));
  const DtdSlot slot = SlotOf(k1080p60);
  constexpr uint32_t kEnd = 0xFFFFFFFF;
  ExpectSteps(
      [&] { return State(*cea); },
      {{[&] { return CEA_AddDataBlock(cea, &four, 1); }, "2 4 3 dtds 1 free 96"},
       {[&] { return CEA_AddDataBlock(cea, &cea->dataBlocks[2], kEnd); }, "2 4 3 3 dtds 1 free 93"},
       {[&] { return CEA_ReplaceDataBlock(cea, cea->dataBlocks, &cea->dataBlocks[1]); }, "4 4 3 3 dtds 1 free 91"},
       {[&] { return CEA_ReplaceDataBlock(cea, cea->dataBlocks, cea->dataBlocks); }, "4 4 3 3 dtds 1 free 91"},
       {[&] { return CEA_AddDataBlock(cea, &full, 0); }, "32 4 4 3 3 dtds 1 free 59"},
       {[&] { return CEA_DeleteDataBlock(cea, &full); }, "32 4 4 3 3 dtds 1 free 59"},  // no entry
       {[&] { return CEA_AddDTD(cea, cea->dtds, 7); }, "32 4 4 3 3 dtds 2 free 41"},
       {[&] { return CEA_AddDTD(cea, &slot, 0); }, "32 4 4 3 3 dtds 3 free 23"},
       {[&] { return CEA_AddDataBlock(cea, &full, 0); }, Err("CEA_AddDataBlock", "not enough space, free 23, need 32")},
       {[&] { return CEA_DeleteDTD(cea, &slot); }, "32 4 4 3 3 dtds 3 free 23"},
       {[&] { return CEA_AddDataBlock(cea, &four, 0); }, "4 32 4 4 3 3 dtds 3 free 19"},
       {[&] { return CEA_AddDataBlock(cea, cea->dataBlocks, 0); }, "4 4 32 4 4 3 3 dtds 3 free 15"},
       {[&] { return CEA_AddDTD(cea, &slot, 0); }, Err("CEA_AddDTD", "not enough space, free 15, need 18")},
       {[&] { return CEA_ReplaceDataBlock(cea, &cea->dataBlocks[5], &full); },
        Err("CEA_ReplaceDataBlock", "not enough space, free 18, need 32")}});
  EXPECT_EQ(cea->dataBlocks[3].tag, 1);
  EXPECT_EQ(ByteVector(cea->dtds[0].bytes, cea->dtds[0].bytes + 2), Hex("02 3A"));
  while (cea->dtdCount > 0) EXPECT_EQ(CEA_DeleteDTD(cea, cea->dtds), 0);
  EXPECT_EQ(cea->dtds, nullptr);
  while (cea->dataBlockCount > 0) EXPECT_EQ(CEA_DeleteDataBlock(cea, cea->dataBlocks), 0);
  EXPECT_EQ(CEA_DeleteDataBlock(cea, cea->dataBlocks), 0);
  EXPECT_EQ(State(*cea), "dtds 0 free 123");
  EXPECT_EQ(Generated(*cea).size(), 128u) << "an emptied collection can be generated";
  // At the end of its count a list starts over, or stays without memory.
  const auto fill = [&](const uint8_t& count, const std::function<int32_t()>& add) {
    for (int i = 0; i < 255; ++i) {
      cea->freeSpace = 50;
      ASSERT_EQ(add(), 0);
    }
    Quietly([&] {
      const FailingMalloc failing(1);
      EXPECT_EQ(add(), -1);
    });
    EXPECT_EQ(count, 255);
    EXPECT_EQ(add(), 0);
  };
  fill(cea->dataBlockCount, [&] { return CEA_AddDataBlock(cea, &four, 0); });
  EXPECT_EQ(State(*cea), "dtds 0 free 42");
  fill(cea->dtdCount, [&] { return CEA_AddDTD(cea, &slot, 0); });
  EXPECT_EQ(State(*cea), "dtds 0 free 14");
  EXPECT_TRUE(cea->dataBlocks != nullptr && cea->dtds != nullptr);
}

TEST(CeaModel, FindsTheFirstOfATag) {
  const Opened<CeaBlock> model = OpenCea(Cta().Extended(5, {1, 1}).Vdb({2}).Vdb({3}).Extended(0, {4}).Build());
  EXPECT_EQ(CEA_FindDataBlock(model.get(), 2, 77), &model->dataBlocks[1]);
  EXPECT_EQ(CEA_FindDataBlock(model.get(), 7, 0), &model->dataBlocks[3]);
  EXPECT_EQ(CEA_FindDataBlock(model.get(), 7, 256), nullptr);
  EXPECT_EQ(CEA_FindDataBlock(model.get(), 3, 0), nullptr);
  EXPECT_EQ(CEA_FindDataBlock(nullptr, 2, 0), nullptr);
}

TEST(CeaModel, RefusesBadArguments) {
  const Opened<CeaBlock> model = OpenCea(Cta().Vdb({1}).Dtd(k720p60).Build()), bare = OpenCea(Cta().Build());
  CeaBlock* cea = model.get();
  CeaDataBlock* entry = cea->dataBlocks;
  const DataBlock block({0x41, 9});
  CeaDataBlock noBytes = {2, 0, 2, nullptr}, noSize = {2, 0, 0, block.bytes};
  DtdSlot notDtd = SlotOf(k720p60);
  notDtd.flag = 0xFC;
  ByteVector room(128);
  EdidBlock out = {0, 128, 0, room.data()}, small = {0, 127, 0, room.data()}, noRoom = {3, 128, 128, nullptr};
  for (EdidBlock* to : {&small, &noRoom, static_cast<EdidBlock*>(nullptr)}) {
    ExpectRefused({{"CEA_GenerateBlock", [&] { return CEA_GenerateBlock(cea, to); }}});
  }
  for (CeaDataBlock* bad : {&noBytes, &noSize, static_cast<CeaDataBlock*>(nullptr)}) {
    ExpectRefused({{"CEA_AddDataBlock", [&] { return CEA_AddDataBlock(cea, bad, 0); }},
                   {"CEA_ReplaceDataBlock", [&] { return CEA_ReplaceDataBlock(cea, entry, bad); }}});
    if (bad == &noSize) continue;
    ExpectRefused({{"CEA_ReplaceDataBlock", [&] { return CEA_ReplaceDataBlock(cea, bad, &block); }}});
  }
  for (CeaBlock* bad : {bare.get(), static_cast<CeaBlock*>(nullptr)}) {
    ExpectRefused({{"CEA_GenerateBlock", [&] { return CEA_GenerateBlock(bad, &out); }},
                   {"CEA_DeleteDataBlock", [&] { return CEA_DeleteDataBlock(bad, entry); }},
                   {"CEA_ReplaceDataBlock", [&] { return CEA_ReplaceDataBlock(bad, entry, &block); }},
                   {"CEA_DeleteDTD", [&] { return CEA_DeleteDTD(bad, &notDtd); }}});
  }
  ExpectRefused({{"CEA_AddDataBlock", [&] { return CEA_AddDataBlock(nullptr, &block, 0); }},
                 {"CEA_DeleteDataBlock", [&] { return CEA_DeleteDataBlock(cea, nullptr); }},
                 {"CEA_AddDTD", [&] { return CEA_AddDTD(cea, nullptr, 0); }},
                 {"CEA_AddDTD", [&] { return CEA_AddDTD(cea, &notDtd, 0); }},
                 {"CEA_DeleteDTD", [&] { return CEA_DeleteDTD(cea, nullptr); }}});
  EXPECT_EQ(small.type + out.type, 0);
  EXPECT_EQ(State(*cea), "2 dtds 1 free 103");
  CEA_Close(nullptr);
}

}  // namespace
}  // namespace reedid::test
