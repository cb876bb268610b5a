// How the image is built: checksums, counts, block maps, and the descriptors and input byte of the base block.
#include <fmt/format.h>

#include <algorithm>
#include <numeric>

#include "document/check/draft.h"
#include "document/check/image_view.h"
#include "document/check/report.h"

namespace reedid::document::check {
namespace {

void BlockChecksum(const ImageView& view, Report& report) {
  for (unsigned i = 0; i < view.blockCount; ++i) {
    const Bytes block = view.Block(i);
    const unsigned sum = std::accumulate(block.begin(), block.end(), 0u) & 0xFF;
    if (sum == 0) continue;
    Draft draft(view);
    const size_t at = (i + 1) * kBlockSize - 1;
    draft[at] = static_cast<uint8_t>(draft[at] - sum);
    report.Add(view.PlaceAt(at), fmt::format("the block's bytes add up to {:02x}", sum))
        .Mend(Repair::kAsk, draft.Changes());
  }
}

void ExtensionCount(const ImageView& view, Report& report) {
  const unsigned count = view.image[0x7E], extensions = view.blockCount - 1;
  if (view.extensionOverride != nullptr || count == extensions) return;
  Draft draft(view);
  if (extensions <= 255) draft[0x7E] = static_cast<uint8_t>(extensions);
  report.Add(view.PlaceAt(0x7E), fmt::format("{} extensions, there are {}", count, extensions))
      .Mend(Repair::kAsk, draft.Changes());
}

void ExtensionTagUnknown(const ImageView& view, Report& report) {
  constexpr unsigned kTags[] = {
      EDID_EXTENSION_CTA,  EDID_EXTENSION_VIDEO_TIMING, EDID_EXTENSION_DISPLAY_INFO, EDID_EXTENSION_LOCALIZED_STRINGS,
      EDID_EXTENSION_DPVL, EDID_EXTENSION_DISPLAYID,    EDID_EXTENSION_BLOCK_MAP,    EDID_EXTENSION_MANUFACTURER};
  for (unsigned i = 1; i < view.blockCount; ++i) {
    const unsigned tag = view.Block(i)[0];
    if (std::ranges::find(kTags, tag) != std::end(kTags)) continue;
    report.Add(view.PlaceAt(i * kBlockSize), fmt::format("tag {:02x}", tag));
  }
}

void BlockMapMissing(const ImageView& view, Report& report) {
  if (view.minor > 3 || view.blockCount <= 2 || view.extensionOverride != nullptr ||
      view.Block(1)[0] == EDID_EXTENSION_BLOCK_MAP)
    return;
  report.Add(view.PlaceAt(kBlockSize), fmt::format("{} extensions in an EDID 1.{}", view.blockCount - 1, view.minor));
}

void BlockMapWrong(const ImageView& view, Report& report) {
  for (unsigned map = 1; map < view.blockCount; ++map) {
    if (view.Block(map)[0] != EDID_EXTENSION_BLOCK_MAP) continue;
    const size_t at = map * kBlockSize;
    if (map != 1 && map != 128) {
      report.Add(view.PlaceAt(at), fmt::format("a block map in block {}", map));
      continue;
    }
    Draft draft(view);
    for (unsigned i = 1; i <= 126; ++i) {
      draft[at + i] = static_cast<uint8_t>(map + i < view.blockCount ? view.Block(map + i)[0] : 0);
    }
    std::vector<Patch> changes = draft.Changes();
    if (changes.empty()) continue;
    const size_t first = changes.front().at;
    report.Add(view.PlaceAt(first), fmt::format("{:02x} for block {}", view.image[first], map + first - at))
        .Mend(Repair::kSafe, std::move(changes));
  }
}

void VideoInputReserved(const ImageView& view, Report& report) {
  if (!view.digital) return;
  const unsigned input = view.image[0x14];
  unsigned right = input;
  if (view.minor >= 4) {
    if ((input & 0x70) == 0x70) right &= ~0x70u;
    if ((input & 0x0F) > 5) right &= ~0x0Fu;
  } else {
    right &= view.minor >= 2 ? 0x81 : 0x80;
  }
  if (right == input) return;
  Draft draft(view);
  draft[0x14] = static_cast<uint8_t>(right);
  report.Add(view.PlaceAt(0x14), fmt::format("input {:02x} in an EDID 1.{}", input, view.minor))
      .Mend(Repair::kSafe, draft.Changes());
}

void DescriptorAllZero(const ImageView& view, Report& report) {
  for (const Slot& slot : view.slots) {
    if (!slot.bytes.AllZero()) continue;
    Draft draft(view);
    draft[slot.at + 3] = 0x10;
    report.Add(PlaceOf(view, slot), "18 bytes 00").Mend(Repair::kSafe, draft.Changes());
  }
}

// The version byte that some descriptors have behind their header; 0 for those that have none.
unsigned DescriptorVersion(unsigned tag) {
  return tag == EDID_DESCRIPTOR_EST3               ? 0x0A
         : tag == EDID_DESCRIPTOR_CVT_CODES        ? 0x01
         : tag == EDID_DESCRIPTOR_COLOR_MANAGEMENT ? 0x03
                                                   : 0;
}

const char* TagFault(const ImageView& view, const Slot& slot) {
  if (slot.tag > EDID_DESCRIPTOR_DUMMY && slot.tag < EDID_DESCRIPTOR_EST3) return "a reserved tag";
  const unsigned version = DescriptorVersion(slot.tag);
  if (version != 0 && slot.bytes[5] != version) return "an unknown version";
  return (slot.tag == EDID_DESCRIPTOR_EST3 || slot.tag == EDID_DESCRIPTOR_CVT_CODES) && view.minor < 4
             ? "a tag of EDID 1.4"
             : nullptr;
}

void DescriptorHeader(const ImageView& view, Report& report) {
  for (const Slot& slot : view.slots) {
    if (slot.isDtd || slot.bytes.AllZero()) continue;
    const bool hasFlags = view.minor >= 4 && slot.tag == EDID_DESCRIPTOR_RANGE_LIMITS;
    const char* fault = TagFault(view, slot);
    const bool isDirty = slot.bytes[2] != 0 || (slot.bytes[4] != 0 && !hasFlags);
    if (fault == nullptr && !isDirty) continue;
    Draft draft(view);
    if (slot.tag == EDID_DESCRIPTOR_DUMMY || slot.tag >= EDID_DESCRIPTOR_EST3) {
      draft[slot.at + 2] = 0;
      if (!hasFlags) draft[slot.at + 4] = 0;
    }
    report
        .Add(PlaceOf(view, slot),
             fmt::format("tag {:02x}, bytes 2 and 4 {:02x} {:02x}{}{}", slot.tag, slot.bytes[2], slot.bytes[4],
                         fault != nullptr ? ": " : "", fault != nullptr ? fault : ""))
        .Mend(Repair::kSafe, draft.Changes());
  }
}

void DummyGarbage(const ImageView& view, Report& report) {
  for (const Slot& slot : view.slots) {
    if (slot.isDtd || slot.tag != EDID_DESCRIPTOR_DUMMY || slot.bytes.From(5).AllZero()) continue;
    Draft draft(view);
    draft.Fill(slot.at + 4, kSlotSize - 4, 0);
    report.Add(PlaceOf(view, slot), "bytes other than 00").Mend(Repair::kSafe, draft.Changes());
  }
}

constexpr Severity kNote = Severity::kNote, kWarning = Severity::kWarning, kError = Severity::kError;
constexpr RuleGroup kGroup = RuleGroup::kStructure;
constexpr RuleScope kEdid = RuleScope::kEdid;

constexpr Rule kRules[] = {
    {"block-checksum", kError, kGroup, kEdid, "EDID 1.4, 3.11",
     "Sources drop a block whose bytes do not add up, or the whole EDID.",
     "The 128 bytes of every block add up to 0 modulo 256. Where they do not, the bytes were mostly read or stored "
     "wrong, "
     "and more than the sum is damaged.",
     "Read the display again; if it stays, correct the last byte.", BlockChecksum},
    {"extension-count", kError, kGroup, kEdid, "EDID 1.4, 3.11",
     "Sources read fewer blocks than there are, or wait for more.",
     "Byte 126 of the base block states how many extensions follow; the image has another number of them. An image "
     "that is "
     "too short was mostly not read to its end.",
     "Read the display again; if it stays, write the number of extensions.", ExtensionCount},
    {"extension-tag-unknown", kWarning, kGroup, kEdid, "EDID 1.4, 2.2.4",
     "No source reads the block, whatever it holds.",
     "An extension begins with a tag that no standard defines. The known ones are 02, 10, 40, 50, 60, 70, F0 and FF.",
     "Check that the block was read right; take it out if it is the maker's own.", ExtensionTagUnknown},
    {"block-map-wrong", kError, kGroup, kEdid, "E-EDID A.1; EDID 1.4, 2.2",
     "Sources that follow the map look for an extension in the wrong block.",
     "A block map stands in block 1 or 128 and lists the tags of the blocks behind it; here it stands elsewhere, or a "
     "tag "
     "is not that of its block.",
     "Write the tags of the blocks that there are.", BlockMapWrong},
    {"block-map-missing", kNote, kGroup, kEdid, "E-EDID A.1 (EDID 1.3)",
     "Few sources mind, but those that follow EDID 1.3 read one extension only.",
     "Up to EDID 1.3 an image with more than one extension begins them with a block map. From 1.4 on it may be left "
     "out.",
     "Nothing needs to be done; EDID 1.4 does without.", BlockMapMissing},
    {"video-input-reserved", kWarning, kGroup, kEdid, "EDID 1.4, 3.6.1",
     "Sources read a bit depth or an interface that does not exist.",
     "The video input byte of a digital display uses values that its version reserves: depth 7 or an interface above 5 "
     "in "
     "EDID 1.4, anything but bit 0 in 1.2 and 1.3, anything at all before.",
     "Clear the reserved bits.", VideoInputReserved},
    {"descriptor-all-zero", kWarning, kGroup, kEdid, "EDID 1.4, 3.10.3",
     "Readers take it for a maker's own descriptor, or for the end.",
     "A descriptor slot of the base block holds zeros only. A slot that is not used is a dummy descriptor, tag 10. In "
     "CTA "
     "extensions zeros are right.",
     "Write tag 10.", DescriptorAllZero},
    {"descriptor-header", kWarning, kGroup, kEdid, "EDID 1.4, 3.10.3", "Strict readers skip the descriptor.",
     "Bytes 2 and 4 of a display descriptor are 0 (but for the offset flags of the range limits in EDID 1.4), its tag "
     "is "
     "one of those defined, and colour, CVT and timing descriptors have the version that the standard gives them.",
     "Write 0 into bytes 2 and 4; check the tag.", DescriptorHeader},
    {"dummy-descriptor-garbage", kNote, kGroup, kEdid, "EDID 1.4, 3.10.3",
     "It does no harm, but shows a slot that was not cleared.",
     "A dummy descriptor (tag 10) holds other bytes than zeros.", "Write zeros.", DummyGarbage},
};

}  // namespace

std::span<const Rule> StructureRules() {
  return kRules;
}

}  // namespace reedid::document::check
