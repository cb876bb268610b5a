#include "document/account/extensions.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/account/descriptors.h"
#include "document/account/detailed_timing.h"
#include "document/account/panel_text.h"
#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

constexpr size_t kListsByte = 5;
constexpr size_t kDtdSize = sizeof(DtdSlot::bytes);
constexpr size_t kCvtSize = 3;
constexpr size_t kStandardSize = 2;

std::string StandardText(const DisplayInfoRecord& r) {
  const uint8_t* s = r.standard;
  if (r.standardKind == 1) return fmt::format("version {}.{}, release {}.{}", s[0], s[1], s[2], s[3]);
  if (r.standardKind == 2) return fmt::format("{}", static_cast<char>(std::clamp<int>(s[1], 0x20, 0x7E)));
  if (r.standardKind == 3) return fmt::format("{}-{:02}-{:02}", 1990 + s[1], s[2], s[3]);
  return "not stated";
}

std::string ClockText(unsigned megahertz, unsigned none) {
  return megahertz == none || megahertz == 0 ? "not stated" : fmt::format("{} MHz", megahertz);
}

std::string FrequencyText(unsigned hundredths, const char* unit) {
  return hundredths == 0 ? "not stated" : fmt::format("{:.2f} {}", hundredths / 100.0, unit);
}

void AddLink(const DisplayInfoRecord& r, const ByteSource& at, Node& node) {
  static constexpr const char* kInterfaces[] = {"analog",
                                                "DVI",
                                                "DVI, single link",
                                                "DVI, dual link for high resolution",
                                                "DVI, dual link for many colours",
                                                "DVI for consumers",
                                                "Plug & Display",
                                                "DFP",
                                                "OpenLDI, single link",
                                                "OpenLDI, dual link",
                                                "OpenLDI for consumers"};
  static constexpr const char* kEdges[] = {"edge not stated", "rising edge", "falling edge", "both edges"};
  const NamedFlag flags[] = {{r.dataEnable, r.dataEnableHigh != 0 ? "data enable high" : "data enable low"},
                             {r.hdcp, "HDCP"},
                             {r.doubleClock, "double clock"},
                             {r.packetized, "packetized"}};
  const char* format = r.dataFormat == 0x15   ? "8 over 8 bits"
                       : r.dataFormat == 0x19 ? "12 over 12 bits"
                       : r.dataFormat == 0x24 ? "24 bits"
                       : r.dataFormat == 0x48 ? "48 bits, high resolution"
                       : r.dataFormat == 0x49 ? "48 bits, many colours"
                                              : "not stated";
  node.Add("Interface", NameOf(kInterfaces, r.digitalInterface), at(2));
  node.Add("Its standard", StandardText(r), at(3, 4));
  node.Add("Signals", fmt::format("{}; {}", SetFlags(flags), NameOf(kEdges, r.clockEdge)), at(7));
  node.Add("Data format", format, at(8));
  node.Add("Link clock", fmt::format("from {}, up to {}", ClockText(r.minClock, 255), ClockText(r.maxClock, 65535)),
           at(9, 3));
  node.Add("Second link", r.crossover == 65535 ? "none" : fmt::format("from {} MHz", r.crossover), at(12, 2));
}

void AddPanel(const DisplayInfoRecord& r, const ByteSource& at, Node& node) {
  static constexpr const char* kLayouts[] = {"not stated", "RGB", "BGR", "quad, green lower left",
                                             "quad, green lower right"};
  static constexpr const char* kConfigs[] = {"", "delta", "stripes", "stripes with an offset", "quad"};
  static constexpr const char* kShapes[] = {"", "round", "square", "rectangle", "oval", "ellipse"};
  static constexpr const char* kDirections[] = {"not stated", "direct", "reflected", "direct and reflected"};
  static constexpr const char* kPlaces[] = {"not stated", "for a large group", "desktop", "eyepiece"};
  const NamedFlag flags[] = {
      {r.fixedPixelFormat, "fixed pixel format"}, {r.transparent, "transparent"}, {r.ddcCi, "DDC/CI"}};
  node.Add("Sub-pixels",
           fmt::format("{} {} {}", NameOf(kLayouts, r.subPixelLayout), NameOf(kConfigs, r.subPixelConfig),
                       NameOf(kShapes, r.subPixelShape)),
           at(14, 3));
  node.Add("Pitch", fmt::format("{:.2f} x {:.2f} mm", r.hPitch / 100.0, r.vPitch / 100.0), at(17, 2));
  node.Add("Features", SetFlags(flags), at(19));
  node.Add("View", fmt::format("{}; {}", NameOf(kDirections, r.viewDirection), NameOf(kPlaces, r.implementation)),
           at(19));
}

