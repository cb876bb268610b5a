/*
 * HDMI 1.4b, table 8-16, from byte 9 on. Latencies: a byte of video and one of audio, when byte 8 bit 7 is set, and two
 * more for interlaced formats, when bit 6 is set too. Behind them, when bit 5 is set:
 *
 *   +0  bit 7 3D present, bits 6..5 3D multi present, bits 4..3 image size
 *   +1  bits 7..5 number of HDMI VICs, bits 4..0 bytes of the 3D part
 *   +2  HDMI VICs; then the 3D part: structures (2) and mask (2) as 3D multi present says, then entries of 1 or 2 bytes
 *
 * The library's record takes the bytes behind the first pair for the interlaced one without asking; here, the flag is.
 */

#include "document/account/cta_hdmi_video.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace reedid::document {
namespace {

constexpr size_t kFlagsByte = 8;

std::string LatencyText(unsigned code, const char* what) {
  if (code == 0) return fmt::format("{} unknown", what);
  if (code == 255) return fmt::format("{} not supported", what);
  return code > 251 ? fmt::format("{} reserved", what) : fmt::format("{} {} ms", what, 2 * (code - 1));
}

void AddLatency(const char* name, const CeaDataBlock& entry, size_t first, const ByteSource& at, Node& node) {
  node.Add(
      name,
      fmt::format("{}, {}", LatencyText(entry.bytes[first], "video"), LatencyText(entry.bytes[first + 1], "audio")),
      at(first, 2));
}

// Where the video part begins.
size_t AddLatencies(const CeaDataBlock& entry, const ByteSource& at, Node& node) {
  const unsigned flags = entry.bytes[kFlagsByte];
  const size_t first = kFlagsByte + 1, second = first + 2;
  if ((flags & 0x80) == 0 || entry.size < second) return first;
  AddLatency("Latency", entry, first, at, node);
  if ((flags & 0x40) == 0 || entry.size < second + 2) return second;
  AddLatency("Interlaced latency", entry, second, at, node);
  return second + 2;
}

const char* StructureText(unsigned code) {
  static constexpr const char* kNames[] = {"frame packing",       "field alternative", "line alternative",
                                           "side by side (full)", "L + depth",         "L + depth + graphics",
                                           "top and bottom",      "reserved",          "side by side (half)"};
  return code < std::size(kNames) ? kNames[code] : "reserved";
}

// How side by side (half) is sampled.
const char* DetailText(unsigned code) {
  static constexpr const char* kNames[] = {
      "any sampling", "horizontal",       "reserved",          "reserved",          "reserved",          "reserved",
      "any quincunx", "quincunx odd/odd", "quincunx odd/even", "quincunx even/odd", "quincunx even/even"};
  return code < std::size(kNames) ? kNames[code] : "reserved";
}

std::string StructuresText(unsigned bits) {
  std::vector<std::string> names;
  for (unsigned i = 0; i < 15; ++i) {
    if ((bits >> i & 1) != 0) names.emplace_back(StructureText(i));
  }
  if ((bits >> 15 & 1) != 0) names.emplace_back("side by side (half, quincunx)");
  return names.empty() ? "none" : fmt::format("{}", fmt::join(names, ", "));
}

// Descriptors of the Video Data Blocks, from 1 on.
std::string MaskText(unsigned bits) {
  std::vector<unsigned> places;
  for (unsigned i = 0; i < 16; ++i) {
    if ((bits >> i & 1) != 0) places.push_back(i + 1);
  }
  return places.empty() ? "none" : fmt::format("{}", fmt::join(places, ", "));
}

void AddVics(std::span<const uint8_t> vics, SourceBytes from, Node& node) {
  static constexpr const char* kNames[] = {"reserved", "3840x2160 30 Hz", "3840x2160 25 Hz", "3840x2160 24 Hz",
                                           "4096x2160 24 Hz"};
  std::vector<std::string> texts;
  for (const unsigned vic : vics) {
    texts.push_back(fmt::format("{} ({})", vic, vic < std::size(kNames) ? kNames[vic] : "reserved"));
  }
  node.Add("HDMI VICs", texts.empty() ? "none" : fmt::format("{}", fmt::join(texts, ", ")), std::move(from));
}

void Add3dEntries(std::span<const uint8_t> bytes, const ByteSource& at, Node& node) {
  for (size_t i = 0; i < bytes.size();) {
    const unsigned structure = bytes[i] & 0x0F;
    const size_t size = structure < 8 ? 1 : 2;
    if (i + size > bytes.size()) return;
    const std::string detail = size == 1 ? "" : fmt::format(", {}", DetailText(bytes[i + 1] >> 4));
    node.Add(fmt::format("3D of descriptor {}", (bytes[i] >> 4) + 1), StructureText(structure) + detail, at(i, size));
    i += size;
  }
}

void Add3d(unsigned multi, std::span<const uint8_t> bytes, const ByteSource& at, Node& node) {
  size_t used = 0;
  const auto word = [&bytes](size_t i) { return unsigned{bytes[i]} << 8 | bytes[i + 1]; };
  if ((multi == 1 || multi == 2) && bytes.size() >= 2) {
    const char* of = multi == 1 ? "3D of descriptors 1-16" : "3D of the descriptors below";
    node.Add(of, StructuresText(word(0)), at(0, 2));
    used = 2;
  }
  if (multi == 2 && bytes.size() >= 4) {
    node.Add("3D descriptors", MaskText(word(2)), at(2, 2));
    used = 4;
  }
  Add3dEntries(bytes.subspan(used), at.Part(used), node);
}

}  // namespace

void AddHdmiVideo(const CeaDataBlock& entry, const ByteSource& at, Node& node) {
  static constexpr const char* kSizes[] = {"not stated", "aspect ratio right", "right to 1 cm", "in units of 5 cm"};
  if (entry.size <= kFlagsByte) return;
  const size_t first = AddLatencies(entry, at, node);
  if ((entry.bytes[kFlagsByte] & 0x20) == 0 || entry.size < first + 2) return;
  const std::span<const uint8_t> bytes(entry.bytes + first, entry.size - first);
  node.Add("Image size", kSizes[bytes[0] >> 3 & 3], at(first));
  if ((bytes[0] & 0x80) != 0) node.Add("3D", "all formats that HDMI requires", at(first));
  const size_t vics = std::min<size_t>(bytes[1] >> 5, bytes.size() - 2);
  AddVics(bytes.subspan(2, vics), at(first + 1, 1 + vics), node);
  const size_t size3d = std::min<size_t>(bytes[1] & 0x1F, bytes.size() - 2 - vics);
  Add3d(bytes[0] >> 5 & 3, bytes.subspan(2 + vics, size3d), at.Part(first + 2 + vics, size3d), node);
}

}  // namespace reedid::document
