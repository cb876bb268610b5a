// DisplayID sections, inside an EDID and standing alone.
#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "document/check/draft.h"
#include "document/check/image_view.h"
#include "document/check/report.h"

namespace reedid::document::check {
namespace {

bool IsVersion2(const Section& section) {
  return section.version() >= 0x20;
}

unsigned MaxLength(const Section& section) {
  return section.isExtension ? 121 : 251;
}

void SectionBroken(const ImageView& view, Report& report) {
  for (const Section& section : view.sections) {
    const Place place = view.PlaceAt(section.at);
    if (section.length > MaxLength(section) || !section.isWhole) {
      report.Add(view.PlaceAt(section.at + 1),
                 fmt::format("length {} in a section of at most {}", section.length, MaxLength(section)));
      continue;
    }
    if (section.overlongAt) report.Add(view.PlaceAt(*section.overlongAt), "a data block reaches beyond the section");
    const unsigned sum = std::accumulate(section.bytes.begin(), section.bytes.end(), 0u);
    if ((sum & 0xFF) == 0) continue;
    Draft draft(view);
    draft[section.at + section.length + 4] = static_cast<uint8_t>(draft[section.at + section.length + 4] - sum);
    report.Add(place, fmt::format("the section's bytes add up to {:02x}", sum & 0xFF))
        .Mend(Repair::kAsk, draft.Changes());
  }
}

void ProductType(const ImageView& view, Report& report) {
  if (view.sections.empty() || view.sections[0].bytes[2] != 0) return;
  report.Add(view.PlaceAt(view.sections[0].at + 2), "product type 0");
}

void ExtensionCount(const ImageView& view, Report& report) {
  for (size_t i = 0; i < view.sections.size(); ++i) {
    const Section& section = view.sections[i];
    const size_t expected = i == 0 ? view.sections.size() - 1 : 0;
    Draft draft(view);
    if (section.bytes[3] != expected || (i > 0 && section.bytes[2] != 0)) {
      draft[section.at + 3] = static_cast<uint8_t>(expected);
      if (i > 0) draft[section.at + 2] = 0;
      report
          .Add(view.PlaceAt(section.at + 3), fmt::format("section {} of {}: product type {}, count {}", i + 1,
                                                         view.sections.size(), section.bytes[2], section.bytes[3]))
          .Mend(Repair::kSafe, draft.Changes());
    }
    if (section.version() == view.sections[0].version()) continue;
    report.Add(view.PlaceAt(section.at),
               fmt::format("version {:02x} behind {:02x}", section.version(), view.sections[0].version()));
  }
}

void TagVersion(const ImageView& view, Report& report) {
  for (const Section& section : view.sections) {
    for (const SectionBlock& block : section.dataBlocks) {
      const bool isOld = block.tag <= 0x1F || block.tag == DISPID_TAG_VENDOR,
                 isNew = block.tag >= 0x20 && block.tag <= 0x7E;
      if (!(IsVersion2(section) ? isOld : isNew)) continue;
      report.Add(PlaceOf(view, block),
                 fmt::format("tag {:02x} in a section of version {:02x}", block.tag, section.version()));
    }
  }
}

void Fill(const ImageView& view, Report& report) {
  for (const Section& section : view.sections) {
    if (!section.isWhole || section.overlongAt) continue;
    const size_t checksumAt = section.length + 4, end = section.isExtension ? kBlockSize - 2 : checksumAt;
    Draft draft(view);
    draft.Fill(section.at + section.used, checksumAt - section.used, 0);
    if (end > checksumAt) draft.Fill(section.at + checksumAt + 1, end - checksumAt - 1, 0);
    std::vector<Patch> changes = draft.Changes();
    if (changes.empty()) continue;
    const Place place = view.PlaceAt(changes.front().at);
    report.Add(place, "bytes that belong to no data block").Mend(Repair::kSafe, std::move(changes));
  }
}

// How long a data block is by its tag: exactly, or a multiple.
struct LengthRule {
  unsigned tag, length;
  enum Kind { kExact, kAtLeast, kMultiple } kind;
};

constexpr LengthRule kLengths[] = {
    {DISPID_TAG_DISPLAY_PARAMS, 12, LengthRule::kExact},
    {DISPID_TAG_RANGE_LIMITS, 15, LengthRule::kExact},
    {DISPID_TAG_TILED, 22, LengthRule::kExact},
    {DISPID20_TAG_TILED, 22, LengthRule::kExact},
    {DISPID20_TAG_DISPLAY_PARAMS, 29, LengthRule::kExact},
    {DISPID20_TAG_RANGE_LIMITS, 9, LengthRule::kExact},
    {DISPID20_TAG_INTERFACE_FEATURES, 9, LengthRule::kAtLeast},
    {DISPID_TAG_TYPE_I, 20, LengthRule::kMultiple},
    {DISPID_TAG_TYPE_II, 11, LengthRule::kMultiple},
    {DISPID_TAG_TYPE_III, 3, LengthRule::kMultiple},
    {DISPID_TAG_TYPE_V, 7, LengthRule::kMultiple},
    {DISPID20_TAG_TYPE_IX, 6, LengthRule::kMultiple},
    {DISPID20_TAG_TYPE_VII, 20, LengthRule::kMultiple},
};

// Type VII descriptors may be longer, by byte 1.
unsigned DescriptorSize(const SectionBlock& block, unsigned size) {
  return block.tag == DISPID20_TAG_TYPE_VII ? size + (block.bytes[1] >> 4 & 7) : size;
}

bool LengthIsWrong(const SectionBlock& block) {
  const auto rule = std::ranges::find(kLengths, block.tag, &LengthRule::tag);
  if (rule == std::end(kLengths)) return false;
  if (rule->kind == LengthRule::kExact) return block.L() != rule->length;
  if (rule->kind == LengthRule::kAtLeast) return block.L() < rule->length;
  return block.L() == 0 || block.L() % DescriptorSize(block, rule->length) != 0;
}

bool AspectIsUnknown(const SectionBlock& block) {
  if (block.tag != DISPID_TAG_TYPE_I && block.tag != DISPID20_TAG_TYPE_VII) return false;
  const unsigned size = DescriptorSize(block, 20);
  for (size_t at = 3; at + size <= block.bytes.size(); at += size) {
    if ((block.bytes[at + 3] & 0x0F) > 8) return true;
  }
  return false;
}

// What is wrong inside a data block; null when nothing is.
const char* BlockFault(const SectionBlock& block) {
  const Bytes& b = block.bytes;
  if (LengthIsWrong(block)) return "its length";
  if ((block.tag == DISPID_TAG_TILED || block.tag == DISPID20_TAG_TILED) && b.From(b.size() - 4).AllZero())
    return "a tiled display without a number";
  if (block.tag == DISPID20_TAG_RANGE_LIMITS &&
      (b.Little(3, 3) > b.Little(6, 3) || b[9] > (b[10] | (b[11] & 3) << 8))) {
    return "a minimum above its maximum";
  }
  if (AspectIsUnknown(block)) return "an unknown aspect ratio";
  return (block.tag == DISPID_TAG_PRODUCT_ID || block.tag == DISPID20_TAG_PRODUCT_ID) && block.index != 0
             ? "product identification is not first"
             : nullptr;
}

void BlockFields(const ImageView& view, Report& report) {
  for (const Section& section : view.sections) {
    for (const SectionBlock& block : section.dataBlocks) {
      const char* fault = BlockFault(block);
      if (fault == nullptr) continue;
      report.Add(PlaceOf(view, block), fmt::format("tag {:02x}, length {}: {}", block.tag, block.L(), fault));
    }
  }
}

void Differs(const ImageView& view, Report& report) {
  const auto isOff = [](unsigned a, unsigned b) { return a + 10 <= b || b + 10 <= a; };
  for (const Section& section : view.sections) {
    for (const SectionBlock& block : section.dataBlocks) {
      if (block.tag != DISPID_TAG_DISPLAY_PARAMS && block.tag != DISPID20_TAG_DISPLAY_PARAMS) continue;
      const unsigned unit = block.tag == DISPID20_TAG_DISPLAY_PARAMS && (block.bytes[1] & 0x80) != 0 ? 10 : 1;
      const unsigned width = (block.bytes.Little(3, 2) * unit + 5) / 10,
                     height = (block.bytes.Little(5, 2) * unit + 5) / 10;
      if (view.width != 0 && width != 0 && height != 0 && (isOff(width, view.width) || isOff(height, view.height))) {
        report.Add(PlaceOf(view, block),
                   fmt::format("{} x {} mm, base block {} x {} mm", width, height, view.width, view.height));
      }
      const unsigned pixels = block.bytes.Little(7, 2), lines = block.bytes.Little(9, 2);
      if (!view.slots[0].isDtd || !view.firstIsPreferred() || pixels == 0 || lines == 0) continue;
      const DetailedTiming& first = view.dtds[0];
      if (pixels == first.hActive && lines == first.FrameLines()) continue;
      report.Add(PlaceOf(view, block),
                 fmt::format("native {}x{}, preferred timing {}x{}", pixels, lines, first.hActive, first.FrameLines()));
    }
  }
}

constexpr Severity kNote = Severity::kNote, kWarning = Severity::kWarning, kError = Severity::kError;
constexpr RuleGroup kGroup = RuleGroup::kDisplayId;
constexpr RuleScope kAny = RuleScope::kAny;

constexpr Rule kRules[] = {
    {"displayid-section-broken", kError, kGroup, kAny, "DisplayID 1.3, 2; 2.1, 2.1",
     "Sources drop the whole section, and with it the fast timings.",
     "The section's length does not fit, its bytes up to its own checksum do not add up to 0, or a data block reaches "
     "beyond it. A wrong sum may also be a bad read.",
     "Read the display again; if it stays, correct length or checksum.", SectionBroken},
    {"displayid-extension-count", kWarning, kGroup, kAny, "DisplayID 1.3, 2; 2.1, 2.1",
     "Readers stop at the stated count, or take a further section for another display.",
     "The first section states how many follow; those that follow state product type 0 and count 0, and all have the "
     "same "
     "version.",
     "Write the number of sections that follow.", ExtensionCount},
    {"displayid-product-type", kNote, kGroup, kAny, "DisplayID 1.3, 2.3; 2.1, table 2-3",
     "Strict readers do not begin with such a section.",
     "The first section has product type 0, which marks a section that continues another one. About half of all "
     "displays "
     "do so.",
     "State what the product is.", ProductType},
    {"displayid-tag-version", kWarning, kGroup, kAny, "DisplayID 1.3, 4; 2.1, 4",
     "A reader of that version skips the data block.",
     "A section of version 1 holds a data block of version 2, or the other way round. Tags up to 1F and 7F are version "
     "1, "
     "20 to 7E version 2.",
     "Use the data blocks of the section's version.", TagVersion},
    {"displayid-block-fields", kWarning, kGroup, kAny, "DisplayID 1.3, 4; 2.1, 4",
     "Readers skip the data block or read on past it.",
     "A data block has a length that its kind does not have, a range whose minimum is above its maximum, an aspect "
     "ratio "
     "that is not defined, a tiled display without a number, or product identification that is not first.",
     "Correct the data block.", BlockFields},
    {"displayid-fill", kWarning, kGroup, kAny, "DisplayID 1.3, 2; 2.1, 2.1",
     "Readers take what is left there for a data block.",
     "Behind the last data block, and behind the section's checksum up to the end of the extension, only zeros may "
     "stand.",
     "Write zeros.", Fill},
    {"displayid-differs", kWarning, kGroup, RuleScope::kEdid, "DisplayID 1.3, 4.2; 2.1, 4",
     "One display looks like two, by which part a system reads.",
     "The display parameters state a size that is a centimetre or more off that of the base block, or native pixels "
     "that "
     "are not those of the preferred timing.",
     "Make both say the same.", Differs},
};

}  // namespace

std::span<const Rule> DisplayIdRules() {
  return kRules;
}

}  // namespace reedid::document::check
