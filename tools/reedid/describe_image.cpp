// The image, its blocks, and what several kinds of block show alike.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "describe.h"
#include "hex_text.h"

namespace reedid::tool {
namespace {

bool DescribeContent(const EdidBlock& block, Node& node) {
  switch (block.type) {
    case EDID_BLOCK_VESA:
      return DescribeBase(block, node);
    case EDID_BLOCK_CEA:
      return DescribeCta(block, node);
    case EDID_BLOCK_DISPID_FIRST:
    case EDID_BLOCK_DISPID_NEXT:
    case EDID_BLOCK_DISPID_EXT:
      return DescribeSection(block, node);
    default:
      return false;
  }
}

std::string SyncText(const DtdSlot& slot) {
  const unsigned bits = slot.bytes[17];
  if ((bits & 0x18) == 0x18)
    return fmt::format("digital separate, horizontal {}, vertical {}", bits & 2 ? '+' : '-', bits & 4 ? '+' : '-');
  if ((bits & 0x18) == 0x10) return fmt::format("digital composite, horizontal {}", bits & 2 ? '+' : '-');
  return (bits & 0x08) != 0 ? "bipolar analog composite" : "analog composite";
}

std::string PorchText(unsigned front, unsigned sync, unsigned active, unsigned blank) {
  if (front + sync > blank) return fmt::format("front porch {} and sync {} exceed the blanking {}", front, sync, blank);
  return fmt::format("front porch {}, sync {}, back porch {}, blanking {}, total {}", front, sync, blank - front - sync,
                     blank, active + blank);
}

}  // namespace

std::string PrintableText(const char* text) {
  std::string shown;
  for (; *text != 0; ++text) {
    const auto c = static_cast<uint8_t>(*text);
    shown += c >= 0x20 && c < 0x7F ? std::string(1, *text) : fmt::format("\\x{:02x}", c);
  }
  return shown;
}

std::string SetFlags(std::span<const NamedFlag> flags, const char* none) {
  std::vector<const char*> names;
  for (const NamedFlag& flag : flags) {
    if (flag.flag != 0) names.push_back(flag.name);
  }
  return names.empty() ? none : fmt::format("{}", fmt::join(names, ", "));
}

Node DescribeTiming(const std::string& title, const TimingItem& item) {
  const DtdTiming& t = item.timing;
  Node node;
  node.title = fmt::format("{}: {}", title, TimingText(t));
  node.Add("Horizontal", PorchText(t.hfrontPorch, t.hsyncWidth, t.hactive, t.hblank));
  node.Add(t.interlaced ? "Vertical (field)" : "Vertical", PorchText(t.vfrontPorch, t.vsyncWidth, t.vactive, t.vblank));
  node.timings.push_back(item);
  return node;
}

Node DescribeDtd(const std::string& title, const DtdSlot& slot) {
  TimingItem item = {TimingKind::kDetailed, 0, false, {}};
  const DtdTiming& t = item.timing;
  if (VESA_GetDTD(&slot, &item.timing) != 0) return Node{title, {{"Bytes", Hex(slot.bytes)}}, {}, {}, {}};
  Node node = DescribeTiming(title, item);
  node.Add("Sync", SyncText(slot));
  if (t.hImageSize != 0 || t.vImageSize != 0) {
    node.Add("Image size", fmt::format("{} x {} mm", t.hImageSize, t.vImageSize));
  }
  if (slot.bytes[15] != 0 || slot.bytes[16] != 0) {
    node.Add("Border", fmt::format("{} pixels, {} lines", slot.bytes[15], slot.bytes[16]));
  }
  return node;
}

Node DescribeBlock(const EdidBlock& block, unsigned index) {
  const std::span<const uint8_t> bytes(block.bytes, block.size);
  Node node;
  node.title = fmt::format("Block {}: {}", index, BlockKindName(block));
  if (block.type == EDID_BLOCK_UNKNOWN) node.Add("Tag", fmt::format("{:02x}", bytes[0]));
  node.Add("Checksum", ChecksumText(bytes));
  if (!DescribeContent(block, node)) node.Add("Bytes", Hex(bytes));
  return node;
}

Node DescribeImage(const Image& image) {
  const auto blocks = image.blocks();
  size_t size = 0;
  for (const EdidBlock& block : blocks) size += block.size;
  Node node;
  node.title = fmt::format("{}: {}, {} {}, {} bytes", image.name(), image.IsEdid() ? "EDID" : "DisplayID",
                           blocks.size(), blocks.size() == 1 ? "block" : "blocks", size);
  if (!image.firstBlockFaults().empty()) node.Add("Block 0 is wrong", image.firstBlockFaults());
  if (const auto count = OverrideCount(image)) {
    node.Add("Extension override", fmt::format("{} extensions by the HDMI Forum's override block", *count));
  }
  for (unsigned i = 0; i < blocks.size(); ++i) node.Child(DescribeBlock(blocks[i], i));
  return node;
}

}  // namespace reedid::tool
