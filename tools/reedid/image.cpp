#include "image.h"

#include <fmt/format.h>

#include "input.h"
#include "streams.h"

namespace reedid::tool {
namespace {

constexpr size_t kBlockSize = 128;
constexpr size_t kMaxBlocks = 255;
constexpr size_t kCountByte = 126;
constexpr size_t kSectionCountByte = 3;
constexpr uint8_t kExtendedTag = 7;
constexpr uint8_t kOverrideExtTag = 0x78;

[[noreturn]] void Fail(const std::string& name, const std::string& what) {
  throw ToolError(Exit::kInput, fmt::format("{}: {}", name, what));
}

void CheckEdidSize(const std::string& name, size_t size) {
  if (size % kBlockSize != 0) {
    Fail(name,
         fmt::format("{} bytes are no whole number of 128-byte blocks; the EDID is cut off or has bytes added", size));
  }
  if (size > kMaxBlocks * kBlockSize) Fail(name, fmt::format("{} bytes; an EDID has at most 255 blocks", size));
}

// Anything may open as a chain of DisplayID sections; only what says version 1 or 2 is one.
void CheckSection(const std::string& name, const ByteVector& bytes) {
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

std::span<const uint8_t> BytesOf(const EdidBlock& block) {
  return {block.bytes, block.size};
}

size_t CountByteIndex(const Image& image) {
  return image.IsEdid() ? kCountByte : kSectionCountByte;
}

std::string FindFirstBlockFaults(const Image& image) {
  const auto first = BytesOf(image.blocks()[0]);
  const size_t extensions = image.blocks().size() - 1;
  std::string faults;
  if (const unsigned count = first[CountByteIndex(image)]; count != extensions) {
    faults = fmt::format("count byte {}, but {} follow", count, extensions);
    if (OverrideCount(image) == extensions) faults += ", as the HDMI Forum's override block says";
  }
  const unsigned stored = first.back();
  if (const unsigned right = GetChecksum(first.data(), static_cast<uint32_t>(first.size())); stored != right) {
    faults += fmt::format("{}checksum {:02x}, must be {:02x}", faults.empty() ? "" : "; ", stored, right);
  }
  return faults;
}

// Visits every data block of every CTA extension until `visit` says true.
template <class Visit>
void VisitDataBlocks(const Image& image, Visit visit) {
  for (const EdidBlock& block : image.blocks()) {
    if (block.type != EDID_BLOCK_CEA) continue;
    const Owned<CeaBlock> model(CEA_Open(&block));
    if (model == nullptr) continue;
    for (const CeaDataBlock& entry : std::span(model->dataBlocks, model->dataBlockCount)) {
      if (entry.bytes != nullptr && visit(entry)) return;
    }
  }
}

}  // namespace

Image Image::Read(const std::string& name) {
  return FromBytes(ShownName(name), ReadInput(name));
}

Image Image::FromBytes(const std::string& name, const ByteVector& bytes) {
  const bool edid = bytes.size() >= 8 && isEdidHeader(bytes.data()) != 0;
  if (edid) CheckEdidSize(name, bytes.size());
  if (!edid && !bytes.empty()) CheckSection(name, bytes);
  Image image(name, Owned<EdidHandle>(EDID_Open(bytes.data(), static_cast<uint32_t>(bytes.size()))));
  if (image.handle_ == nullptr || image.blocks().empty()) {
    Fail(name, "cannot be opened, for the reason given above; compare it with what the display sent");
  }
  if (TotalSize(image) != bytes.size()) {
    Fail(name, fmt::format("{} of {} bytes belong to no section; cut them off, or complete the last section",
                           bytes.size() - TotalSize(image), bytes.size()));
  }
  image.firstBlockFaults_ = FindFirstBlockFaults(image);
  return image;
}

ByteVector Image::Generate() {
  if (!firstBlockFaults_.empty()) {
    Note(fmt::format("{}: block 0 corrected in the output (was: {})", name_, firstBlockFaults_));
  }
  // A block that is not the handle's own deletes nothing but refreshes count and checksum of block 0.
  const EdidBlock foreign = {};
  EDID_DeleteBlock(handle(), &foreign);
  ByteVector bytes(TotalSize(*this));
  if (EDID_GenerateEdid(handle(), bytes.data(), static_cast<uint32_t>(bytes.size())) < 0) {
    throw ToolError(Exit::kRefused, fmt::format("{}: the library refused to write the image; see above", name_));
  }
  return bytes;
}

std::string ShownName(const std::string& name) {
  return name == "-" ? "standard input" : name;
}

std::string ChecksumText(std::span<const uint8_t> bytes) {
  const unsigned stored = bytes.back();
  const unsigned right = GetChecksum(bytes.data(), static_cast<uint32_t>(bytes.size()));
  if (stored == right) return fmt::format("{:02x}, right", stored);
  return fmt::format("{:02x}, wrong (must be {:02x})", stored, right);
}

const char* BlockKindName(const EdidBlock& block) {
  static constexpr const char* kNames[] = {
      "extension of unknown kind", "base block",         "block map", "CTA-861 extension", "first DisplayID section",
      "further DisplayID section", "DisplayID extension"};
  return block.type < std::size(kNames) ? kNames[block.type] : kNames[0];
}

std::optional<unsigned> OverrideCount(const Image& image) {
  std::optional<unsigned> count;
  VisitDataBlocks(image, [&count](const CeaDataBlock& entry) {
    if (entry.tag == kExtendedTag && entry.extTag == kOverrideExtTag && entry.size >= 3) count = entry.bytes[2];
    return count.has_value();
  });
  return count;
}

ByteVector FindHdmiBytes(const Image& image) {
  ByteVector bytes;
  VisitDataBlocks(image, [&bytes](const CeaDataBlock& entry) {
    if (entry.tag != 3 || entry.size < 4 || entry.size > 31 || CEA_GetVSDBType(&entry) != VSDB_HDMI14B) return false;
    bytes.assign(entry.bytes, entry.bytes + entry.size);
    return true;
  });
  return bytes;
}

}  // namespace reedid::tool
