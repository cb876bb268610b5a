// The content of DisplayID data blocks: one reader for each form, a table from tag to reader.

#include "document/account/displayid_blocks.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>

#include "document/account/detailed_timing.h"
#include "document/account/pnp_ids.h"
#include "document/account/records.h"
#include "document/account/timing_lists.h"
#include "document/account/values.h"
#include "document/printable.h"

namespace reedid::document {
namespace {

constexpr uint32_t kMostRecords = 256;
constexpr size_t kHeader = 3;
constexpr uint8_t kTypeXTag = 0x2A;

// Getters deliver as many records as the block has, so an array of kMostRecords holds any answer.
template <class Record>
std::optional<uint32_t> Read(const DispIdDataBlock& entry, int32_t (*get)(const DispIdDataBlock*, Record*, uint32_t),
                             Record* records) {
  const int32_t count = DispID_GetTimingCnt(&entry);
  if (count < 0 || get(&entry, records, kMostRecords) < 0) return std::nullopt;
  return static_cast<uint32_t>(count);
}

// Where a detailed timing has what; `at` begins with it. Type II packs both syncs into byte 3.
TimingBytes TypeIIBytes(const ByteSource& at) {
  return {at(0, 4), at({3, 4, 5, 6}), at({3, 7, 8, 9, 10})};
}

TimingBytes TypeVIBytes(const ByteSource& at) {
  return {at(0, 3), at({3, 4, 7, 8, 9, 10}), at({5, 6, 11, 12, 13})};
}

unsigned TypeISize(const ByteSource&) {
  return 20;
}

unsigned TypeIISize(const ByteSource&) {
  return 11;
}

// With aspect ratio and image size, as bit 6 of byte 2 says.
unsigned TypeVISize(const ByteSource& at) {
  const ByteVector third = at(2);
  return !third.empty() && (third[0] & 0x40) != 0 ? 17 : 14;
}

template <int32_t (*get)(const DispIdDataBlock*, DtdTiming*, uint32_t), unsigned (*sizeOf)(const ByteSource&),
          TimingBytes (*bytesOf)(const ByteSource&)>
bool DescribeDetailed(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  std::array<DtdTiming, kMostRecords> timings = {};
  const auto count = Read(entry, get, timings.data());
  ByteSource payload = at.Part(kHeader);
  for (uint32_t i = 0; i < count.value_or(0); ++i) {
    const TimingItem item = {TimingKind::kDetailed, 0, false, timings[i]};
    const ByteSource descriptor = payload.Part(0, sizeOf(payload));
    Node child = DescribeTiming(fmt::format("Timing {}", i + 1), item, bytesOf(descriptor));
    if (timings[i].preferred != 0) child.Add("Preferred", "yes", descriptor(bytesOf == TypeVIBytes ? 2 : 3));
    child.AddRest(descriptor);
    node.Child(std::move(child));
    payload = payload.Part(descriptor.size());
  }
  return count.has_value();
}

// Types III, V, IX; type X has as many bytes more as its header says.
template <int32_t (*get)(const DispIdDataBlock*, CvtTiming*, uint32_t), unsigned size>
bool DescribeFormulas(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  std::array<CvtTiming, kMostRecords> timings = {};
  const auto count = Read(entry, get, timings.data());
  if (!count) return false;
  const unsigned extra = entry.tag == kTypeXTag ? entry.headerFlags >> 1 & 7u : 0;
  AddFormulas({timings.data(), *count}, size + extra, at.Part(kHeader), node);
  return true;
}

template <int32_t (*get)(const DispIdDataBlock*, TimingCodeRecord*, uint32_t)>
bool DescribeCodes(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  std::array<uint8_t, kMostRecords> codes = {};
  TimingCodeRecord record = {};
  record.codes = codes.data();
  if (get(&entry, &record, kMostRecords) < 0) return false;
  node.record = record;
  AddTimingCodes(record, at.Part(kHeader), node);
  return true;
}

// Element i of the bitmap is DMT identifier or VIC i.
template <int32_t (*get)(const DispIdDataBlock*, uint8_t*, uint32_t), bool isVic>
bool DescribeBitmap(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  std::array<uint8_t, kMostRecords> flags = {};
  const auto count = Read(entry, get, flags.data());
  for (unsigned id = 1; id < count.value_or(0); ++id) {
    if (flags[id] == 0) continue;
    const ByteVector from = at(kHeader + (id - 1) / 8);
    if (isVic) {
      node.AddTiming(fmt::format("VIC {}", CtaVic(id)), VicItem(id), "", from);
    } else {
      node.AddTiming(fmt::format("DMT {:#04x}", id), DmtItem(id), "", from);
    }
  }
  return count.has_value();
}

template <int32_t (*get)(const DispIdDataBlock*, ProductIdRecord*), bool isOui>
bool DescribeProduct(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  char name[234 + 1] = {};
  ProductIdRecord r = {};
  r.name = name;
  if (get(&entry, &r) != 0) return false;
  node.record = r;
  const auto* id = r.manufacturerId;
  const bool letters = !isOui && std::all_of(id, id + 3, [](uint8_t c) { return c >= 0x20 && c < 0x7F; });
  node.Add("Manufacturer",
           letters ? MakerText(std::string(id, id + 3)) : fmt::format("{:02x}-{:02x}-{:02x}", id[0], id[1], id[2]),
           at(3, 3));
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

std::string Chromaticity12(const DisplayParams20Record& r) {
  const auto point = [](unsigned x, unsigned y) { return fmt::format("{:.3f} {:.3f}", x / 4096.0, y / 4096.0); };
  return fmt::format("red {}, green {}, blue {}, white {}", point(r.redX, r.redY), point(r.greenX, r.greenY),
                     point(r.blueX, r.blueY), point(r.whiteX, r.whiteY));
}

bool DescribeParameters20(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  static constexpr const char* kTechnologies[] = {"not specified", "LCD", "OLED"};
  DisplayParams20Record r;
  if (DispID20_GetDPDB(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Image size", TenthMm(r.hImageSize, r.vImageSize), at(3, 4));
  node.Add("Native format", fmt::format("{}x{}", r.hPixels, r.vPixels), at(7, 4));
  node.Add("Features", fmt::format("{:#04x}", r.features), at(11));
  node.Add("Chromaticity", Chromaticity12(r), at(12, 12));
  node.Add(
      "Luminance codes",
      fmt::format("full {:#06x}, 10 % {:#06x}, minimum {:#06x}", r.maxLuminanceFull, r.maxLuminance10, r.minLuminance),
      at(24, 6));
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
    {0x00, DescribeProduct<DispID_GetPIDB, false>},
    {0x01, DescribeParameters},
    {0x03, DescribeDetailed<DispID_Get20ByteDTD, TypeISize, TypeIBytes>},
    {0x04, DescribeDetailed<DispID_Get11ByteDTD, TypeIISize, TypeIIBytes>},
    {0x05, DescribeFormulas<DispID_Get3ByteCVT, 3>},
    {0x06, DescribeCodes<DispID_GetTimingCode>},
    {0x07, DescribeBitmap<DispID_GetVESATiming, false>},
    {0x08, DescribeBitmap<DispID_GetCEATiming, true>},
    {0x09, DescribeRange},
    {0x0A, DescribeString<DispID_GetSerialNumber>},
    {0x0B, DescribeString<DispID_GetDataString>},
    {0x11, DescribeFormulas<DispID_Get7ByteCVT, 7>},
    {0x13, DescribeDetailed<DispID_Get17ByteDTD, TypeVISize, TypeVIBytes>},
    {0x20, DescribeProduct<DispID20_GetPIDB, true>},
    {0x21, DescribeParameters20},
    {0x22, DescribeDetailed<DispID20_Get20ByteDTD, TypeISize, TypeIBytes>},
    {0x23, DescribeCodes<DispID20_GetTimingCode>},
    {0x24, DescribeFormulas<DispID20_Get6ByteCVT, 6>},
    {0x25, DescribeRange20},
    {0x2A, DescribeFormulas<DispID20_Get6ByteCVT, 6>},
};

}  // namespace

bool DescribeSectionBlock(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  for (const BlockReader& reader : kReaders) {
    if (reader.tag == entry.tag) return reader.read(entry, at, node);
  }
  return false;
}

}  // namespace reedid::document
