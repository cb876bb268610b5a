// What a panel is and what its colours look like (DisplayID 1.3 and 2.1). Byte 1 has the revision 2..0.
//
// Colour characteristics, tag 0x02: byte 1 CIE 1976 7, transfer characteristics 6..3
//   3     temporal 7, number of primaries 6..4, of white points 3..0
//   4     without primaries: standard colour space
//   then  x and y of each in 3 bytes, 12 bits each / 4096
//
// Transfer characteristics, tag 0x0E: byte 1 identifier 7..4; 3 first is white 7, individual 6, four parameters 5; 4.. curves
//
// Brightness luminance range, tag 0x2E, 9 bytes: 3-4 least and 5-6 most of SDR, 7-8 boost, half-precision numbers
//
// Stereo display interface, tags 0x10 and 0x27: byte 1 which timings 7..6
//   3     number of bytes of method and parameters, which follow: 4 method, 5.. parameters
//   then  with 1.6 timing codes
//
// Display device data, tag 0x0C, 16 bytes
//   3     technology                            10  orientation 7..6, rotation 5..4, first pixel 3..2, scan 1..0
//   4     mode 7..4, backlight can be           11  sub-pixels
//         switched 3, dimmed 2                  12-13 pitch / 0.01 mm
//   5-8   native pixels - 1, 0 none             14  bit depth 3..0
//   9     100 * (aspect ratio - 1)              15  white to black 7, response time / ms 6..0

#include "base/pinned.h"
#include "displayid/exact_codec.h"
#include "reedid/displayid_blocks.h"

namespace reedid {
namespace {

PIN_FIELDS(ColorPoint, 0, 2, x, y);
PIN_SIZE(ColorPoint, 4);
PIN_FIELDS(DispIdColorRecord, 0, 28, primaries);
PIN_FIELDS(DispIdColorRecord, 28, 60, whites);
PIN_FIELDS(DispIdColorRecord, 88, 2, standardColorSpace);
PIN_FIELDS(DispIdColorRecord, 90, 1, revision, cie1976, transferId, temporal, primaryCount, whiteCount);
PIN_SIZE(DispIdColorRecord, 96);
PIN_FIELDS(DispIdTransferRecord, 0, 1, revision, identifier, firstIsWhite, individualCurves, fourParameters, length);
PIN_FIELDS(DispIdTransferRecord, 6, 247, curves);
PIN_SIZE(DispIdTransferRecord, 253);
PIN_FIELDS(StereoRecord, 0, 1, revision, timingSupport, method, parameterCount);
PIN_FIELDS(StereoRecord, 4, 246, parameters);
PIN_FIELDS(StereoRecord, 250, 1, codeLength);
PIN_FIELDS(StereoRecord, 251, 246, codes);
PIN_SIZE(StereoRecord, 497);
PIN_FIELDS(BrightnessRecord, 0, 2, minSdrLuminance, maxSdrLuminance, maxBoostLuminance, revision);
PIN_SIZE(BrightnessRecord, 8);
PIN_FIELDS(DisplayDeviceRecord, 0, 4, nativeWidth, nativeHeight);
PIN_FIELDS(DisplayDeviceRecord, 8, 2, aspectRatioX100, responseTime, hPitch, vPitch);
PIN_FIELDS(DisplayDeviceRecord, 16, 1, revision, technology, operatingMode, backlightSwitchable, backlightDimmable,
           orientation, rotation, zeroPixel, scanDirection, subPixels, bitDepth, whiteToBlack);
PIN_SIZE(DisplayDeviceRecord, 28);

struct Color : ExactDefaults {
  static constexpr DispIdForm kForm = {DISPID_TAG_COLOR, 4, 71};
  static constexpr unsigned kFixed = 4;

