#include <gtest/gtest.h>

#include "patch/base_block.h"
#include "patch/image.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"

namespace reedid::test {
namespace {

const ByteVector kVendor = {1, 2, 3, 9};
const ByteVector kFresh = Hex("65 01 02 03 09 09");  // in its place, one byte longer

// Edits the first data block of a kind, by its cursor.
enum class Act { kErase, kReplace, kInsertBefore, kInsertLast };

template <class Cursor>
bool Do(Act act, Cursor& cursor, const ByteVector& fresh) {
  const Bytes bytes(fresh.data(), fresh.size());
  if (act == Act::kErase) return cursor.Erase(), true;
  if constexpr (requires { cursor.Insert(bytes); }) {
    if (act == Act::kInsertBefore) return cursor.Insert(bytes);
  }
  return cursor.Replace(bytes);
}

bool EditVendor(EdidHandle& handle, Act act, const ByteVector& fresh = kFresh) {
  if (act == Act::kInsertLast) {
    CtaCursor cursor(CollectionOf(handle.blocks[1]));
    while (cursor.Next()) continue;
    return cursor.Insert(Bytes(fresh.data(), fresh.size()));
  }
  bool done = false;
  VisitCtaDataBlocks(handle, [&](CtaCursor& cursor) {
    if (cursor.Is(3) && !done) done = Do(act, cursor, fresh);
  });
  return done;
}

ByteVector Full(ByteVector block, size_t at) {
  for (; at < 127; ++at) block[at] = 0x55;
  return FixChecksum(block), block;
}

TEST(PatchCta, MovesWhatStandsBehind) {
  const Cta video = Cta().Flags(0x31).Vdb({16, 31}), odd = Cta(video).Block(0, {});  // a byte 00 between data blocks
  const ByteVector last = Cta(video).Block(3, kVendor).Block(4, {0, 0, 0}).DtdOffset(0).Build();
  const auto rest = [](Cta cta) { return cta.Block(4, {1, 0, 0}).Dtd(k1080p60).Dtd(k720p60); };
  const struct {
    const char* name;
    Act act;
    Edid before, after;
    bool done = true;
  } rows[] = {
      {"erased", Act::kErase, Edid().Extension(rest(Cta(video).Block(3, kVendor))), Edid().Extension(rest(video))},
      {"replaced", Act::kReplace, Edid().Extension(rest(Cta(video).Block(3, kVendor))),
       Edid().Extension(rest(Cta(video).Block(3, {1, 2, 3, 9, 9})))},
      {"inserted", Act::kInsertBefore, Edid().Extension(rest(Cta(video).Block(3, kVendor))),
       Edid().Extension(rest(Cta(video).Block(3, {1, 2, 3, 9, 9}).Block(3, kVendor)))},
      {"behind tag 0", Act::kErase, Edid().Extension(rest(Cta(odd).Block(3, kVendor))), Edid().Extension(rest(odd))},
      {"behind the last", Act::kInsertLast, Edid().Extension(Cta(video).Dtd(k720p60)),
       Edid().Extension(Cta(video).Block(3, {1, 2, 3, 9, 9}).Dtd(k720p60))},
      {"into nothing", Act::kInsertLast, Edid().Extension(Cta().DtdOffset(0)),
       Edid().Extension(Cta().Block(3, {1, 2, 3, 9, 9}))},
      {"padding moves up", Act::kErase, Edid().Extension(Full(Cta(video).Block(3, kVendor).Build(), 100)),
       Edid().Extension([&] {
         ByteVector after = Full(Cta(video).Build(), 95);
         std::fill(after.begin() + 115, after.begin() + 127, uint8_t{0});
         return FixChecksum(after), after;
       }())},
      {"no room", Act::kReplace, Edid().Extension(Full(Cta(video).Block(3, kVendor).Build(), 126)),
       Edid().Extension(Full(Cta(video).Block(3, kVendor).Build(), 126)), false},
      {"no offset", Act::kInsertLast, Edid().Extension(Cta().DtdOffset(2)), Edid().Extension(Cta().DtdOffset(2)),
       false},
      {"without timings", Act::kErase, Edid().Extension(last),
       Edid().Extension(Cta(video).Block(4, {0, 0, 0}).DtdOffset(0))},
      {"passes the end of the collection", Act::kErase, Edid().Extension(Cta(video).Block(3, kVendor).DtdOffset(10)),
       Edid().Extension(Cta(video).Block(3, kVendor).DtdOffset(10)), false},
  };
  for (const auto& row : rows) {
    const Image handle(row.before.Build());
    EXPECT_EQ(EditVendor(*handle, row.act), row.done) << row.name;
    EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(row.after.Build())) << row.name;
  }
}

TEST(PatchCta, EditsTimingSlots) {
  const Cta empty = Cta().Vdb({16});
  const ByteVector slot = DescriptorOf(k2160p60);
  const Image handle(Edid().Extension(Cta(empty).Dtd(k1080p60).Dtd(k720p60)).Build());
  EdidBlock& block = handle->blocks[1];
  EraseCtaSlot(block, 2);  // none
  EraseCtaSlot(block, 0);
  EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(Edid().Extension(Cta(empty).Dtd(k720p60)).Build()));
  EXPECT_TRUE(InsertCtaSlot(block, 0, Bytes(slot.data(), 18)));
  EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(Edid().Extension(Cta(empty).Dtd(k2160p60).Dtd(k720p60)).Build()));
  while (InsertCtaSlot(block, SlotsOf(block).count, Bytes(slot.data(), 18))) continue;
  EXPECT_EQ(SlotsOf(block).count, 6u);
  std::fill(block.bytes + SlotsOf(block).begin, block.bytes + SlotsOf(block).begin + 18, uint8_t{0});
  EXPECT_EQ(SlotsOf(block).count, 6u) << "behind a gap";
}

