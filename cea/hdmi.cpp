// The two vendor-specific data blocks of HDMI. Bytes 1..3 are the OUI, least significant byte first.
//
// HDMI 1.4b VSDB (HDMI 1.4b, table 8-16), OUI 00-0C-03:
//   4-5   physical address, high byte first
//   6     AI 7, 48 bit 6, 36 bit 5, 30 bit 4, Y444 3, DVI dual 0
//   7     max TMDS clock / 5 MHz
//   8     latency 7, interlaced latency 6, video 5, content types 3..0
//   9-12  latencies, those that are there: 0 not stated, else ms / 2 + 1
//   then  image size 4..3; HDMI VIC count 7..5; HDMI VICs
//
// HDMI Forum VSDB (HDMI 2.1, table 10-6), OUI C4-5D-D8:
//   4     version
//   5     max TMDS character rate / 5 MHz
//   6     capabilities
//   7     max FRL rate 7..4, deep colour in 4:2:0 2..0
//   8     VRR, ALLM, FAPA flags
//   9     VRRmax 9..8 7..6, VRRmin 5..0
//   10    VRRmax 7..0
//   11    DSC 7, native 4:2:0 6, all bpp 3, 16/12/10 bpc 2..0
//   12    DSC max FRL rate 7..4, max slices 3..0
//   13    DSC total chunk KiB - 1 5..0

#include "base/layout.h"
#include "base/log.h"
#include "base/pinned.h"
#include "cea/codec.h"
#include "cea/hdmi_layout.h"

