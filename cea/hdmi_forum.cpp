// What HDMI 2.1 sinks can do (HDMI 2.1, table 10-6): the same bytes from 4 on in the HDMI Forum VSDB, bytes 1..3 the OUI
// C4-5D-D8, and in the Sink Capability Data Block, extended tag 121, bytes 2..3 0. And the Extension Override Data Block,
// extended tag 120.
//
//   4     version
//   5     max TMDS character rate / 5 MHz
//   6     SCDC 7, read request 6, cable status 5, CCBPCI 4, scrambling up to 340 MHz 3, 3D: independent view 2, dual view
//         1, OSD disparity 0
//   7     max FRL rate 7..4, UHD VIC 3, deep colour in 4:2:0 2..0
//   8     FAPA end extended 7, QMS 6, M delta 5, cinema VRR 4, negative M_VRR 3, fast vactive 2, ALLM 1, FAPA start 0
//   9     VRRmax 9..8 7..6, VRRmin 5..0
//   10    VRRmax 7..0
//   11    DSC 7, native 4:2:0 6, QMS TFRmax 5, TFRmin 4, all bpp 3, 16/12/10 bpc 2..0
//   12    DSC max FRL rate 7..4, max slices 3..0
//   13    DSC total chunk KiB - 1 5..0
//
// Extension override: 2 number of extension blocks

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "cea/hdmi_layout.h"
#include "reedid/cea_hdmi.h"

namespace reedid {
namespace {

PIN_FIELDS(HfScdsRecord, 0, 1, version, Max_FRL_Rate);
PIN_FIELDS(HfScdsRecord, 2, 2, TMDS_Character_Rate);
PIN_FIELDS(HfScdsRecord, 4, 1, scdcPresent, rrCapable, cableStatus, ccbpci, lte340Scramble, independentView, dualView,
           osdDisparity3d, UHD_VIC, dc48bit420, dc36bit420, dc30bit420, fapaEndExtended, QMS, mDelta, cinemaVrr, cnmVrr,
           fva, allm, fapaStartLocation);
PIN_FIELDS(HfScdsRecord, 24, 2, VRRmax);
PIN_FIELDS(HfScdsRecord, 26, 1, VRRmin, DSC_1p2, dscNative420, QMS_TFRmax, QMS_TFRmin, dscAllBpp, dsc16bpc, dsc12bpc,
           dsc10bpc, DSC_Max_FRL_Rate, DSC_MaxSlices, DSC_TotalChunkKBytes);
PIN_SIZE(HfScdsRecord, 38);
PIN_FIELDS(ExtensionOverrideRecord, 0, 1, extensionBlocks);
PIN_SIZE(ExtensionOverrideRecord, 1);

struct SinkCapabilities : ExactDefaults {
  static constexpr uint8_t kChunkByte = 13;

  // No shorter than the last byte that says something; a rate in bytes 9 and 10 is never cut in two.
  static unsigned Size(const HfScdsRecord& r, const uint8_t* bytes) {
    if (r.DSC_TotalChunkKBytes != 0) return kChunkByte + 1;
    const unsigned size = UsedSize(bytes, 8);
    return size == 10 ? 11 : size;
  }

  static void Layout(const ExactIo& io, HfScdsRecord& r, unsigned size) {
    HfBaseLayout(io, r);
    HfVrrFlagsLayout(io, r);
    HfVrrLayout(io, r);
    HfDscLayout(io, r);
    io(r.cableStatus, Place{6, 5, 1});
    io(r.UHD_VIC, Place{7, 3, 1});
    io(r.fapaEndExtended, Place{8, 7, 1});
    io(r.QMS, Place{8, 6, 1});
    io(r.QMS_TFRmax, Place{11, 5, 1});
    io(r.QMS_TFRmin, Place{11, 4, 1});
    // 1 KiB is stored as 0, which only a block that reaches that far states.
    if (io.Reads() ? size > kChunkByte : r.DSC_TotalChunkKBytes != 0) {
      LessOne(io, r.DSC_TotalChunkKBytes, Place{kChunkByte, 0, 6});
    }
  }
};

struct ForumVsdb : SinkCapabilities {
  static constexpr CeaForm kForm = {CEA_TAG_VENDOR, 0, 8, 32};
  static constexpr uint32_t kOui = REEDID_OUI_HDMI_FORUM;
};

struct ForumScdb : SinkCapabilities {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_SINK_CAPABILITY, 8, 32};
};

struct ExtensionOverride : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_EXTENSION_OVERRIDE, 3, 32};

  static unsigned Size(const ExtensionOverrideRecord&, const uint8_t*) { return 3; }

  static void Layout(const ExactIo& io, ExtensionOverrideRecord& r, unsigned) { io(r.extensionBlocks, Place{2}); }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetHFVSDBScds(const CeaDataBlock* entry, HfScdsRecord* record) {
  return GetExact<ForumVsdb>(entry, record);
}

int32_t CEA_SetHFVSDBScds(const HfScdsRecord* record, CeaDataBlock* entry) {
  return SetExact<ForumVsdb>(record, entry);
}

int32_t CEA_GetHFSCDB(const CeaDataBlock* entry, HfScdsRecord* record) {
  return GetExact<ForumScdb>(entry, record);
}

int32_t CEA_SetHFSCDB(const HfScdsRecord* record, CeaDataBlock* entry) {
  return SetExact<ForumScdb>(record, entry);
}

int32_t CEA_GetHFEEODB(const CeaDataBlock* entry, ExtensionOverrideRecord* record) {
  return GetExact<ExtensionOverride>(entry, record);
}

int32_t CEA_SetHFEEODB(const ExtensionOverrideRecord* record, CeaDataBlock* entry) {
  return SetExact<ExtensionOverride>(record, entry);
}
