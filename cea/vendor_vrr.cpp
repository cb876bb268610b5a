// The vendor-specific data blocks by which graphics cards know a variable refresh rate. Bytes 1..3 are the OUI.
//
// AMD FreeSync, OUI 00-00-1A; 9 bytes of version 1, 14 of version 2, 16 to 21 of version 3
//   4     version
//   5     flags: capability 0 0, HDR data 1, backlight control 2, local dimming 3, Panel Replay or PSR 4, Replay 5,
//         Panel Replay 6, extra bytes 7
//   6, 7  minimum and maximum refresh rate / Hz
//   8     MCCS code that switches it
//   9     transfer functions 5..0, panel type 7..6
//   10-13 maximum and minimum luminance, twice
//   14-15 version 3: maximum refresh rate in 10 bits; byte 7 repeats it up to 240 for who reads older versions
//   16-18 a number of 24 bits, low byte first
//   19-20 two numbers of 7 bits, each with a flag 7
//
// NVIDIA, OUI 00-04-4B: 4 version, 5 minimum refresh rate / Hz

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "reedid/cea_vendor.h"

namespace reedid {
namespace {

PIN_FIELDS(AmdVsdbRecord, 0, 1, version, caps0, hdrValid, backlightControl, localDimming, replayPsrSwitch, replaySprs,
           panelReplay, extraValid, minRefresh);
PIN_FIELDS(AmdVsdbRecord, 10, 2, maxRefresh);
PIN_FIELDS(AmdVsdbRecord, 12, 1, mccsVcpCode, eotf0, eotf1, eotfPq, eotf3, eotfPqInterim, eotf5, panelType,
           maxLuminance1, minLuminance1, maxLuminance2, minLuminance2);
PIN_FIELDS(AmdVsdbRecord, 24, 4, extra24);
PIN_FIELDS(AmdVsdbRecord, 28, 1, extra19, extra19Valid, dpcdOffset, dpcdOffsetValid);
PIN_SIZE(AmdVsdbRecord, 32);
PIN_FIELDS(NvidiaVsdbRecord, 0, 1, version, vrrMinRefresh);
PIN_SIZE(NvidiaVsdbRecord, 2);

constexpr uint8_t kVersionByte = 4;

struct Amd : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_VENDOR, 0, 9, 32};
  static constexpr uint32_t kOui = REEDID_OUI_AMD;

  static bool Takes(Bytes bytes) { return bytes[kVersionByte] >= 1 && bytes[kVersionByte] <= 3; }

  static unsigned Size(const AmdVsdbRecord& r, const uint8_t* bytes) {
    return r.version == 1 ? 9 : r.version == 2 ? 14 : UsedSize(bytes, 16);
  }

  static void Layout(const ExactIo& io, AmdVsdbRecord& r, unsigned size) {
    io(r.version, Place{kVersionByte});
    io(r.caps0, Place{5, 0, 1});
    io(r.hdrValid, Place{5, 1, 1});
    io(r.backlightControl, Place{5, 2, 1});
    io(r.localDimming, Place{5, 3, 1});
    io(r.replayPsrSwitch, Place{5, 4, 1});
    io(r.replaySprs, Place{5, 5, 1});
    io(r.panelReplay, Place{5, 6, 1});
    io(r.extraValid, Place{5, 7, 1});
    io(r.minRefresh, Place{6});
    MaxRefresh(io, r, size);
    io(r.mccsVcpCode, Place{8});
    if (r.version != 1) Panel(io, r);
    if (r.version == 3) Extra(io, r);
  }

 private:
  static void MaxRefresh(const ExactIo& io, AmdVsdbRecord& r, unsigned size) {
    if (r.version != 3 || size < 16) {
      io(r.maxRefresh, Place{7});
      return;
    }
    io(r.maxRefresh, Place{14}, Place{15, 0, 2});
    uint16_t repeated = r.maxRefresh > 0xFF ? uint16_t{240} : r.maxRefresh;
    io(repeated, Place{7});
  }

  static void Panel(const ExactIo& io, AmdVsdbRecord& r) {
    io(r.eotf0, Place{9, 0, 1});
    io(r.eotf1, Place{9, 1, 1});
    io(r.eotfPq, Place{9, 2, 1});
    io(r.eotf3, Place{9, 3, 1});
    io(r.eotfPqInterim, Place{9, 4, 1});
    io(r.eotf5, Place{9, 5, 1});
    io(r.panelType, Place{9, 6, 2});
    io(r.maxLuminance1, Place{10});
    io(r.minLuminance1, Place{11});
    io(r.maxLuminance2, Place{12});
    io(r.minLuminance2, Place{13});
  }

  static void Extra(const ExactIo& io, AmdVsdbRecord& r) {
    io(r.extra24, Place{16}, Place{17}, Place{18});
    io(r.extra19, Place{19, 0, 7});
    io(r.extra19Valid, Place{19, 7, 1});
    io(r.dpcdOffset, Place{20, 0, 7});
    io(r.dpcdOffsetValid, Place{20, 7, 1});
  }
};

struct Nvidia : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_VENDOR, 0, 6, 32};
  static constexpr uint32_t kOui = REEDID_OUI_NVIDIA;

  static bool Takes(Bytes bytes) { return bytes[kVersionByte] == 1; }
  static unsigned Size(const NvidiaVsdbRecord&, const uint8_t*) { return 6; }

  static void Layout(const ExactIo& io, NvidiaVsdbRecord& r, unsigned) {
    io(r.version, Place{kVersionByte});
    io(r.vrrMinRefresh, Place{5});
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetAmdVSDB(const CeaDataBlock* entry, AmdVsdbRecord* record) {
  return GetExact<Amd>(entry, record);
}

int32_t CEA_SetAmdVSDB(const AmdVsdbRecord* record, CeaDataBlock* entry) {
  return SetExact<Amd>(record, entry);
}

int32_t CEA_GetNvidiaVSDB(const CeaDataBlock* entry, NvidiaVsdbRecord* record) {
  return GetExact<Nvidia>(entry, record);
}

int32_t CEA_SetNvidiaVSDB(const NvidiaVsdbRecord* record, CeaDataBlock* entry) {
  return SetExact<Nvidia>(record, entry);
}
