// The CTA-861 extension: its flags, its data blocks by name, its detailed timings.

#include "document/account/cta.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/account/cta_audio.h"
#include "document/account/cta_color.h"
#include "document/account/cta_hdmi.h"
#include "document/account/cta_video.h"
#include "document/account/detailed_timing.h"
#include "document/account/records.h"
#include "document/account/values.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

constexpr size_t kCollectionStart = 4;
constexpr size_t kChecksumByte = 127;
constexpr size_t kDtdSize = sizeof(DtdSlot::bytes);

// A renderer returns false when the block cannot be decoded; without one, the bytes are shown.
using Renderer = bool (*)(const CeaDataBlock&, const CeaBlock&, const ByteSource&, Node&);

struct DataBlockKind {
  unsigned tag;
  unsigned extTag;  // for CEA_TAG_EXTENDED
  const char* name;
  Renderer render;
};

// CTA-861, tables 32 and 33.
constexpr DataBlockKind kDataBlockKinds[] = {
    {CEA_TAG_AUDIO, 0, "Audio Data Block", DescribeAudio},
    {CEA_TAG_VIDEO, 0, "Video Data Block", DescribeVideo},
    {CEA_TAG_SPEAKERS, 0, "Speaker Allocation Data Block", DescribeSpeakers},
    {CEA_TAG_VESA_TRANSFER, 0, "VESA Display Transfer Characteristic Data Block", nullptr},
    {CEA_TAG_VIDEO_FORMAT, 0, "Video Format Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_VIDEO_CAPABILITY, "Video Capability Data Block", DescribeVideoCapability},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO, "Vendor-Specific Video Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_VESA_DISPLAY_DEVICE, "VESA Display Device Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_COLORIMETRY, "Colorimetry Data Block", DescribeColorimetry},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_STATIC_HDR, "HDR Static Metadata Data Block", DescribeStaticHdr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_DYNAMIC_HDR, "HDR Dynamic Metadata Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_NATIVE_RESOLUTION, "Native Video Resolution Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_FORMAT_PREFERENCE, "Video Format Preference Data Block", DescribeFormatPreference},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO, "YCbCr 4:2:0 Video Data Block", Describe420Video},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_420_MAP, "YCbCr 4:2:0 Capability Map Data Block", Describe420Map},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_AUDIO, "Vendor-Specific Audio Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_ROOM_CONFIGURATION, "Room Configuration Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_SPEAKER_LOCATION, "Speaker Location Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_INFOFRAME, "InfoFrame Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VII, "DisplayID Type VII Video Timing Data Block", DescribeTypeVII},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VIII, "DisplayID Type VIII Video Timing Data Block", DescribeTypeVIII},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_X, "DisplayID Type X Video Timing Data Block", DescribeTypeX},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_EXTENSION_OVERRIDE, "HDMI Forum EDID Extension Override Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_SINK_CAPABILITY, "HDMI Forum Sink Capability Data Block", nullptr},
};

// Vendors by their IEEE OUI, for tag 3 and the vendor-specific video and audio blocks.
struct Vendor {
  unsigned oui;
  const char* name;
  Renderer render;         // of the block with tag 3
  bool isPrivate = false;  // has a ContainerID
};

constexpr Vendor kVendors[] = {
    {REEDID_OUI_HDMI, "HDMI 1.4b", DescribeHdmi14b},
    {REEDID_OUI_HDMI_FORUM, "HDMI Forum", DescribeHdmiForum},
    {REEDID_OUI_DOLBY, "Dolby", nullptr},
    {REEDID_OUI_HDR10_PLUS, "HDR10+", nullptr},
    {REEDID_OUI_AMD, "AMD", nullptr},
    {REEDID_OUI_MICROSOFT, "Microsoft", nullptr, true},
};

const Vendor* FindVendor(unsigned oui) {
  for (const Vendor& vendor : kVendors) {
    if (vendor.oui == oui) return &vendor;
  }
  return nullptr;
}

// The OUI of a vendor-specific block, least significant byte first, added to the title.
const Vendor* AddVendor(const ByteSource& at, size_t ouiByte, Node& node) {
  if (at.size() < ouiByte + 3) return nullptr;
  const SourceBytes b = at(ouiByte, 3);
  const Vendor* vendor = FindVendor(unsigned{b[0]} | unsigned{b[1]} << 8 | unsigned{b[2]} << 16);
  node.title += vendor != nullptr ? fmt::format(", {}", vendor->name)
                                  : fmt::format(", OUI {:02x}-{:02x}-{:02x}", b[2], b[1], b[0]);
  node.bytes = at(0, ouiByte + 3);
  return vendor;
}

DataBlockKind KindOf(const CeaDataBlock& entry) {
  for (const DataBlockKind& kind : kDataBlockKinds) {
    if (kind.tag == entry.tag && (entry.tag != CEA_TAG_EXTENDED || kind.extTag == entry.extTag)) return kind;
  }
  return {entry.tag, entry.extTag, entry.tag == CEA_TAG_VENDOR ? "Vendor-Specific Data Block" : "Reserved Data Block",
          nullptr};
}

