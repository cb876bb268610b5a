// VESA's EDID extension blocks of one record each, version 1 in byte 1.
//
// Display Information Extension, tag 0x40
//   2     digital interface                     20  VGA modes 7, stereo 6..4, scaler 3, centring 2, update 1, interlaced 0
//   3     kind of standard 7..6, 3-6 standard   21  frame lock 7, rate conversion 6..5
//   7     data enable 7, high 6, edge 5..4,     22-25 vertical and horizontal frequency
//         HDCP 3, double 2, packets 1           26  orientation 7..5, first pixel 4..3, scan 2..1, projector 0
//   8     data format                           27-28 default and preferred colours, 29-30 colours from 29.7 down
//   9     least clock, 10-11 greatest           31  dithering 7, 32-37 depths
//   12-13 crossover                             38  aspect ratios 7..4
//   14-18 sub-pixels, pitch                     81  gamma: kind 7..6, count 5..0; 82-126 curves
//   19    fixed 7, view 6..5, transparent 4, kind 3..2, DDC/CI 1
//
// Video Timing Block Extension, tag 0x10: 2 detailed timings, 3 CVT codes, 4 standard timings; from 5 on these lists

#include "reedid/extensions.h"

#include "base/exact_codec.h"
#include "base/log.h"
#include "base/pinned.h"

namespace reedid {
namespace {

PIN_FIELDS(DisplayInfoRecord, 0, 2, maxClock, crossover, vFrequency, hFrequency);
PIN_FIELDS(DisplayInfoRecord, 8, 1, version, digitalInterface, standardKind);
PIN_FIELDS(DisplayInfoRecord, 11, 4, standard);
PIN_FIELDS(DisplayInfoRecord, 15, 1, dataEnable, dataEnableHigh, clockEdge, hdcp, doubleClock, packetized, dataFormat,
           minClock, subPixelLayout, subPixelConfig, subPixelShape, hPitch, vPitch, fixedPixelFormat, viewDirection,
           transparent, implementation, ddcCi, legacyModes, stereo, scaler, centering, conditionalUpdate, interlaced,
           frameLock, rateConversion, orientationKind, portrait, zeroPixel, scanDirection, projector, defaultColor,
           preferredColor);
PIN_FIELDS(DisplayInfoRecord, 48, 14, colorCaps);
PIN_FIELDS(DisplayInfoRecord, 62, 1, dithering);
PIN_FIELDS(DisplayInfoRecord, 63, 3, depthBGR);
PIN_FIELDS(DisplayInfoRecord, 66, 3, depthCbYCr);
PIN_FIELDS(DisplayInfoRecord, 69, 1, aspectFull, aspectZoom, aspectSqueeze, aspectVariable, gammaKind, gammaCount);
PIN_FIELDS(DisplayInfoRecord, 75, 45, gamma);
PIN_SIZE(DisplayInfoRecord, 120);
PIN_FIELDS(VideoTimingsRecord, 0, 1, version, dtdCount, cvtCount, standardCount);
PIN_FIELDS(VideoTimingsRecord, 4, 122, items);
PIN_SIZE(VideoTimingsRecord, 126);

constexpr unsigned kSize = REEDID_BLOCK_SIZE, kChecksum = kSize - 1;

struct DisplayInfo : ExactDefaults {
  static bool Takes(Bytes bytes) { return bytes[1] == 1; }
  static unsigned Size(const DisplayInfoRecord&, const uint8_t*) { return kChecksum; }

  static void Layout(const ExactIo& io, DisplayInfoRecord& r, unsigned) {
    io(r.version, Place{1});
    Link(io, r);
    Panel(io, r);
    Modes(io, r);
    Colors(io, r);
    io(r.gammaKind, Place{81, 6, 2});
    io(r.gammaCount, Place{81, 0, 6});
    io.Copy(r.gamma, sizeof r.gamma, 82);
  }

 private:
  static void Link(const ExactIo& io, DisplayInfoRecord& r) {
    io(r.digitalInterface, Place{2});
    io(r.standardKind, Place{3, 6, 2});
    io(r.standard[0], Place{3, 0, 6});
    io.Copy(&r.standard[1], 3, 4);
    io(r.dataEnable, Place{7, 7, 1});
    io(r.dataEnableHigh, Place{7, 6, 1});
    io(r.clockEdge, Place{7, 4, 2});
    io(r.hdcp, Place{7, 3, 1});
    io(r.doubleClock, Place{7, 2, 1});
    io(r.packetized, Place{7, 1, 1});
    io(r.dataFormat, Place{8});
    io(r.minClock, Place{9});
    io(r.maxClock, Place{10}, Place{11});
    io(r.crossover, Place{12}, Place{13});
  }

  static void Panel(const ExactIo& io, DisplayInfoRecord& r) {
    io(r.subPixelLayout, Place{14});
    io(r.subPixelConfig, Place{15});
    io(r.subPixelShape, Place{16});
    io(r.hPitch, Place{17});
    io(r.vPitch, Place{18});
    io(r.fixedPixelFormat, Place{19, 7, 1});
    io(r.viewDirection, Place{19, 5, 2});
    io(r.transparent, Place{19, 4, 1});
    io(r.implementation, Place{19, 2, 2});
    io(r.ddcCi, Place{19, 1, 1});
    io(r.orientationKind, Place{26, 6, 2});
    io(r.portrait, Place{26, 5, 1});
    io(r.zeroPixel, Place{26, 3, 2});
    io(r.scanDirection, Place{26, 1, 2});
    io(r.projector, Place{26, 0, 1});
  }

