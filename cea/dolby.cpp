// Dolby's vendor-specific video and audio data blocks. Bytes 2..4 are the OUI 00-D0-46.
//
// Dolby Vision, extended tag 1; byte 5: version 7..5, YCbCr 4:2:2 in 12 bits 0
//   version 0, 26 bytes: 5 2160p60 1, global dimming 2; then pairs of 12-bit numbers in 3 bytes, the low 4 bits of both
//     in the first: 6 red, 9 green, 12 blue, 15 white, 18 minimum and maximum PQ code; 21 display management version
//   version 1: 5 2160p60 1, display management 4..2; 6 global dimming 0, maximum luminance 7..1; 7 P3 0, minimum 7..1;
//     15 bytes: 9-14 red, green, blue / 256; 12 bytes: 8 low latency 1..0, blue y 4..2, x 7..5; 9, 10 red y 0 and green
//     x, y 7..1; 11 red y 2..0, red x 7..3
//   version 2, 12 bytes: 5 backlight control 1, display management 4..2; 6 backlight minimum 1..0, global dimming 2,
//     minimum PQ 7..3; 7 interfaces 1..0, parity 2, maximum PQ 7..3; 8, 9 4:4:4 0, green x, y 7..1; 10, 11 blue x, y
//     2..0, red x, y 7..3
//
// Dolby audio, extended tag 17; 6 bytes, or 7 as it is written
//   5     version - 1 2..0, centre 4, surround 5, height 6, headphone only 7
//   6     MAT of 48 kHz PCM only 0, a bit that displays set and nobody explains 7

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "reedid/cea_vendor.h"

namespace reedid {
namespace {

PIN_FIELDS(DolbyVisionRecord, 0, 1, version, size, yuv422_12bit, supports2160p60, globalDimming, colorimetryP3,
           backlightControl, backlightMinLuminance, interfaces, lowLatency, parity, rgb444, dmMajor, dmMinor,
           targetMinLuminance, targetMaxLuminance);
PIN_FIELDS(DolbyVisionRecord, 16, 2, targetMinPq, targetMaxPq, redX, redY, greenX, greenY, blueX, blueY, whiteX,
           whiteY);
PIN_SIZE(DolbyVisionRecord, 36);
PIN_FIELDS(DolbyAudioRecord, 0, 1, version, centerZone, surroundZone, heightZone, headphoneOnly, matPcm48Only,
           unknownFlag);
PIN_SIZE(DolbyAudioRecord, 7);

// Where the primaries of the short forms begin, in 1/256.
struct Chromaticity {
  uint32_t x, y;
};
constexpr Chromaticity kRed = {160, 64}, kGreen = {0, 128}, kBlue = {32, 8};

// In 1/256 above `base`; the record has 1/4096.
template <class... Places>
void Coordinate(const ExactIo& io, uint16_t& field, uint32_t base, Places... places) {
  Coded(
      io, field, [base](uint32_t code) { return (base + code) * 16; },
      [base](uint32_t value) { return value % 16 == 0 ? value / 16 - base : ~0u; }, places...);
}

// Two numbers of 12 bits, from byte `at`.
void Pair(const ExactIo& io, uint16_t& first, uint16_t& second, uint8_t at) {
  io(first, Place{at, 4, 4}, Place{Low8(at + 1)});
  io(second, Place{at, 0, 4}, Place{Low8(at + 2)});
}

struct DolbyVision : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO, 5, 32};
  static constexpr uint32_t kOui = REEDID_OUI_DOLBY;
  static constexpr uint8_t kShort = 12, kLong = 15, kVersion0 = 26;

  static bool Takes(Bytes bytes) {
    const unsigned version = bytes[5] >> 5;
    const size_t size = bytes.size();
    if (version == 0) return size == kVersion0;
    return version == 1 ? size == kShort || size == kLong : version == 2 && size >= kShort;
  }

  static unsigned Size(const DolbyVisionRecord& r, const uint8_t*) {
    if (r.version == 0) return kVersion0;
    return r.version == 1 && r.size == kLong ? kLong : kShort;
  }

  static void Layout(const ExactIo& io, DolbyVisionRecord& r, unsigned size) {
    io(r.version, Place{5, 5, 3});
    if (io.Reads()) r.size = r.version == 2 ? kShort : Low8(size);
    io(r.yuv422_12bit, Place{5, 0, 1});
    if (r.version == 0) Version0(io, r);
    if (r.version == 1) Version1(io, r);
    if (r.version == 2) Version2(io, r);
  }

