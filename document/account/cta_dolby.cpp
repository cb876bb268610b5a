// Dolby Vision, whose three versions share fields and little of their layouts.

#include <fmt/format.h>

#include "document/account/color_text.h"
#include "document/account/cta_vendor.h"
#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

constexpr double kUnit = 4096;  // of chromaticities

struct LuminanceRange {
  double least, most;  // cd/m2
};

LuminanceRange RangeOf(const DolbyVisionRecord& r) {
  if (r.version != 1) return {PqLuminance(r.targetMinPq), PqLuminance(r.targetMaxPq)};
  const double root = r.targetMinLuminance / 127.0;
  return {root * root, 100.0 + 50.0 * r.targetMaxLuminance};
}

std::string RangeText(const DolbyVisionRecord& r) {
  const LuminanceRange range = RangeOf(r);
  const std::string text = LuminanceRangeText(range.least, range.most);
  return r.version == 1 ? text : fmt::format("{} (PQ {} to {})", text, r.targetMinPq, r.targetMaxPq);
}

const char* Depth444Text(unsigned code) {
  static constexpr const char* kDepths[] = {"no RGB or YCbCr 4:4:4", "RGB and YCbCr 4:4:4 with 10 bits",
                                            "RGB and YCbCr 4:4:4 with 12 bits"};
  return NameOf(kDepths, code);
}

// Where each version has what; bits of one byte may belong to several.
struct DolbyPlaces {
  SourceBytes management, features, interfaces, luminance, primaries;
};

DolbyPlaces PlacesOf(const DolbyVisionRecord& r, const ByteSource& at) {
  if (r.version == 0) return {at(21), at(5), {}, at(18, 3), at(6, 12)};
  if (r.version == 2) return {at(5), at(5, 2), at(7, 3), at({6, 7}), at(8, 4)};
  const bool isLong = r.size > 12;
  return {at(5), at({5, 6}), isLong ? SourceBytes() : at(8), at({6, 7}), isLong ? at(9, 6) : at(8, 4)};
}

void AddInterfaces(const DolbyVisionRecord& r, const SourceBytes& from, Node& node) {
  static constexpr const char* kInterfaces[] = {"low latency", "low latency, also over HDMI",
                                                "standard and low latency",
                                                "standard and low latency, the latter also over HDMI"};
  static constexpr const char* kLowLatency[] = {"standard", "standard and low latency"};
  if (r.version == 1 && r.size == 12) node.Add("Interfaces", NameOf(kLowLatency, r.lowLatency), from);
  if (r.version != 2) return;
  node.Add("Interfaces", fmt::format("{}; {}", NameOf(kInterfaces, r.interfaces), Depth444Text(r.rgb444)), from);
}

}  // namespace

bool DescribeDolbyVision(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  DolbyVisionRecord r;
  if (CEA_GetDolbyVision(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag features[] = {{r.yuv422_12bit, "YCbCr 4:2:2 with 12 bits"},
                                {r.supports2160p60, "2160p60"},
                                {r.globalDimming, "global dimming"},
                                {r.backlightControl, "backlight control"},
                                {r.parity, "parity (bit 2 of byte 7)"}};
  const DolbyPlaces from = PlacesOf(r, at);
  node.Add("Version", fmt::format("{}", r.version), at(5));
  node.Add("Management", r.version == 0 ? fmt::format("{}.{}", r.dmMajor, r.dmMinor) : fmt::format("{}.x", r.dmMajor),
           from.management);
  node.Add("Features", SetFlags(features), from.features);
  AddInterfaces(r, from.interfaces, node);
  node.Add("Luminance", RangeText(r), from.luminance);
  if (r.version == 2) node.Add("Least backlight", fmt::format("{} cd/m2", r.backlightMinLuminance), at(6));
  if (r.version == 1) node.Add("Colorimetry", r.colorimetryP3 != 0 ? "P3-D65" : "BT.709", at(7));
  node.Add("Primaries", r.version == 0 ? ChromaticityText(r, kUnit) : PrimariesText(r, kUnit), from.primaries);
  node.summary = fmt::format("version {}, {}", r.version, RangeText(r));
  return true;
}

}  // namespace reedid::document
