// What every edit keeps: no finding of the output that the input had not, no byte changed without need, and done twice
// equals once. Over the built EDIDs, or those of REEDID_CORPUS.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <tuple>

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

Work Held(const char* name, const Rates& rates = {}) {
  return [&limit = FindLimit(name), rates](Image image) { return ApplyLimit(std::move(image), limit, rates); };
}

Image Addressed(Image image) {
  Notes notes;
  return SetAddress(std::move(image), 0x4321, notes);
}

// The edits that can be done again.
Edits Repeatable() {
  Edits edits;
  for (const Limit& limit : Limits()) edits.emplace_back(limit.name, Held(limit.name));
  edits.emplace_back("hdmi20 at 60 Hz", Held("hdmi20", {60000}));
  edits.emplace_back("phys", Addressed);
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
  edits.emplace_back("high-refresh", [](Image image) { return HighRefresh(std::move(image)); });
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

// The first bytes of the blocks of an EDID: of an extension, its tag.
ByteVector Tags(const ByteVector& bytes) {
  ByteVector tags;
  if (isEdidHeader(bytes.data()) == 0) return tags;
  for (size_t at = 0; at < bytes.size(); at += REEDID_BLOCK_SIZE) tags.push_back(bytes[at]);
  return tags;
}

// Findings counted by rule, severity and block; where blocks have moved, by the kind of block, and those of detailed
// timings, which may have moved too, by themselves.
std::map<std::tuple<std::string, Severity, size_t>, int> CountFindings(const ByteVector& bytes, bool moved) {
  constexpr size_t kMoves = 256;  // no tag
  const ByteVector tags = Tags(bytes);
  std::map<std::tuple<std::string, Severity, size_t>, int> counts;
  for (const Finding& finding : Check(bytes, test::kThisYear)) {
    size_t block = finding.place.block;
    if (moved) block = finding.place.timing || block >= tags.size() ? kMoves : tags[block];
    ++counts[{finding.rule->id, finding.severity, block}];
  }
  return counts;
}

TEST(EditProperty, NoEditBreaksARule) {
  for (const auto& [edit, work] : All()) {
    std::map<std::string, std::string> broken;  // names by rule
    int changed = 0;
    for (const auto& [name, bytes] : Images()) {
      const auto result = Result(work, bytes);
      if (!result || *result == bytes) continue;
      ++changed;
      const bool moved = Tags(*result) != Tags(bytes);
      auto before = CountFindings(bytes, moved);
      for (const auto& [kind, count] : CountFindings(*result, moved)) {
        if (count > before[kind]) broken[std::get<0>(kind)] += " " + name;
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

// A part of an image that is edited as one: a descriptor, a data block, or what stands before them.
struct Unit {
  enum Kind { kPlain, kFollows, kLink } kind;  // follows timings that change; tells of the link
  unsigned block;
  size_t at;
  ByteVector bytes;
};

Unit::Kind KindOf(std::span<const uint8_t> data, const EdidLink& link) {
  const auto isExtended = [&](unsigned tag) { return IsDataBlock(data, CEA_TAG_EXTENDED, tag); };
  if (IsVendorBlock(data, REEDID_OUI_HDMI) || IsVendorBlock(data, REEDID_OUI_HDMI_FORUM)) return Unit::kLink;
  if (isExtended(CEA_EXT_TAG_SINK_CAPABILITY)) return Unit::kLink;
  if (isExtended(CEA_EXT_TAG_420_VIDEO) || isExtended(CEA_EXT_TAG_420_MAP)) {
    return link.ycc420 != 0 ? Unit::kFollows : Unit::kLink;
  }
  const bool follows = isExtended(CEA_EXT_TAG_FORMAT_PREFERENCE) || isExtended(CEA_EXT_TAG_NATIVE_RESOLUTION);
  return follows ? Unit::kFollows : Unit::kPlain;
}

std::vector<Unit> UnitsOf(const Image& image, const EdidLink& link) {
  std::vector<Unit> units;
  const auto add = [&](Unit::Kind kind, unsigned block, size_t at, size_t size) {
    const uint8_t* const bytes = image.blocks()[block].bytes + at;
    units.push_back({kind, block, at, ByteVector(bytes, bytes + size)});
  };
  for (unsigned i = 0; i < image.blocks().size(); ++i) {
    const EdidBlock& block = image.blocks()[i];
    if (block.type == EDID_BLOCK_VESA) {
      add(Unit::kPlain, i, 0, 20);
      add(Unit::kPlain, i, 25, 10);  // 20 and 24 tell of the link and of the preferred timing
      for (size_t at = 38; at < 54; at += 2) add(Unit::kPlain, i, at, 2);
      for (size_t at = 54; at < 126; at += 18) {
        const bool range = block.bytes[at] == 0 && block.bytes[at + 1] == 0 && block.bytes[at + 3] == 0xFD;
        add(range ? Unit::kLink : at == 54 ? Unit::kPlain : Unit::kFollows, i, at, 18);
      }
    } else if (block.type == EDID_BLOCK_CEA && block.bytes[2] >= 4) {
      for (size_t at = block.bytes[2]; at + 18 < 128; at += 18) add(Unit::kPlain, i, at, 18);
    } else if (block.type == EDID_BLOCK_DISPID_EXT) {
      for (size_t at = 5, size = 0; at + 3 < 127 && block.bytes[at + 2] != 0; at += size) {
        size = std::min<size_t>(block.bytes[at + 2] + 3u, 127 - at);
        const uint8_t tag = block.bytes[at];
        const bool range = tag == DISPID_TAG_RANGE_LIMITS || tag == DISPID20_TAG_RANGE_LIMITS;
        const bool native = tag == DISPID_TAG_DISPLAY_PARAMS || tag == DISPID20_TAG_DISPLAY_PARAMS;
        add(range ? Unit::kLink : native ? Unit::kFollows : Unit::kPlain, i, at, size);
      }
    }
  }
  VisitDataBlocks(image, [&](std::span<const uint8_t> data) {
    for (unsigned i = 0; i < image.blocks().size(); ++i) {
      const uint8_t* const bytes = image.blocks()[i].bytes;
      if (data.data() < bytes || data.data() >= bytes + REEDID_BLOCK_SIZE) continue;
      add(KindOf(data, link), i, static_cast<size_t>(data.data() - bytes), data.size());
    }
  });
  return units;
}

// The timings that a TMDS link does not carry as they stand. Without HDMI Forum block the display's own clock counts.
std::vector<OfferedTiming> TooFast(const Image& image, const EdidLink& link) {
  uint32_t most = link.maxTmdsClock;
  VisitDataBlocks(image, [&](std::span<const uint8_t> data) {
    if (IsVendorBlock(data, REEDID_OUI_HDMI) && data.size() > 7 && data[7] != 0) most = std::min(most, data[7] * 5000u);
  });
  std::vector<OfferedTiming> timings = image.Timings();
  std::erase_if(timings, [&](const OfferedTiming& t) {
    return t.timing.pixelClock <= most && (t.ycc420 != YCC420_ONLY || link.ycc420 != 0);
  });
  return timings;
}

void ExpectUnchanged(const std::string& name, const EdidLink& link, const Image& before, const Image& after) {
  const std::vector<OfferedTiming> fast = TooFast(before, link);
  std::multiset<ByteVector> left, linkBefore, linkAfter;
  for (const Unit& unit : UnitsOf(after, link)) (unit.kind == Unit::kLink ? linkAfter : left).insert(unit.bytes);
  for (const Unit& unit : UnitsOf(before, link)) {
    const bool isFast = std::ranges::any_of(fast, [&](const OfferedTiming& t) {
      return t.block == unit.block && t.offset >= unit.at && t.offset < unit.at + unit.bytes.size();
    });
    if (unit.kind == Unit::kLink) linkBefore.insert(unit.bytes);
    const bool isEmpty = std::ranges::all_of(unit.bytes, [](uint8_t byte) { return byte == 0; });
    if (unit.kind == Unit::kLink || isFast || isEmpty || (unit.kind == Unit::kFollows && !fast.empty())) continue;
    const auto found = left.find(unit.bytes);
    EXPECT_TRUE(found != left.end()) << name << ": block " << unit.block << " byte " << unit.at;
    if (found != left.end()) left.erase(found);
  }
  Notes notes;
  const bool within = before.IsEdid() && fast.empty() && linkBefore == linkAfter;
  EXPECT_TRUE(!within || before.Generate(notes) == after.Generate(notes)) << name;
}

TEST(EditProperty, ALimitChangesNothingElse) {
  for (const Limit& limit : Limits()) {
    if (limit.link == nullptr || limit.link->maxFrlRate != 0 || limit.link->dvi != 0) continue;
    for (const auto& [name, bytes] : Images()) {
      const auto result = Result(Held(limit.name), bytes);
      ASSERT_TRUE(result) << name;
      ExpectUnchanged(name + ", " + limit.name, *limit.link, Image::FromBytes("x", bytes),
                      Image::FromBytes("x", *result));
    }
  }
}

// Two bytes of each HDMI block, a checksum of each block, and one more of a section of DisplayID.
TEST(EditProperty, AnAddressChangesTwoBytesAndChecksums) {
  for (const auto& [name, bytes] : Images()) {
    int blocks = 0, changed = 0;
    VisitDataBlocks(Image::FromBytes("x", bytes),
                    [&](std::span<const uint8_t> data) { blocks += IsVendorBlock(data, REEDID_OUI_HDMI); });
    const auto result = Result(Addressed, bytes);
    if (blocks == 0 || !result) continue;
    ASSERT_EQ(result->size(), bytes.size()) << name;
    for (size_t i = 0; i < bytes.size(); ++i) changed += bytes[i] != (*result)[i];
    EXPECT_LE(changed, 3 * blocks) << name;
    EXPECT_EQ(AddressOf(Image::FromBytes("x", *result)), 0x4321) << name;
  }
}

}  // namespace
}  // namespace reedid::document
