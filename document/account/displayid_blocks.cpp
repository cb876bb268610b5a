// What a section tells of the product and the panel: one reader for each kind of block, and a table from tag to reader.

#include "document/account/displayid_blocks.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/account/color_text.h"
#include "document/account/displayid_interface.h"
#include "document/account/displayid_panel.h"
#include "document/account/displayid_timings.h"
#include "document/account/displayid_vendor.h"
#include "document/account/records.h"
#include "document/account/values.h"
#include "document/printable.h"

namespace reedid::document {
namespace {

constexpr size_t kHeader = 3;

template <int32_t (*get)(const DispIdDataBlock*, ProductIdRecord*), bool isOui>
bool DescribeProduct(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  char name[REEDID_DISPID_NAME_SIZE + 1] = {};
  ProductIdRecord r = {};
  r.name = name;
  if (get(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Manufacturer", MakerOrVendorText(r.manufacturerId, isOui), at(3, 3));
  node.Add("Product code", fmt::format("{0} ({0:#06x})", r.productCode), at(6, 2));
  node.AddPrivate("Serial number", fmt::format("{0} ({0:#010x})", r.serialNumber), at(8, 4), "serialNumber");
  node.Add("Made", r.week == 255 ? fmt::format("model year {}", r.year) : fmt::format("week {} of {}", r.week, r.year),
           at(12, 2));
  node.Add("Name", r.nameLength == 0 ? "none" : TextValue(name), at(14, 1u + r.nameLength));
  return true;
}

std::string TenthMm(uint32_t h, uint32_t v) {
  return fmt::format("{:.1f} x {:.1f} mm", h / 10.0, v / 10.0);
}

std::string GammaText(unsigned gammaX100) {
  return gammaX100 == 0 ? "not stated" : fmt::format("{:.2f}", gammaX100 / 100.0);
}

bool DescribeParameters(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  DisplayParamsRecord r;
  if (DispID_GetDPDB(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag features[] = {{r.audio, "audio"},
                                {r.separateAudio, "separate audio inputs"},
                                {r.audioOverride, "audio override"},
                                {r.powerManagement, "power management"},
                                {r.fixedTiming, "fixed timing"},
                                {r.fixedPixelFormat, "fixed pixel format"},
                                {r.supportsAI, "AI packets"},
                                {r.deinterlacing, "deinterlacing"}};
  node.Add("Image size", TenthMm(r.hImageSize, r.vImageSize), at(3, 4));
  node.Add("Native format", fmt::format("{}x{}", r.hPixels, r.vPixels), at(7, 4));
  node.Add("Features", SetFlags(features), at(11));
  node.Add("Gamma", GammaText(r.gammaX100), at(12));
  node.Add("Aspect ratio", fmt::format("{:.2f}", r.aspectRatioX100 / 100.0), at(13));
  node.Add("Colour depth", fmt::format("native {} bits, overall {} bits", r.nativeColorDepth, r.overallColorDepth),
           at(14));
  return true;
}

bool DescribeParameters20(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  static constexpr const char* kTechnologies[] = {"not specified", "LCD", "OLED"};
  DisplayParams20Record r;
  if (DispID20_GetDPDB(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Image size", TenthMm(r.hImageSize, r.vImageSize), at(3, 4));
  node.Add("Native format", fmt::format("{}x{}", r.hPixels, r.vPixels), at(7, 4));
  node.Add("Features", fmt::format("{:#04x}", r.features), at(11));
  node.Add("Chromaticity", ChromaticityText(r, 4096), at(12, 12));
  node.Add("Full luminance", HalfFloatText(r.maxLuminanceFull), at(24, 2));
  node.Add("10 % luminance", HalfFloatText(r.maxLuminance10), at(26, 2));
  node.Add("Least luminance", HalfFloatText(r.minLuminance), at(28, 2));
  node.Add("Colour depth", r.colorDepth == 0 ? "not stated" : fmt::format("{} bits", r.colorDepth), at(30));
  node.Add("Technology", r.technology < std::size(kTechnologies) ? kTechnologies[r.technology] : "reserved", at(30));
  node.Add("Gamma", GammaText(r.gammaX100), at(31));
  return true;
}

bool DescribeRange(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  DispIdRangeLimits r;
  if (DispID_GetRangeLimits(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag flags[] = {{r.interlaced, "interlaced"},
                             {r.cvtStandard, "CVT standard blanking"},
                             {r.cvtReduced, "CVT reduced blanking"},
                             {r.discreteFrequency, "discrete frequencies"}};
  node.Add("Pixel clock", fmt::format("{:.3f} to {:.3f} MHz", r.minPixelClock / 1000.0, r.maxPixelClock / 1000.0),
           at(3, 6));
  node.Add("Horizontal", fmt::format("{} to {} kHz, blanking from {}", r.minHRate, r.maxHRate, r.minHBlank), at(9, 4));
  node.Add("Vertical", fmt::format("{} to {} Hz, blanking from {}", r.minVRate, r.maxVRate, r.minVBlank), at(13, 4));
  node.Add("Supports", SetFlags(flags), at(17));
  return true;
}

bool DescribeRange20(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  DispIdRangeLimits r;
  if (DispID20_GetRangeLimits(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Pixel clock", fmt::format("{:.3f} to {:.3f} MHz", r.minPixelClock / 1000.0, r.maxPixelClock / 1000.0),
           at(3, 6));
  node.Add("Vertical", fmt::format("{} to {} Hz", r.minVRate, r.maxVRate), at(9, 2));
  node.Add("Seamless change", r.seamlessTransition ? "yes" : "no", at(11));
  return true;
}

template <int32_t (*get)(const DispIdDataBlock*, char*, uint32_t)>
bool DescribeString(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  char text[256] = {};
  if (get(&entry, text, sizeof text) != 0) return false;
  node.Add("Text", TextValue(text), at(kHeader, entry.size));
  return true;
}

struct BlockReader {
  uint8_t tag;
  bool (*read)(const DispIdDataBlock&, const ByteSource&, Node&);
};

constexpr BlockReader kReaders[] = {
    {DISPID_TAG_PRODUCT_ID, DescribeProduct<DispID_GetPIDB, false>},
    {DISPID_TAG_DISPLAY_PARAMS, DescribeParameters},
    {DISPID_TAG_RANGE_LIMITS, DescribeRange},
    {DISPID_TAG_COLOR, DescribeColor},
    {DISPID_TAG_SERIAL_NUMBER, DescribeString<DispID_GetSerialNumber>},
    {DISPID_TAG_DATA_STRING, DescribeString<DispID_GetDataString>},
    {DISPID_TAG_DISPLAY_DEVICE, DescribeDisplayDevice},
    {DISPID_TAG_POWER_SEQUENCING, DescribePowerSequencing},
    {DISPID_TAG_TRANSFER, DescribeTransfer},
    {DISPID_TAG_DISPLAY_INTERFACE, DescribeDisplayInterface},
    {DISPID_TAG_STEREO, DescribeStereo},
    {DISPID_TAG_TILED, DescribeTiles},
    {DISPID_TAG_VENDOR, DescribeVendor},
    {DISPID20_TAG_PRODUCT_ID, DescribeProduct<DispID20_GetPIDB, true>},
    {DISPID20_TAG_DISPLAY_PARAMS, DescribeParameters20},
    {DISPID20_TAG_RANGE_LIMITS, DescribeRange20},
    {DISPID20_TAG_INTERFACE_FEATURES, DescribeInterfaceFeatures},
    {DISPID20_TAG_STEREO, DescribeStereo},
    {DISPID20_TAG_TILED, DescribeTiles},
    {DISPID20_TAG_CONTAINER_ID, DescribeContainerId},
    {DISPID20_TAG_ADAPTIVE_SYNC, DescribeAdaptiveSync},
    {DISPID20_TAG_HEAD_MOUNTED, DescribeHeadMounted},
    {DISPID20_TAG_HEAD_MOUNTED_LAYER, DescribeHeadMountedLayer},
    {DISPID20_TAG_BRIGHTNESS, DescribeBrightness},
    {DISPID20_TAG_VENDOR, DescribeVendor},
    {DISPID20_TAG_CTA, DescribeCtaInside},
};

}  // namespace

bool DescribeSectionBlock(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  for (const BlockReader& reader : kReaders) {
    if (reader.tag == entry.tag) return reader.read(entry, at, node);
  }
  return DescribeSectionTimings(entry, at, node);
}

}  // namespace reedid::document
