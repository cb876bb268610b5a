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

// A detailed timing with its porches; as an EDID descriptor, also with sync, image size and border.
Node DescribeTiming(const std::string& title, const TimingItem& item);
Node DescribeDtd(const std::string& title, const DtdSlot& slot);

// CTA data blocks that list timings or HDR metadata; false when the block cannot be decoded.
bool DescribeVideo(const CeaDataBlock& entry, const CeaBlock& model, Node& node);
bool Describe420Video(const CeaDataBlock& entry, const CeaBlock& model, Node& node);
bool Describe420Map(const CeaDataBlock& entry, const CeaBlock& model, Node& node);
bool DescribeFormatPreference(const CeaDataBlock& entry, const CeaBlock& model, Node& node);
bool DescribeTypeVII(const CeaDataBlock& entry, const CeaBlock& model, Node& node);
bool DescribeTypeVIII(const CeaDataBlock& entry, const CeaBlock& model, Node& node);
bool DescribeTypeX(const CeaDataBlock& entry, const CeaBlock& model, Node& node);
bool DescribeStaticHdr(const CeaDataBlock& entry, const CeaBlock& model, Node& node);

// Timing codes and formula timings, one field each; DisplayID and CTA-861 share their forms.
void AddTimingCodes(const TimingCodeRecord& record, Node& node);
void AddFormulas(std::span<const CvtTiming> timings, Node& node);

// Characters outside ASCII as \\x1b.
std::string PrintableText(const char* text);

// A DisplayID data block; false when it cannot be decoded.
bool DescribeSectionBlock(const DispIdDataBlock& entry, Node& node);

// The HDMI vendor blocks; false when the block cannot be decoded.
bool DescribeHdmi14b(const CeaDataBlock& entry, Node& node);
bool DescribeHdmiForum(const CeaDataBlock& entry, Node& node);

// "1.2.0.0"
std::string PhysAddrText(uint16_t address);
// The other way, also from "0x1200". Throws Exit::kUsage; says when no port can have the address.
uint16_t RequireAddress(const std::string& text);

// A flag and what it means.
struct NamedFlag {
  uint8_t flag;
  const char* name;
};
// The names whose flags are set, with commas; `none` when there are none.
std::string SetFlags(std::span<const NamedFlag> flags, const char* none = "none");

}  // namespace reedid::tool
