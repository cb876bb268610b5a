// The codecs whose getter and setter are each other's reverse, over random records and over all blocks of real EDIDs.
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <map>
#include <random>
#include <set>

#include "inventory/walk.h"
#include "tests/support/codecs.h"
#include "tests/support/corpus.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"
#include "tests/support/record_text.h"

namespace reedid::test {
namespace {

// A random block that the codec takes.
template <class Entry>
ByteVector RandomBlock(const Codec<Entry>& codec, std::mt19937& random) {
  unsigned size = 0;
  while (!Takes(codec, size) || size < codec.head.size()) size = static_cast<unsigned>(random() % 252);
  if constexpr (std::is_same_v<Entry, DispIdDataBlock>) {
    if (codec.head.size() == 1) --size;  // the length is put in
  }
  ByteVector payload(size - codec.head.size());
  const uint8_t mask = random() % 2 != 0 ? 0xFF : 0x07;  // lists with small numbers, too
  for (uint8_t& byte : payload) byte = static_cast<uint8_t>(random() & mask);
  return BlockOf(codec, payload);
}

// What the setter makes of a record: nothing at all, or a block that is read as this record again.
template <class Entry>
std::string Verdict(const Codec<Entry>& codec, const ByteVector& box) {
  Blank<Entry> target(251);
  if (codec.set(box.data(), &target) != 0) return target.Untouched() ? "refused" : "refused half way";
  ByteVector again(codec.boxSize, 0xEE);
  if (target.size > 251 || codec.get(&target, again.data()) != 0) return "written, and cannot be read";
  return again == box ? "written" : "written as another record";
}

template <class Entry>
void ExpectNoRecordAsAnother(const Codec<Entry>& codec, std::mt19937& random) {
  constexpr int kRounds = 10;
  std::map<std::string, int> verdicts;
  Quietly([&] {
    for (int round = 0; round < kRounds; ++round) {
      const Held<Entry> entry(RandomBlock(codec, random));
      ByteVector box(codec.boxSize);
      if (codec.get(&entry, box.data()) != 0) continue;
      ++verdicts["as read: " + Verdict(codec, box)];
      for (uint8_t& byte : box) {
        const uint8_t was = byte;
        for (const int other : {was + 1, was ^ 0x10, 0xFF, 0}) {
          byte = static_cast<uint8_t>(other);
          ++verdicts[Verdict(codec, box)];
        }
        byte = was;
      }
    }
  });
  SCOPED_TRACE(codec.name);
  EXPECT_EQ(verdicts["as read: written"], kRounds);
  EXPECT_GT(verdicts["written"], 0);
  verdicts.erase("refused");  // one codec takes every record
  EXPECT_EQ(verdicts.size(), 2u) << Json(verdicts);
}

TEST(ExactCodecs, WriteNoRecordAsAnother) {
  std::mt19937 random(16);
  const auto all = [&](const auto& codecs) {
    for (const auto& codec : codecs) {
      if (codec.exact) ExpectNoRecordAsAnother(codec, random);
    }
  };
  all(Codecs<CeaDataBlock>());
  all(Codecs<DispIdDataBlock>());
}

// What real blocks lose when they are read and written, by codec.
struct Losses {
  unsigned blocks = 0, equal = 0;
  std::map<std::string, unsigned> lost;  // "byte.bit" or what else, how often
};
using LossesByCodec = std::map<std::string, Losses>;

// Bits that are not written again, or that are written anew.
void Compare(const ByteVector& block, const ByteVector& again, Losses& losses) {
  ++losses.blocks;
  if (block == again) ++losses.equal;
  if (block.size() != again.size()) ++losses.lost[block.size() > again.size() ? "shorter" : "longer"];
  for (size_t i = 1; i < std::min(block.size(), again.size()); ++i) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      const unsigned was = block[i] >> bit & 1u, is = again[i] >> bit & 1u;
      if (was != is) ++losses.lost[(is ? "new " : "") + std::to_string(i) + "." + std::to_string(bit)];
    }
  }
  for (size_t i = again.size(); i < block.size(); ++i) {
    if (block[i] != 0) ++losses.lost["behind the end"];
  }
}

template <class Entry>
void TryAll(const Entry& entry, const std::string& image, LossesByCodec& byCodec) {
  std::set<std::string> tried;  // rows of one getter differ in nothing here
  for (const Codec<Entry>& codec : Codecs<Entry>()) {
    ByteVector box(codec.boxSize), again(codec.boxSize);
    if (!codec.exact || !tried.insert(codec.getter).second || codec.get(&entry, box.data()) != 0) continue;
    Blank<Entry> target(251);
    ASSERT_EQ(codec.set(box.data(), &target), 0) << image << ": " << codec.name;
    ASSERT_EQ(codec.get(&target, again.data()), 0) << image << ": " << codec.name;
    EXPECT_EQ(box, again) << image << ": " << codec.name;
    Compare(ByteVector(entry.bytes, entry.bytes + entry.size), target.Written(), byCodec[codec.getter]);
  }
}

void TryAll(const DispIdDataBlock& entry, const std::string& image, LossesByCodec& byCodec, int) {
  TryAll(entry, image, byCodec);
  CeaDataBlock inner[248];
  if (DispID20_GetCtaBlocks(&entry, inner, 248) != 0) return;
  const int32_t count = DispID20_GetCtaCnt(&entry);
  for (int32_t i = 0; i < count; ++i) TryAll(inner[i], image, byCodec);
}

// REEDID_REPORT=1 lists what is lost.
TEST(ExactCodecs, WriteRealBlocksAsTheyStand) {
  LossesByCodec byCodec;
  Quietly([&] {
    for (const auto& [name, bytes] : Corpus()) {
      const Image handle(EDID_Open(bytes.data(), static_cast<uint32_t>(bytes.size())));
      if (handle.get() == nullptr) continue;
      VisitBlocks(*handle, Overloaded{
                               [](const VesaBlock&) {},
                               [&, &image = name](const CeaBlock& model) {
                                 for (unsigned i = 0; i < model.dataBlockCount; ++i) {
                                   TryAll(model.dataBlocks[i], image, byCodec);
                                 }
                               },
                               [&, &image = name](const DispIdBlock& model) {
                                 for (unsigned i = 0; i < model.dataBlockCount; ++i) {
                                   TryAll(model.dataBlocks[i], image, byCodec, 0);
                                 }
                               },
                           });
    }
  });
  EXPECT_FALSE(byCodec.empty());
  if (std::getenv("REEDID_REPORT") == nullptr) return;
  for (const auto& [getter, losses] : byCodec) {
    std::cout << getter << ": " << losses.blocks << " blocks, " << losses.equal << " equal";
    for (const auto& [what, count] : losses.lost) std::cout << ", " << what << ": " << count;
    std::cout << '\n';
  }
}

}  // namespace
}  // namespace reedid::test
