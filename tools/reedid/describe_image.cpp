// The image, its blocks, and what several kinds of block show alike.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <optional>

#include "describe.h"
#include "hex_text.h"
#include "streams.h"

namespace reedid::tool {
namespace {

// EDID 1.4, 3.11: the tags of the blocks that follow, for as many as there are.
bool DescribeMap(const EdidBlock& block, unsigned index, const ByteSource& at, Node& node) {
  node.bytes = at(0);
  for (unsigned i = 1; i + 1u < block.size; ++i) {
    const unsigned tag = block.bytes[i];
    if (tag == 0) continue;
    const char* name = tag == 0x02 ? "CTA-861 extension" : tag == 0x70 ? "DisplayID extension" : "other";
    node.Add(fmt::format("Block {}", index + i), fmt::format("{:02x}, {}", tag, name), at(i));
  }
  return true;
}

bool DescribeContent(const EdidBlock& block, unsigned index, const ByteSource& at, Node& node) {
  switch (block.type) {
    case EDID_BLOCK_VESA:
      return DescribeBase(block, at, node);
    case EDID_BLOCK_MAP:
      return DescribeMap(block, index, at, node);
    case EDID_BLOCK_CEA:
      return DescribeCta(block, at, node);
    case EDID_BLOCK_DISPID_FIRST:
    case EDID_BLOCK_DISPID_NEXT:
    case EDID_BLOCK_DISPID_EXT:
      return DescribeSection(block, at, node);
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

void AddPorches(const char* name, const unsigned (&t)[4], ByteVector from, Node& node) {
  const auto [active, blank, front, sync] = t;
  if (front + sync > blank) {
    const std::string text = fmt::format("front porch {} and sync {} exceed the blanking {}", front, sync, blank);
    node.Add(name, text, std::move(from)).isFault = true;
    return;
  }
  node.Add(name,
           fmt::format("front porch {}, sync {}, back porch {}, blanking {}, total {}", front, sync,
                       blank - front - sync, blank, active + blank),
           std::move(from));
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

std::string TextValue(const char* text) {
  return *text == 0 ? "(empty)" : PrintableText(text);
}

Node DescribeTiming(const std::string& title, const TimingItem& item, TimingBytes from) {
  const DtdTiming& t = item.timing;
  Node node;
  node.title = fmt::format("{}: {}", title, TimingText(t));
  node.bytes = std::move(from.title);
  AddPorches("Horizontal", {t.hactive, t.hblank, t.hfrontPorch, t.hsyncWidth}, std::move(from.horizontal), node);
  AddPorches(t.interlaced ? "Vertical (field)" : "Vertical", {t.vactive, t.vblank, t.vfrontPorch, t.vsyncWidth},
             std::move(from.vertical), node);
  node.timings.push_back(item);
  return node;
}

// EDID 1.4, table 3.21.
Node DescribeDtd(const std::string& title, const DtdSlot& slot, const ByteSource& at) {
  TimingItem item = {TimingKind::kDetailed, 0, false, {}};
  const DtdTiming& t = item.timing;
  if (VESA_GetDTD(&slot, &item.timing) != 0) {
    Node node;
    node.title = title;
    node.AddBytes("Bytes", at.All());
    return node;
  }
  Node node = DescribeTiming(title, item, {at(0, 2), at({2, 3, 4, 8, 9, 11}), at({5, 6, 7, 10, 11})});
  node.Add("Sync", SyncText(slot), at(17));
  if (t.hImageSize != 0 || t.vImageSize != 0) {
    node.Add("Image size", fmt::format("{} x {} mm", t.hImageSize, t.vImageSize), at(12, 3));
  }
  if (slot.bytes[15] != 0 || slot.bytes[16] != 0) {
    node.Add("Border", fmt::format("{} pixels, {} lines", slot.bytes[15], slot.bytes[16]), at(15, 2));
  }
  node.AddRest(at);
  return node;
}

void AddChecksum(const std::string& name, std::span<const uint8_t> bytes, const ByteSource& at, Node& node) {
  const bool isRight = GetChecksum(bytes.data(), static_cast<uint32_t>(bytes.size())) == bytes.back();
  Field& field = node.Add(name, ChecksumText(bytes), at(bytes.size() - 1));
  field.isFault = !isRight;
  field.publicValue = isRight ? "right" : "wrong";
}

Node DescribeBlock(const EdidBlock& block, unsigned index) {
  const std::span<const uint8_t> bytes(block.bytes, block.size);
  const ByteSource at(bytes);
  Node node;
  node.title = fmt::format("Block {}: {}", index, BlockKindName(block));
  if (block.type == EDID_BLOCK_UNKNOWN) node.Add("Tag", fmt::format("{:02x}", bytes[0]), at(0));
  AddChecksum("Checksum", bytes, at, node);
  node.privateKeys.push_back("checksum");
  // Whole blocks of bytes may hold anything, and so may what is left, where a block has room for more, mostly zeros.
  if (!DescribeContent(block, index, at, node)) node.AddBytes("Bytes", at.All()).publicValue = kHidden;
  if (ByteVector rest = at.Rest(); std::any_of(rest.begin(), rest.end(), [](uint8_t byte) { return byte != 0; })) {
    node.AddBytes("Other bytes", std::move(rest)).publicValue = kHidden;
  }
  return node;
}

Node DescribeImage(const Image& image) {
  const auto blocks = image.blocks();
  size_t size = 0;
  for (const EdidBlock& block : blocks) size += block.size;
  Node node;
  node.title = fmt::format("{}: {}, {} {}, {} bytes", image.name(), image.IsEdid() ? "EDID" : "DisplayID",
                           blocks.size(), blocks.size() == 1 ? "block" : "blocks", size);
  if (!image.firstBlockFaults().empty()) {
    Field& field = node.Add("Block 0 is wrong", image.firstBlockFaults());
    field.isFault = true;
    field.publicValue = "in its count byte or its checksum";
  }
  std::optional<unsigned> count;
  CaptureDiagnostics([&] { count = OverrideCount(image); });  // the blocks' own accounts print them
  if (count) {
    node.Add("Extension override", fmt::format("{} extensions by the HDMI Forum's override block", *count));
  }
  for (unsigned i = 0; i < blocks.size(); ++i) node.Child(DescribeBlock(blocks[i], i));
  return node;
}

}  // namespace reedid::tool
