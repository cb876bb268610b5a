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

struct DataBlockKind {
  uint8_t tag;
  const char* name;
  bool isPrivate = false;  // gives away one unit
};

// DisplayID 1.3 and 2.0, section 4. The tags of the two do not overlap. A tile tells the serial number too.
constexpr DataBlockKind kDataBlockKinds[] = {
    {0x00, "Product Identification"},
    {0x01, "Display Parameters"},
    {0x02, "Color Characteristics"},
    {0x03, "Type I Timing, Detailed"},
    {0x04, "Type II Timing, Detailed"},
    {0x05, "Type III Timing, Short"},
    {0x06, "Type IV Timing, DMT ID"},
    {0x07, "VESA Timing Standard"},
    {0x08, "CTA Timing Standard"},
    {0x09, "Video Timing Range Limits"},
    {0x0A, "Product Serial Number", true},
    {0x0B, "General Purpose ASCII String"},
    {0x0C, "Display Device Data"},
    {0x0D, "Interface Power Sequencing"},
    {0x0E, "Transfer Characteristics"},
    {0x0F, "Display Interface"},
    {0x10, "Stereo Display Interface"},
    {0x11, "Type V Timing, Short"},
    {0x12, "Tiled Display Topology", true},
    {0x13, "Type VI Timing, Detailed"},
    {0x20, "Product Identification"},
    {0x21, "Display Parameters"},
    {0x22, "Type VII Timing, Detailed"},
    {0x23, "Type VIII Timing, Enumerated"},
    {0x24, "Type IX Timing, Formula-based"},
    {0x25, "Dynamic Video Timing Range Limits"},
    {0x26, "Display Interface Features"},
    {0x27, "Stereo Display Interface"},
    {0x28, "Tiled Display Topology", true},
    {0x29, "ContainerID", true},
    {0x2A, "Type X Timing, Formula-based"},
    {0x2B, "Adaptive-Sync"},
    {0x2C, "AR/VR HMD"},
    {0x2D, "AR/VR Layer"},
    {0x2E, "Brightness Luminance Range"},
    {0x7E, "Vendor-specific"},
    {0x7F, "Vendor-specific"},
    {0x81, "CTA DisplayID"},
};

// Has a serial number among other fields.
bool IsProductId(uint8_t tag) {
  return tag == 0x00 || tag == 0x20;
}

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
  node.bytes = at(0, 3);
  node.isPrivate = kind.isPrivate;
  if (entry.headerFlags != 0) node.Add("Flags", fmt::format("{:#04x}", entry.headerFlags), at(1));
  if (DescribeSectionBlock(entry, at, node)) {
    node.AddRest(at);
  } else if (ByteVector rest = at.Rest(); !rest.empty()) {
    node.AddBytes("Bytes", std::move(rest));
    node.isPrivate = kind.isPrivate || IsProductId(entry.tag);
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
