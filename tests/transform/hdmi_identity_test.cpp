#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

const ByteVector kAudio = {0x23, 0x09, 0x04, 0x01};
const ByteVector kSpeakers = {0x83, 0x01, 0x00, 0x00};
const ByteVector kVsdb = {0x68, 0x03, 0x0C, 0x00, 0x12, 0x00, 0x00, 30, 0x00};  // 1.2.0.0
const ByteVector kHdmiBlocks = Concat({kAudio, kSpeakers, kVsdb});

ByteVector BlockOf(const EdidHandle& handle, unsigned i) {
  return ByteVector(handle.blocks[i].bytes, handle.blocks[i].bytes + handle.blocks[i].size);
}

TEST(IsValidEdid, NeedsEveryBlock) {
  ByteVector map(128), unknown(128), wrongSum = Cta().Build();
  map[0] = 0xF0;
  unknown[0] = 0x10;
  FixChecksum(map);
  FixChecksum(unknown);
  wrongSum[127] ^= 1;
  ByteVector badBase = Edid().Build();
  badBase[127] ^= 1;
  ByteVector badSection = Section().Build(9);
  badSection.back() ^= 1;
  const ByteVector section = Section().ExtensionCount(1).Build(3);
  struct Case {
    const char* name;
    ByteVector bytes;
    int valid;
  };
  const Case cases[] = {
      {"all kinds", Edid().Extension(Cta()).Extension(Section()).Build(), 1},
      {"count byte disagrees", Edid().Set(126, {7}).Build(), 1},
      {"sections", Concat({section, section}), 1},
      {"block map", Edid().Extension(map).Build(), 0},
      {"unknown extension", Edid().Extension(unknown).Build(), 0},
      {"checksum of the base block", badBase, 0},
      {"checksum of the extension", Edid().Extension(wrongSum).Build(), 0},
      {"checksum of the section", badSection, 0},
      {"section that does not open", {0x02, 0, 0, 0, 0xFE}, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    LogOf([&] { EXPECT_EQ(isValidEdid(OpenImage(c.bytes).get()), c.valid); });
  }
  const Owned<EdidHandle> empty = OpenImage(Edid().Build());
  EDID_DeleteBlock(empty.get(), empty->blocks);
  EXPECT_EQ(isValidEdid(empty.get()), 1);
  EXPECT_EQ(isDVIEdid(empty.get()), 1);
}

// The search counts blocks and data blocks with one counter: behind an extension of n data blocks without the VSDB, the
// block n + 1 comes next, or the very next one.
TEST(PhysAddr, IsThatOfTheFirstHdmiVsdbFound) {
  const Cta hdmi = Cta().Vdb({16}).Hdmi(0x1200);
  const Cta two = Cta().Vdb({16}).Vdb({31});
  const Cta three = Cta(two).Vdb({4});
  ByteVector broken = hdmi.Build();
  broken[2] = 4;
  struct Case {
    const char* name;
    Edid edid;
    uint16_t address;
  };
  const Case cases[] = {
      {"none", Edid().Extension(two), 0xFFFF},
      {"first block", Edid().Extension(hdmi), 0x1200},
      {"behind a Forum block and another vendor's",
       Edid().Extension(Cta().HdmiForum({1, 0, 0, 0}).Block(3, {1, 2, 3}).Hdmi(0x3000)), 0x3000},
      {"Forum block only", Edid().Extension(Cta().HdmiForum({1, 0, 0, 0})), 0xFFFF},
      {"hidden by the DTD offset", Edid().Extension(broken), 0xFFFF},
      {"behind an empty extension", Edid().Extension(Cta()).Extension(hdmi), 0x1200},
      {"behind one data block", Edid().Extension(Cta().Vdb({16})).Extension(hdmi), 0x1200},
      {"behind two data blocks, skipped over by one", Edid().Extension(two).Extension(Cta()).Extension(hdmi), 0x1200},
      {"three data blocks skip it", Edid().Extension(three).Extension(hdmi).Extension(Cta()), 0xFFFF},
      {"three data blocks skip to it", Edid().Extension(three).Extension(Cta()).Extension(Cta()).Extension(hdmi),
       0x1200},
      {"behind a section", Edid().Extension(Section()).Extension(hdmi), 0x1200},
      {"without room for an address", Edid().Extension(Cta().Block(3, {0x03, 0x0C, 0x00, 0x10})), 0xFFFF},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Owned<EdidHandle> handle = OpenImage(c.edid.Build());
    const bool shortVsdb = std::string(c.name).find("without") == 0;
    LogOf([&] {
      EXPECT_EQ(EDID_GetPhyAddr(handle.get()), c.address);
      EXPECT_EQ(isDVIEdid(handle.get()), c.address == 0xFFFF && !shortVsdb);
      EXPECT_EQ(EDID_SetPhyAddr(handle.get(), 0x4321), c.address == 0xFFFF ? -1 : 0);
      EXPECT_EQ(EDID_GetPhyAddr(handle.get()), c.address == 0xFFFF ? 0xFFFF : 0x4321);
      EXPECT_EQ(Generate(handle.get()) == c.edid.Build(), c.address == 0xFFFF);
    });
  }
}

TEST(PhysAddr, IsSetByWritingTheVsdbAnew) {
  const ByteVector before =
      Edid().Extension(Cta().Vdb({16}).Hdmi(0x1000, {0xB9, 30, 0x80, 3, 4}).Dtd(k1080p60)).Build();
  const ByteVector after = Edid().Extension(Cta().Vdb({16}).Hdmi(0x2100, {0xB9, 30, 0x80, 3, 4}).Dtd(k1080p60)).Build();
  const Owned<EdidHandle> handle = OpenImage(before);
  ASSERT_EQ(EDID_SetPhyAddr(handle.get(), 0x2100), 0);
  EXPECT_EQ(Generate(handle.get()), after);

  struct Case {
    const char* name;
    Cta cta;
    int32_t result;
  };
  const Case cases[] = {
      {"a short VSDB grows", Cta().Hdmi(0x1000, {}).DtdOffset(120), 0},
      {"no space to grow", Cta().Hdmi(0x1000, {}).DtdOffset(125), -1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const ByteVector image = Edid().Extension(c.cta).Build();
    const Owned<EdidHandle> other = OpenImage(image);
    LogOf([&] { EXPECT_EQ(EDID_SetPhyAddr(other.get(), 0x2000), c.result); });
    EXPECT_EQ(Generate(other.get()) == image, c.result != 0);
    EXPECT_EQ(isValidEdid(other.get()), 1);
    EXPECT_EQ(EDID_GetPhyAddr(other.get()), c.result == 0 ? 0x2000 : 0x1000);
  }
}

TEST(DviToHdmi, PutsItsBlocksBehindTheVideoBlock) {
  const ByteVector vdb = {0x41, 0x90};
  struct Case {
    const char* name;
    Cta cta;
    ByteVector blocks;  // from byte 4
    int byte3, dtds;
  };
  const Case cases[] = {
      {"video block first", Cta().Flags(0x31).Vdb({0x90}).Block(5, {1}), Concat({vdb, kHdmiBlocks, {0xA1, 1}}), 0x71,
       0},
      {"video block later", Cta().Block(5, {1}).Vdb({0x90}).Vdb({31}).Block(5, {2}),
       Concat({{0xA1, 1}, vdb, kHdmiBlocks, {0x41, 31, 0xA1, 2}}), 0x40, 0},
      {"no video block", Cta().Block(5, {1}), Concat({kHdmiBlocks, {0xA1, 1}}), 0x40, 0},
      {"no data blocks, DTDs stay", Cta().Dtd(k1080p60).Dtd(k720p60), kHdmiBlocks, 0x40, 2},
      {"the last DTD makes room",
       Cta().Vdb({0x90}).Dtd(k1080p60).Dtd(k720p60).Dtd(k720p60).Dtd(k720p60).Dtd(k720p60).Dtd(k720p60),
       Concat({vdb, kHdmiBlocks}), 0x40, 5},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Owned<EdidHandle> handle = OpenImage(Edid().Extension(Cta(c.cta).Revision(1)).Build());
    ASSERT_EQ(EDID_DVItoHDMI(handle.get(), 0x1200), 0);
    ASSERT_EQ(handle->blockCount, 2);
    const ByteVector block = BlockOf(*handle, 1);
    EXPECT_EQ(block[1], 3);
    EXPECT_EQ(block[2], 4 + c.blocks.size());
    EXPECT_EQ(block[3], c.byte3);
    EXPECT_EQ(ByteVector(block.begin() + 4, block.begin() + block[2]), c.blocks);
    EXPECT_EQ(block[block[2] + 18u * static_cast<unsigned>(c.dtds)], 0);
    EXPECT_EQ(isValidEdid(handle.get()), 1);
    const Owned<CeaBlock> model(CEA_Open(&handle->blocks[1]));
    EXPECT_EQ(model->dtdCount, c.dtds);
  }
}

TEST(DviToHdmi, ReplacesBlockOne) {
  const ByteVector made =
      Cta().Flags(0xC1).Block(1, {0x09, 0x04, 0x01}).Block(4, {1, 0, 0}).Hdmi(0x1200, {0, 30, 0}).Build();
  ByteVector map(128);
  map[0] = 0xF0;
  const ByteVector hdmi = Edid().Extension(Cta().Hdmi(0x3000)).Build();
  const ByteVector section = Section().BuildExtension();
  struct Case {
    const char* name;
    ByteVector before, after;
  };
  const Case cases[] = {
      {"base block only", Edid().Build(), Edid().Extension(made).Build()},
      {"block map goes", Edid().Extension(map).Extension(section).Build(),
       Edid().Extension(section).Extension(made).Build()},
      {"HDMI stays", hdmi, hdmi},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Owned<EdidHandle> handle = OpenImage(c.before);
    EXPECT_EQ(EDID_DVItoHDMI(handle.get(), 0x1200), 0);
    EXPECT_EQ(Generate(handle.get()), c.after);
  }
}

TEST(DviToHdmi, LeavesOutWhatDoesNotFit) {
  const auto noSpace = [](int free, int need) {
    return Err("CEA_AddDataBlock", "not enough space, free " + std::to_string(free) + ", need " + std::to_string(need));
  };
  const Cta full = Cta().Vdb(ByteVector(31, 16)).Vdb(ByteVector(31, 16)).Vdb(ByteVector(31, 16));
  struct Case {
    const char* name;
    Cta cta;
    int32_t result;
    std::string log;
    int blocks;  // of the image afterwards
  };
  const Case cases[] = {
      {"audio and speakers fit", Cta(full).Vdb(ByteVector(13, 16)), 0, noSpace(5, 9), 2},
      {"nothing fits", Cta().Vdb({16}).DtdOffset(0), 0, noSpace(0, 4) + noSpace(0, 4) + noSpace(0, 9), 2},
      {"nothing fits into nothing", Cta().DtdOffset(0), -1,
       noSpace(0, 4) + noSpace(0, 4) + noSpace(0, 9) + Err("CEA_GenerateBlock", "invalid parameters"), 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Owned<EdidHandle> handle = OpenImage(Edid().Extension(c.cta).Build());
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_DVItoHDMI(handle.get(), 0x1200), c.result); }), c.log);
    EXPECT_EQ(handle->blockCount, c.blocks);
    EXPECT_EQ(isValidEdid(handle.get()), 1);
  }
}

TEST(HdmiIdentity, RefusesBadArguments) {
  EdidHandle empty = {0, nullptr};
  for (EdidHandle* handle : {static_cast<EdidHandle*>(nullptr), &empty}) {
    const auto bad = [](const char* name) { return Err(name, "invalid parameters"); };
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(isValidEdid(handle), 0); }), bad("isValidEdid"));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(isDVIEdid(handle), 0); }), bad("isDVIEdid"));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_DVItoHDMI(handle, 0x1000), -1); }), bad("EDID_DVItoHDMI"));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_GetPhyAddr(handle), 0xFFFF); }), "");
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_SetPhyAddr(handle, 0x1000), -1); }), "");
  }
}

}  // namespace
}  // namespace reedid::test
