#include "document/account/cta_video.h"

#include <fmt/format.h>

#include "document/account/detailed_timing.h"
#include "document/account/records.h"
#include "document/account/timing_lists.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

constexpr unsigned kTypeHeader = 3;  // of the blocks that CTA-861 has from DisplayID
constexpr unsigned kTypeVIISize = 20;
constexpr unsigned kTypeXSize = 6;  // without its extra bytes

// Byte 2 of those blocks: a revision and flags.
void AddTypeRevision(const CeaDataBlock& entry, const ByteSource& at, Node& node) {
  const unsigned byte = entry.bytes[2];
  const std::string flags = byte >> 3 == 0 ? "" : fmt::format(", flags {:#04x}", byte >> 3);
  node.Add("Revision", fmt::format("{}{}", byte & 7, flags), at(2));
}

// Short video references (CTA-861, 7.5.12): VICs, and places among the DTDs and DisplayID timings of the EDID.
std::string ReferenceText(unsigned svr) {
  static constexpr unsigned kRates[] = {24, 25, 30, 48, 50, 60, 100, 120, 144, 200, 240, 300, 360, 400, 480};
  if ((svr >= 1 && svr <= 127) || (svr >= 193 && svr <= 253)) return "VIC " + ItemText(VicItem(VicIndex(svr)));
  if (svr >= 129 && svr <= 144) return fmt::format("detailed timing {}", svr - 128);
  if (svr >= 145 && svr <= 160) return fmt::format("DisplayID timing {}", svr - 144);
  if (svr >= 161 && svr <= 175) return fmt::format("the first video format at {} Hz", kRates[svr - 161]);
  if (svr == 254) return "the first code of the type VIII block";
  return fmt::format("{}, reserved", svr);
}

}  // namespace

bool DescribeVideo(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  VdbRecord record;
  if (CEA_GetVDB(&entry, &record) != 0) return false;
  node.record = record;
  std::vector<std::string> vics;
  for (unsigned i = 0; i < record.vicCount; ++i) {
    vics.push_back(fmt::format("{}", CtaVic(record.vics[i])));
    // The record keeps the last native mark only; the bytes have them all.
    const bool native = entry.bytes[1 + i] > 128 && entry.bytes[1 + i] <= 192;
    node.AddTiming(fmt::format("VIC {}", CtaVic(record.vics[i])), VicItem(record.vics[i]), native ? ", native" : "",
                   at(1 + i));
  }
  node.summary = "VIC " + Joined(vics);
  return true;
}

bool Describe420Video(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  Vic420Record record;
  if (entry.size < 3 || CEA_Get420VDB(&entry, &record) != 0) return false;
  node.record = record;
  for (unsigned i = 0; i < record.vicCount; ++i) {
    node.AddTiming(fmt::format("VIC {}", CtaVic(record.vics[i])), VicItem(record.vics[i], true), "", at(2 + i));
  }
  return true;
}

// The map stands for the descriptors of the first Video Data Block; without a bitmap it stands for all of them.
bool Describe420Map(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node) {
  if (entry.size == 2) {
    node.Add("VICs, 4:2:0 too", "all of the Video Data Block");
    return true;
  }
  const CeaDataBlock* video = CEA_FindDataBlock(&model, CEA_TAG_VIDEO, 0);
  Vic420Record record;
  if (video == nullptr || CEA_Get420CMDB(video, &entry, &record) != 0) return false;
  node.record = record;
  std::string text;
  for (const uint8_t index : std::span(record.vics, record.vicCount)) {
    text += fmt::format("{}{}", text.empty() ? "" : ", ", CtaVic(index));
  }
  node.Add("VICs, 4:2:0 too", text.empty() ? "none" : text, at(2, entry.size));
  return true;
}

bool DescribeFormatPreference(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  FormatPreferenceRecord r;
  if (CEA_GetVFPDB(&entry, &r) != 0) return false;
  node.record = r;
  for (unsigned i = 0; i < r.count; ++i) {
    node.Add(fmt::format("Preference {}", i + 1), ReferenceText(r.references[i]), at(2 + i));
  }
  return true;
}

bool DescribeNativeResolution(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  NativeResolutionRecord r;
  if (CEA_GetNVRDB(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Native timing", ReferenceText(r.reference), at(2));
  if (r.sizeUnit == 0) return true;
  const double unit = r.sizeUnit / 10.0;  // mm
  node.Add("Image size", fmt::format("{:.1f} x {:.1f} mm", r.width * unit, r.height * unit), at(3, 5));
  return true;
}

bool DescribeTypeVII(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  Cea20ByteDtdRecord record;
  if (CEA_Get20ByteDTD(&entry, &record) != 0) return false;
  node.record = record;
  AddTypeRevision(entry, at, node);
  if (record.preferred != 0) node.Add("Offered in", "YCbCr 4:2:0", at(kTypeHeader + 3));
  node.Child(DescribeTiming("Timing", {TimingKind::kDetailed, 0, record.preferred != 0, record.timing},
                            TypeIBytes(at.Part(kTypeHeader, kTypeVIISize))));
  return true;
}

bool DescribeTypeVIII(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  uint8_t codes[256] = {};
  TimingCodeRecord record = {};
  record.codes = codes;
  if (CEA_GetTimingCode(&entry, &record) != 0) return false;
  node.record = record;
  AddTypeRevision(entry, at, node);
  AddTimingCodes(record, at.Part(kTypeHeader), node);
  return true;
}

bool DescribeTypeX(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  CvtTiming timings[4] = {};
  const int32_t count = CEA_Get6ByteCVT(&entry, timings);
  if (count < 0) return false;
  AddTypeRevision(entry, at, node);
  AddFormulas(timings, kTypeXSize + (entry.bytes[2] >> 4 & 7), at.Part(kTypeHeader), node);
  return true;
}

}  // namespace reedid::document
