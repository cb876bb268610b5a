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

// The content of one block, added to `node`; false when it does not open. `at` hands out the block's bytes; the
// checksum is left to DescribeBlock.
bool DescribeBase(const EdidBlock& block, const ByteSource& at, Node& node);
bool DescribeCta(const EdidBlock& block, const ByteSource& at, Node& node);
bool DescribeSection(const EdidBlock& block, const ByteSource& at, Node& node);

// One of the four descriptors of a base block.
Node DescribeDescriptor(const VesaBlock& model, unsigned index, const ByteSource& at);
// Standard timings; `at` has the two bytes of each from 0 on.
void AddStandard(std::span<const StdTiming> timings, const ByteSource& at, Node& node);

// A stored checksum and whether it is right; the bytes end with it. From the other bytes and the checksum, one that is
// hidden could be computed, so the checksum itself is private.
void AddChecksum(const std::string& name, std::span<const uint8_t> bytes, const ByteSource& at, Node& node);

// A detailed timing with its porches; as an EDID descriptor, also with sync, image size and border.
struct TimingBytes {
  ByteVector title, horizontal, vertical;
};
Node DescribeTiming(const std::string& title, const TimingItem& item, TimingBytes from = {});
Node DescribeDtd(const std::string& title, const DtdSlot& slot, const ByteSource& at);

// One DisplayID 20-byte descriptor, type I or VII.
TimingBytes TypeIBytes(const ByteSource& at);

// CTA data blocks that list timings or HDR metadata; false when the block cannot be decoded. `at` has the data block.
bool DescribeVideo(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool Describe420Video(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool Describe420Map(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeFormatPreference(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeTypeVII(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeTypeVIII(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeTypeX(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeStaticHdr(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);

// Timing codes and formula timings, one field each; DisplayID and CTA-861 share their forms and their payloads.
void AddTimingCodes(const TimingCodeRecord& record, const ByteSource& payload, Node& node);
void AddFormulas(std::span<const CvtTiming> timings, size_t size, const ByteSource& payload, Node& node);

// Characters outside ASCII as \\x1b.
std::string PrintableText(const char* text);
// The same as a value, which is never empty.
std::string TextValue(const char* text);

// A DisplayID data block; false when it cannot be decoded.
bool DescribeSectionBlock(const DispIdDataBlock& entry, const ByteSource& at, Node& node);

// The HDMI vendor blocks; false when the block cannot be decoded.
bool DescribeHdmi14b(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeHdmiForum(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);

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