  static void Modes(const ExactIo& io, DisplayInfoRecord& r) {
    io(r.legacyModes, Place{20, 7, 1});
    io(r.stereo, Place{20, 4, 3});
    io(r.scaler, Place{20, 3, 1});
    io(r.centering, Place{20, 2, 1});
    io(r.conditionalUpdate, Place{20, 1, 1});
    io(r.interlaced, Place{20, 0, 1});
    io(r.frameLock, Place{21, 7, 1});
    io(r.rateConversion, Place{21, 5, 2});
    io(r.vFrequency, Place{22}, Place{23});
    io(r.hFrequency, Place{24}, Place{25});
    io(r.aspectFull, Place{38, 7, 1});
    io(r.aspectZoom, Place{38, 6, 1});
    io(r.aspectSqueeze, Place{38, 5, 1});
    io(r.aspectVariable, Place{38, 4, 1});
  }

  static void Colors(const ExactIo& io, DisplayInfoRecord& r) {
    io(r.defaultColor, Place{27});
    io(r.preferredColor, Place{28});
    for (unsigned i = 0; i < sizeof r.colorCaps; ++i) io(r.colorCaps[i], Place{Low8(29 + i / 8), Low8(7 - i % 8), 1});
    io(r.dithering, Place{31, 7, 1});
    io.Copy(r.depthBGR, 3, 32);
    io.Copy(r.depthCbYCr, 3, 35);
  }
};

struct VideoTimings : ExactDefaults {
  static constexpr unsigned kFirst = 5;

  static unsigned LengthOf(unsigned dtds, unsigned cvts, unsigned standards) {
    return 18 * dtds + 3 * cvts + 2 * standards;
  }
  static bool Takes(Bytes bytes) {
    return bytes[1] == 1 && LengthOf(bytes[2], bytes[3], bytes[4]) <= sizeof VideoTimingsRecord::items;
  }
  static bool Holds(const VideoTimingsRecord& r) { return Length(r) <= sizeof r.items; }
  static unsigned Size(const VideoTimingsRecord&, const uint8_t*) { return kChecksum; }

  static void Layout(const ExactIo& io, VideoTimingsRecord& r, unsigned) {
    io(r.version, Place{1});
    io(r.dtdCount, Place{2});
    io(r.cvtCount, Place{3});
    io(r.standardCount, Place{4});
    io.Copy(r.items, Length(r), kFirst);
  }

 private:
  static unsigned Length(const VideoTimingsRecord& r) { return LengthOf(r.dtdCount, r.cvtCount, r.standardCount); }
};

int32_t GetBlock(uint8_t tag, const ExactCodec& codec, const EdidBlock* block, void* record, Caller caller = {}) {
  if (block == nullptr || block->bytes == nullptr || block->size != kSize || record == nullptr ||
      block->bytes[0] != tag || !ReadExact(codec, {block->bytes, kChecksum}, record)) {
    return REEDID_ERR_AS(caller, "invalid parameters");
  }
  return 0;
}

int32_t SetBlock(uint8_t tag, const ExactCodec& codec, const void* record, EdidBlock* out, Caller caller = {}) {
  uint8_t bytes[kSize] = {tag};
  if (record == nullptr || out == nullptr || out->bytes == nullptr || out->capacity < kSize ||
      WriteExact(codec, record, bytes, kChecksum) == 0 || !IsExactly(codec, {bytes, kChecksum}, record)) {
    return REEDID_ERR_AS(caller, "invalid parameters");
  }
  bytes[kChecksum] = Low8(GetChecksum(bytes, kSize));
  std::memcpy(out->bytes, bytes, kSize);
  out->type = EDID_BLOCK_UNKNOWN;
  out->size = kSize;
  return 0;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t EDID_GetDisplayInfo(const EdidBlock* block, DisplayInfoRecord* record) {
  return GetBlock(EDID_EXTENSION_DISPLAY_INFO, ExactCodecOf<DisplayInfo, DisplayInfoRecord>(), block, record);
}

int32_t EDID_SetDisplayInfo(const DisplayInfoRecord* record, EdidBlock* out) {
  return SetBlock(EDID_EXTENSION_DISPLAY_INFO, ExactCodecOf<DisplayInfo, DisplayInfoRecord>(), record, out);
}

int32_t EDID_GetVideoTimings(const EdidBlock* block, VideoTimingsRecord* record) {
  return GetBlock(EDID_EXTENSION_VIDEO_TIMING, ExactCodecOf<VideoTimings, VideoTimingsRecord>(), block, record);
}

int32_t EDID_SetVideoTimings(const VideoTimingsRecord* record, EdidBlock* out) {
  return SetBlock(EDID_EXTENSION_VIDEO_TIMING, ExactCodecOf<VideoTimings, VideoTimingsRecord>(), record, out);
}
