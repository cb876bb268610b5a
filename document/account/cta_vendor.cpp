// AMD FreeSync, NVIDIA G-SYNC, filmmaker mode and HDR10+.

#include "document/account/cta_vendor.h"

#include <fmt/format.h>

#include "document/account/color_text.h"
#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

constexpr uint8_t kOledPanel = 2;

// What the second pair of luminances is about.
const char* SecondLuminance(const AmdVsdbRecord& r) {
  if (r.localDimming != 0 || r.panelType == kOledPanel) return "Without dimming";
  return r.backlightControl != 0 ? "Least backlight" : "Other luminance";
}

void AddAmdLuminance(const AmdVsdbRecord& r, const ByteSource& at, Node& node) {
  static constexpr const char* kPanels[] = {"not stated", "Mini-LED", "OLED"};
  const NamedFlag curves[] = {{r.eotf0, "bit 0"}, {r.eotf1, "bit 1"},         {r.eotfPq, "PQ (ST 2084)"},
                              {r.eotf3, "bit 3"}, {r.eotfPqInterim, "bit 4"}, {r.eotf5, "bit 5"}};
  const auto range = [](unsigned most, unsigned least) {
    return most == 0 ? "not stated" : LuminanceRangeText(LeastLuminance(least, most), Luminance(most));
  };
  node.Add("Transfer", SetFlags(curves), at(9));
  if (r.version >= 3) node.Add("Panel", NameOf(kPanels, r.panelType), at(9));
  node.Add("Luminance", range(r.maxLuminance1, r.minLuminance1), at(10, 2));
  node.Add(SecondLuminance(r), range(r.maxLuminance2, r.minLuminance2), at(12, 2));
}

// Nobody has told what these are for.
void AddAmdUnknown(const AmdVsdbRecord& r, const ByteSource& at, Node& node) {
  if (at.size() > 18) node.Add("Unknown value", fmt::format("{}", r.extra24), at(16, 3));
  if (at.size() > 19) {
    node.Add("Unknown byte", fmt::format("{}{}", r.extra19, r.extra19Valid != 0 ? ", valid" : ""), at(19));
  }
  if (at.size() > 20) {
    node.Add("DPCD offset", r.dpcdOffsetValid != 0 ? fmt::format("{:#04x}", r.dpcdOffset) : "none", at(20));
  }
}

}  // namespace

bool DescribeAmd(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  AmdVsdbRecord r;
  if (CEA_GetAmdVSDB(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag features[] = {{r.hdrValid, "HDR"},
                                {r.backlightControl, "backlight control"},
                                {r.localDimming, "local dimming"},
                                {r.panelReplay, "Panel Replay"},
                                {r.replayPsrSwitch, "Replay and PSR (bit 4)"},
                                {r.replaySprs, "Replay (bit 5)"},
                                {r.extraValid, "unknown value (bit 7)"},
                                {r.caps0, "bit 0"}};
  const std::string range = fmt::format("{} to {} Hz", r.minRefresh, r.maxRefresh);
  node.summary = "FreeSync " + range;
  node.Add("Version", fmt::format("{}", r.version), at(4));
  node.Add("Features", SetFlags(features), at(5));
  node.Add("FreeSync range", range, r.version >= 3 && at.size() > 15 ? at({6, 7, 14, 15}) : at(6, 2));
  node.Add("DDC/CI switch", r.mccsVcpCode == 0 ? "none" : fmt::format("VCP code {:#04x}", r.mccsVcpCode), at(8));
  if (r.version >= 2 && at.size() > 13) AddAmdLuminance(r, at, node);
  if (r.version >= 3) AddAmdUnknown(r, at, node);
  return true;
}

bool DescribeNvidia(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  NvidiaVsdbRecord r;
  if (CEA_GetNvidiaVSDB(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Version", fmt::format("{}", r.version), at(4));
  node.Add("Variable rate", fmt::format("from {} Hz", r.vrrMinRefresh), at(5));
  return true;
}

bool DescribeFilmmaker(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  FilmmakerRecord r;
  if (CEA_GetFilmmaker(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Filmmaker mode", fmt::format("content type {}, subtype {}", r.contentType, r.contentSubtype), at(4, 2));
  return true;
}

bool DescribeHdr10Plus(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  static constexpr unsigned kPeaks[] = {0,    200,  300,  400,  500,  600,  800,  1000,
                                        1200, 1500, 2000, 2500, 3000, 4000, 6000, 8000};
  static constexpr unsigned kFullFrame[] = {10, 20, 40, 80};
  Hdr10PlusRecord r;
  if (CEA_GetHdr10Plus(&entry, &r) != 0) return false;
  node.record = r;
  const unsigned peak = kPeaks[r.peakIndex & 0xF], part = kFullFrame[r.fullFramePeakIndex & 3];
  node.Add("Application", fmt::format("version {}", r.applicationVersion), at(5));
  node.Add("Peak", peak == 0 ? "not stated" : fmt::format("{} cd/m2", peak), at(5));
  node.Add("Full white frame",
           peak == 0 ? fmt::format("{} % of the peak", part)
                     : fmt::format("{} cd/m2, {} % of the peak", peak * part / 100, part),
           at(5));
  return true;
}

}  // namespace reedid::document
