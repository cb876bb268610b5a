// The data blocks of HDMI.

#include "document/account/cta_hdmi.h"

#include <fmt/format.h>

#include "document/account/cta_hdmi_video.h"
#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

const char* FrlText(unsigned rate) {
  static constexpr const char* kRates[] = {"none",
                                           "3 Gbit/s on 3 lanes",
                                           "6 Gbit/s on 3 lanes",
                                           "6 Gbit/s on 4 lanes",
                                           "8 Gbit/s on 4 lanes",
                                           "10 Gbit/s on 4 lanes",
                                           "12 Gbit/s on 4 lanes"};
  return NameOf(kRates, rate);
}

const char* SlicesText(unsigned code) {
  static constexpr const char* kSlices[] = {"none",         "1 at 340 MHz", "2 at 340 MHz",  "4 at 340 MHz",
                                            "8 at 340 MHz", "8 at 400 MHz", "12 at 400 MHz", "16 at 400 MHz"};
  return NameOf(kSlices, code);
}

// A maximum of 0 is that of each video format.
std::string VrrText(const HfScdsRecord& r) {
  if (r.VRRmax == 0 && r.VRRmin == 0) return "";
  return r.VRRmax == 0 ? fmt::format("from {} Hz", r.VRRmin) : fmt::format("{} to {} Hz", r.VRRmin, r.VRRmax);
}

void AddDsc(const HfScdsRecord& r, const ByteSource& at, Node& node) {
  const NamedFlag qms[] = {{r.QMS_TFRmin, "TFRmin"}, {r.QMS_TFRmax, "TFRmax"}};
  if ((r.QMS_TFRmin | r.QMS_TFRmax) != 0) node.Add("QMS target rates", SetFlags(qms), at(11));
  if (!r.DSC_1p2) return;
  const NamedFlag flags[] = {{r.dscNative420, "native 4:2:0"},
                             {r.dscAllBpp, "all bit rates"},
                             {r.dsc10bpc, "10 bits"},
                             {r.dsc12bpc, "12 bits"},
                             {r.dsc16bpc, "16 bits"}};
  node.Add("DSC 1.2a", SetFlags(flags, "yes"), at(11));
  node.Add("DSC FRL rate", FrlText(r.DSC_Max_FRL_Rate), at(12));
  node.Add("DSC slices", SlicesText(r.DSC_MaxSlices), at(12));
  node.Add("DSC chunk", fmt::format("{} KiB", r.DSC_TotalChunkKBytes), at(13));
}

std::string SummaryOf(const HfScdsRecord& r) {
  std::vector<std::string> parts;
  if (r.TMDS_Character_Rate != 0) parts.push_back(fmt::format("TMDS up to {} MHz", r.TMDS_Character_Rate));
  if (r.Max_FRL_Rate != 0) parts.push_back(fmt::format("FRL {}", FrlText(r.Max_FRL_Rate)));
  if (const std::string vrr = VrrText(r); !vrr.empty()) parts.push_back("VRR " + vrr);
  if (r.allm != 0) parts.emplace_back("ALLM");
  if (r.DSC_1p2 != 0) parts.emplace_back("DSC");
  return Joined(parts, "TMDS up to 340 MHz");
}

template <int32_t (*get)(const CeaDataBlock*, HfScdsRecord*)>
bool DescribeSink(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  HfScdsRecord r;
  if (get(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag flags[] = {{r.scdcPresent, "SCDC"},
                             {r.rrCapable, "read request"},
                             {r.cableStatus, "cable status"},
                             {r.ccbpci, "colour content bits"},
                             {r.lte340Scramble, "scrambling up to 340 MHz"},
                             {r.independentView, "independent view"},
                             {r.dualView, "dual view"},
                             {r.osdDisparity3d, "3D OSD disparity"}};
  const NamedFlag depths[] = {{r.dc48bit420, "48 bits"}, {r.dc36bit420, "36 bits"}, {r.dc30bit420, "30 bits"}};
  const NamedFlag gaming[] = {{r.QMS, "QMS"},
                              {r.mDelta, "M delta"},
                              {r.cinemaVrr, "cinema VRR"},
                              {r.cnmVrr, "negative M VRR"},
                              {r.fva, "FVA"},
                              {r.allm, "ALLM"},
                              {r.fapaStartLocation, "FAPA start"},
                              {r.fapaEndExtended, "FAPA end extended"}};
  node.Add("Version", fmt::format("{}", r.version), at(4));
  node.Add("Max TMDS rate", r.TMDS_Character_Rate == 0 ? "up to 340 MHz" : fmt::format("{} MHz", r.TMDS_Character_Rate),
           at(5));
  node.Add("Supports", SetFlags(flags), at(6));
  node.Add("FRL rate", FrlText(r.Max_FRL_Rate), at(7));
  node.Add("Deep colour 4:2:0", SetFlags(depths), at(7));
  if (r.UHD_VIC != 0) node.Add("UHD formats", "of the HDMI VICs, also by CTA VIC", at(7));
  if (at.size() >= 9) node.Add("Features", SetFlags(gaming), at(8));
  if (const std::string vrr = VrrText(r); !vrr.empty()) node.Add("VRR", vrr, at(9, 2));
  AddDsc(r, at, node);
  node.summary = SummaryOf(r);
  return true;
}

}  // namespace

bool DescribeHdmi14b(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node) {
  H14b3dRecord r;
  if (CEA_GetH14b3D(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag flags[] = {{r.supportsAI, "AI packets"},        {r.DC_48bit, "48-bit colour"},
                             {r.DC_36bit, "36-bit colour"},       {r.DC_30bit, "30-bit colour"},
                             {r.DC_Y444, "deep colour in 4:4:4"}, {r.DVI_Dual, "DVI dual link"}};
  const NamedFlag contents[] = {{r.cnc[0], "graphics"}, {r.cnc[1], "photo"}, {r.cnc[2], "cinema"}, {r.cnc[3], "game"}};
  const std::string clock = r.max_TMDS_Clock == 0 ? "not stated" : fmt::format("{} MHz", r.max_TMDS_Clock);
  node.Add("Physical address", PhysAddrText(r.physAddr), at(4, 2));
  node.Add("Supports", SetFlags(flags), at(6));
  node.Add("Max TMDS clock", clock, at(7));
  if (at.size() >= 9) node.Add("Content types", SetFlags(contents), at(8));
  AddHdmiVideo(r, model, at, node);
  node.summary = fmt::format("address {}, TMDS clock {}", PhysAddrText(r.physAddr), clock);
  return true;
}

bool DescribeHdmiForum(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node) {
  return DescribeSink<CEA_GetHFVSDBScds>(entry, model, at, node);
}

bool DescribeSinkCapability(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node) {
  return DescribeSink<CEA_GetHFSCDB>(entry, model, at, node);
}

bool DescribeExtensionOverride(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  ExtensionOverrideRecord r;
  if (CEA_GetHFEEODB(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Extensions", fmt::format("{}, whatever the base block says", r.extensionBlocks), at(2));
  return true;
}

}  // namespace reedid::document
