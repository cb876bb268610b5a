// The data blocks of a CTA-861 extension that list timings, and HDR static metadata.

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "describe.h"
#include "records.h"

namespace reedid::tool {
namespace {

void AddVics(std::span<const uint8_t> indexes, bool only420, Node& node) {
  for (const uint8_t index : indexes) node.AddTiming(fmt::format("VIC {}", CtaVic(index)), VicItem(index, only420));
}

// The descriptors that the codec of one descriptor leaves unread are handed to it one by one.
constexpr unsigned kTypeVIIHeader = 3;
constexpr unsigned kTypeVIISize = 20;

}  // namespace

bool DescribeVideo(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  VdbRecord record;
  if (CEA_GetVDB(&entry, &record) != 0) return false;
  node.record = record;
  for (unsigned i = 0; i < record.vicCount; ++i) {
    // The record keeps the last native mark only; the bytes have them all.
    const bool native = entry.bytes[1 + i] > 128 && entry.bytes[1 + i] <= 192;
    node.AddTiming(fmt::format("VIC {}", CtaVic(record.vics[i])), VicItem(record.vics[i]), native ? ", native" : "");
  }
  return true;
}

bool Describe420Video(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  Vic420Record record;
  if (entry.size < 3 || CEA_Get420VDB(&entry, &record) != 0) return false;
  node.record = record;
  AddVics({record.vics, record.vicCount}, true, node);
  return true;
}

// The map stands for the descriptors of the first Video Data Block; without a bitmap it stands for all of them.
bool Describe420Map(const CeaDataBlock& entry, const CeaBlock& model, Node& node) {
  if (entry.size == 2) {
    node.Add("VICs, 4:2:0 too", "all of the Video Data Block");
    return true;
  }
  const CeaDataBlock* video = CEA_FindDataBlock(&model, 2, 0);
  Vic420Record record;
  if (video == nullptr || CEA_Get420CMDB(video, &entry, &record) != 0) return false;
  node.record = record;
  std::string text;
  for (const uint8_t index : std::span(record.vics, record.vicCount)) {
    text += fmt::format("{}{}", text.empty() ? "" : ", ", CtaVic(index));
  }
  node.Add("VICs, 4:2:0 too", text.empty() ? "none" : text);
  return true;
}

// Short Video References (CTA-861, table 98): VICs, and places among the DTDs and DisplayID timings of the EDID.
bool DescribeFormatPreference(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  for (unsigned i = 2; i < entry.size; ++i) {
    const unsigned svr = entry.bytes[i];
    const std::string name = fmt::format("Preference {}", i - 1);
    if ((svr >= 1 && svr <= 127) || (svr >= 193 && svr <= 253)) {
      node.Add(name, fmt::format("VIC {}", svr));
    } else if (svr >= 129 && svr <= 144) {
      node.Add(name, fmt::format("detailed timing {}", svr - 128));
    } else if (svr >= 145 && svr <= 160) {
      node.Add(name, fmt::format("DisplayID timing {}", svr - 144));
    } else if (svr == 254) {
      node.Add(name, "the first code of the type VIII block");
    } else {
      node.Add(name, fmt::format("{}, reserved", svr));
    }
  }
  return true;
}

bool DescribeTypeVII(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  Cea20ByteDtdRecord record;
  if (CEA_Get20ByteDTD(&entry, &record) != 0) return false;
  node.record = record;
  node.Child(DescribeTiming("Timing", {TimingKind::kDetailed, 0, record.preferred != 0, record.timing}));
  if (record.preferred != 0) node.Add("Offered in", "YCbCr 4:2:0");
  if (entry.size > kTypeVIIHeader + kTypeVIISize) {
    node.Add("Further bytes", fmt::format("{}", entry.size - kTypeVIIHeader - kTypeVIISize));
  }
  return true;
}

bool DescribeTypeVIII(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  uint8_t codes[256] = {};
  TimingCodeRecord record = {};
  record.codes = codes;
  if (CEA_GetTimingCode(&entry, &record) != 0) return false;
  node.record = record;
  AddTimingCodes(record, node);
  return true;
}

bool DescribeTypeX(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  CvtTiming timings[4] = {};
  const int32_t count = CEA_Get6ByteCVT(&entry, timings);
  if (count < 0) return false;
  AddFormulas(timings, node);
  return true;
}

// CTA-861, table 91: luminance code v is 50 * 2^(v / 32) cd/m2, the minimum is relative to the maximum.
bool DescribeStaticHdr(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  StaticHdrRecord r = {};
  if (CEA_GetStaticHDR(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag curves[] = {
      {r.eotfSdr, "SDR gamma"}, {r.eotfHdr, "HDR gamma"}, {r.eotfPq, "PQ (ST 2084)"}, {r.eotfHlg, "HLG"}};
  const auto luminance = [](unsigned code) { return 50.0 * std::exp2(code / 32.0); };
  node.Add("Transfer", SetFlags(curves));
  node.Add("Static metadata", r.staticMetadataType1 ? "type 1" : "none");
  if (r.maxLuminance != 0) node.Add("Maximum", fmt::format("{:.0f} cd/m2", luminance(r.maxLuminance)));
  if (r.maxFrameAvgLuminance != 0) {
    node.Add("Frame average", fmt::format("{:.0f} cd/m2", luminance(r.maxFrameAvgLuminance)));
  }
  if (r.minLuminance != 0) {
    const double part = r.minLuminance / 255.0;
    node.Add("Minimum", fmt::format("{:.3f} cd/m2", luminance(r.maxLuminance) * part * part / 100));
  }
  return true;
}

}  // namespace reedid::tool
