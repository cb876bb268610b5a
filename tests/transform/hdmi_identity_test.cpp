#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

TEST(IsValidEdid, NeedsEveryBlock) {
  const auto broken = [](ByteVector bytes) { return bytes.back() ^= 1, bytes; };
  const auto extension = [](uint8_t tag) {
    ByteVector bytes(128);
    bytes[0] = tag;
    FixChecksum(bytes);
    return Edid().Extension(bytes).Build();
  };
  const ByteVector section = Section().ExtensionCount(1).Build(3);
  const struct {
    const char* name;
    ByteVector bytes;
    int valid;
  } cases[] = {
      {"all kinds", Edid().Extension(Cta()).Extension(Section()).Build(), 1},
      {"count byte disagrees", Edid().Set(126, {7}).Build(), 1},
      {"sections", Concat({section, section}), 1},
      {"block map", extension(0xF0), 0},
      {"unknown extension", extension(0x10), 0},
      {"checksum of the base block", broken(Edid().Build()), 0},
      {"checksum of the extension", Edid().Extension(broken(Cta().Build())).Build(), 0},
      {"checksum of the section", broken(Section().Build(9)), 0},
      {"section that does not open", {0x02, 0, 0, 0, 0xFE}, 0},
  };
  for (const auto& c : cases) {
    Quietly([&] { EXPECT_EQ(isValidEdid(Image(c.bytes).get()), c.valid) << c.name; });
  }
  const Image empty(Edid().Build());
  EDID_DeleteBlock(empty.get(), empty->blocks);
  EXPECT_EQ(isValidEdid(empty.get()), 1);
  EXPECT_EQ(isDVIEdid(empty.get()), 1);
}

// The search counts blocks and data blocks with one counter: behind an extension of n data blocks without the VSDB, the
// block n + 1 comes next, or the very next one.
TEST(PhysAddr, IsThatOfTheFirstHdmiVsdbFound) {
  const Cta hdmi = Cta().Vdb({16}).Hdmi(0x1200), forum = Cta().HdmiForum({1, 0, 0, 0});
  const Cta two = Cta().Vdb({16}).Vdb({31}), three = Cta(two).Vdb({4});
  ByteVector hidden = hdmi.Build();
  hidden[2] = 4;
  const struct {
    const char* name;
    Edid edid;
    uint16_t address;
    bool dvi = false;
  } cases[] = {
      {"none", Edid().Extension(two), 0xFFFF, true},
      {"first block", Edid().Extension(hdmi), 0x1200},
      {"behind other vendors'", Edid().Extension(Cta(forum).Block(3, {1, 2, 3}).Hdmi(0x3000)), 0x3000},
      {"Forum block only", Edid().Extension(forum), 0xFFFF, true},
      {"hidden by the DTD offset", Edid().Extension(hidden), 0xFFFF, true},
      {"behind one data block", Edid().Extension(Cta().Vdb({16})).Extension(hdmi), 0x1200},
      {"behind two data blocks, skipped over by one", Edid().Extension(two).Extension(Cta()).Extension(hdmi), 0x1200},
      {"three skip it", Edid().Extension(three).Extension(hdmi).Extension(Cta()), 0xFFFF, true},
      {"three skip to it", Edid().Extension(three).Extension(Cta()).Extension(Cta()).Extension(hdmi), 0x1200},
      {"no room for an address", Edid().Extension(Cta().Block(3, {0x03, 0x0C, 0x00, 0x10})), 0xFFFF},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const Image handle(c.edid.Build());
    const bool found = c.address != 0xFFFF;
    Quietly([&] {
      EXPECT_EQ(EDID_GetPhyAddr(handle.get()), c.address);
      EXPECT_EQ(isDVIEdid(handle.get()), c.dvi);
      EXPECT_EQ(EDID_SetPhyAddr(handle.get(), 0x4321), found ? 0 : -1);
      EXPECT_EQ(EDID_GetPhyAddr(handle.get()), found ? 0x4321 : 0xFFFF);
      EXPECT_EQ(Generate(handle.get()) == c.edid.Build(), !found);
    });
  }
}

TEST(PhysAddr, IsSetByWritingTheVsdbAnew) {
  const auto full = [](uint16_t address) {
    return Cta().Vdb({16}).Hdmi(address, {0xB9, 30, 0x80, 3, 4}).Dtd(k1080p60);
  };
  const struct {
    const char* name;
    Cta before, after;
    int32_t result;
  } rows[] = {
      {"all else stays", full(0x1000), full(0x2100), 0},
      {"a short VSDB grows", Cta().Hdmi(0x1000, {}).DtdOffset(120), Cta().Hdmi(0x2100, {0, 0, 0}), 0},
      {"no space to grow", Cta().Hdmi(0x1000, {}).DtdOffset(125), Cta().Hdmi(0x1000, {}).DtdOffset(125), -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Image handle(Edid().Extension(row.before).Build());
    Quietly([&] { EXPECT_EQ(EDID_SetPhyAddr(handle.get(), 0x2100), row.result); });
    EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(Edid().Extension(row.after).Build()));
  }
}

