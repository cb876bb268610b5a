#include "document/read/image.h"

#include <fmt/format.h>

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

std::string FindFirstBlockFaults(const Image& image) {
  const ByteView first = BytesOf(image.blocks()[0]);
  const size_t extensions = image.blocks().size() - 1;
  std::string faults;
  if (const unsigned count = first[CountByteIndex(image)]; count != extensions) {
    faults = fmt::format("count byte {}, but {} follow", count, extensions);
    if (OverrideCount(image.blocks()) == extensions) faults += ", as the HDMI Forum's override block says";
  }
  const unsigned stored = first.back();
  if (const unsigned right = GetChecksum(first.data(), static_cast<uint32_t>(first.size())); stored != right) {
    faults += fmt::format("{}checksum {:02x}, must be {:02x}", faults.empty() ? "" : "; ", stored, right);
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
    Fail(name, "cannot be opened, for the reason given above; compare it with what the display sent");
  }
  if (TotalSize(image) != bytes.size()) {
    Fail(name, fmt::format("{} of {} bytes belong to no section; cut them off, or complete the last section",
                           bytes.size() - TotalSize(image), bytes.size()));
  }
  image.firstBlockFaults_ = FindFirstBlockFaults(image);
  return image;
}

ByteVector Image::Generate(Notes& notes) {
  if (!firstBlockFaults_.empty()) {
    notes.push_back(fmt::format("{}: block 0 corrected in the output (was: {})", name_, firstBlockFaults_));
  }
  // A block that is not the handle's own deletes nothing but refreshes count and checksum of block 0.
  const EdidBlock foreign = {};
  EDID_DeleteBlock(handle(), &foreign);
  ByteVector bytes = opened_.Bytes();
  if (bytes.empty()) {
    throw Error(ErrorKind::kRefused, fmt::format("{}: the library refused to write the image; see above", name_));
  }
  return bytes;
}

const char* BlockKindName(const EdidBlock& block) {
  static constexpr const char* kNames[] = {
      "extension of unknown kind", "base block",         "block map", "CTA-861 extension", "first DisplayID section",
      "further DisplayID section", "DisplayID extension"};
  return block.type < std::size(kNames) ? kNames[block.type] : kNames[0];
}

}  // namespace reedid::document
