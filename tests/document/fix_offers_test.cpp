// The safe repairs leave what a display offers as it was: timings, sound and HDR, but for what was faulty in them. Over
// the built EDIDs, or those of REEDID_CORPUS.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "document/account/queries.h"
#include "document/account/tree_json.h"
#include "document/check/fix.h"
#include "document/edit/data_blocks.h"
#include "tests/document/check_cases.h"
#include "tests/document/sound_images.h"
#include "tests/support/corpus.h"
#include "tests/support/log_capture.h"

namespace reedid::document {
namespace {

using Texts = std::multiset<std::string>;

// Each timing with all that it says, wherever it stands.
Texts TimingsOf(const Image& image) {
  Texts texts;
  for (const OfferedTiming& offer : image.Timings()) {
    const DtdTiming& t = offer.timing;
    texts.insert(fmt::format("{} kHz {} {} {} {}, {} {} {} {}, source {} VIC {} 4:2:0 {} native {} preferred {}",
                             t.pixelClock, t.hactive, t.hblank, t.hfrontPorch, t.hsyncWidth, t.vactive, t.vblank,
                             t.vfrontPorch, t.vsyncWidth, offer.source, offer.vic, offer.ycc420, offer.native,
                             t.preferred));
  }
  return texts;
}

// HDR metadata blocks and those of vendors, which have HDR10+ and Dolby Vision among them; colorimetry.
Texts HdrOf(const Image& image) {
  Texts texts;
  VisitDataBlocks(image, [&](std::span<const uint8_t> block) {
    for (const unsigned extended : {0x01u, 0x05u, 0x06u, 0x07u}) {
      if (IsDataBlock(block, CEA_TAG_EXTENDED, extended)) texts.insert(Hex(block));
    }
  });
  return texts;
}

// What is in one and not in the other, as text.
std::string Difference(const Texts& before, const Texts& after) {
  Texts gone, added;
  std::ranges::set_difference(before, after, std::inserter(gone, gone.end()));
  std::ranges::set_difference(after, before, std::inserter(added, added.end()));
  std::string text;
  for (const std::string& line : gone) text += "- " + line + "\n";
  for (const std::string& line : added) text += "+ " + line + "\n";
  return text;
}

constexpr char kVga[] = "+ 25175 kHz 640 160 16 96, 480 45 10 2, source 1 VIC 0 4:2:0 0 native 0 preferred 0\n";

// The rules whose fault is an offer that is none, or one in the wrong place.
bool IsOfTimings(const Finding& finding) {
  constexpr std::string_view kRules[] = {"standard-timing-unused-code", "y420-map",   "preferred-bit-clear",
                                         "native-count-over-dtds",      "cta-header", "displayid-fill"};
  return std::ranges::find(kRules, finding.rule->id) != std::end(kRules);
}

void ExpectOffersKept(const std::string& name, const ByteVector& bytes) {
  const Fixed fixed = Fix(bytes, test::kThisYear);
  if (fixed.done.empty()) return;
  const auto isDone = [&](std::string_view rule) {
    return std::ranges::any_of(fixed.done, [&](const Finding& finding) { return finding.rule->id == rule; });
  };
  test::Quietly([&] {
    try {
      const Image before = Image::FromBytes("x", bytes), after = Image::FromBytes("x", fixed.image);
      if (std::ranges::none_of(fixed.done, IsOfTimings)) {
        EXPECT_EQ(Difference(TimingsOf(before), TimingsOf(after)), isDone("vga-missing") ? kVga : "") << name;
      }
      EXPECT_EQ(ToJson(DescribeAudioFormats(before)), ToJson(DescribeAudioFormats(after))) << name;
      const bool sameHdr = HdrOf(before) == HdrOf(after);
      EXPECT_TRUE(sameHdr || isDone("hdr-static-fields")) << name << Difference(HdrOf(before), HdrOf(after));
    } catch (const Error& error) {
      EXPECT_EQ(error.kind(), ErrorKind::kInput) << name;
    }
  });
}

TEST(FixOffers, StayAsTheyWere) {
  for (const auto& [name, bytes] : test::Corpus()) ExpectOffersKept(name, bytes);
  for (const test::CheckCase& row : test::CheckCases()) ExpectOffersKept(row.rule, row.broken);
}

}  // namespace
}  // namespace reedid::document
