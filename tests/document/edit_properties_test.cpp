// What every edit keeps: no finding of the output that the input had not, no byte changed without need, and done twice
// equals once. Over the built EDIDs, or those of REEDID_CORPUS.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>

#include "document/check/check.h"
#include "document/edit/address.h"
#include "document/edit/data_blocks.h"
#include "document/edit/edits.h"
#include "document/edit/high_refresh.h"
#include "document/edit/to_hdmi.h"
#include "tests/document/sound_images.h"
#include "tests/support/corpus.h"
#include "tests/support/log_capture.h"

namespace reedid::document {
namespace {

using Work = std::function<Image(Image)>;
using Edits = std::vector<std::pair<std::string, Work>>;

Work Held(const char* name) {
  return [&limit = FindLimit(name)](Image image) { return ApplyLimit(std::move(image), limit, {}); };
}

// The edits that can be done again.
Edits Repeatable() {
  Edits edits;
  for (const Limit& limit : Limits()) edits.emplace_back(limit.name, Held(limit.name));
  edits.emplace_back("phys", [](Image image) { return SetAddress(std::move(image), 0x1000); });
  edits.emplace_back("edit", [](Image image) {
    const std::vector<Edit> steps = {LimitEdit(FindLimit("hdmi20"), {}), LimitEdit(FindLimit("pcm2ch"), {}),
                                     LimitEdit(FindLimit("sdr"), {})};
    return ApplyEdits(std::move(image), steps);
  });
  return edits;
}

Edits All() {
  Edits edits = Repeatable();
  edits.emplace_back("to-hdmi", [](Image image) {
    Notes notes;
    return ToHdmi(std::move(image), 0x1000, notes);
  });
  edits.emplace_back("high-refresh", [](Image image) {
    Notes notes;
    return HighRefresh(std::move(image), notes);
  });
  return edits;
}

// None when the edit is refused.
std::optional<ByteVector> Result(const Work& work, const ByteVector& bytes) {
  std::optional<ByteVector> result;
  test::Quietly([&] {
    try {
      Notes notes;
      result = work(Image::FromBytes("x", bytes)).Generate(notes);
    } catch (const Error& error) {
      EXPECT_EQ(error.kind(), ErrorKind::kRefused) << error.what();
    }
  });
  return result;
}

// The images as a writer puts them right: what an edit finds wrong is not its doing.
const std::map<std::string, ByteVector>& Images() {
  static const std::map<std::string, ByteVector> images = [] {
    std::map<std::string, ByteVector> sound = {{"sound television", test::Build({})},
                                               {"sound monitor", test::Monitor()}};
    for (const auto& [name, bytes] : test::Corpus()) {
      if (const auto same = Result([](Image image) { return image; }, bytes)) sound[name] = *same;
    }
    return sound;
  }();
  return images;
}

// Findings are told apart by rule and severity, and counted: blocks may move, so that a place tells nothing.
std::map<std::pair<std::string, Severity>, int> CountFindings(const ByteVector& bytes) {
  std::map<std::pair<std::string, Severity>, int> counts;
  for (const Finding& finding : Check(bytes, test::kThisYear)) ++counts[{finding.rule->id, finding.severity}];
  return counts;
}

// What an edit cannot help.
bool IsInherent(const std::string& edit, const std::string& rule) {
  // Image sizes that are ratios are told to be some in the HDMI block, which goes.
  if (edit == "dvi") return rule == "dtd-size-over-display" || rule == "preferred-size-below-display";
  // A third block asks for a map before EDID 1.4; the CTA-861 extension is what sources read first.
  // And 640x480 is asked of every sink of HDMI, whatever its range limits.
  // Timings behind a gap, which not every reader reaches, are not held to the clock.
  if (edit == "to-hdmi") {
    return rule == "block-map-missing" || rule == "vic-outside-range-limits" || rule == "hdmi-timing-over-tmds";
  }
  // Two blocks do not hold everything: a note tells of the range limits. A format in 4:2:0 may come twice.
  if (edit == "high-refresh") return rule == "range-limits-missing" || rule == "vic-duplicate";
  return false;
}

TEST(EditProperty, NoEditBreaksARule) {
  for (const auto& [edit, work] : All()) {
    std::map<std::string, std::string> broken;  // names by rule
    int changed = 0;
    for (const auto& [name, bytes] : Images()) {
      const auto result = Result(work, bytes);
      if (!result || *result == bytes) continue;
      ++changed;
      auto before = CountFindings(bytes);
      for (const auto& [finding, count] : CountFindings(*result)) {
        if (count > before[finding] && !IsInherent(edit, finding.first)) broken[finding.first] += " " + name;
      }
    }
    for (const auto& [rule, names] : broken) ADD_FAILURE() << edit << " breaks " << rule << " of" << names;
    RecordProperty(edit + " changes", changed);
  }
}

TEST(EditProperty, TwiceEqualsOnce) {
  for (const auto& [edit, work] : Repeatable()) {
    for (const auto& [name, bytes] : Images()) {
      const auto once = Result(work, bytes);
      if (once && Result(work, *once) != once) ADD_FAILURE() << edit << " of " << name;
    }
  }
}

TEST(EditProperty, AnAddressChangesTwoBytesAndChecksums) {
  for (const auto& [name, bytes] : Images()) {
    const auto result = Result([](Image image) { return SetAddress(std::move(image), 0x4321); }, bytes);
    if (!result) continue;
    ASSERT_EQ(result->size(), bytes.size()) << name;
    int changed = 0, blocks = 0;
    for (size_t i = 0; i < bytes.size(); ++i) changed += bytes[i] != (*result)[i] && i % 128 != 127;
    const Image image = Image::FromBytes("x", *result);
    VisitDataBlocks(image, [&](std::span<const uint8_t> data) { blocks += IsVendorBlock(data, REEDID_OUI_HDMI); });
    EXPECT_LE(changed, 2 * blocks) << name;
    EXPECT_EQ(AddressOf(image), 0x4321) << name;
  }
}

}  // namespace
}  // namespace reedid::document
