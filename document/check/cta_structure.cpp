// How CTA extensions are built: header, data blocks and what stands behind the timings.
#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "document/check/draft.h"
#include "document/check/image_view.h"
#include "document/check/report.h"

namespace reedid::document::check {
namespace {

// The first extension that is no block map.
unsigned FirstExtensionTag(const ImageView& view) {
  const unsigned first = view.Block(1)[0];
  return first == EDID_EXTENSION_BLOCK_MAP && view.blockCount > 2 ? view.Block(2)[0] : first;
}

void CtaHeader(const ImageView& view, Report& report) {
  for (const CtaBlock& cta : view.ctas) {
    const Place place = view.PlaceAt(cta.at);
    const bool knownRevision = cta.revision == 1 || cta.revision == 3;
    const bool hasHdmi = view.hdmi && view.hdmi->block->place.block == cta.block;
    if (!knownRevision || (hasHdmi && cta.revision != 3)) report.Add(place, fmt::format("revision {}", cta.revision));
    if (cta.revision == 1 && cta.flags != 0) {
      Draft draft(view);
      draft[cta.at + 3] = 0;
      report.Add(place, fmt::format("flags {:02x} in revision 1", cta.flags)).Mend(Repair::kSafe, draft.Changes());
    }
    if ((cta.dtdOffset >= 1 && cta.dtdOffset <= 3) || cta.dtdOffset > 127) {
      report.Add(place, fmt::format("timings begin at {}", cta.dtdOffset));
    }
    if (cta.flags != view.CtaFlags()) {
      report.Add(place, fmt::format("flags {:02x}, {:02x} in the first CTA extension", cta.flags, view.CtaFlags()));
    }
  }
  if (view.hdmi && FirstExtensionTag(view) != EDID_EXTENSION_CTA)
    report.Add(view.PlaceAt(kBlockSize), "the first extension is no CTA extension");
}

void CtaPadding(const ImageView& view, Report& report) {
  for (const CtaBlock& cta : view.ctas) {
    if (cta.timingsEnd >= 127 || cta.bytes.From(cta.timingsEnd, 127 - cta.timingsEnd).AllZero()) continue;
    report.Add(view.PlaceAt(cta.at + cta.timingsEnd), "bytes behind the last timing");
  }
}

// The shortest payload of each kind of data block.
unsigned ShortestPayload(const DataBlock& block) {
  switch (block.kind) {
    case kAudio:
    case kSpeaker:
    case kColorimetry:
    case kHdrStatic:
      return 3;
    case kVideo:
      return 1;
    case kVideoCapability:
    case kNativeResolution:
    case kExtended + 0x0D:
    case kY420Video:
      return 2;
    default:
      return block.IsVendor(REEDID_OUI_HDMI) ? 5 : block.bytes[0] >> 5 == CEA_TAG_EXTENDED ? 1 : 0;
  }
}

void DataBlockLength(const ImageView& view, Report& report) {
  for (const CtaBlock& cta : view.ctas) {
    if (cta.overlongAt)
      report.Add(view.PlaceAt(*cta.overlongAt), fmt::format("a data block reaches beyond byte {}", cta.dtdOffset));
  }
  for (const DataBlock& block : view.dataBlocks) {
    if (block.L() < ShortestPayload(block)) report.Add(block.place, fmt::format("{} bytes of payload", block.L()));
  }
  if (view.hdmi && view.hdmi->wanted > view.hdmi->block->bytes.size()) {
    report.Add(view.hdmi->block->place, fmt::format("an HDMI block of {} bytes announces {}",
                                                    view.hdmi->block->bytes.size(), view.hdmi->wanted));
  }
}

void DataBlockUnknown(const ImageView& view, Report& report) {
  constexpr std::pair<unsigned, unsigned> kKnown[] = {{0x00, 0x02}, {0x05, 0x08}, {0x0D, 0x0F}, {0x11, 0x14},
                                                      {0x20, 0x23}, {0x2A, 0x2A}, {0x78, 0x7A}};
  for (const DataBlock& block : view.dataBlocks) {
    const unsigned extended = block.kind - kExtended;
    const auto holds = [&](const auto& range) { return extended >= range.first && extended <= range.second; };
    const bool unknown = block.kind == 0 || (block.kind >= kExtended && std::ranges::none_of(kKnown, holds));
    if (!unknown) continue;
    report.Add(block.place, block.kind == 0 ? "tag 0" : fmt::format("extended tag {:02x}", extended));
  }
}

void DataBlockDuplicate(const ImageView& view, Report& report) {
  constexpr unsigned kOnce[] = {
      CEA_EXT_TAG_VIDEO_CAPABILITY,  CEA_EXT_TAG_COLORIMETRY,        CEA_EXT_TAG_STATIC_HDR,
      CEA_EXT_TAG_NATIVE_RESOLUTION, CEA_EXT_TAG_FORMAT_PREFERENCE,  CEA_EXT_TAG_420_MAP,
      CEA_EXT_TAG_HDMI_AUDIO,        CEA_EXT_TAG_ROOM_CONFIGURATION, CEA_EXT_TAG_EXTENSION_OVERRIDE,
      CEA_EXT_TAG_SINK_CAPABILITY,   CEA_EXT_TAG_TONE_MAPPING};
  std::set<unsigned> seen;
  for (const DataBlock& block : view.dataBlocks) {
    const bool isVendor = block.IsVendor(REEDID_OUI_HDMI) || block.IsVendor(REEDID_OUI_HDMI_FORUM);
    const bool isOnce =
        block.kind == kSpeaker || isVendor ||
        (block.kind >= kExtended && std::ranges::find(kOnce, block.kind - kExtended) != std::end(kOnce));
    const unsigned key = isVendor ? block.bytes.Little(1, 3) : block.kind;
    if (isOnce && !seen.insert(key).second) report.Add(block.place, "a second one of its kind");
  }
}

constexpr Severity kNote = Severity::kNote, kWarning = Severity::kWarning, kError = Severity::kError;
constexpr RuleGroup kGroup = RuleGroup::kStructure;
constexpr RuleScope kEdid = RuleScope::kEdid;

constexpr Rule kRules[] = {
    {"cta-header", kError, kGroup, kEdid, "CTA-861-I, 7.3; HDMI 1.4b, 8.3",
     "Sources skip the extension: no sound, no video formats.",
     "A CTA extension has revision 1 or 3 (3 with an HDMI block), no flags in revision 1, timings that begin at 0 or "
     "between 4 and 127, and the same flags as all others. With an HDMI block it is the first extension but for a "
     "block map.",
     "Correct the header.", CtaHeader},
    {"data-block-length", kError, kGroup, kEdid, "CTA-861-I, 7.4; HDMI 1.4b, 8.3.2",
     "Readers lose the data blocks behind it, or read fields that are not there.",
     "A data block reaches beyond the place where the timings begin, is shorter than its kind allows, or is an HDMI "
     "block "
     "whose flags announce latencies, video or 3D formats beyond its end.",
     "Write the whole data block and its true length.", DataBlockLength},
    {"data-block-duplicate", kWarning, kGroup, kEdid, "CTA-861-I, 7.5",
     "Sources take the first or the last of them, each its own way.",
     "A data block that stands once in an image is there twice, such as the speaker allocation, the HDMI block, the "
     "video "
     "capability or colorimetry.",
     "Keep one.", DataBlockDuplicate},
    {"data-block-unknown", kNote, kGroup, kEdid, "CTA-861-I, 7.4",
     "Nobody reads it; often a length before it is wrong.",
     "A data block has tag 0 or an extended tag that no standard defines.",
     "Check the data block before it; take it out if nothing needs it.", DataBlockUnknown},
    {"cta-padding", kError, kGroup, kEdid, "CTA-861-I, 7.3.3",
     "Some readers stop at the first empty slot, others read on and find a timing.",
     "Behind the last detailed timing only zeros may stand. What stands there may be a timing behind a gap.",
     "Move the timing up, or write zeros.", CtaPadding},
};

}  // namespace

std::span<const Rule> CtaStructureRules() {
  return kRules;
}

}  // namespace reedid::document::check
