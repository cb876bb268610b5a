// The CTA-861 extension: its flags, its data blocks, its detailed timings.

#include "document/account/cta.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/account/cta_data_blocks.h"
#include "document/account/detailed_timing.h"
#include "document/account/records.h"
#include "document/account/values.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

constexpr size_t kCollectionStart = 4;
constexpr size_t kChecksumByte = 127;
constexpr size_t kDtdSize = sizeof(DtdSlot::bytes);

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
      node.Child(DescribeCtaDataBlock(entry, model, at.Part(offset, size)));
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
      node.Child(DescribeDtd(fmt::format("Detailed timing {}", ++number), slot, from)).extent = from.extent();
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
    if (entry.bytes != nullptr) node.Child(DescribeCtaDataBlock(entry, *model, at.Part(offset, entry.size)));
    offset += entry.size;
  }
  DescribeBehindTag0(block, *model, offset, at, node);
  DescribeSlots(block, *model, at, node);
  return true;
}

}  // namespace reedid::document