 private:
  static void Version0(const ExactIo& io, DolbyVisionRecord& r) {
    io(r.supports2160p60, Place{5, 1, 1});
    io(r.globalDimming, Place{5, 2, 1});
    Pair(io, r.redX, r.redY, 6);
    Pair(io, r.greenX, r.greenY, 9);
    Pair(io, r.blueX, r.blueY, 12);
    Pair(io, r.whiteX, r.whiteY, 15);
    Pair(io, r.targetMinPq, r.targetMaxPq, 18);
    io(r.dmMajor, Place{21, 4, 4});
    io(r.dmMinor, Place{21, 0, 4});
  }

  static void Version1(const ExactIo& io, DolbyVisionRecord& r) {
    io(r.supports2160p60, Place{5, 1, 1});
    Above(io, r.dmMajor, 2, Place{5, 2, 3});
    io(r.globalDimming, Place{6, 0, 1});
    io(r.targetMaxLuminance, Place{6, 1, 7});
    io(r.colorimetryP3, Place{7, 0, 1});
    io(r.targetMinLuminance, Place{7, 1, 7});
    if (r.size == kLong) {
      Coordinate(io, r.redX, 0, Place{9});
      Coordinate(io, r.redY, 0, Place{10});
      Coordinate(io, r.greenX, 0, Place{11});
      Coordinate(io, r.greenY, 0, Place{12});
      Coordinate(io, r.blueX, 0, Place{13});
      Coordinate(io, r.blueY, 0, Place{14});
      return;
    }
    io(r.lowLatency, Place{8, 0, 2});
    Coordinate(io, r.redX, kRed.x, Place{11, 3, 5});
    Coordinate(io, r.redY, kRed.y, Place{9, 0, 1}, Place{10, 0, 1}, Place{11, 0, 3});
    Coordinate(io, r.greenX, kGreen.x, Place{9, 1, 7});
    Coordinate(io, r.greenY, kGreen.y, Place{10, 1, 7});
    Coordinate(io, r.blueX, kBlue.x, Place{8, 5, 3});
    Coordinate(io, r.blueY, kBlue.y, Place{8, 2, 3});
  }

  static void Version2(const ExactIo& io, DolbyVisionRecord& r) {
    io(r.backlightControl, Place{5, 1, 1});
    Above(io, r.dmMajor, 2, Place{5, 2, 3});
    ScaledLessOne(io, r.backlightMinLuminance, 25, Place{6, 0, 2});
    io(r.globalDimming, Place{6, 2, 1});
    Scaled(io, r.targetMinPq, 20, Place{6, 3, 5});
    io(r.interfaces, Place{7, 0, 2});
    io(r.parity, Place{7, 2, 1});
    Coded(
        io, r.targetMaxPq, [](uint32_t code) { return 2055 + 65 * code; },
        [](uint32_t value) { return (value - 2055) / 65; }, Place{7, 3, 5});
    io(r.rgb444, Place{9, 0, 1}, Place{8, 0, 1});
    Coordinate(io, r.greenX, kGreen.x, Place{8, 1, 7});
    Coordinate(io, r.greenY, kGreen.y, Place{9, 1, 7});
    Coordinate(io, r.redX, kRed.x, Place{10, 3, 5});
    Coordinate(io, r.redY, kRed.y, Place{11, 3, 5});
    Coordinate(io, r.blueX, kBlue.x, Place{10, 0, 3});
    Coordinate(io, r.blueY, kBlue.y, Place{11, 0, 3});
  }
};

struct DolbyAudio : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_AUDIO, 6, 32};
  static constexpr uint32_t kOui = REEDID_OUI_DOLBY;

  // Nearly all have the seventh byte, so that an empty one is written, too.
  static unsigned Size(const DolbyAudioRecord&, const uint8_t*) { return 7; }

  static void Layout(const ExactIo& io, DolbyAudioRecord& r, unsigned) {
    LessOne(io, r.version, Place{5, 0, 3});
    io(r.centerZone, Place{5, 4, 1});
    io(r.surroundZone, Place{5, 5, 1});
    io(r.heightZone, Place{5, 6, 1});
    io(r.headphoneOnly, Place{5, 7, 1});
    io(r.matPcm48Only, Place{6, 0, 1});
    io(r.unknownFlag, Place{6, 7, 1});
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetDolbyVision(const CeaDataBlock* entry, DolbyVisionRecord* record) {
  return GetExact<DolbyVision>(entry, record);
}

int32_t CEA_SetDolbyVision(const DolbyVisionRecord* record, CeaDataBlock* entry) {
  return SetExact<DolbyVision>(record, entry);
}

int32_t CEA_GetDolbyAudio(const CeaDataBlock* entry, DolbyAudioRecord* record) {
  return GetExact<DolbyAudio>(entry, record);
}

int32_t CEA_SetDolbyAudio(const DolbyAudioRecord* record, CeaDataBlock* entry) {
  return SetExact<DolbyAudio>(record, entry);
}
