// DisplayID sections: header fields and data blocks by name.

#include "document/account/displayid.h"

#include <fmt/format.h>

#include "document/account/checksum.h"
#include "document/account/displayid_blocks.h"
#include "document/account/records.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

constexpr size_t kSectionHeader = 4;

// Whether a block tells one unit from another: by one of its fields, which the account names, or as a whole.
enum class Unit : uint8_t { kNot, kByField, kAsWhole };

struct DataBlockKind {
  uint8_t tag;
  const char* name;
  Unit unit = Unit::kNot;
};

// DisplayID 1.3 and 2.0, section 4. The tags of the two do not overlap. A tile tells the serial number too.
constexpr DataBlockKind kDataBlockKinds[] = {
    {DISPID_TAG_PRODUCT_ID, "Product Identification", Unit::kByField},
    {DISPID_TAG_DISPLAY_PARAMS, "Display Parameters"},
    {DISPID_TAG_COLOR, "Color Characteristics"},
    {DISPID_TAG_TYPE_I, "Type I Timing, Detailed"},
    {DISPID_TAG_TYPE_II, "Type II Timing, Detailed"},
    {DISPID_TAG_TYPE_III, "Type III Timing, Short"},
    {DISPID_TAG_TYPE_IV, "Type IV Timing, DMT ID"},
    {DISPID_TAG_VESA_TIMINGS, "VESA Timing Standard"},
    {DISPID_TAG_CTA_TIMINGS, "CTA Timing Standard"},
    {DISPID_TAG_RANGE_LIMITS, "Video Timing Range Limits"},
    {DISPID_TAG_SERIAL_NUMBER, "Product Serial Number", Unit::kAsWhole},
    {DISPID_TAG_DATA_STRING, "General Purpose ASCII String"},
    {DISPID_TAG_DISPLAY_DEVICE, "Display Device Data"},
    {DISPID_TAG_POWER_SEQUENCING, "Interface Power Sequencing"},
    {DISPID_TAG_TRANSFER, "Transfer Characteristics"},
    {DISPID_TAG_DISPLAY_INTERFACE, "Display Interface"},
    {DISPID_TAG_STEREO, "Stereo Display Interface"},
    {DISPID_TAG_TYPE_V, "Type V Timing, Short"},
    {DISPID_TAG_TILED, "Tiled Display Topology", Unit::kByField},
    {DISPID_TAG_TYPE_VI, "Type VI Timing, Detailed"},
    {DISPID20_TAG_PRODUCT_ID, "Product Identification", Unit::kByField},
    {DISPID20_TAG_DISPLAY_PARAMS, "Display Parameters"},
    {DISPID20_TAG_TYPE_VII, "Type VII Timing, Detailed"},
    {DISPID20_TAG_TYPE_VIII, "Type VIII Timing, Enumerated"},
    {DISPID20_TAG_TYPE_IX, "Type IX Timing, Formula-based"},
    {DISPID20_TAG_RANGE_LIMITS, "Dynamic Video Timing Range Limits"},
    {DISPID20_TAG_INTERFACE_FEATURES, "Display Interface Features"},
    {DISPID20_TAG_STEREO, "Stereo Display Interface"},
    {DISPID20_TAG_TILED, "Tiled Display Topology", Unit::kByField},
    {DISPID20_TAG_CONTAINER_ID, "ContainerID", Unit::kAsWhole},
    {DISPID20_TAG_TYPE_X, "Type X Timing, Formula-based"},
    {DISPID20_TAG_ADAPTIVE_SYNC, "Adaptive-Sync"},
    {DISPID20_TAG_HEAD_MOUNTED, "AR/VR HMD"},
    {DISPID20_TAG_HEAD_MOUNTED_LAYER, "AR/VR Layer", Unit::kByField},
    {DISPID20_TAG_BRIGHTNESS, "Brightness Luminance Range"},
    {DISPID20_TAG_VENDOR, "Vendor-specific"},
    {DISPID_TAG_VENDOR, "Vendor-specific"},
    {DISPID20_TAG_CTA, "CTA DisplayID"},
};

DataBlockKind KindOf(uint8_t tag) {
  for (const DataBlockKind& kind : kDataBlockKinds) {
    if (kind.tag == tag) return kind;
  }
  return {tag, "Reserved"};
}

// The model keeps 2.0 use cases 2..15 as 0x12..0x1F; 0 and 1 mean the same in both versions.
std::string ProductText(const DispIdBlock& model) {
  static constexpr const char* kProducts[] = {"extension section",         "test structure", "display panel",
                                              "standalone display device", "TV receiver",    "repeater or translator",
                                              "direct drive monitor"};
  static constexpr const char* kUseCases[] = {
      "same as the base section", "test structure", "generic display", "TV",
      "desktop productivity",     "desktop gaming", "presentation",    "head-mounted VR",
      "head-mounted AR"};
  const unsigned code = model.productType & 0x0F;
  const char* name = "reserved";
  if (model.version >= 2 && code < std::size(kUseCases)) name = kUseCases[code];
  if (model.version < 2 && code < std::size(kProducts)) name = kProducts[code];
  return fmt::format("{}, {}", code, name);
}

Node DescribeDataBlock(const DispIdDataBlock& entry, const ByteSource& at) {
  const DataBlockKind kind = KindOf(entry.tag);
  Node node;
  node.title = fmt::format("{} ({:02x}), revision {}", kind.name, entry.tag, entry.revision);
  node.label = fmt::format("{} ({:02x})", kind.name, entry.tag);
  node.bytes = at(0, 3);
  node.extent = at.extent();
  node.isPrivate = kind.unit == Unit::kAsWhole;
  if (entry.headerFlags != 0) node.Add("Flags", fmt::format("{:#04x}", entry.headerFlags), at(1));
  if (DescribeSectionBlock(entry, at, node)) {
    node.AddRest(at);
  } else if (SourceBytes rest = at.Rest(); !rest.empty()) {
    node.AddBytes("Bytes", std::move(rest));
    node.isPrivate = kind.unit != Unit::kNot;
  }
  return node;
}

void AddHeader(const DispIdBlock& model, const ByteSource& at, Node& node) {
  node.Add("Version", fmt::format("DisplayID {}.{}", model.version, model.revision), at(0));
  node.Add(model.version >= 2 ? "Primary use case" : "Product type", ProductText(model), at(2));
  node.Add("Further sections", fmt::format("{}", model.extensionCount), at(3));
  node.Add("Section size", fmt::format("{} bytes, {} used by data blocks", model.sectionSize, model.payloadUsed),
           at(1));
}

}  // namespace

bool DescribeSection(const EdidBlock& block, const ByteSource& at, Node& node) {
  const DisplayIdSection model(block);
  if (!model) return false;
  const bool isExtension = block.type == EDID_BLOCK_DISPID_EXT;
  const ByteSource section = at.Part(isExtension ? 1 : 0);
  if (isExtension) {
    node.bytes = at(0);
    AddChecksum("Section checksum", {block.bytes + 1, model->sectionSize}, section, node);
  }
  AddHeader(*model, section, node);
  node.record = *model;
  size_t offset = kSectionHeader;
  for (const DispIdDataBlock& entry : std::span(model->dataBlocks, model->dataBlockCount)) {
    if (entry.bytes != nullptr) node.Child(DescribeDataBlock(entry, section.Part(offset, entry.size)));
    offset += entry.size;
  }
  return true;
}

}  // namespace reedid::document
