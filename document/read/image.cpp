#include "document/read/image.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <new>
#include <utility>

#include "document/read/override_count.h"

namespace reedid::document {
namespace {

constexpr size_t kBlockSize = 128;
constexpr size_t kMaxBlocks = 255;
constexpr size_t kCountByte = 126;
constexpr size_t kSectionCountByte = 3;

[[noreturn]] void Fail(const std::string& name, const std::string& what) {
  throw Error(ErrorKind::kInput, fmt::format("{}: {}", name, what));
}

void CheckEdidSize(const std::string& name, size_t size) {
  if (size % kBlockSize != 0) {
    Fail(name,
         fmt::format("{} bytes are no whole number of 128-byte blocks; the EDID is cut off or has bytes added", size));
  }
  if (size > kMaxBlocks * kBlockSize) Fail(name, fmt::format("{} bytes; an EDID has at most 255 blocks", size));
}

// Anything may open as a chain of DisplayID sections; only what says version 1 or 2 is one.
void CheckSection(const std::string& name, std::span<const uint8_t> bytes) {
  const unsigned version = bytes[0] >> 4;
  if (version != 1 && version != 2) {
    Fail(name, "this is no EDID (00 ff ff ff ff ff ff 00 in front) and no DisplayID section (version 1 or 2)");
  }
}

size_t TotalSize(const Image& image) {
  size_t total = 0;
  for (const EdidBlock& block : image.blocks()) total += block.size;
  return total;
}

size_t CountByteIndex(const Image& image) {
  return image.IsEdid() ? kCountByte : kSectionCountByte;
}

std::string FindCountFault(const Image& image) {
  const size_t extensions = image.blocks().size() - 1;
  const unsigned count = BytesOf(image.blocks()[0])[CountByteIndex(image)];
  const auto overriding = OverrideCount(image.blocks());
  if (overriding && extensions > 1) {
    if (*overriding != extensions) return fmt::format("override count {}, but {} follow", *overriding, extensions);
    return count == 1 ? "" : fmt::format("count byte {}, must be 1 beside the HDMI Forum's override block", count);
  }
  return count == extensions ? "" : fmt::format("count byte {}, but {} follow", count, extensions);
}

// Empty when it is right.
std::string ChecksumFault(ByteView bytes) {
  const unsigned stored = bytes.back();
  const unsigned right = GetChecksum(bytes.data(), static_cast<uint32_t>(bytes.size()));
  return stored == right ? "" : fmt::format("checksum {:02x}, must be {:02x}", stored, right);
}

std::string FindFirstBlockFaults(const Image& image) {
  std::string faults = FindCountFault(image);
  const std::string checksum = ChecksumFault(BytesOf(image.blocks()[0]));
  if (!faults.empty() && !checksum.empty()) faults += "; ";
  return faults + checksum;
}

// A DisplayID extension has a section inside, with a checksum of its own behind the payload.
std::string SectionFault(const EdidBlock& block) {
  constexpr size_t kOverhead = 5;
  const ByteView bytes = BytesOf(block);
  if (block.type != EDID_BLOCK_DISPID_EXT || bytes.size() != kBlockSize) return "";
  const size_t size = bytes[2] + kOverhead;
  const std::string fault = size < kBlockSize - 1 ? ChecksumFault(bytes.subspan(1, size)) : "";
  return fault.empty() ? "" : "section " + fault;
}

bool IsMapWrong(const Image& image, size_t index) {
  const auto blocks = image.blocks();
  for (size_t at = 1; at < kBlockSize - 1; ++at) {
    const uint8_t tag = index + at < blocks.size() ? blocks[index + at].bytes[0] : uint8_t{0};
    if (blocks[index].bytes[at] != tag) return true;
  }
  return false;
}

Notes FindFaults(const Image& image) {
  Notes faults;
  for (size_t i = 0; i < image.blocks().size(); ++i) {
    const EdidBlock& block = image.blocks()[i];
    const std::string map = block.type == EDID_BLOCK_MAP && IsMapWrong(image, i) ? "wrong block map" : "";
    const std::string sum = i == 0 ? FindFirstBlockFaults(image) : ChecksumFault(BytesOf(block));
    for (const std::string& fault : {map, SectionFault(block), sum}) {
      if (!fault.empty()) faults.push_back(fmt::format("block {}: {}", i, fault));
    }
  }
  return faults;
}

}  // namespace

Image Image::FromBytes(const std::string& name, std::span<const uint8_t> bytes) {
  const bool edid = bytes.size() >= 8 && isEdidHeader(bytes.data()) != 0;
  if (edid) CheckEdidSize(name, bytes.size());
  if (!edid && !bytes.empty()) CheckSection(name, bytes);
  Image image(name, reedid::Image(bytes));
  if (!image.opened_ || image.blocks().empty()) {
    Fail(name, bytes.empty() ? "empty" : "no section of it is whole; compare it with what the display sent");
  }
  if (TotalSize(image) != bytes.size()) {
    Fail(name, fmt::format("{} of {} bytes belong to no section; cut them off, or complete the last section",
                           bytes.size() - TotalSize(image), bytes.size()));
  }
  image.firstBlockFaults_ = FindFirstBlockFaults(image);
  image.faults_ = FindFaults(image);
  return image;
}

ByteVector Image::Generate(Notes& notes) const {
  if (!faults_.empty()) {
    notes.push_back(fmt::format("{}: corrected in the output (was: {})", name_, fmt::join(faults_, "; ")));
  }
  ByteVector bytes = opened_.Bytes();
  if (bytes.empty()) throw std::bad_alloc();
  return bytes;
}

const char* BlockKindName(const EdidBlock& block) {
  static constexpr const char* kNames[] = {
      "extension of unknown kind", "base block",         "block map", "CTA-861 extension", "first DisplayID section",
      "further DisplayID section", "DisplayID extension"};
  if (block.type == EDID_BLOCK_UNKNOWN && block.bytes != nullptr) {
    if (block.bytes[0] == EDID_EXTENSION_DISPLAY_INFO) return "display information extension";
    if (block.bytes[0] == EDID_EXTENSION_VIDEO_TIMING) return "video timing extension";
  }
  return block.type < std::size(kNames) ? kNames[block.type] : kNames[0];
}

}  // namespace reedid::document