Node DescribeDataBlock(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at) {
  const DataBlockKind kind = KindOf(entry);
  const bool isVendor = entry.tag == CEA_TAG_VENDOR;
  const bool isExtended = entry.tag == CEA_TAG_EXTENDED;
  Node node;
  node.title =
      isExtended ? fmt::format("{} (7/{})", kind.name, entry.extTag) : fmt::format("{} ({})", kind.name, entry.tag);
  node.bytes = at(0, isExtended ? 2 : 1);
  Renderer render = kind.render;
  if (isVendor ||
      (isExtended && (entry.extTag == CEA_EXT_TAG_VENDOR_VIDEO || entry.extTag == CEA_EXT_TAG_VENDOR_AUDIO))) {
    const Vendor* vendor = AddVendor(at, isVendor ? 1 : 2, node);
    if (vendor != nullptr && isVendor) render = vendor->render;
    node.isPrivate = vendor != nullptr && vendor->isPrivate;
  }
  if (render != nullptr && render(entry, model, at, node)) {
    node.AddRest(at);
    return node;
  }
  if (render != nullptr) node.Add("Not decoded", "its size is outside what is read of this kind").isFault = true;
  if (SourceBytes rest = at.Rest(); !rest.empty()) node.AddBytes("Bytes", std::move(rest));
  return node;
}

void AddHeader(const CeaBlock& model, const ByteSource& at, Node& node) {
  const NamedFlag flags[] = {{model.underscan, "underscan"},
                             {model.basicAudio, "basic audio"},
                             {model.ycbcr444, "YCbCr 4:4:4"},
                             {model.ycbcr422, "YCbCr 4:2:2"}};
  node.bytes = at(0);
  node.Add("Revision", fmt::format("{}", model.revision), at(1));
  node.Add("Timing offset", model.dtdOffset == 0 ? "none" : fmt::format("{}", model.dtdOffset), at(2));
  node.Add("Flags", SetFlags(flags), at(3));
  node.Add("Native timings", fmt::format("{}", model.nativeDtdCount), at(3));
  node.Add("Free bytes", fmt::format("{}", model.freeSpace));
}

// Where the data blocks must end: the timings follow, or the checksum.
size_t CollectionEnd(const CeaBlock& model) {
  const bool hasTimings = model.dtdOffset >= kCollectionStart && model.dtdOffset < kChecksumByte;
  return hasTimings ? model.dtdOffset : kChecksumByte;
}

bool AreZero(std::span<const uint8_t> bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](uint8_t byte) { return byte == 0; });
}

// No source takes timings from here.
void TakeTimings(Node& node) {
  node.timings.clear();
  node.isTiming = false;
  for (Field& field : node.fields) field.isTiming = false;
  for (Node& child : node.children) TakeTimings(child);
}

// Readers stop at a data block of tag 0, which CTA-861 reserves; what follows was meant as data blocks all the same.
void DescribeBehindTag0(const EdidBlock& block, const CeaBlock& model, size_t offset, const ByteSource& at,
                        Node& parent) {
  const size_t end = CollectionEnd(model);
  if (offset >= end || block.bytes[offset] >> 5 != 0 || AreZero({block.bytes + offset, end - offset})) return;
  Node node;
  node.title = fmt::format("Behind the data block of tag 0 at byte {}, where readers stop", offset);
  node.label = "Behind a data block of tag 0";
  for (uint8_t size = 0; offset < end; offset += size) {
    const unsigned header = block.bytes[offset];
    size = static_cast<uint8_t>(1 + (header & 0x1F));
    const bool fits = offset + size <= end && (header >> 5 != CEA_TAG_EXTENDED || size > 1);
    if (!fits || AreZero({block.bytes + offset, end - offset})) break;
    const CeaDataBlock entry = {static_cast<uint8_t>(header >> 5),
                                header >> 5 == CEA_TAG_EXTENDED ? block.bytes[offset + 1] : uint8_t{0}, size,
                                block.bytes + offset};
    if (entry.tag != 0) {
      node.Child(DescribeDataBlock(entry, model, at.Part(offset, size)));
    } else {
      node.AddBytes("Tag 0", at(offset, size)).publicValue = kHidden;
    }
  }
  TakeTimings(node);
  if (!node.children.empty()) node.fields.front().isFault = true;
  parent.Child(std::move(node));
}

// Every slot up to the padding, also behind one that is no sound timing.
void DescribeSlots(const EdidBlock& block, const CeaBlock& model, const ByteSource& at, Node& node) {
  if (model.dtdOffset < kCollectionStart) return;
  unsigned number = 0;
  for (size_t offset = model.dtdOffset; offset + kDtdSize <= kChecksumByte; offset += kDtdSize) {
    if (AreZero({block.bytes + offset, kDtdSize})) return;
    DtdSlot slot = {1, {}};
    std::copy_n(block.bytes + offset, kDtdSize, slot.bytes);
    const bool isTiming = slot.bytes[0] != 0 || slot.bytes[1] != 0;
    const ByteSource from = at.Part(offset, kDtdSize);
    if (isTiming) {
      node.Child(DescribeDtd(fmt::format("Detailed timing {}", ++number), slot, from));
    } else {
      Node other;
      other.title = fmt::format("No timing ({:02x}) at byte {}", slot.bytes[3], offset);
      other.label = fmt::format("No timing ({:02x})", slot.bytes[3]);
      other.AddBytes("Bytes", from.All()).publicValue = kHidden;
      node.Child(std::move(other));
    }
  }
}

}  // namespace

bool DescribeCta(const EdidBlock& block, const ByteSource& at, Node& node) {
  const CtaExtension model(block);
  if (!model) return false;
  node.record = *model;
  AddHeader(*model, at, node);
  size_t offset = kCollectionStart;
  for (const CeaDataBlock& entry : std::span(model->dataBlocks, model->dataBlockCount)) {
    if (entry.bytes != nullptr) node.Child(DescribeDataBlock(entry, *model, at.Part(offset, entry.size)));
    offset += entry.size;
  }
  DescribeBehindTag0(block, *model, offset, at, node);
  DescribeSlots(block, *model, at, node);
  return true;
}

}  // namespace reedid::document