  static unsigned SizeOf(unsigned primaries, unsigned whites) {
    return kFixed + (primaries == 0 ? 1 : 0) + 3 * (primaries + whites);
  }
  static bool Takes(Bytes bytes) { return bytes.size() == SizeOf(Bits(bytes[3], 4, 3), Bits(bytes[3], 0, 4)); }
  static bool Holds(const DispIdColorRecord& r) {
    return r.primaryCount <= std::size(r.primaries) && r.whiteCount <= std::size(r.whites);
  }
  static unsigned Size(const DispIdColorRecord& r, const uint8_t*) { return SizeOf(r.primaryCount, r.whiteCount); }

  static void Layout(const ExactIo& io, DispIdColorRecord& r, unsigned) {
    io(r.revision, kRevision);
    io(r.cie1976, Place{1, 7, 1});
    io(r.transferId, Place{1, 3, 4});
    io(r.temporal, Place{3, 7, 1});
    io(r.primaryCount, Place{3, 4, 3});
    io(r.whiteCount, Place{3, 0, 4});
    unsigned at = kFixed;
    if (r.primaryCount == 0) io(r.standardColorSpace, Place{Low8(at++)});
    at = Points(io, r.primaries, r.primaryCount, at);
    Points(io, r.whites, r.whiteCount, at);
  }

 private:
  // Gives back where they end.
  static unsigned Points(const ExactIo& io, ColorPoint* points, unsigned count, unsigned at) {
    for (unsigned i = 0; i < count; ++i, at += 3) {
      io(points[i].x, Place{Low8(at)}, Place{Low8(at + 1), 0, 4});
      io(points[i].y, Place{Low8(at + 1), 4, 4}, Place{Low8(at + 2)});
    }
    return at;
  }
};

struct Transfer : ExactDefaults {
  static constexpr unsigned kFixed = 4;
  static constexpr DispIdForm kForm = {DISPID_TAG_TRANSFER, kFixed, REEDID_DISPID_DATA_BLOCK_SIZE};
  static bool Holds(const DispIdTransferRecord& r) { return r.length <= sizeof r.curves; }
  static unsigned Size(const DispIdTransferRecord& r, const uint8_t*) { return kFixed + r.length; }

  static void Layout(const ExactIo& io, DispIdTransferRecord& r, unsigned size) {
    io(r.revision, kRevision);
    io(r.identifier, Place{1, 4, 4});
    io(r.firstIsWhite, Place{3, 7, 1});
    io(r.individualCurves, Place{3, 6, 1});
    io(r.fourParameters, Place{3, 5, 1});
    if (io.Reads()) r.length = Low8(size - kFixed);
    io.Copy(r.curves, r.length, kFixed);
  }
};

struct Brightness : ExactDefaults {
  static constexpr DispIdForm kForm = {DISPID20_TAG_BRIGHTNESS, 9, 9};
  static unsigned Size(const BrightnessRecord&, const uint8_t*) { return 9; }

  static void Layout(const ExactIo& io, BrightnessRecord& r, unsigned) {
    io(r.revision, kRevision);
    io(r.minSdrLuminance, Place{3}, Place{4});
    io(r.maxSdrLuminance, Place{5}, Place{6});
    io(r.maxBoostLuminance, Place{7}, Place{8});
  }
};

struct Stereo : ExactDefaults {
  static constexpr unsigned kFixed = 5;  // up to the method
  static constexpr DispIdForm kForm = {DISPID_TAG_STEREO, kFixed, REEDID_DISPID_DATA_BLOCK_SIZE};

  static bool Takes(Bytes bytes) { return bytes[3] >= 1 && bytes.size() + 1 >= kFixed + bytes[3]; }
  static bool Holds(const StereoRecord& r) { return Size(r, nullptr) <= REEDID_DISPID_DATA_BLOCK_SIZE; }
  static unsigned Size(const StereoRecord& r, const uint8_t*) { return kFixed + r.parameterCount + r.codeLength; }

