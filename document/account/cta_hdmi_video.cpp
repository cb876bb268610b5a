/*
 * HDMI 1.4b, table 8-16, from byte 9 on. Latencies: a byte of video and one of audio, when byte 8 bit 7 is set, and two
 * more for interlaced formats, when bit 6 is set too. Behind them, when bit 5 is set:
 *
 *   +0  bit 7 3D present, bits 6..5 3D multi present, bits 4..3 image size
 *   +1  bits 7..5 number of HDMI VICs, bits 4..0 bytes of the 3D part
 *   +2  HDMI VICs; then the 3D part: structures (2) and mask (2) as 3D multi present says, then entries of 1 or 2 bytes
 */

#include "document/account/cta_hdmi_video.h"

#include <fmt/format.h>

#include "document/account/values.h"

namespace reedid::document {
namespace {

constexpr size_t kLatencies = 9;
constexpr unsigned kDetailed = 8;  // the first 3D structure that has a detail

std::string LatencyText(unsigned code, const char* what) {
  if (code == 0) return fmt::format("{} unknown", what);
  if (code == 255) return fmt::format("{} not supported", what);
  return code > 251 ? fmt::format("{} reserved", what) : fmt::format("{} {} ms", what, 2 * (code - 1));
}

// Where the video part begins.
size_t AddLatencies(const H14b3dRecord& r, const ByteSource& at, Node& node) {
  const auto add = [&](const char* name, unsigned video, unsigned audio, size_t first) {
    if (at.size() < first + 2) return;
    node.Add(name, fmt::format("{}, {}", LatencyText(video, "video"), LatencyText(audio, "audio")), at(first, 2));
  };
  if (r.latencyPresent == 0) return kLatencies;
  add("Latency", r.videoLatency, r.audioLatency, kLatencies);
  if (r.iLatencyPresent == 0) return kLatencies + 2;
  add("Interlaced latency", r.iVideoLatency, r.iAudioLatency, kLatencies + 2);
  return kLatencies + 4;
}

const char* StructureText(unsigned code) {
  static constexpr const char* kNames[] = {"frame packing",       "field alternative", "line alternative",
                                           "side by side (full)", "L + depth",         "L + depth + graphics",
                                           "top and bottom",      "reserved",          "side by side (half)"};
  return NameOf(kNames, code);
}

// How side by side (half) is sampled.
const char* DetailText(unsigned code) {
  static constexpr const char* kNames[] = {
      "any sampling", "horizontal",       "reserved",          "reserved",          "reserved",          "reserved",
      "any quincunx", "quincunx odd/odd", "quincunx odd/even", "quincunx even/odd", "quincunx even/even"};
  return NameOf(kNames, code);
}

std::string StructuresText(unsigned bits) {
  std::vector<std::string> names;
  for (unsigned i = 0; i < 15; ++i) {
    if ((bits >> i & 1) != 0) names.emplace_back(StructureText(i));
  }
  if ((bits >> 15 & 1) != 0) names.emplace_back("side by side (half, quincunx)");
  return Joined(names);
}

// The descriptor of this number, from 0 on, of the Video Data Blocks of the extension: ", VIC 16".
std::string VicText(const CeaBlock& model, unsigned number) {
  for (const CeaDataBlock& entry : std::span(model.dataBlocks, model.dataBlockCount)) {
    VdbRecord record;
    if (entry.tag != CEA_TAG_VIDEO || entry.bytes == nullptr || CEA_GetVDB(&entry, &record) != 0) continue;
    if (number < record.vicCount) return fmt::format(", VIC {}", CtaVic(record.vics[number]));
    number -= record.vicCount;
  }
  return "";
}

// Descriptors of the Video Data Blocks, from 1 on.
std::string MaskText(unsigned bits) {
  std::vector<std::string> places;
  for (unsigned i = 0; i < 16; ++i) {
    if ((bits >> i & 1) != 0) places.push_back(fmt::format("{}", i + 1));
  }
  return Joined(places);
}

void AddVics(std::span<const uint8_t> vics, SourceBytes from, Node& node) {
  static constexpr const char* kNames[] = {"reserved", "3840x2160 30 Hz", "3840x2160 25 Hz", "3840x2160 24 Hz",
                                           "4096x2160 24 Hz"};
  std::vector<std::string> texts;
  for (const unsigned vic : vics) texts.push_back(fmt::format("{} ({})", vic, NameOf(kNames, vic)));
  node.Add("HDMI VICs", Joined(texts), std::move(from));
}

void Add3dEntries(const H14b3dRecord& r, const CeaBlock& model, const ByteSource& at, Node& node) {
  size_t first = 0;
  for (const H14b3dEntry& entry : std::span(r.entries, r.entryCount)) {
    const bool isDetailed = entry.threeD_Structure >= kDetailed;
    const std::string detail = isDetailed ? fmt::format(", {}", DetailText(entry.threeD_Detail)) : "";
    node.Add(fmt::format("3D of descriptor {}{}", entry.twoD_VIC_order + 1, VicText(model, entry.twoD_VIC_order)),
             StructureText(entry.threeD_Structure) + detail, at(first, isDetailed ? 2 : 1));
    first += isDetailed ? 2 : 1;
  }
}

void Add3d(const H14b3dRecord& r, const CeaBlock& model, const ByteSource& at, Node& node) {
  size_t used = 0;
  if (r.threeD_Multi_present == 1 || r.threeD_Multi_present == 2) {
    const bool all = r.threeD_Multi_present == 1;
    node.Add(all ? "3D of descriptors 1-16" : "3D of the descriptors below", StructuresText(r.threeD_Structure_ALL),
             at(0, 2));
    used = 2;
    if (!all) node.Add("3D descriptors", MaskText(r.threeD_MASK), at(2, 2));
    if (!all) used = 4;
  }
  Add3dEntries(r, model, at.Part(used), node);
}

}  // namespace

void AddHdmiVideo(const H14b3dRecord& r, const CeaBlock& model, const ByteSource& at, Node& node) {
  static constexpr const char* kSizes[] = {"not stated", "aspect ratio right", "right to 1 cm", "in units of 5 cm"};
  const size_t first = AddLatencies(r, at, node);
  if (r.hdmiVideoPresent == 0 || at.size() < first + 2) return;
  node.Add("Image size", NameOf(kSizes, r.imageSize), at(first));
  if (r.threeD_present != 0) node.Add("3D", "all formats that HDMI requires", at(first));
  AddVics({r.hdmiVics, r.hdmiVicLen}, at(first + 1, 1u + r.hdmiVicLen), node);
  Add3d(r, model, at.Part(first + 2 + r.hdmiVicLen), node);
}

}  // namespace reedid::document
