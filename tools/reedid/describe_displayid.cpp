// DisplayID sections: header fields and data blocks by name.

#include <fmt/format.h>

#include "describe.h"
#include "hex_text.h"

namespace reedid::tool {
namespace {

// Adds a data block's content; false when it cannot be decoded.
using Renderer = bool (*)(const DispIdDataBlock&, Node&);

struct DataBlockKind {
  uint8_t tag;
  const char* name;
  Renderer render;  // null: bytes
};

// DisplayID 1.3, table 3-1; DisplayID 2.0, table 4-1. The two do not overlap.
constexpr DataBlockKind kDataBlockKinds[] = {
    {0x00, "Product Identification", nullptr},
    {0x01, "Display Parameters", nullptr},
    {0x02, "Color Characteristics", nullptr},
    {0x03, "Type I Timing, Detailed", nullptr},
    {0x04, "Type II Timing, Detailed", nullptr},
    {0x05, "Type III Timing, Short", nullptr},
    {0x06, "Type IV Timing, DMT ID", nullptr},
    {0x07, "VESA Timing Standard", nullptr},
    {0x08, "CTA Timing Standard", nullptr},
    {0x09, "Video Timing Range Limits", nullptr},
    {0x0A, "Product Serial Number", nullptr},
    {0x0B, "General Purpose ASCII String", nullptr},
    {0x0C, "Display Device Data", nullptr},
    {0x0D, "Interface Power Sequencing", nullptr},
    {0x0E, "Transfer Characteristics", nullptr},
    {0x0F, "Display Interface", nullptr},
    {0x10, "Stereo Display Interface", nullptr},
    {0x11, "Type V Timing, Short", nullptr},
    {0x12, "Tiled Display Topology", nullptr},
    {0x13, "Type VI Timing, Detailed", nullptr},
    {0x20, "Product Identification", nullptr},
    {0x21, "Display Parameters", nullptr},
    {0x22, "Type VII Timing, Detailed", nullptr},
    {0x23, "Type VIII Timing, Enumerated", nullptr},
    {0x24, "Type IX Timing, Formula-based", nullptr},
    {0x25, "Dynamic Video Timing Range Limits", nullptr},
    {0x26, "Display Interface Features", nullptr},
    {0x27, "Stereo Display Interface", nullptr},
    {0x28, "Tiled Display Topology", nullptr},
    {0x29, "ContainerID", nullptr},
    {0x2A, "Type X Timing, Formula-based", nullptr},
    {0x2B, "Adaptive-Sync", nullptr},
    {0x2C, "AR/VR HMD", nullptr},
    {0x2D, "AR/VR Layer", nullptr},
    {0x2E, "Brightness Luminance Range", nullptr},
    {0x7E, "Vendor-specific", nullptr},
    {0x7F, "Vendor-specific", nullptr},
    {0x81, "CTA DisplayID", nullptr},
};

DataBlockKind KindOf(uint8_t tag) {
  for (const DataBlockKind& kind : kDataBlockKinds) {
    if (kind.tag == tag) return kind;
  }
  return {tag, "Reserved", nullptr};
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

Node DescribeDataBlock(const DispIdDataBlock& entry) {
  const DataBlockKind kind = KindOf(entry.tag);
  Node node;
  node.title = fmt::format("{} ({:02x}), revision {}", kind.name, entry.tag, entry.revision);
  if (entry.headerFlags != 0) node.Add("Flags", fmt::format("{:#04x}", entry.headerFlags));
  if (kind.render == nullptr || !kind.render(entry, node)) node.Add("Bytes", Hex({entry.bytes, entry.size}));
  return node;
}

}  // namespace

bool DescribeSection(const EdidBlock& block, Node& node) {
  const Owned<DispIdBlock> model(DispID_Open(&block));
  if (model == nullptr) return false;
  if (block.type == EDID_BLOCK_DISPID_EXT) {
    node.Add("Section checksum", ChecksumText({block.bytes + 1, model->sectionSize}));
  }
  node.Add("Version", fmt::format("DisplayID {}.{}", model->version, model->revision));
  node.Add(model->version >= 2 ? "Primary use case" : "Product type", ProductText(*model));
  node.Add("Further sections", fmt::format("{}", model->extensionCount));
  node.Add("Section size", fmt::format("{} bytes, {} used by data blocks", model->sectionSize, model->payloadUsed));
  for (const DispIdDataBlock& entry : std::span(model->dataBlocks, model->dataBlockCount)) {
    if (entry.bytes != nullptr) node.Child(DescribeDataBlock(entry));
  }
  return true;
}

}  // namespace reedid::tool
