// The data blocks that VESA defined for CTA-861 extensions.
//
// Video display device, extended tag 2, 32 bytes
//   2     interface 7..4, channels 3..0         16  dithering 7..6, direct drive 5, no overdrive 4, deinterlacing 3
//   3     version 7..4, release 3..0            17  audio 7, separate 6, override 5
//   4     content protection                    18  audio delay: later 7, 6..0 / 2 ms; 0 not told
//   5-6   least clock 5 7..2, most 5 1..0, 6    19  rate conversion 7..6, range 5..0; 20 nominal rate
//   7-10  native pixels                         21  depth - 1: interface 7..4, display 3..0
//   11    100 * (aspect ratio - 1)              22-29 number of more primaries 23 1..0; x, y: high bits 24 to 29, low
//   12    orientation 7..6, rotation 5..4,          bits of the fourth 22 7..4, fifth 22 3..0, sixth 23 7..4
//         first pixel 3..2, scan 1..0           30  white to black 7, response time 6..0
//   13-15 sub-pixels, pitch                     31  overscan 7..4, 3..0
//
// Display transfer characteristics, tag 5, 8, 16 or 32 bytes: 1 curve 7..6, first sample 5..0; 2.. steps

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "reedid/cea_display.h"

namespace reedid {
namespace {

PIN_FIELDS(VesaDeviceRecord, 0, 2, maxClock, nativeWidth, nativeHeight, aspectRatioX100, primary4X, primary4Y,
           primary5X, primary5Y, primary6X, primary6Y, responseTime, audioDelay);
PIN_FIELDS(VesaDeviceRecord, 24, 1, interfaceType, channels, version, release, contentProtection, minClock, orientation,
           rotation, zeroPixel, scanDirection, subPixels, hPitch, vPitch, dithering, directDrive, noOverdrive,
           deinterlacing, audio, separateAudio, audioOverride, audioDelayTold, rateConversion, rateRange, nominalRate,
           interfaceDepth, displayDepth, extraPrimaries, whiteToBlack, hOverscan, vOverscan);
PIN_SIZE(VesaDeviceRecord, 54);
PIN_FIELDS(VesaTransferRecord, 0, 1, curve, count);
PIN_FIELDS(VesaTransferRecord, 2, 64, samples);
PIN_SIZE(VesaTransferRecord, 66);

struct VesaDevice : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_VESA_DISPLAY_DEVICE, 32, 32};
  static unsigned Size(const VesaDeviceRecord&, const uint8_t*) { return 32; }

  static void Layout(const ExactIo& io, VesaDeviceRecord& r, unsigned) {
    io(r.interfaceType, Place{2, 4, 4});
    io(r.channels, Place{2, 0, 4});
    io(r.version, Place{3, 4, 4});
    io(r.release, Place{3, 0, 4});
    io(r.contentProtection, Place{4});
    io(r.minClock, Place{5, 2, 6});
    io(r.maxClock, Place{6}, Place{5, 0, 2});
    Panel(io, r);
    Picture(io, r);
    io(r.extraPrimaries, Place{23, 0, 2});
    Primary(io, r.primary4X, r.primary4Y, 24, {22, 4, 4});
    Primary(io, r.primary5X, r.primary5Y, 26, {22, 0, 4});
    Primary(io, r.primary6X, r.primary6Y, 28, {23, 4, 4});
  }

 private:
  static void Panel(const ExactIo& io, VesaDeviceRecord& r) {
    io(r.nativeWidth, Place{7}, Place{8});
    io(r.nativeHeight, Place{9}, Place{10});
    Above(io, r.aspectRatioX100, 100, Place{11});
    io(r.orientation, Place{12, 6, 2});
    io(r.rotation, Place{12, 4, 2});
    io(r.zeroPixel, Place{12, 2, 2});
    io(r.scanDirection, Place{12, 0, 2});
    io(r.subPixels, Place{13});
    io(r.hPitch, Place{14});
    io(r.vPitch, Place{15});
    io(r.whiteToBlack, Place{30, 7, 1});
    io(r.responseTime, Place{30, 0, 7});
    io(r.hOverscan, Place{31, 4, 4});
    io(r.vOverscan, Place{31, 0, 4});
  }

  static void Picture(const ExactIo& io, VesaDeviceRecord& r) {
    io(r.dithering, Place{16, 6, 2});
    io(r.directDrive, Place{16, 5, 1});
    io(r.noOverdrive, Place{16, 4, 1});
    io(r.deinterlacing, Place{16, 3, 1});
    io(r.audio, Place{17, 7, 1});
    io(r.separateAudio, Place{17, 6, 1});
    io(r.audioOverride, Place{17, 5, 1});
    AudioDelay(io, r);
    io(r.rateConversion, Place{19, 6, 2});
    io(r.rateRange, Place{19, 0, 6});
    io(r.nominalRate, Place{20});
    LessOne(io, r.interfaceDepth, Place{21, 4, 4});
    LessOne(io, r.displayDepth, Place{21, 0, 4});
  }

  // A delay of 0 ms is later by nothing.
  static void AudioDelay(const ExactIo& io, VesaDeviceRecord& r) {
    constexpr unsigned kLater = 0x80;
    const int steps = r.audioDelay / 2;
    uint8_t code = !r.audioDelayTold ? uint8_t{0} : steps < 0 ? Low8(-steps) : Low8(kLater | Low8(steps));
    io(code, Place{18});
    if (!io.Reads()) return;
    r.audioDelayTold = code != 0;
    r.audioDelay = static_cast<int16_t>(code & kLater ? 2 * (code - static_cast<int>(kLater)) : -2 * code);
  }

  // `low` has the two low bits of x above those of y.
  static void Primary(const ExactIo& io, uint16_t& x, uint16_t& y, uint8_t at, Place low) {
    io(x, Place{low.byte, Low8(low.low + 2), 2}, Place{at});
    io(y, Place{low.byte, low.low, 2}, Place{Low8(at + 1)});
  }
};

struct VesaTransfer : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_VESA_TRANSFER, 0, 8, 32};
  static constexpr uint16_t kLast = 1023;

  static bool IsSize(size_t size) { return size == 8 || size == 16 || size == 32; }
  static bool Takes(Bytes bytes) { return IsSize(bytes.size()); }
  static bool Holds(const VesaTransferRecord& r) { return IsSize(r.count); }
  static unsigned Size(const VesaTransferRecord& r, const uint8_t*) { return r.count; }

  static void Layout(const ExactIo& io, VesaTransferRecord& r, unsigned size) {
    if (io.Reads()) r.count = Low8(size);
    io(r.curve, Place{1, 6, 2});
    io(r.samples[0], Place{1, 0, 6});
    for (unsigned i = 1; i + 1 < r.count; ++i) Above(io, r.samples[i], r.samples[i - 1], Place{Low8(i + 1)});
    if (io.Reads()) r.samples[r.count - 1] = kLast;
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetVesaDevice(const CeaDataBlock* entry, VesaDeviceRecord* record) {
  return GetExact<VesaDevice>(entry, record);
}

int32_t CEA_SetVesaDevice(const VesaDeviceRecord* record, CeaDataBlock* entry) {
  return SetExact<VesaDevice>(record, entry);
}

int32_t CEA_GetVesaTransfer(const CeaDataBlock* entry, VesaTransferRecord* record) {
  return GetExact<VesaTransfer>(entry, record);
}

int32_t CEA_SetVesaTransfer(const VesaTransferRecord* record, CeaDataBlock* entry) {
  return SetExact<VesaTransfer>(record, entry);
}
