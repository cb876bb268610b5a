#include "document/account/cta_display.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/account/color_text.h"
#include "document/account/panel_text.h"
#include "document/account/records.h"
#include "document/account/values.h"
#include "document/account/vendors.h"
#include "document/printable.h"

namespace reedid::document {
namespace {

std::string InterfaceText(const VesaDeviceRecord& r) {
  static constexpr const char* kTypes[] = {"analog",    "LVDS",      "RSDS",      "DVI-D", "DVI-I analog",
                                           "DVI-I",     "HDMI-A",    "HDMI-B",    "MDDI",  "DisplayPort",
                                           "IEEE 1394", "M1 analog", "M1 digital"};
  static constexpr const char* kConnectors[] = {"15-pin VGA", "NAVI-V", "NAVI-D"};
  const std::string type = fmt::format("{} {}.{}", NameOf(kTypes, r.interfaceType), r.version, r.release);
  if (r.interfaceType == 0) return fmt::format("{}, {}", type, NameOf(kConnectors, r.channels));
  return fmt::format("{}, {} channels", type, r.channels);
}

std::string SoundText(const VesaDeviceRecord& r) {
  const NamedFlag flags[] = {{r.audio, "over the video interface"},
                             {r.separateAudio, "over its own inputs"},
                             {r.audioOverride, "its own inputs come first"}};
  const std::string delay = r.audioDelayTold != 0 ? fmt::format("; {} ms behind the picture", r.audioDelay) : "";
  return SetFlags(flags) + delay;
}

std::string RateText(const VesaDeviceRecord& r) {
  static constexpr const char* kConversions[] = {"none", "single buffer", "double buffer", "advanced"};
  return fmt::format("{}; {} +- {} Hz", NameOf(kConversions, r.rateConversion), r.nominalRate, r.rateRange);
}

void AddMorePrimaries(const VesaDeviceRecord& r, const ByteSource& at, Node& node) {
  const uint16_t points[3][2] = {{r.primary4X, r.primary4Y}, {r.primary5X, r.primary5Y}, {r.primary6X, r.primary6Y}};
  const SourceBytes places[3] = {at({22, 24, 25}), at({22, 26, 27}), at({23, 28, 29})};
  for (size_t i = 0; i < r.extraPrimaries && i < 3; ++i) {
    node.Add(fmt::format("Primary {}", i + 4), PointText(points[i][0], points[i][1], 1024), places[i]);
  }
}

// CTA-861.6: all 16:9 but for those that say otherwise.
const char* ResolutionText(unsigned rid) {
  static constexpr const char* kResolutions[] = {
      "reserved",         "1280x720",         "1280x720 64:27",   "1680x720 64:27",  "1920x1080",
      "1920x1080 64:27",  "2560x1080 64:27",  "3840x1080 32:9",   "2560x1440",       "3440x1440 64:27",
      "5120x1440 32:9",   "3840x2160",        "3840x2160 64:27",  "5120x2160 64:27", "7680x2160 32:9",
      "5120x2880",        "5120x2880 64:27",  "6880x2880 64:27",  "10240x2880 32:9", "7680x4320",
      "7680x4320 64:27",  "10240x4320 64:27", "15360x4320 32:9",  "11520x6480",      "11520x6480 64:27",
      "15360x6480 64:27", "15360x8640",       "15360x8640 64:27", "20480x8640 64:27"};
  return NameOf(kResolutions, rid);
}

std::string RatesText(const VideoFormatEntry& entry) {
  static constexpr unsigned kFactors[] = {1, 2, 4, 8, 12, 16};
  std::vector<unsigned> rates;
  for (size_t i = 0; i < std::size(kFactors); ++i) {
    if ((entry.factors >> i & 1) == 0) continue;
    if (entry.base50 != 0) rates.push_back(25 * kFactors[i]);
    if (entry.base60 != 0) rates.push_back(30 * kFactors[i]);
  }
  if (entry.rate24 != 0) rates.push_back(24);
  if (entry.rate48 != 0) rates.push_back(48);
  if (entry.rate144 != 0) rates.push_back(144);
  std::sort(rates.begin(), rates.end());
  std::vector<std::string> texts;
  for (const unsigned rate : rates) texts.push_back(fmt::format("{}", rate));
  return Joined(texts, "no rate") + (rates.empty() ? "" : " Hz");
}

}  // namespace

bool DescribeVesaDevice(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  static constexpr const char* kProtections[] = {"none", "HDCP", "DTCP", "DPCP"};
  static constexpr const char* kDitherings[] = {"no dithering", "spatial dithering", "temporal dithering",
                                                "spatial and temporal dithering"};
  VesaDeviceRecord r;
  if (CEA_GetVesaDevice(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag drive[] = {{r.directDrive, "direct drive"},
                             {r.noOverdrive, "overdrive not recommended"},
                             {r.deinterlacing, "deinterlacing"}};
  node.Add("Interface", InterfaceText(r), at(2, 2));
  node.Add("Content protection", NameOf(kProtections, r.contentProtection), at(4));
  node.Add("Clock", fmt::format("{} to {} MHz", r.minClock, r.maxClock), at(5, 2));
  node.Add("Native format", fmt::format("{}x{}", r.nativeWidth, r.nativeHeight), at(7, 4));
  node.Add("Aspect ratio", fmt::format("{:.2f}", r.aspectRatioX100 / 100.0), at(11));
  node.Add("Orientation", OrientationText(r.orientation, r.rotation, r.zeroPixel, r.scanDirection), at(12));
  node.Add("Sub-pixels", SubPixelText(r.subPixels), at(13));
  node.Add("Pitch", fmt::format("{:.2f} x {:.2f} mm", r.hPitch / 100.0, r.vPitch / 100.0), at(14, 2));
  node.Add("Drive", fmt::format("{}; {}", NameOf(kDitherings, r.dithering), SetFlags(drive)), at(16));
  node.Add("Sound", SoundText(r), at(17, 2));
  node.Add("Rate conversion", RateText(r), at(19, 2));
  node.Add("Colour depth", fmt::format("interface {} bits, display {} bits", r.interfaceDepth, r.displayDepth), at(21));
  node.Add("More primaries", fmt::format("{}", r.extraPrimaries), at(23));
  AddMorePrimaries(r, at, node);
  node.Add("Response", ResponseText(r.responseTime, r.whiteToBlack), at(30));
  node.Add("Overscan", fmt::format("{} % x {} %", r.hOverscan, r.vOverscan), at(31));
  return true;
}

bool DescribeVesaTransfer(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  static constexpr const char* kCurves[] = {"white", "red", "green", "blue"};
  VesaTransferRecord r;
  if (CEA_GetVesaTransfer(&entry, &r) != 0) return false;
  node.record = r;
  std::vector<std::string> samples;
  for (size_t i = 0; i < r.count && i < std::size(r.samples); ++i) samples.push_back(fmt::format("{}", r.samples[i]));
  node.Add("Curve", NameOf(kCurves, r.curve), at(1));
  node.Add("Samples", Joined(samples) + " of 1023", at(1, entry.size));
  return true;
}

bool DescribeVideoFormats(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  VideoFormatsRecord r;
  if (CEA_GetVFDB(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag flags[] = {{r.ycc420, "YCbCr 4:2:0 too"}, {r.fractionalPreferred, "rates times 1000/1001 preferred"}};
  node.Add("Formats", SetFlags(flags, "as they are"), at(1));
  for (size_t i = 0; i < r.count; ++i) {
    node.Add(ResolutionText(r.entries[i].rid), RatesText(r.entries[i]), at(2 + i * r.descriptorSize, r.descriptorSize));
  }
  return true;
}

bool DescribeMicrosoft(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  static constexpr const char* kUses[] = {"undefined",
                                          "test equipment",
                                          "generic display",
                                          "television",
                                          "desktop productivity",
                                          "desktop gaming",
                                          "presentation",
                                          "virtual reality",
                                          "augmented reality",
                                          "reserved",
                                          "reserved",
                                          "reserved",
                                          "reserved",
                                          "reserved",
                                          "reserved",
                                          "reserved",
                                          "video wall",
                                          "medical imaging",
                                          "gaming",
                                          "video monitor",
                                          "accessory"};
  MicrosoftVsdbRecord r;
  if (CEA_GetMicrosoftVSDB(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag flags[] = {{r.desktopUsage, "desktop"}, {r.thirdPartyUsage, "third parties"}};
  node.Add("Version", fmt::format("{}, {}", r.version, r.version < 3 ? "head-mounted" : "specialised display"), at(4));
  node.Add("Primary use", NameOf(kUses, r.primaryUse), at(5));
  node.Add("Used by", SetFlags(flags, "its own software"), at(5));
  node.AddPrivate("ContainerID", ContainerIdText(r.containerId), at(6, 16), "containerId");
  return true;
}

bool DescribeProductInformation(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  ProductInformationRecord r;
  if (CEA_GetProductInformation(&entry, &r) != 0) return false;
  node.record = r;
  const std::string name(r.name, r.name + std::min<size_t>(r.length, std::size(r.name)));
  node.Add("Manufacturer", VendorText(uint32_t{r.oui[0]} << 16 | uint32_t{r.oui[1]} << 8 | r.oui[2]), at(2, 3));
  node.Add("Version", fmt::format("{}", r.version), at(5));
  node.Add("Name", name.empty() ? "none" : TextValue(name.c_str()), at(6, r.length));
  return true;
}

}  // namespace reedid::document
