// The image, its blocks, and what several kinds of block show alike.

#include "document/account/image_account.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/account/base_block.h"
#include "document/account/checksum.h"
#include "document/account/cta.h"
#include "document/account/displayid.h"
#include "document/account/extensions.h"
#include "document/read/override_count.h"

namespace reedid::document {
namespace {

// EDID 1.4, 3.11: the tags of the blocks that follow, for as many as there are.
bool DescribeMap(const EdidBlock& block, unsigned index, const ByteSource& at, Node& node) {
  node.bytes = at(0);
  for (unsigned i = 1; i + 1u < block.size; ++i) {
    const unsigned tag = block.bytes[i];
    if (tag == 0) continue;
    const char* name = tag == EDID_EXTENSION_CTA         ? "CTA-861 extension"
                       : tag == EDID_EXTENSION_DISPLAYID ? "DisplayID extension"
                                                         : "other";
    node.Add(fmt::format("Block {}", index + i), fmt::format("{:02x}, {}", tag, name), at(i));
  }
  return true;
}

// Kinds that the library opens as one record.
bool DescribeOther(const EdidBlock& block, const ByteSource& at, Node& node) {
  switch (block.bytes[0]) {
    case EDID_EXTENSION_DISPLAY_INFO:
      return DescribeDisplayInfo(block, at, node);
    case EDID_EXTENSION_VIDEO_TIMING:
      return DescribeVideoTimings(block, at, node);
    default:
      return false;
  }
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
      return DescribeOther(block, at, node);
  }
}

}  // namespace

Node DescribeBlock(const EdidBlock& block, unsigned index) {
  const std::span<const uint8_t> bytes(block.bytes, block.size);
  const ByteSource at(bytes);
  Node node;
  node.title = fmt::format("Block {}: {}", index, BlockKindName(block));
  node.kind = BlockKindName(block);
  node.block.assign(bytes.begin(), bytes.end());
  if (block.type == EDID_BLOCK_UNKNOWN) node.Add("Tag", fmt::format("{:02x}", bytes[0]), at(0));
  AddChecksum("Checksum", bytes, at, node);
  node.privateKeys.push_back("checksum");
  // Whole blocks of bytes may hold anything, and so may what is left, where a block has room for more, mostly zeros.
  if (!DescribeContent(block, index, at, node)) node.AddBytes("Bytes", at.All()).publicValue = kHidden;
  if (SourceBytes rest = at.Rest(); std::any_of(rest.begin(), rest.end(), [](uint8_t byte) { return byte != 0; })) {
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
  if (const auto count = OverrideCount(blocks)) {
    node.Add("Extension override", fmt::format("{} extensions by the HDMI Forum's override block", *count));
  }
  for (unsigned i = 0; i < blocks.size(); ++i) node.Child(DescribeBlock(blocks[i], i));
  return node;
}

}  // namespace reedid::document
