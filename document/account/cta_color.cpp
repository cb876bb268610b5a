#include "document/account/cta_color.h"

#include <fmt/format.h>

#include "document/account/color_text.h"
#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

std::string CodeText(unsigned code) {
  return code == 0 ? "not stated" : LuminanceText(Luminance(code));
}

std::string LeastLuminanceText(const StaticHdrRecord& r) {
  if (r.minLuminance == 0) return "0 cd/m2, or not stated";
  const double least = LeastLuminance(r.minLuminance, r.maxLuminance);
  if (r.maxLuminance == 0) return fmt::format("{:.3g} of a maximum that is not stated", least / Luminance(0));
  return LuminanceText(least);
}

// Who brought it about, as people know it.
std::string DynamicText(const DynamicHdrEntry& entry) {
  static constexpr const char* kTypes[] = {"reserved", "ST 2094-10 (Dolby Vision)", "ETSI TS 103 433 (SL-HDR)",
                                           "ST 2094-30", "ST 2094-40 (HDR10+)"};
  constexpr unsigned kSlHdr = 2, kOverlay = 0x100;
  std::string text = entry.type == kOverlay ? "graphics overlay" : NameOf(kTypes, entry.type);
  if (entry.flagCount == 0) return text;
  const unsigned flags = entry.flags[0];
  text += fmt::format(", version {}", flags & 0xF);
  static constexpr const char* kModes[] = {"SL-HDR1", "SL-HDR2", "SL-HDR3"};
  if (entry.type == kSlHdr) text += ", " + SetBits(flags >> 4 & 7, kModes);
  return text;
}

}  // namespace

bool DescribeColorimetry(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  ColorimetryRecord c;
  if (CEA_GetCDB(&entry, &c) != 0) return false;
  node.record = c;
  const NamedFlag flags[] = {{c.xvYCC601, "xvYCC601"},   {c.xvYCC709, "xvYCC709"},   {c.sYCC601, "sYCC601"},
                             {c.opYCC601, "opYCC601"},   {c.opRGB, "opRGB"},         {c.BT2020cYCC, "BT2020cYCC"},
                             {c.BT2020YCC, "BT2020YCC"}, {c.BT2020RGB, "BT2020RGB"}, {c.ICtCp, "ICtCp"},
                             {c.DCI_P3, "DCI-P3"}};
  node.Add("Colorimetry", SetFlags(flags), at(2, 2));
  if (c.metadataProfiles != 0) node.Add("Metadata profiles", fmt::format("{:#x}", c.metadataProfiles), at(3));
  return true;
}

bool DescribeVideoCapability(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  static constexpr const char* kScan[] = {"not supported", "always overscanned", "always underscanned",
                                          "over- and underscan"};
  VideoCapRecord v;
  if (CEA_GetVCDB(&entry, &v) != 0) return false;
  node.record = v;
  const auto range = [](uint8_t selectable) { return selectable != 0 ? "selectable" : "not stated"; };
  node.Add("Quantization", fmt::format("YCC {}, RGB {}", range(v.QY), range(v.QS)), at(2));
  node.Add("Preferred timing", v.S_PT == 0 ? "as the formats below" : kScan[v.S_PT], at(2));
  node.Add("IT formats", kScan[v.S_IT], at(2));
  node.Add("CE formats", kScan[v.S_CE], at(2));
  return true;
}

bool DescribeStaticHdr(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  StaticHdrRecord r = {};
  if (CEA_GetStaticHDR(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag curves[] = {
      {r.eotfSdr, "SDR gamma"}, {r.eotfHdr, "HDR gamma"}, {r.eotfPq, "PQ (ST 2084)"}, {r.eotfHlg, "HLG"}};
  node.Add("Transfer", SetFlags(curves), at(2));
  node.Add("Static metadata", r.staticMetadataType1 ? "type 1" : "none", at(3));
  if (at.size() > 4) node.Add("Maximum", CodeText(r.maxLuminance), at(4));
  if (at.size() > 5) node.Add("Frame average", CodeText(r.maxFrameAvgLuminance), at(5));
  if (at.size() > 6) node.Add("Minimum", LeastLuminanceText(r), at(6));
  node.summary = SetFlags(curves);
  if (r.maxLuminance != 0) node.summary += fmt::format("; up to {}", CodeText(r.maxLuminance));
  return true;
}

bool DescribeDynamicHdr(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  DynamicHdrRecord r;
  if (CEA_GetDynamicHDR(&entry, &r) != 0) return false;
  node.record = r;
  size_t first = 2;
  for (unsigned i = 0; i < r.count; ++i) {
    const size_t size = 3u + r.entries[i].flagCount;
    node.Add("Dynamic metadata", DynamicText(r.entries[i]), at(first, size));
    first += size;
  }
  return true;
}

bool DescribeToneMapping(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  static constexpr const char* kGeneral[] = {"none", "SDR range", "HDR range"};
  static constexpr const char* kPeaks[] = {"not used", "600 cd/m2", "1000 cd/m2", "4000 cd/m2", "10000 cd/m2"};
  static constexpr const char* kGamuts[] = {"", "BT.709", "SMPTE ST 2113", "BT.2020"};
  constexpr double kUnit = 50000;
  ToneMappingRecord r;
  if (CEA_GetHFSBTMDB(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Version", fmt::format("{}", r.version), at(2));
  node.Add("General RDM", NameOf(kGeneral, r.grdmSupport), at(2));
  if (r.drdm == 0) return true;
  const NamedFlag flags[] = {{r.useHgig, "by HGiG"}, {r.maxRgb, "MaxRGB"}};
  node.Add("D-RDM", SetFlags(flags, "yes"), at(3));
  node.Add("HGiG peak", NameOf(kPeaks, r.hgigDrdm), at(3));
  node.Add("Gamut", r.gamut == 0 ? ChromaticityText(r, kUnit) : kGamuts[r.gamut & 3], r.gamut == 0 ? at(4, 16) : at(3));
  size_t next = r.gamut == 0 ? 20 : 4;
  if (r.hgigDrdm == 0) {
    const double least = PqLuminance(2u * r.minBrightness10), most = PqLuminance(16u * r.peakBrightness100);
    node.Add("Luminance", LuminanceRangeText(least, most), at(next, 2));
    next += 2;
  }
  for (size_t i = 0; i < r.pointCount; ++i, next += 2) {
    node.Add("Peak curve", fmt::format("codes {}, {}", r.points[i].percent, r.points[i].peak), at(next, 2));
  }
  return true;
}

}  // namespace reedid::document
