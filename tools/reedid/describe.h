// Accounts of an image and its parts as trees.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "image.h"
#include "tree.h"

namespace reedid::tool {

Node DescribeImage(const Image& image);
// One block with its number, kind and checksum; a block that does not open is shown as bytes.
Node DescribeBlock(const EdidBlock& block, unsigned index);

// The content of one block, added to `node`; false when it does not open.
bool DescribeBase(const EdidBlock& block, Node& node);
bool DescribeCta(const EdidBlock& block, Node& node);
bool DescribeSection(const EdidBlock& block, Node& node);

Node DescribeDtd(const std::string& title, const DtdSlot& slot);

// The HDMI vendor blocks; false when the block cannot be decoded.
bool DescribeHdmi14b(const CeaDataBlock& entry, Node& node);
bool DescribeHdmiForum(const CeaDataBlock& entry, Node& node);

// "1.2.0.0"
std::string PhysAddrText(uint16_t address);

// A flag and what it means.
struct NamedFlag {
  uint8_t flag;
  const char* name;
};
// The names whose flags are set, with commas; `none` when there are none.
std::string SetFlags(std::span<const NamedFlag> flags, const char* none = "none");

}  // namespace reedid::tool
