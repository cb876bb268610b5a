// The content of DisplayID data blocks: one reader for each form, a table from tag to reader.

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>

#include "describe.h"
#include "records.h"

namespace reedid::tool {
namespace {

constexpr uint32_t kMostRecords = 256;

// Getters deliver as many records as the block has, so an array of kMostRecords holds any answer.
template <class Record>
std::optional<uint32_t> Read(const DispIdDataBlock& entry, int32_t (*get)(const DispIdDataBlock*, Record*, uint32_t),
                             Record* records) {
  const int32_t count = DispID_GetTimingCnt(&entry);
  if (count < 0 || get(&entry, records, kMostRecords) < 0) return std::nullopt;
  return static_cast<uint32_t>(count);
}

template <int32_t (*get)(const DispIdDataBlock*, DtdTiming*, uint32_t)>
bool DescribeDetailed(const DispIdDataBlock& entry, Node& node) {
  std::array<DtdTiming, kMostRecords> timings = {};
  const auto count = Read(entry, get, timings.data());
  for (uint32_t i = 0; i < count.value_or(0); ++i) {
    const DtdTiming& timing = timings[i];
    Node& child =
        node.Child(DescribeTiming(fmt::format("Timing {}", i + 1), {TimingKind::kDetailed, 0, false, timing}));
    if (timing.preferred != 0) child.Add("Preferred", "yes");
  }
  return count.has_value();
}

template <int32_t (*get)(const DispIdDataBlock*, CvtTiming*, uint32_t)>
bool DescribeFormulas(const DispIdDataBlock& entry, Node& node) {
  std::array<CvtTiming, kMostRecords> timings = {};
  const auto count = Read(entry, get, timings.data());
  if (!count) return false;
  AddFormulas({timings.data(), *count}, node);
  return true;
}

template <int32_t (*get)(const DispIdDataBlock*, TimingCodeRecord*, uint32_t)>
bool DescribeCodes(const DispIdDataBlock& entry, Node& node) {
  std::array<uint8_t, kMostRecords> codes = {};
  TimingCodeRecord record = {};
  record.codes = codes.data();
  if (get(&entry, &record, kMostRecords) < 0) return false;
  node.record = record;
  AddTimingCodes(record, node);
  return true;
}

// Element i of the bitmap is DMT identifier or VIC i.
template <int32_t (*get)(const DispIdDataBlock*, uint8_t*, uint32_t), bool isVic>
bool DescribeBitmap(const DispIdDataBlock& entry, Node& node) {
  std::array<uint8_t, kMostRecords> flags = {};
  const auto count = Read(entry, get, flags.data());
  for (unsigned id = 1; id < count.value_or(0); ++id) {
    if (flags[id] == 0) continue;
    if (isVic) {
      node.AddTiming(fmt::format("VIC {}", CtaVic(id)), VicItem(id));
    } else {
      node.AddTiming(fmt::format("DMT {:#04x}", id), DmtItem(id));
    }
  }
  return count.has_value();
}

template <int32_t (*get)(const DispIdDataBlock*, ProductIdRecord*), bool isOui>
bool DescribeProduct(const DispIdDataBlock& entry, Node& node) {
  char name[234 + 1] = {};
  ProductIdRecord r = {};
  r.name = name;
  if (get(&entry, &r) != 0) return false;
  node.record = r;
  const auto* id = r.manufacturerId;
  const bool letters = !isOui && std::all_of(id, id + 3, [](uint8_t c) { return c >= 0x20 && c < 0x7F; });
  node.Add("Manufacturer",
           letters ? std::string(id, id + 3) : fmt::format("{:02x}-{:02x}-{:02x}", id[0], id[1], id[2]));
  node.Add("Product code", fmt::format("{0} ({0:#06x})", r.productCode));
  node.Add("Serial number", fmt::format("{0} ({0:#010x})", r.serialNumber));
  node.Add("Made", r.week == 255 ? fmt::format("model year {}", r.year) : fmt::format("week {} of {}", r.week, r.year));
  if (r.nameLength != 0) node.Add("Name", PrintableText(name));
  return true;
}

std::string TenthMm(uint32_t h, uint32_t v) {
  return fmt::format("{:.1f} x {:.1f} mm", h / 10.0, v / 10.0);
}

std::string GammaText(unsigned gammaX100) {
  return gammaX100 == 0 ? "not stated" : fmt::format("{:.2f}", gammaX100 / 100.0);
}

bool DescribeParameters(const DispIdDataBlock& entry, Node& node) {
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
  node.Add("Image size", TenthMm(r.hImageSize, r.vImageSize));
  node.Add("Native format", fmt::format("{}x{}", r.hPixels, r.vPixels));
  node.Add("Features", SetFlags(features));
  node.Add("Gamma", GammaText(r.gammaX100));
  node.Add("Aspect ratio", fmt::format("{:.2f}", r.aspectRatioX100 / 100.0));
  node.Add("Colour depth", fmt::format("native {} bits, overall {} bits", r.nativeColorDepth, r.overallColorDepth));
  return true;
}

std::string Chromaticity12(const DisplayParams20Record& r) {
  const auto point = [](unsigned x, unsigned y) { return fmt::format("{:.3f} {:.3f}", x / 4096.0, y / 4096.0); };
  return fmt::format("red {}, green {}, blue {}, white {}", point(r.redX, r.redY), point(r.greenX, r.greenY),
                     point(r.blueX, r.blueY), point(r.whiteX, r.whiteY));
}

bool DescribeParameters20(const DispIdDataBlock& entry, Node& node) {
  static constexpr const char* kTechnologies[] = {"not specified", "LCD", "OLED"};
  DisplayParams20Record r;
  if (DispID20_GetDPDB(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Image size", TenthMm(r.hImageSize, r.vImageSize));
  node.Add("Native format", fmt::format("{}x{}", r.hPixels, r.vPixels));
  node.Add("Features", fmt::format("{:#04x}", r.features));
  node.Add("Chromaticity", Chromaticity12(r));
  node.Add("Luminance codes", fmt::format("full {:#06x}, 10 % {:#06x}, minimum {:#06x}", r.maxLuminanceFull,
                                          r.maxLuminance10, r.minLuminance));
  node.Add("Colour depth", r.colorDepth == 0 ? "not stated" : fmt::format("{} bits", r.colorDepth));
  node.Add("Technology", r.technology < std::size(kTechnologies) ? kTechnologies[r.technology] : "reserved");
  node.Add("Gamma", GammaText(r.gammaX100));
  return true;
}

bool DescribeRange(const DispIdDataBlock& entry, Node& node) {
  DispIdRangeLimits r;
  if (DispID_GetRangeLimits(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag flags[] = {{r.interlaced, "interlaced"},
                             {r.cvtStandard, "CVT standard blanking"},
                             {r.cvtReduced, "CVT reduced blanking"},
                             {r.discreteFrequency, "discrete frequencies"}};
  node.Add("Pixel clock", fmt::format("{:.3f} to {:.3f} MHz", r.minPixelClock / 1000.0, r.maxPixelClock / 1000.0));
  node.Add("Horizontal", fmt::format("{} to {} kHz, blanking from {}", r.minHRate, r.maxHRate, r.minHBlank));
  node.Add("Vertical", fmt::format("{} to {} Hz, blanking from {}", r.minVRate, r.maxVRate, r.minVBlank));
  node.Add("Supports", SetFlags(flags));
  return true;
}

bool DescribeRange20(const DispIdDataBlock& entry, Node& node) {
  DispIdRangeLimits r;
  if (DispID20_GetRangeLimits(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Pixel clock", fmt::format("{:.3f} to {:.3f} MHz", r.minPixelClock / 1000.0, r.maxPixelClock / 1000.0));
  node.Add("Vertical", fmt::format("{} to {} Hz", r.minVRate, r.maxVRate));
  node.Add("Seamless change", r.seamlessTransition ? "yes" : "no");
  return true;
}

template <int32_t (*get)(const DispIdDataBlock*, char*, uint32_t)>
bool DescribeString(const DispIdDataBlock& entry, Node& node) {
  char text[256] = {};
  if (get(&entry, text, sizeof text) != 0) return false;
  node.Add("Text", PrintableText(text));
  return true;
}

struct BlockReader {
  uint8_t tag;
  bool (*read)(const DispIdDataBlock&, Node&);
};

constexpr BlockReader kReaders[] = {
    {0x00, DescribeProduct<DispID_GetPIDB, false>},
    {0x01, DescribeParameters},
    {0x03, DescribeDetailed<DispID_Get20ByteDTD>},
    {0x04, DescribeDetailed<DispID_Get11ByteDTD>},
    {0x05, DescribeFormulas<DispID_Get3ByteCVT>},
    {0x06, DescribeCodes<DispID_GetTimingCode>},
    {0x07, DescribeBitmap<DispID_GetVESATiming, false>},
    {0x08, DescribeBitmap<DispID_GetCEATiming, true>},
    {0x09, DescribeRange},
    {0x0A, DescribeString<DispID_GetSerialNumber>},
    {0x0B, DescribeString<DispID_GetDataString>},
    {0x11, DescribeFormulas<DispID_Get7ByteCVT>},
    {0x13, DescribeDetailed<DispID_Get17ByteDTD>},
    {0x20, DescribeProduct<DispID20_GetPIDB, true>},
    {0x21, DescribeParameters20},
    {0x22, DescribeDetailed<DispID20_Get20ByteDTD>},
    {0x23, DescribeCodes<DispID20_GetTimingCode>},
    {0x24, DescribeFormulas<DispID20_Get6ByteCVT>},
    {0x25, DescribeRange20},
    {0x2A, DescribeFormulas<DispID20_Get6ByteCVT>},
};

}  // namespace

void AddTimingCodes(const TimingCodeRecord& record, Node& node) {
  static constexpr const char* kHdmiVics[] = {"3840x2160 30 Hz", "3840x2160 25 Hz", "3840x2160 24 Hz",
                                              "4096x2160 24 Hz"};
  for (const unsigned code : std::span(record.codes, record.codeCount)) {
    if (record.codeType == 0) {
      node.AddTiming(fmt::format("DMT {:#04x}", code), DmtItem(code));
    } else if (record.codeType == 1) {
      node.AddTiming(fmt::format("VIC {}", code), VicItem(VicIndex(code)));
    } else {
      node.Add(fmt::format("HDMI VIC {}", code), code >= 1 && code <= 4 ? kHdmiVics[code - 1] : "reserved");
    }
  }
}

void AddFormulas(std::span<const CvtTiming> timings, Node& node) {
  static constexpr const char* kFormulas[] = {"CVT", "CVT reduced", "CVT reduced v2", "reserved formula"};
  node.record = {{"timings", std::vector<CvtTiming>(timings.begin(), timings.end())}};
  for (const CvtTiming& timing : timings) {
    if (timing.hactive == 0) continue;
    const TimingItem item = FormulaItem(timing);
    const std::string name = kFormulas[timing.formula & 3];
    if (!IsKnown(item)) {
      node.Add(name, fmt::format("{} pixels {} Hz, cannot be expanded", timing.hactive, timing.frameRate));
      continue;
    }
    node.AddTiming(name, item, timing.preferred != 0 ? ", preferred" : timing.ycc420 != 0 ? ", YCbCr 4:2:0" : "");
  }
}

bool DescribeSectionBlock(const DispIdDataBlock& entry, Node& node) {
  for (const BlockReader& reader : kReaders) {
    if (reader.tag == entry.tag) return reader.read(entry, node);
  }
  return false;
}

}  // namespace reedid::tool