void AddPicture(const DisplayInfoRecord& r, const ByteSource& at, Node& node) {
  static constexpr const char* kStereos[] = {"no stereo", "field sequential stereo", "stereo by columns",
                                             "stereo by lines"};
  static constexpr const char* kConversions[] = {"none", "vertical", "horizontal", "both"};
  static constexpr const char* kKinds[] = {"not stated", "fixed", "pivots, this is the default",
                                           "pivots, this is how it stands"};
  const NamedFlag modes[] = {{r.legacyModes, "all VGA and DOS modes"},
                             {r.scaler, "scaler"},
                             {r.centering, "centering"},
                             {r.conditionalUpdate, "conditional update"},
                             {r.interlaced, "interlaced"}};
  const NamedFlag aspects[] = {
      {r.aspectFull, "full"}, {r.aspectZoom, "zoom"}, {r.aspectSqueeze, "squeeze"}, {r.aspectVariable, "variable"}};
  node.Add("Modes", fmt::format("{}; {}", SetFlags(modes), NameOf(kStereos, r.stereo)), at(20));
  node.Add("Rate conversion",
           fmt::format("{}{}", NameOf(kConversions, r.rateConversion), r.frameLock != 0 ? ", frame lock" : ""), at(21));
  node.Add("Vertical", FrequencyText(r.vFrequency, "Hz"), at(22, 2));
  node.Add("Horizontal", FrequencyText(r.hFrequency, "kHz"), at(24, 2));
  node.Add(
      "Orientation",
      fmt::format("{}; {}{}", NameOf(kKinds, r.orientationKind),
                  OrientationText(r.portrait, 0, r.zeroPixel, r.scanDirection), r.projector != 0 ? "; projector" : ""),
      at(26));
  node.Add("Other aspects", SetFlags(aspects), at(38));
}

void AddColors(const DisplayInfoRecord& r, const ByteSource& at, Node& node) {
  static constexpr const char* kColors[] = {"not stated",    "BGR",         "S-Video NTSC", "S-Video PAL",
                                            "S-Video SECAM", "YCrCb 4:4:4", "YCrCb 4:2:2",  "YCrCb 4:2:0",
                                            "YCrCb 260M",    "YPbPr 240M",  "YCrCb 274M",   "YPbPr 274M",
                                            "BetaCam",       "M-2",         "monochrome"};
  static constexpr const char* kPreferred[] = {"the default", "BGR", "S-Video", "Yxx", "monochrome"};
  static constexpr const char* kGammas[] = {"none", "one of white", "blue, green and red"};
  unsigned capabilities = 0;
  for (size_t i = 0; i < std::size(r.colorCaps); ++i) capabilities |= (r.colorCaps[i] & 1u) << (i + 1);
  const auto depths = [](const uint8_t(&d)[3]) { return fmt::format("{}, {}, {} bits", d[0], d[1], d[2]); };
  node.Add("Default colour", NameOf(kColors, r.defaultColor), at(27));
  node.Add("Preferred colour", NameOf(kPreferred, r.preferredColor), at(28));
  node.Add("Colours", SetBits(capabilities, kColors), at(29, 2));
  node.Add("Dithering", r.dithering != 0 ? "yes" : "no", at(31));
  node.Add("Depth BGR", depths(r.depthBGR), at(32, 3));
  node.Add("Depth CbYCr", depths(r.depthCbYCr), at(35, 3));
  node.Add("Gamma curves", fmt::format("{}, {} samples each", NameOf(kGammas, r.gammaKind), r.gammaCount), at(81));
  if (r.gammaKind != 0) node.Add("Samples", Hex({r.gamma, std::size(r.gamma)}), at(82, std::size(r.gamma)));
}

}  // namespace

bool DescribeDisplayInfo(const EdidBlock& block, const ByteSource& at, Node& node) {
  DisplayInfoRecord r;
  if (EDID_GetDisplayInfo(&block, &r) != 0) return false;
  node.record = r;
  node.Add("Version", fmt::format("{}", r.version), at(1));
  AddLink(r, at, node);
  AddPanel(r, at, node);
  AddPicture(r, at, node);
  AddColors(r, at, node);
  return true;
}

bool DescribeVideoTimings(const EdidBlock& block, const ByteSource& at, Node& node) {
  VideoTimingsRecord r;
  if (EDID_GetVideoTimings(&block, &r) != 0) return false;
  node.record = r;
  node.Add("Version", fmt::format("{}", r.version), at(1));
  node.Add(
      "Lists",
      fmt::format("{} detailed timings, {} CVT codes, {} standard timings", r.dtdCount, r.cvtCount, r.standardCount),
      at(2, 3));
  size_t first = kListsByte;
  for (unsigned i = 0; i < r.dtdCount; ++i, first += kDtdSize) {
    DtdSlot slot = {1, {}};
    std::copy_n(block.bytes + first, kDtdSize, slot.bytes);
    const ByteSource from = at.Part(first, kDtdSize);
    node.Child(DescribeDtd(fmt::format("Detailed timing {}", i + 1), slot, from)).extent = from.extent();
  }
  for (unsigned i = 0; i < r.cvtCount; ++i, first += kCvtSize) {
    AddCvtBytes({block.bytes + first, kCvtSize}, i + 1, at(first, kCvtSize), node);
  }
  for (unsigned i = 0; i < r.standardCount; ++i, first += kStandardSize) {
    AddStandardBytes({block.bytes + first, kStandardSize}, i + 1, at.Part(first, kStandardSize), node);
  }
  return true;
}

}  // namespace reedid::document
