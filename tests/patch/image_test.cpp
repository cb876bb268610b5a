#include "patch/image.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/support/corpus.h"
#include "tests/support/edid_builder.h"
#include "tests/support/failing_malloc.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

ByteVector Map(const ByteVector& tags) {
  ByteVector map = Concat({{0xF0}, tags});
  map.resize(128);
  return FixChecksum(map), map;
}

// Beside an override byte 126 is 1.
Edid Overridden(uint8_t count, const std::vector<ByteVector>& others) {
  Edid edid;
  edid.Extension(Cta().Extended(120, {count}).Vdb({16}));
  for (const ByteVector& block : others) edid.Extension(block);
  return edid;
}
ByteVector WithCount(const Edid& edid, uint8_t count) {
  ByteVector bytes = edid.Build();
  ByteVector base(bytes.begin(), bytes.begin() + 128);
  base[126] = count;
  FixChecksum(base);
  std::copy(base.begin(), base.end(), bytes.begin());
  return bytes;
}

const Cta kVideo = Cta().Vdb({16});
const ByteVector kSection = Section().Block(0x0A, 0, {'1'}).BuildExtension();

TEST(PatchImage, CountsAndMapsGoAlong) {
  const ByteVector cta = kVideo.Build();
  const Edid three = Overridden(3, {cta, kSection}), two = Overridden(2, {kSection});
  const auto erase = [](unsigned index) { return [index](EdidHandle& handle) { EraseBlock(handle, index); }; };
  const auto insert = [&](EdidHandle& handle) {
    EXPECT_TRUE(InsertBlock(handle, Block(EDID_BLOCK_CEA, cta), CtaPlace(handle)));
  };
  const struct {
    const char* name;
    std::function<void(EdidHandle&)> edit;
    ByteVector before, after;
  } rows[] = {
      {"erased", erase(2), Edid().Extension(cta).Extension(kSection).Build(), Edid().Extension(cta).Build()},
      {"the override counts", erase(2), WithCount(three, 1), WithCount(two, 1)},
      {"an override of one goes", erase(2), WithCount(two, 1), Edid().Extension(kVideo).Build()},
      {"the override itself", erase(1), WithCount(three, 1), Edid().Extension(cta).Extension(kSection).Build()},
      {"a map", erase(3), Edid().Extension(Map({2, 0x70})).Extension(cta).Extension(kSection).Build(),
       Edid().Extension(Map({2})).Extension(cta).Build()},
      {"first extension", insert, Edid().Extension(kSection).Build(),
       Edid().Extension(cta).Extension(kSection).Build()},
      {"behind the map", insert, Edid().Extension(Map({0x70})).Extension(kSection).Build(),
       Edid().Extension(Map({2, 0x70})).Extension(cta).Extension(kSection).Build()},
  };
  for (const auto& row : rows) {
    const Image handle(row.before);
    row.edit(*handle);
    EXPECT_EQ(HexOf(handle.Bytes()), HexOf(row.after)) << row.name;
  }
}

TEST(GenerateImage, IsRightAsAWhole) {
  const auto broken = [](ByteVector bytes, size_t at) { return bytes[at] ^= 0x40, bytes; };
  const ByteVector sound = Edid().Extension(kVideo).Extension(kSection).Build();
  const ByteVector held = WithCount(Overridden(2, {kSection}), 1);
  const ByteVector sections = Concat({Section().ExtensionCount(1).Build(), Section().Build(7)});
  const ByteVector mapped = Edid().Extension(Map({2, 0x70})).Extension(kVideo).Extension(kSection).Build();
  const struct {
    const char* name;
    ByteVector before, after;
  } rows[] = {
      {"count", WithCount(Edid().Extension(kVideo).Extension(kSection), 7), sound},
      {"checksum of the base block", broken(sound, 127), sound},
      {"checksum of an extension", broken(sound, 255), sound},
      {"checksum of a section and its block", broken(sound, 256 + 126), sound},
      {"beside an override", WithCount(Overridden(9, {kSection}), 2), held},
      {"no override behind another data block", WithCount(Edid().Extension(Cta(kVideo).Extended(120, {9})), 9),
       Edid().Extension(Cta(kVideo).Extended(120, {9})).Build()},
      {"block map", Edid().Extension(Map({2, 2, 2})).Extension(kVideo).Extension(kSection).Build(), mapped},
      {"standalone sections", broken(broken(sections, 3), sections.size() - 1), sections},
  };
  for (const auto& row : rows) {
    const Image handle(row.before);
    EXPECT_EQ(HexOf(handle.Bytes()), HexOf(row.after)) << row.name;
    EXPECT_EQ(HexOf(Image(row.after).Bytes()), HexOf(row.after)) << row.name;
  }
  const Image handle(sound);
  ByteVector out(sound.size(), 0xEE);
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_GenerateImage(handle.get(), out.data(), 383), -1); }),
            Err("EDID_GenerateImage", "not enough space"));
  EXPECT_EQ(out, ByteVector(sound.size(), 0xEE));
}

TEST(PatchPhyAddr, ChangesTheAddressAlone) {
  const auto image = [](uint16_t first, uint16_t second) {
    const ByteVector held = {0x65, 0x03, 0x0C, 0x00, static_cast<uint8_t>(second >> 8), static_cast<uint8_t>(second)};
    return Edid()
        .Extension(Cta().Vdb({16}).Hdmi(first, {0xB8, 0x2D, 0x20, 0xC0, 0x04, 1, 0x40, 0, 1}).HdmiForum({1, 0, 0, 0}))
        .Extension(Section(0x20).Block(0x81, 0, held))
        .Build();
  };
  const std::pair<uint16_t, int32_t> rows[] = {{0x1000, 1}, {0x1234, 1}, {0xF000, 1}, {0xFFF0, 1},
                                               {0x0000, 0}, {0xFFFF, 0}, {0x1020, 0}, {0x0100, 0}};
  for (const auto& [address, isPort] : rows) {
    EXPECT_EQ(EDID_IsPortAddress(address), isPort) << address;
    const Image handle(image(0x3000, 0x0000));
    EXPECT_EQ(EDID_PatchPhyAddr(handle.get(), address), 0);
    EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(image(address, address)));
  }
  const Image dvi(Edid().Extension(Cta().Block(3, {0x03, 0x0C, 0x00, 0x10})).Build());
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_PatchPhyAddr(dvi.get(), 0x1000), -1); }),
            Err("EDID_PatchPhyAddr", "no HDMI block with an address"));
}

// At most two bytes of address and the checksums over them, wherever an HDMI block is found.
TEST(Corpus, ChangesByAddressInFourBytes) {
  for (const auto& [name, bytes] : Corpus()) {
    SCOPED_TRACE(name);
    Quietly([&, &before = bytes] {
      const Image handle(before);
      if (!handle || EDID_GetPhyAddr(handle.get()) == 0xFFFF) return;
      EXPECT_EQ(EDID_PatchPhyAddr(handle.get(), 0x4321), 0);
      EXPECT_EQ(EDID_GetPhyAddr(handle.get()), 0x4321);
      const Image original(before);
      const ByteVector from = Generate(original.get()), to = Generate(handle.get());
      ASSERT_EQ(from.size(), to.size());
      std::vector<int> changed(from.size() / 128 + 1);  // by block
      for (size_t i = 0; i < to.size(); ++i) changed[i / 128] += from[i] != to[i];
      EXPECT_LE(*std::max_element(changed.begin(), changed.end()), 4);
    });
  }
}

}  // namespace
}  // namespace reedid::test
