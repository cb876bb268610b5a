// The repairs: each mends what it is for, spoils nothing, changes nothing that the check did not name, and leaves
// nothing for a second run.
#include "document/check/fix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>

#include "tests/document/check_cases.h"
#include "tests/document/sound_images.h"
#include "tests/support/corpus.h"

namespace reedid::test {
namespace {

using document::Check;
using document::Finding;
using document::Fix;
using document::Fixed;
using document::FixSelection;
using document::Repair;

FixSelection Everything() {
  FixSelection all;
  for (const document::Rule* rule : document::Rules()) all.rules.push_back(rule->id);
  return all;
}

std::map<std::string, int> CountOf(const std::vector<Finding>& findings) {
  std::map<std::string, int> counts;
  for (const Finding& finding : findings) ++counts[finding.rule->id];
  return counts;
}

// What is called safe to mend, is mended.
void ExpectSafeIsMended(const std::vector<Finding>& before, const Fixed& fixed) {
  std::map<std::string, int> others;
  for (const Finding& finding : before) others[finding.rule->id] += finding.repair != Repair::kSafe;
  for (const auto& [rule, count] : CountOf(fixed.open)) EXPECT_LE(count, others[rule]) << rule;
}

// What holds for every image and selection.
void ExpectSound(const ByteVector& image, const FixSelection& selection) {
  const std::vector<Finding> before = Check(image, kThisYear);
  const Fixed fixed = Fix(image, kThisYear, selection);
  EXPECT_EQ(fixed.image.size(), image.size());
  EXPECT_EQ(fixed.image == image, fixed.done.empty());
  EXPECT_EQ(CountOf(fixed.open), CountOf(Check(fixed.image, kThisYear)));
  std::map<std::string, int> old = CountOf(before);
  for (const auto& [rule, count] : CountOf(fixed.open)) EXPECT_LE(count, old[rule]) << rule;
  const Fixed again = Fix(fixed.image, kThisYear, selection);
  EXPECT_EQ(HexOf(again.image), HexOf(fixed.image));
  if (selection.rules.empty()) ExpectSafeIsMended(before, fixed);
}

TEST(Fix, SoundForEveryCase) {
  for (const CheckCase& row : CheckCases()) {
    SCOPED_TRACE(row.rule);
    ExpectSound(row.broken, {});
    ExpectSound(row.broken, Everything());
    ExpectSound(row.near, Everything());
  }
}

TEST(Fix, SoundForTheCorpusAndItsMutants) {
  unsigned seed = 1;
  for (const auto& [name, image] : Corpus()) {
    SCOPED_TRACE(name);
    ExpectSound(image, {});
    ExpectSound(image, Everything());
    for (int i = 0; i < 20 && !image.empty(); ++i) {
      ByteVector mutant = image;
      for (int changes = 0; changes < 3; ++changes) {
        seed = seed * 1103515245 + 12345;
        mutant[(seed >> 8) % mutant.size()] = static_cast<uint8_t>(seed >> 16);
      }
      ExpectSound(mutant, Everything());
    }
  }
}

TEST(Fix, WritesWhatTheStandardWants) {
  const auto text = [](const char* content) { return TextSlot(0xFC, content); };
  const auto map = [](const ByteVector& bits) { return Build({.y420 = Concat({{0x0F}, bits})}); };
  const struct {
    const char* rule;
    ByteVector image, expected;
  } rows[] = {
      {"serial-placeholder", Monitor({{0x0C, {1, 0, 0, 0}}}), Monitor({{0x0C, {0, 0, 0, 0}}})},
      {"date-implausible", Monitor({{0x10, {99}}}), Monitor({{0x10, {0}}})},
      {"text-format", Monitor({{kNameAt, text("Sound  ")}}), Monitor({{kNameAt, text("Sound\n")}})},
      {"text-trailing-space", Monitor({{kNameAt, text("Sound  \n")}}), Monitor({{kNameAt, text("Sound\n")}})},
      {"text-empty", Monitor({{kDummyAt, TextSlot(0xFE, "  \n")}}), Monitor()},
      {"descriptor-all-zero", Monitor({{kDummyAt, ByteVector(18)}}), Monitor()},
      {"range-formula-not-continuous", Monitor({{kRangeAt + 10, {0}}}), Monitor()},
      {"range-class", Monitor({{kRangeAt + 10, {9, 1, 2, 3}}}), Monitor()},
      {"preferred-outside-range-limits", Monitor({{kRangeAt + 5, {62, 75, 30, 50, 10}}}),
       Monitor({{kRangeAt + 5, {60, 75, 30, 68, 15}}})},
      {"video-input-reserved", Monitor({{0x14, {0xF5}}}), Monitor({{0x14, {0x85}}})},
      {"native-count-over-dtds", Build({.flags = 0xF4}), Build({})},
      {"audio-without-basic-audio", Build({.flags = 0xB1}), Build({})},
      {"y420-map", map({0x18}), map({0x08})},
      {"y420-map", map({0x00}), Build({})},
      {"hf-tmds-rate", Build({.forum = {0xD8, 0x5D, 0xC4, 1, 60, 0x80, 0x00}}),
       Build({.forum = {0xD8, 0x5D, 0xC4, 1, 0, 0x80, 0x00}})},
      {"vic-duplicate", Build({.vdb = {16, 4, 1, 97, 0x90}}), Build({})},
      {"svd-unknown", Build({.vdb = {0x90, 4, 1, 97, 0}}), Build({})},
      {"displayid-extension-count", WithSection(Section().ExtensionCount(9).Block(1, 0, PanelParameters())),
       WithSection(Section().Block(1, 0, PanelParameters()))},
      {"extension-count", Build({.spoils = {{0x7E, {7}}}}), Build({})},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.rule);
    const Fixed fixed = Fix(row.image, kThisYear, {{row.rule}});
    EXPECT_EQ(CountOf(fixed.open).count(row.rule), 0u);
    EXPECT_EQ(HexOf(fixed.image), HexOf(row.expected));
  }
}

TEST(Fix, LeavesDecisionsAlone) {
  const ByteVector images[] = {
      Monitor({{0x0C, {1, 0, 0, 0}}}),                                 // must be asked for
      Monitor({{kRangeAt + 10, {4, 0x11}}}),                           // CVT may be meant
      Monitor({{0x18, {0x0A}}, {0x17, {100}}}),                        // sRGB primaries with another gamma
      Build({.capability = {0, 0xC6}}),                                // who is right about underscan?
      Build({.hdmi = {3, 0x0C, 0, 0x10, 0, 0x38, 100}, .forum = {}}),  // 500 MHz and nothing that says so
  };
  for (const ByteVector& image : images) {
    EXPECT_FALSE(Check(image, kThisYear).empty());
    EXPECT_TRUE(Fix(image, kThisYear).done.empty());
  }
}

TEST(Fix, RefusesWhatWouldSpoilSomethingElse) {
  // The features bit would make the timing preferred, and DisplayID tells of another size.
  const ByteVector image = WithSection(Section().Block(1, 0, PanelParameters(2560, 1440)),
                                       {{0x13, {3}}, {0x14, {0x80}}, {0x18, {0x0C}}, {kRangeAt + 10, {0}}});
  const Fixed fixed = Fix(image, kThisYear, {{"preferred-bit-clear"}});
  EXPECT_EQ(fixed.image, image);
  const auto told = std::ranges::find(fixed.open, std::string("preferred-bit-clear"),
                                      [](const Finding& finding) { return std::string(finding.rule->id); });
  ASSERT_NE(told, fixed.open.end());
  EXPECT_EQ(told->repair, Repair::kNone);
  EXPECT_NE(told->values.find("mending it would break displayid-differs"), std::string::npos) << told->values;
}

}  // namespace
}  // namespace reedid::test