  static void Layout(const ExactIo& io, StereoRecord& r, unsigned size) {
    io(r.revision, kRevision);
    io(r.timingSupport, Place{1, 6, 2});
    Above(io, r.parameterCount, ~0u, Place{3});  // one less than with the method
    io(r.method, Place{4});
    io.Copy(r.parameters, r.parameterCount, kFixed);
    const bool listed = r.timingSupport == 1 || r.timingSupport == 3;
    if (!listed) return;
    if (io.Reads()) r.codeLength = Low8(size - kFixed - r.parameterCount);
    io.Copy(r.codes, r.codeLength, kFixed + r.parameterCount);
  }
};

struct Stereo20 : Stereo {
  static constexpr DispIdForm kForm = {DISPID20_TAG_STEREO, kFixed, REEDID_DISPID_DATA_BLOCK_SIZE};
};

struct DisplayDevice : ExactDefaults {
  static constexpr DispIdForm kForm = {DISPID_TAG_DISPLAY_DEVICE, 16, 16};
  static unsigned Size(const DisplayDeviceRecord&, const uint8_t*) { return 16; }

  static void Layout(const ExactIo& io, DisplayDeviceRecord& r, unsigned) {
    io(r.revision, kRevision);
    io(r.technology, Place{3});
    io(r.operatingMode, Place{4, 4, 4});
    io(r.backlightSwitchable, Place{4, 3, 1});
    io(r.backlightDimmable, Place{4, 2, 1});
    Pixels(io, r.nativeWidth, 5);
    Pixels(io, r.nativeHeight, 7);
    Above(io, r.aspectRatioX100, 100, Place{9});
    io(r.orientation, Place{10, 6, 2});
    io(r.rotation, Place{10, 4, 2});
    io(r.zeroPixel, Place{10, 2, 2});
    io(r.scanDirection, Place{10, 0, 2});
    io(r.subPixels, Place{11});
    io(r.hPitch, Place{12});
    io(r.vPitch, Place{13});
    io(r.bitDepth, Place{14, 0, 4});
    io(r.whiteToBlack, Place{15, 7, 1});
    io(r.responseTime, Place{15, 0, 7});
  }

 private:
  static void Pixels(const ExactIo& io, uint32_t& field, uint8_t at) {
    Coded(
        io, field, [](uint32_t code) { return code == 0 ? 0 : code + 1; },
        [](uint32_t value) { return value == 0 ? 0 : value - 1; }, Place{at}, Place{Low8(at + 1)});
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID_GetColor(const DispIdDataBlock* entry, DispIdColorRecord* record) {
  return GetExact<Color>(entry, record);
}

int32_t DispID_SetColor(const DispIdColorRecord* record, DispIdDataBlock* entry) {
  return SetExact<Color>(record, entry);
}

int32_t DispID_GetTransfer(const DispIdDataBlock* entry, DispIdTransferRecord* record) {
  return GetExact<Transfer>(entry, record);
}

int32_t DispID_SetTransfer(const DispIdTransferRecord* record, DispIdDataBlock* entry) {
  return SetExact<Transfer>(record, entry);
}

int32_t DispID20_GetBrightness(const DispIdDataBlock* entry, BrightnessRecord* record) {
  return GetExact<Brightness>(entry, record);
}

int32_t DispID20_SetBrightness(const BrightnessRecord* record, DispIdDataBlock* entry) {
  return SetExact<Brightness>(record, entry);
}

int32_t DispID_GetStereo(const DispIdDataBlock* entry, StereoRecord* record) {
  return GetExact<Stereo>(entry, record);
}

int32_t DispID_SetStereo(const StereoRecord* record, DispIdDataBlock* entry) {
  return SetExact<Stereo>(record, entry);
}

int32_t DispID20_GetStereo(const DispIdDataBlock* entry, StereoRecord* record) {
  return GetExact<Stereo20>(entry, record);
}

int32_t DispID20_SetStereo(const StereoRecord* record, DispIdDataBlock* entry) {
  return SetExact<Stereo20>(record, entry);
}

int32_t DispID_GetDisplayDevice(const DispIdDataBlock* entry, DisplayDeviceRecord* record) {
  return GetExact<DisplayDevice>(entry, record);
}

int32_t DispID_SetDisplayDevice(const DisplayDeviceRecord* record, DispIdDataBlock* entry) {
  return SetExact<DisplayDevice>(record, entry);
}