// The same data block in a section, and CTA data blocks inside one.
TEST(PatchSection, KeepsLengthAndChecksums) {
  const auto held = [](const ByteVector& blocks) { return Section(0x20).Block(0x81, 0, blocks); };
  const auto serial = [](Section section) { return section.Block(0x0A, 0, {'1', '0'}).BuildExtension(); };
  const auto alone = [](Section section, size_t padding) { return section.Block(0x0A, 0, {'1'}).Build(padding); };
  const ByteVector vendor = Hex("64 01 02 03 09"), cut = Hex("E3 05 80");  // the latter ends early
  const struct {
    const char* name;
    Act act;
    ByteVector before, after;
    bool done = true;
  } rows[] = {
      {"erased", Act::kErase, serial(held(Concat({vendor, {0x41, 16}}))), serial(held({0x41, 16}))},
      {"the last one takes its holder along", Act::kErase, serial(held(vendor)), serial(Section(0x20))},
      {"what is cut off stays", Act::kErase, serial(held(Concat({vendor, cut}))), serial(held(cut))},
      {"grows into the fill", Act::kReplace, serial(held(vendor)), serial(held(kFresh))},
      {"inserted", Act::kInsertBefore, serial(held(vendor)), serial(held(Concat({kFresh, vendor})))},
      {"standalone, shrinks into fill", Act::kErase, alone(held(Concat({vendor, {0x41, 16}})), 0),
       alone(held({0x41, 16}), 5)},
      {"standalone, grows", Act::kReplace, alone(held(vendor), 0), alone(held(kFresh), 0)},
      {"full", Act::kReplace, held(vendor).Block(0x0A, 0, ByteVector(110, '1')).BuildExtension(),
       held(vendor).Block(0x0A, 0, ByteVector(110, '1')).BuildExtension(), false},
  };
  for (const auto& row : rows) {
    const bool extension = row.before[0] == 0x70;
    const Edid edid;
    const Image handle(extension ? Edid(edid).Extension(row.before).Build() : row.before);
    EXPECT_EQ(EditVendor(*handle, row.act), row.done) << row.name;
    EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(extension ? Edid(edid).Extension(row.after).Build() : row.after))
        << row.name;
  }
  // A section that ends with its data blocks grows into its block.
  ByteVector tight = Concat({{0x70}, held(vendor).Build()}), grown = Concat({{0x70}, held(kFresh).Build()});
  for (ByteVector* block : {&tight, &grown}) {
    block->resize(128);
    FixChecksum(*block);
  }
  const Image handle(Edid().Extension(tight).Build());
  EXPECT_TRUE(EditVendor(*handle, Act::kReplace));
  EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(Edid().Extension(grown).Build()));
}

TEST(PatchBase, FreedSlotsBecomeDummies) {
  const ByteVector dummy = Hex("00 00 00 10 00*14");
  const DtdTiming fast = AtClock(k720p60, 10 * 0x6400);  // its clock has a byte 00
  const struct {
    const char* name;
    unsigned erased;
    Edid before, after;
  } rows[] = {
      {"descriptors keep their places", 1, Edid().Dtd(k1080p60).Dtd(k720p60).Name("a").Name("b"),
       Edid().Dtd(k1080p60).Slot(dummy).Name("a").Name("b")},
      {"later timings move up", 0, Edid().Dtd(k1080p60).Dtd(fast).Name("a").Dtd(k2160p60),
       Edid().Dtd(fast).Dtd(k2160p60).Name("a").Slot(dummy)},
      {"a descriptor leaves its place", 2, Edid().Dtd(k1080p60).Name("a").Name("b").Dtd(k720p60),
       Edid().Dtd(k1080p60).Name("a").Slot(dummy).Dtd(k720p60)},
  };
  for (const auto& row : rows) {
    const Image handle(row.before.Build());
    EraseBaseSlot(handle->blocks[0], row.erased);
    EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(row.after.Build())) << row.name;
    EXPECT_NE(FreeBaseSlot(handle->blocks[0]), kBaseSlots) << row.name;
  }
  EXPECT_FALSE(HasBaseSlots(Block(EDID_BLOCK_VESA, ByteVector(128)))) << "without the header of an EDID";
}

}  // namespace
}  // namespace reedid::test
