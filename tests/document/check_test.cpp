// The rules: each is broken by what breaks it and by nothing else, and whatever the bytes, the check ends and keeps
// serial numbers to itself.
#include "document/check/check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/document/check_cases.h"
#include "tests/document/sound_images.h"
#include "tests/support/corpus.h"

namespace reedid::test {
namespace {

using document::Check;
using document::Finding;
using document::Severity;

std::vector<Finding> CheckExactly(const ByteVector& image) {
  const ExactBytes exact(image);
  return Check({exact.data(), exact.size()}, kThisYear);
}

bool IsBroken(const std::vector<Finding>& findings, const std::string& rule) {
  return std::ranges::any_of(findings, [&](const Finding& finding) { return finding.rule->id == rule; });
}

std::string Lines(const std::vector<Finding>& findings) {
  std::string lines;
  for (const Finding& finding : findings) {
    lines += std::string(finding.rule->id) + " (" + ToText(finding.place) + "): " + finding.values + "\n";
  }
  return lines;
}

TEST(Check, SoundImagesHaveNoFindings) {
  for (const ByteVector& image :
       {Monitor(), Monitor13(), Build({}), WithSection(Section().Block(1, 0, PanelParameters())),
        Section().Block(1, 0, PanelParameters()).Build()}) {
    EXPECT_EQ(Lines(CheckExactly(image)), "");
  }
}

TEST(Check, TellsBrokenFromNear) {
  for (const CheckCase& row : CheckCases()) {
    SCOPED_TRACE(row.rule);
    EXPECT_TRUE(IsBroken(CheckExactly(row.broken), row.rule)) << HexOf(row.broken) << Lines(CheckExactly(row.broken));
    EXPECT_FALSE(IsBroken(CheckExactly(row.near), row.rule)) << HexOf(row.near) << Lines(CheckExactly(row.near));
  }
}

TEST(Check, EveryRuleHasACase) {
  std::set<std::string> tested, known;
  for (const CheckCase& row : CheckCases()) tested.insert(row.rule);
  for (const document::Rule* rule : document::Rules()) {
    EXPECT_TRUE(known.insert(rule->id).second) << rule->id << " twice";
    EXPECT_EQ(document::FindRule(rule->id), rule);
  }
  EXPECT_EQ(tested, known);
  EXPECT_EQ(document::FindRule("no-such-rule"), nullptr);
}

TEST(Check, CasesMayBeMilderThanTheirRule) {
  const struct {
    const char* rule;
    ByteVector image;
  } rows[] = {
      {"y420-map", Build({.y420 = {0x0F, 0}})},
      {"hf-vrr", Build({.forum = {0xD8, 0x5D, 0xC4, 1, 120, 0x80, 0, 0x10}})},
  };
  for (const auto& row : rows) {
    const std::vector<Finding> findings = CheckExactly(row.image);
    ASSERT_EQ(findings.size(), 1u) << Lines(findings);
    EXPECT_EQ(findings[0].rule->severity, Severity::kError);
    EXPECT_EQ(findings[0].severity, Severity::kNote);
  }
}

TEST(Check, TellsThePlace) {
  const struct {
    ByteVector image;
    const char* place;
  } rows[] = {
      {Monitor({{kDummyAt + 17, {1}}}), "block 0, descriptor 4, byte 108"},
      {Build({.audio = {0x09, 0x07, 0x07, 0x39, 0x87, 0x50}}), "block 1, data block 2, byte 13"},
      {Build({.dtds = {AtClock(k1080p60, 20000)}}), "block 1, timing 2, byte 44"},
      {WithSection(Section(0x12).Block(1, 0, ByteVector(13))), "block 2, data block 1, byte 5"},
      {Concat({Section().ExtensionCount(1).Block(10, 0, {1}).Build(), Section(0x12, 0).Block(5, 0, {1}).Build()}),
       "block 1, data block 1, byte 4"},
  };
  for (const auto& row : rows) {
    const std::vector<Finding> findings = CheckExactly(row.image);
    ASSERT_FALSE(findings.empty()) << row.place;
    EXPECT_EQ(ToText(findings[0].place), row.place) << Lines(findings);
  }
}

TEST(Check, YearIsTheCallers) {
  const ByteVector image = Monitor({{0x11, {50}}});  // 2040
  EXPECT_FALSE(Check(image, 2038).empty());
  EXPECT_TRUE(Check(image, 2039).empty());
}

// Serial number 1234567890 and serial text, spoiled so that all rules on them speak.
TEST(Check, KeepsSerialNumbersToItself) {
  for (const char* text : {"SECRET4711 \n", "SECRET4711", "0010000\n"}) {
    for (const ByteVector& number : {ByteVector{0xD2, 0x02, 0x96, 0x49}, ByteVector{0x45, 0x54, 0, 0}}) {
      const ByteVector image = Monitor({{0x0C, number}, {kDummyAt, TextSlot(0xFF, text)}, {kDummyAt + 2, {7}}});
      const std::string lines = Lines(CheckExactly(image));
      for (const char* secret : {"SECRET", "4711", "0010000", "1234567890", "499602d2", "49 96", "5445", "21573"}) {
        EXPECT_EQ(lines.find(secret), lines.npos) << lines;
      }
    }
  }
}

// Cut anywhere and changed anywhere, findings stay inside of the image.
void ExpectPlacesInside(const ByteVector& image) {
  for (const Finding& finding : CheckExactly(image)) {
    EXPECT_LT(finding.place.at, image.size()) << finding.rule->id;
    for (const auto& change : finding.changes)
      EXPECT_LE(change.at + change.bytes.size(), image.size()) << finding.rule->id;
  }
}

TEST(Check, TakesAnyBytes) {
  for (const auto& [name, image] : Corpus()) {
    SCOPED_TRACE(name);
    for (size_t size = 0; size <= image.size(); size += size % 128 < 6 ? 1 : 7) {
      ExpectPlacesInside(ByteVector(image.begin(), image.begin() + static_cast<long>(size)));
      if (size > 128) ExpectPlacesInside(ByteVector(image.begin() + 128, image.begin() + static_cast<long>(size)));
    }
    for (size_t at = 8; at < image.size(); ++at) {
      ByteVector changed = image;
      changed[at] = static_cast<uint8_t>(at % 2 == 0 ? ~changed[at] : changed[at] + 0x21);
      ExpectPlacesInside(changed);
    }
  }
}

}  // namespace
}  // namespace reedid::test
