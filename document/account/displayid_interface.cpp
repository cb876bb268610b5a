#include "document/account/displayid_interface.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

// Bits per component.
std::string DepthsText(unsigned depths) {
  static constexpr const char* kDepths[] = {"6", "8", "10", "12", "14", "16"};
  return depths == 0 ? "none" : SetBits(depths, kDepths) + " bits";
}
std::string ChromaDepthsText(unsigned depths) {
  return DepthsText(depths << 1);
}

std::string RangeText(const AdaptiveSyncRange& r) {
  const NamedFlag flags[] = {{r.nativeRange, "the panel's own"},
                             {r.mode == 1, "adaptive V-total"},
                             {r.mode > 1, "reserved mode"},
                             {r.noSeamless, "changes into it are visible"},
                             {r.increaseNoJitter, "longer frames without flicker"},
                             {r.decreaseNoJitter, "shorter frames without flicker"}};
  std::string text = fmt::format("{} to {} Hz", r.minRefresh, r.maxRefresh);
  if (const std::string set = SetFlags(flags, ""); !set.empty()) text += "; " + set;
  if (r.maxIncrease != 0) text += fmt::format("; longer by up to {:.2f} ms", r.maxIncrease / 4.0);
  if (r.maxDecrease != 0) text += fmt::format("; shorter by up to {:.2f} ms", r.maxDecrease / 4.0);
  return text;
}

std::string ColorEotfText(const ColorEotf& pair) {
  static constexpr const char* kSpaces[] = {"undefined", "sRGB",   "BT.601",  "BT.709",
                                            "Adobe RGB", "DCI-P3", "BT.2020", "custom"};
  static constexpr const char* kCurves[] = {"undefined", "sRGB",    "BT.601",       "BT.1886", "Adobe RGB", "DCI-P3",
                                            "BT.2020",   "a gamma", "PQ (ST 2084)", "HLG",     "custom"};
  return fmt::format("{} with {}", NameOf(kSpaces, pair.colorSpace), NameOf(kCurves, pair.eotf));
}

std::string LinkText(const DisplayInterfaceRecord& r) {
  static constexpr const char* kTypes[] = {"analog", "LVDS",   "TMDS",   "RSDS", "DVI-D",       "DVI-I analog",
                                           "DVI-I",  "HDMI-A", "HDMI-B", "MDDI", "DisplayPort", "proprietary"};
  static constexpr const char* kConnectors[] = {"15-pin VGA", "NAVI-V", "NAVI-D"};
  const std::string type = fmt::format("{} {}.{}", NameOf(kTypes, r.interfaceType), r.version, r.release);
  if (r.interfaceType == 0) return fmt::format("{}, {}", type, NameOf(kConnectors, r.links));
  return fmt::format("{}, {} link{} or lane{}", type, r.links, r.links == 1 ? "" : "s", r.links == 1 ? "" : "s");
}

// Of LVDS its supplies and signals, of a proprietary interface its signals; others have none.
void AddAttributes(const DisplayInterfaceRecord& r, const ByteSource& at, Node& node) {
  static constexpr const char* kSupplies[] = {"3.3 V", "5 V", "12 V", "2.8 V", "6-bit compatible mapping"};
  static constexpr const char* kSignals[] = {"rising edge", "low level", "fixed mode"};
  constexpr unsigned kLvds = 1, kProprietary = 11;
  if (r.interfaceType == kLvds) {
    node.Add("Supplies", SetBits(r.attribute1, kSupplies), at(11));
    node.Add("Signals", SetBits(r.attribute2, kSignals), at(12));
  } else if (r.interfaceType == kProprietary) {
    node.Add("Signals", SetBits(r.attribute1, kSignals), at(11));
  }
}

// The lists behind a stereo method: a byte with type and count, then the codes.
std::string StereoCodesText(std::span<const uint8_t> codes) {
  static constexpr const char* kTypes[] = {"DMT", "VIC", "HDMI VIC"};
  std::vector<std::string> texts;
  for (size_t i = 0; i < codes.size();) {
    const unsigned type = codes[i] >> 6;
    const size_t end = std::min(codes.size(), i + 1 + (codes[i] & 0x1F));
    for (++i; i < end; ++i) texts.push_back(fmt::format("{} {}", NameOf(kTypes, type), codes[i]));
  }
  return Joined(texts);
}

}  // namespace

bool DescribeAdaptiveSync(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  AdaptiveSyncRecord r;
  if (DispID20_GetAdaptiveSync(&entry, &r) != 0) return false;
  node.record = r;
  std::vector<std::string> ranges;
  for (size_t i = 0; i < r.count; ++i) {
    const AdaptiveSyncRange& range = r.ranges[i];
    ranges.push_back(fmt::format("{} to {} Hz", range.minRefresh, range.maxRefresh));
    node.Add(fmt::format("Range {}", i + 1), RangeText(range), at(3 + i * r.descriptorSize, r.descriptorSize));
  }
  node.summary = Joined(ranges);
  return true;
}