namespace reedid {
namespace {

PIN_FIELDS(H14bRecord, 0, 2, physAddr);
PIN_FIELDS(H14bRecord, 2, 1, supportsAI, DC_48bit, DC_36bit, DC_30bit, DC_Y444, DVI_Dual);
PIN_FIELDS(H14bRecord, 8, 2, max_TMDS_Clock);
PIN_FIELDS(H14bRecord, 10, 1, latencyPresent, iLatencyPresent, hdmiVideoPresent);
PIN_FIELDS(H14bRecord, 13, 4, cnc);
PIN_FIELDS(H14bRecord, 18, 2, videoLatency, audioLatency, iVideoLatency, iAudioLatency);
PIN_FIELDS(H14bRecord, 26, 1, imageSize, hdmiVicLen);
PIN_FIELDS(H14bRecord, 28, 8, hdmiVics);
PIN_SIZE(H14bRecord, 36);
PIN_FIELDS(HfVsdbRecord, 0, 1, version);
PIN_FIELDS(HfVsdbRecord, 2, 2, TMDS_Character_Rate);
PIN_FIELDS(HfVsdbRecord, 4, 1, scdcPresent, rrCapable, ccbpci, lte340Scramble, independentView, dualView,
           osdDisparity3d, Max_FRL_Rate, dc48bit420, dc36bit420, dc30bit420, mDelta, cinemaVrr, cnmVrr, fva, allm,
           fapaStartLocation);
PIN_FIELDS(HfVsdbRecord, 22, 2, VRRmax);
PIN_FIELDS(HfVsdbRecord, 24, 1, VRRmin, DSC_1p2, dscNative420, dscAllBpp, dsc16bpc, dsc12bpc, dsc10bpc,
           DSC_Max_FRL_Rate, DSC_MaxSlices, DSC_TotalChunkKBytes);
PIN_SIZE(HfVsdbRecord, 34);

constexpr CeaForm kAnyVsdb = {CEA_TAG_VENDOR, 0, 4, 31};
constexpr CeaForm kHdmi14b = {CEA_TAG_VENDOR, 0, 6, 31};
constexpr CeaForm kHdmiForum = {CEA_TAG_VENDOR, 0, 8, 31};
constexpr unsigned kLatencyByte = 9;

template <class Io, class Field>
constexpr void Latency(const Io& io, Field& milliseconds, unsigned at) {
  Coded(
      io, milliseconds, [](uint32_t code) { return code == 0 ? 0 : (code - 1) * 2; },
      [](uint32_t value) { return value == 0 ? 0 : value / 2 + 1; }, Place{Low8(at)});
}

// Gives back where the video part begins. The interlaced pair is read whenever the block is long enough for it, without
// asking its flag, and written with the other one.
template <class Io, class Record>
constexpr unsigned LatencyLayout(const Io& io, Record& r, unsigned size) {
  if (!Bit(r.latencyPresent, 0) || size < 11) return kLatencyByte;
  Latency(io, r.videoLatency, kLatencyByte);
  Latency(io, r.audioLatency, kLatencyByte + 1);
  if (size < 13) return kLatencyByte + 2;
  Latency(io, r.iVideoLatency, kLatencyByte + 2);
  Latency(io, r.iAudioLatency, kLatencyByte + 3);
  return kLatencyByte + 4;
}

template <class Io, class Record>
constexpr void HdmiVideoLayout(const Io& io, Record& r, unsigned at, unsigned size) {
  if (!Bit(r.hdmiVideoPresent, 0) || at + 1 >= size) return;
  io(r.imageSize, Place{Low8(at), 3, 2});
  io(r.hdmiVicLen, Place{Low8(at + 1), 5, 3});
  for (unsigned i = 0; i < r.hdmiVicLen; ++i) io(r.hdmiVics[i], Place{Low8(at + 2 + i)});
}

template <class Io, class Record>
constexpr void H14bLayout(const Io& io, Record& r, unsigned size) {
  H14bFixedLayout(io, r);
  HdmiVideoLayout(io, r, LatencyLayout(io, r, size), size);
}

unsigned H14bSize(const H14bRecord& r) {
  const unsigned latencies = Bit(r.latencyPresent, 0) ? (Bit(r.iLatencyPresent, 0) ? 4 : 2) : 0;
  return kLatencyByte + latencies + (Bit(r.hdmiVideoPresent, 0) ? r.hdmiVicLen + 2u : 0u);
}

// Values that contradict each other are the caller's to mend; they are reported and written all the same.
void ReportHfRates(const HfVsdbRecord& r, Caller caller = {}) {
  const unsigned needed = r.Max_FRL_Rate == 0 ? 0 : r.Max_FRL_Rate == 1 ? 300 : 600;
  if (r.TMDS_Character_Rate < needed) {
    REEDID_ERR_AS(caller, "invalid FRL_Rate %d or TMDS_Character_Rate %d", r.Max_FRL_Rate, r.TMDS_Character_Rate);
  }
}

void ReportVrr(const HfVsdbRecord& r, Caller caller = {}) {
  if (r.VRRmin > 48) REEDID_ERR_AS(caller, "invalid VRRmin %d", r.VRRmin);
  if (r.VRRmax < 100) REEDID_ERR_AS(caller, "invalid VRRmax %d", r.VRRmax);
}

void ReportDsc(const HfVsdbRecord& r, Caller caller = {}) {
  if (r.Max_FRL_Rate == 0 || r.DSC_Max_FRL_Rate == 0) {
    REEDID_ERR_AS(caller, "should set Max_FRL_Rate > 0 and DSC_Max_FRL_Rate > 0 when DSC_1p2=1");
  }
  if (r.DSC_MaxSlices == 0) REEDID_ERR_AS(caller, "should set DSC_MaxSlices > 0 when DSC_1p2=1");
  if (r.DSC_TotalChunkKBytes == 0) REEDID_ERR_AS(caller, "should set DSC_TotalChunkKBytes > 0 when DSC_1p2=1");
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetVSDBType(const CeaDataBlock* entry) {
  if (!Matches(entry, kAnyVsdb)) {
    REEDID_ERR("invalid parameters");
    return VSDB_NONE;
  }
  if (HasOui(*entry, REEDID_OUI_HDMI)) return VSDB_HDMI14B;
  return HasOui(*entry, REEDID_OUI_HDMI_FORUM) ? VSDB_HDMI_FORUM : VSDB_NONE;
}

int32_t CEA_GetH14bVSDB(const CeaDataBlock* entry, H14bRecord* record) {
  if (!Matches(entry, kHdmi14b) || record == nullptr) return REEDID_ERR("invalid parameters");
  if (!HasOui(*entry, REEDID_OUI_HDMI)) return BadOui(*entry);
  *record = {};
  H14bLayout(LayoutReader(BytesOf(*entry)), *record, entry->size);
  return 0;
}

int32_t CEA_SetH14bVSDB(const H14bRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry) || record->hdmiVicLen > sizeof record->hdmiVics) {
    return REEDID_ERR("invalid parameters");
  }
  const LayoutWriter writer = BeginDataBlock(*entry, kHdmi14b, H14bSize(*record));
  PutLe24(entry->bytes + 1, REEDID_OUI_HDMI);
  if (record->physAddr == 0x0000 || record->physAddr == 0xFFFF) REEDID_WARN("invalid phyaddr: %04X", record->physAddr);
  if (record->max_TMDS_Clock < 25) REEDID_ERR("invalid max_TMDS_Clock: %dMHz", record->max_TMDS_Clock);
  H14bLayout(writer, *record, REEDID_CEA_DATA_BLOCK_SIZE);
  return 0;
}

int32_t CEA_GetHFVSDB(const CeaDataBlock* entry, HfVsdbRecord* record) {
  if (!Matches(entry, kHdmiForum) || record == nullptr) return REEDID_ERR("invalid parameters");
  if (!HasOui(*entry, REEDID_OUI_HDMI_FORUM)) return BadOui(*entry);
  *record = {};
  const Bytes bytes = BytesOf(*entry);
  const LayoutReader reader(bytes);
  HfBaseLayout(reader, *record);
  HfVrrFlagsLayout(reader, *record);
  if (bytes.size() >= 11) HfVrrLayout(reader, *record);
  if (bytes.size() >= 14) {
    HfDscLayout(reader, *record);
    record->DSC_TotalChunkKBytes = Low8(Bits(bytes[13], 0, 6) + 1);
  }
  return 0;
}

int32_t CEA_SetHFVSDB(const HfVsdbRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  const LayoutWriter writer = BeginDataBlock(*entry, kHdmiForum, 8);
  uint8_t* bytes = entry->bytes;
  PutLe24(bytes + 1, REEDID_OUI_HDMI_FORUM);
  ReportHfRates(*record);
  HfBaseLayout(writer, *record);
  HfVrrFlagsLayout(writer, *record);
  unsigned size = bytes[8] != 0 ? 9 : 8;
  if (record->VRRmax != 0) {
    ReportVrr(*record);
    HfVrrLayout(writer, *record);
    size = 11;
  }
  if (Bit(record->DSC_1p2, 0)) {
    ReportDsc(*record);
    HfDscLayout(writer, *record);
    // 64 KiB wraps to 0xFF: odd on purpose, docs/oddities.md.
    bytes[13] = Low8((record->DSC_TotalChunkKBytes & 0x3F) - 1);
    size = 14;
  }
  entry->size = Low8(size);
  bytes[0] = Low8(unsigned{CEA_TAG_VENDOR} << 5 | (size - 1));
  return 0;
}
