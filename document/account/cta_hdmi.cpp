// The vendor-specific data blocks of HDMI.

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
  return rate < std::size(kRates) ? kRates[rate] : "reserved";
}

const char* SlicesText(unsigned code) {
  static constexpr const char* kSlices[] = {"none",         "1 at 340 MHz", "2 at 340 MHz",  "4 at 340 MHz",
                                            "8 at 340 MHz", "8 at 400 MHz", "12 at 400 MHz", "16 at 400 MHz"};
  return code < std::size(kSlices) ? kSlices[code] : "reserved";
}

// A maximum of 0 is that of each video format.
void AddVrr(const HfVsdbRecord& r, const ByteSource& at, Node& node) {
  if (r.VRRmax == 0 && r.VRRmin == 0) return;
  node.Add("VRR", r.VRRmax == 0 ? fmt::format("from {} Hz", r.VRRmin) : fmt::format("{} to {} Hz", r.VRRmin, r.VRRmax),
           at(9, 2));
}

void AddDsc(const HfVsdbRecord& r, const ByteSource& at, Node& node) {
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

}  // namespace

bool DescribeHdmi14b(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  H14bRecord r;
  if (CEA_GetH14bVSDB(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag flags[] = {{r.supportsAI, "AI packets"},        {r.DC_48bit, "48-bit colour"},
                             {r.DC_36bit, "36-bit colour"},       {r.DC_30bit, "30-bit colour"},
                             {r.DC_Y444, "deep colour in 4:4:4"}, {r.DVI_Dual, "DVI dual link"}};
  const NamedFlag contents[] = {{r.cnc[0], "graphics"}, {r.cnc[1], "photo"}, {r.cnc[2], "cinema"}, {r.cnc[3], "game"}};
  node.Add("Physical address", PhysAddrText(r.physAddr), at(4, 2));
  node.Add("Supports", SetFlags(flags), at(6));
  node.Add("Max TMDS clock", r.max_TMDS_Clock == 0 ? "not stated" : fmt::format("{} MHz", r.max_TMDS_Clock), at(7));
  if (at.size() >= 9) node.Add("Content types", SetFlags(contents), at(8));
  AddHdmiVideo(entry, at, node);
  return true;
}

bool DescribeHdmiForum(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  HfVsdbRecord r;
  if (CEA_GetHFVSDB(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag flags[] = {{r.scdcPresent, "SCDC"},
                             {r.rrCapable, "read request"},
                             {r.ccbpci, "colour content bits"},
                             {r.lte340Scramble, "scrambling up to 340 MHz"},
                             {r.independentView, "independent view"},
                             {r.dualView, "dual view"},
                             {r.osdDisparity3d, "3D OSD disparity"}};
  const NamedFlag depths[] = {{r.dc48bit420, "48 bits"}, {r.dc36bit420, "36 bits"}, {r.dc30bit420, "30 bits"}};
  const NamedFlag gaming[] = {
      {r.mDelta, "M delta"}, {r.cinemaVrr, "cinema VRR"},        {r.cnmVrr, "negative M VRR"}, {r.fva, "FVA"},
      {r.allm, "ALLM"},      {r.fapaStartLocation, "FAPA start"}};
  node.Add("Version", fmt::format("{}", r.version), at(4));
  node.Add("Max TMDS rate", r.TMDS_Character_Rate == 0 ? "up to 340 MHz" : fmt::format("{} MHz", r.TMDS_Character_Rate),
           at(5));
  node.Add("Supports", SetFlags(flags), at(6));
  node.Add("FRL rate", FrlText(r.Max_FRL_Rate), at(7));
  node.Add("Deep colour 4:2:0", SetFlags(depths), at(7));
  if (at.size() >= 9) node.Add("Features", SetFlags(gaming), at(8));
  AddVrr(r, at, node);
  AddDsc(r, at, node);
  return true;
}

}  // namespace reedid::document