// Audio, speakers and the VSDB of 1.2.0.0, behind the first video block.
Cta WithHdmi(Cta cta) {
  return cta.Block(1, {0x09, 0x04, 0x01}).Block(4, {1, 0, 0}).Hdmi(0x1200, {0, 30, 0});
}

TEST(DviToHdmi, MakesTheExtensionAnHdmiOne) {
  ByteVector map(128);
  map[0] = 0xF0;
  const Edid hdmi = Edid().Extension(Cta().Hdmi(0x3000));
  const Section section;
  Cta five = Cta().Dtd(k1080p60).Dtd(k720p60).Dtd(k720p60).Dtd(k720p60).Dtd(k720p60), six = Cta(five).Dtd(k720p60);
  const Cta made = WithHdmi(Cta().Flags(0xC1)), old = Cta().Revision(1);
  const ByteVector large(31, 0x10), last(23, 0x10);
  const struct {
    const char* name;
    Edid before, after;
  } rows[] = {
      {"video block first", Edid().Extension(Cta(old).Flags(0x31).Vdb({0x90}).Block(5, {1})),
       Edid().Extension(WithHdmi(Cta().Flags(0x71).Vdb({0x90})).Block(5, {1}))},
      {"video block later", Edid().Extension(Cta(old).Block(5, {1}).Vdb({0x90}).Vdb({31}).Block(5, {2})),
       Edid().Extension(WithHdmi(Cta().Flags(0x40).Block(5, {1}).Vdb({0x90})).Vdb({31}).Block(5, {2}))},
      {"no video block", Edid().Extension(Cta(old).Block(5, {1})),
       Edid().Extension(WithHdmi(Cta().Flags(0x40)).Block(5, {1}))},
      {"no data blocks, DTDs stay", Edid().Extension(Cta(old).Dtd(k1080p60).Dtd(k720p60)),
       Edid().Extension(WithHdmi(Cta().Flags(0x40)).Dtd(k1080p60).Dtd(k720p60))},
      {"the last DTD makes room", Edid().Extension(six.Vdb({0x90})),
       Edid().Extension(WithHdmi(five.Flags(0x40).Vdb({0x90})))},
      {"just room enough, the DTD stays",
       Edid().Extension(Cta(old).Vdb(large).Block(3, large).Block(3, last).Dtd(k720p60)),
       Edid().Extension(WithHdmi(Cta().Flags(0x40).Vdb(large)).Block(3, large).Block(3, last).Dtd(k720p60))},
      {"base block only", Edid(), Edid().Extension(made)},
      {"a block map goes", Edid().Extension(map).Extension(section), Edid().Extension(section).Extension(made)},
      {"HDMI stays", hdmi, hdmi},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Image handle(row.before.Build());
    EXPECT_EQ(EDID_DVItoHDMI(handle.get(), 0x1200), 0);
    EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(row.after.Build()));
  }
}

TEST(DviToHdmi, LeavesOutWhatDoesNotFit) {
  const auto noSpace = [](int free, int need) {
    return Err("CEA_AddDataBlock", "not enough space, free " + std::to_string(free) + ", need " + std::to_string(need));
  };
  const Cta full = Cta().Vdb(ByteVector(31, 16)).Vdb(ByteVector(31, 16)).Vdb(ByteVector(31, 16));
  const struct {
    const char* name;
    Cta cta;
    int32_t result;
    std::string log;
    int blocks;  // of the image afterwards
  } cases[] = {
      {"audio and speakers fit", Cta(full).Vdb(ByteVector(13, 16)), 0, noSpace(5, 9), 2},
      {"nothing fits", Cta().Vdb({16}).DtdOffset(0), 0, noSpace(0, 4) + noSpace(0, 4) + noSpace(0, 9), 2},
      {"nothing fits into nothing", Cta().DtdOffset(0), -1,
       noSpace(0, 4) + noSpace(0, 4) + noSpace(0, 9) + Err("CEA_GenerateBlock", "invalid parameters"), 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const Image handle(Edid().Extension(c.cta).Build());
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_DVItoHDMI(handle.get(), 0x1200), c.result); }), c.log);
    EXPECT_EQ(handle->blockCount, c.blocks);
    EXPECT_EQ(isValidEdid(handle.get()), 1);
  }
}

}  // namespace
}  // namespace reedid::test
