#include "document/account/cta_color.h"

#include <fmt/format.h>

#include <cmath>

#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

// CTA-861.3: luminance code v is 50 * 2^(v / 32) cd/m2, the minimum is relative to the maximum.
double Luminance(unsigned code) {
  return 50.0 * std::exp2(code / 32.0);
}

std::string LuminanceText(unsigned code) {
  return code == 0 ? "not stated" : fmt::format("{:.0f} cd/m2", Luminance(code));
}

std::string LeastLuminanceText(const StaticHdrRecord& r) {
  if (r.minLuminance == 0) return "0 cd/m2, or not stated";
  const double part = r.minLuminance / 255.0;
  if (r.maxLuminance == 0) return fmt::format("{:.3g} of a maximum that is not stated", part * part / 100);
  return fmt::format("{:.3g} cd/m2", Luminance(r.maxLuminance) * part * part / 100);
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

// CTA-861, 7.5.13: luminance code v is 50 * 2^(v / 32) cd/m2, the minimum is relative to the maximum.
bool DescribeStaticHdr(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  StaticHdrRecord r = {};
  if (CEA_GetStaticHDR(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag curves[] = {
      {r.eotfSdr, "SDR gamma"}, {r.eotfHdr, "HDR gamma"}, {r.eotfPq, "PQ (ST 2084)"}, {r.eotfHlg, "HLG"}};
  node.Add("Transfer", SetFlags(curves), at(2));
  node.Add("Static metadata", r.staticMetadataType1 ? "type 1" : "none", at(3));
  if (at.size() > 4) node.Add("Maximum", LuminanceText(r.maxLuminance), at(4));
  if (at.size() > 5) node.Add("Frame average", LuminanceText(r.maxFrameAvgLuminance), at(5));
  if (at.size() > 6) node.Add("Minimum", LeastLuminanceText(r), at(6));
  return true;
}

}  // namespace reedid::document