bool DescribeInterfaceFeatures(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  static constexpr const char* kColors[] = {"sRGB",   "BT.601",  "BT.709 with BT.1886",      "Adobe RGB",
                                            "DCI-P3", "BT.2020", "BT.2020 with PQ (ST 2084)"};
  InterfaceFeaturesRecord r;
  if (DispID20_GetInterfaceFeatures(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag rates[] = {{r.audio32k, "32"}, {r.audio44k1, "44.1"}, {r.audio48k, "48"}};
  node.Add("RGB", DepthsText(r.rgbDepths), at(3));
  node.Add("YCbCr 4:4:4", DepthsText(r.ycc444Depths), at(4));
  node.Add("YCbCr 4:2:2", ChromaDepthsText(r.ycc422Depths), at(5));
  node.Add("YCbCr 4:2:0", ChromaDepthsText(r.ycc420Depths), at(6));
  node.Add("4:2:0 from", r.min420PixelRate == 0 ? "any clock" : fmt::format("{:.2f} MHz", r.min420PixelRate * 74.25),
           at(7));
  node.Add("Audio rates", SetFlags(rates) + (SetFlags(rates, "").empty() ? "" : " kHz"), at(8));
  node.Add("Colours", SetBits(r.colorEotfs, kColors), at(9));
  for (size_t i = 0; i < r.additionalCount; ++i) {
    node.Add("More colours", ColorEotfText(r.additional[i]), at(12 + i));
  }
  return true;
}

bool DescribeDisplayInterface(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  static constexpr const char* kProtections[] = {"none", "HDCP", "DTCP", "DPCP"};
  static constexpr const char* kSpreads[] = {"none", "down", "centre"};
  DisplayInterfaceRecord r;
  if (DispID_GetDisplayInterface(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Interface", LinkText(r), at(3, 2));
  node.Add("RGB", DepthsText(r.rgbDepths), at(5));
  node.Add("YCbCr 4:4:4", DepthsText(r.ycc444Depths), at(6));
  node.Add("YCbCr 4:2:2", ChromaDepthsText(r.ycc422Depths), at(7));
  const char* protection = NameOf(kProtections, r.contentProtection);
  node.Add("Content protection",
           r.contentProtection == 0 ? protection
                                    : fmt::format("{} {}.{}", protection, r.protectionVersion, r.protectionRelease),
           at(8, 2));
  const char* spread = NameOf(kSpreads, r.spreadType);
  node.Add("Spread spectrum", r.spreadType == 0 ? spread : fmt::format("{}, {:.1f} %", spread, r.spreadPercent / 10.0),
           at(10));
  AddAttributes(r, at, node);
  return true;
}

bool DescribePowerSequencing(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  PowerSequencingRecord r;
  if (DispID_GetPowerSequencing(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("T1", fmt::format("{:.1f} to {} ms", r.minT1 / 10.0, r.maxT1 * 2), at(3));
  node.Add("T2", fmt::format("up to {} ms", r.maxT2 * 2), at(4));
  node.Add("T3", fmt::format("up to {} ms", r.maxT3 * 2), at(5));
  node.Add("T4", fmt::format("from {} ms", r.minT4 * 10), at(6));
  node.Add("T5", fmt::format("from {} ms", r.minT5 * 10), at(7));
  node.Add("T6", fmt::format("from {} ms", r.minT6 * 10), at(8));
  return true;
}

bool DescribeStereo(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  static constexpr const char* kSupport[] = {"timings that say 3D", "timings that say 3D and those below",
                                             "all timings", "those below"};
  static constexpr const char* kMethods[] = {"field sequential", "side by side", "pixel interleaved",
                                             "dual interface",   "multi-view",   "stacked frames"};
  constexpr unsigned kPrivate = 255;
  StereoRecord r;
  const bool is20 = entry.tag == DISPID20_TAG_STEREO;
  if ((is20 ? DispID20_GetStereo(&entry, &r) : DispID_GetStereo(&entry, &r)) != 0) return false;
  node.record = r;
  node.Add("3D in", NameOf(kSupport, r.timingSupport), at(1));
  node.Add("Method", r.method == kPrivate ? "the maker's own" : NameOf(kMethods, r.method), at({3, 4}));
  if (r.parameterCount != 0) node.Add("Parameters", Hex({r.parameters, r.parameterCount}), at(5, r.parameterCount));
  if (r.codeLength != 0) {
    node.Add("Timings", StereoCodesText({r.codes, r.codeLength}), at(5u + r.parameterCount, r.codeLength));
  }
  return true;
}

}  // namespace reedid::document
