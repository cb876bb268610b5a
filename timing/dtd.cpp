// The 18-byte detailed timing descriptor (EDID 1.4, table 3.21).
//
//  0-1   pixel clock, 10 kHz          10  vfrontPorch 3..0 | vsyncWidth 3..0
//  2     hactive 7..0                 11  hfrontPorch 9..8 | hsyncWidth 9..8 | vfrontPorch 5..4 | vsyncWidth 5..4
//  3     hblank 7..0                  12  hImageSize 7..0
//  4     hactive 11..8 | hblank 11..8 13  vImageSize 7..0
//  5     vactive 7..0                 14  hImageSize 11..8 | vImageSize 11..8
//  6     vblank 7..0                  15  horizontal border
//  7     vactive 11..8 | vblank 11..8 16  vertical border
//  8     hfrontPorch 7..0             17  interlaced 7, stereo 6..5, sync kind 4..3 (11 = digital separate),
//  9     hsyncWidth 7..0                  vsync positive 2, hsync positive 1, stereo 0

#include "timing/dtd.h"

#include <cmath>
#include <cstring>

#include "base/bytes.h"
#include "base/layout.h"
#include "base/log.h"
#include "base/pinned.h"

namespace reedid {
namespace {

PIN_FIELDS(DtdTiming, 0, 4, pixelClock);
PIN_FIELDS(DtdTiming, 4, 2, hactive, hblank, hfrontPorch, hsyncWidth, vactive, vblank, vfrontPorch, vsyncWidth);
PIN_FIELDS(DtdTiming, 20, 1, hsyncPositive, vsyncPositive, interlaced, frameRate);
PIN_FIELDS(DtdTiming, 24, 2, aspectRatio);
PIN_FIELDS(DtdTiming, 26, 1, preferred, reserved);
PIN_FIELDS(DtdTiming, 28, 2, hImageSize, vImageSize);
PIN_FIELDS(DtdTiming, 32, 4, reservedFinal);
PIN_SIZE(DtdTiming, 36);
PIN_FIELDS(DtdSlot, 0, 1, flag);
PIN_FIELDS(DtdSlot, 1, 18, bytes);
PIN_SIZE(DtdSlot, 19);

constexpr unsigned kFlagsByte = 17;
constexpr uint8_t kDigitalSeparateSync = 0x18;

// All fields but sync, which differs between reading and writing.
template <class Io, class Timing>
constexpr void NumbersLayout(const Io& io, Timing& timing) {
  Scaled(io, timing.pixelClock, 10, Place{0}, Place{1});
  io(timing.hactive, Place{2}, Place{4, 4, 4});
  io(timing.hblank, Place{3}, Place{4, 0, 4});
  io(timing.vactive, Place{5}, Place{7, 4, 4});
  io(timing.vblank, Place{6}, Place{7, 0, 4});
  io(timing.hfrontPorch, Place{8}, Place{11, 6, 2});
  io(timing.hsyncWidth, Place{9}, Place{11, 4, 2});
  io(timing.vfrontPorch, Place{10, 4, 4}, Place{11, 2, 2});
  io(timing.vsyncWidth, Place{10, 0, 4}, Place{11, 0, 2});
  io(timing.hImageSize, Place{12}, Place{14, 4, 4});
  io(timing.vImageSize, Place{13}, Place{14, 0, 4});
  io(timing.interlaced, Place{kFlagsByte, 7, 1});
}

template <class Io, class Timing>
constexpr void PolarityLayout(const Io& io, Timing& timing) {
  io(timing.vsyncPositive, Place{kFlagsByte, 2, 1});
  io(timing.hsyncPositive, Place{kFlagsByte, 1, 1});
}

bool FitsDtd(const DtdTiming& t) {
  return t.pixelClock >= 10 && t.pixelClock < 655360 && t.hactive < 4096 && t.hblank < 4096 && t.vactive < 4096 &&
         t.vblank < 4096 && t.hfrontPorch < 1024 && t.hsyncWidth < 1024 && t.vfrontPorch < 64 && t.vsyncWidth < 64 &&
         t.hImageSize < 4096 && t.vImageSize < 4096;
}

}  // namespace

uint16_t RateForMessage(const DtdTiming& timing) {
  return timing.frameRate != 0 ? timing.frameRate : Low16(std::llround(FormulaRate<double>(timing)));
}

Failure RefuseTiming(const DtdTiming& timing, Caller caller) {
  return REEDID_ERR_AS(caller, "invalid timing: %ux%u@%u %uKHz", timing.hactive, timing.vactive, RateForMessage(timing),
                       timing.pixelClock);
}

}  // namespace reedid

using namespace reedid;

int32_t VESA_GetDTD(const DtdSlot* slot, DtdTiming* timing) {
  if (slot == nullptr || slot->flag != kDtdSlotFlag || timing == nullptr) return REEDID_ERR("invalid parameters");
  const Bytes bytes(slot->bytes, kDtdSize);
  const LayoutReader reader(bytes);
  *timing = {};
  NumbersLayout(reader, *timing);
  // Composite sync uses the polarity bits for serration and the line that carries it.
  if ((bytes[kFlagsByte] & kDigitalSeparateSync) == kDigitalSeparateSync) PolarityLayout(reader, *timing);
  timing->aspectRatio = ASPECT_UNKNOWN;  // a descriptor carries none
  timing->frameRate = Low8(std::llround(FormulaRate<float>(*timing)));
  return 0;
}

int32_t VESA_SetDTD(const DtdTiming* timing, DtdSlot* slot) {
  if (timing == nullptr || slot == nullptr) return REEDID_ERR("invalid parameters");
  *slot = {};  // before the checks, so that a refused slot claims a DTD of zeroes: docs/oddities.md
  slot->flag = kDtdSlotFlag;
  if (!FitsDtd(*timing)) return RefuseTiming(*timing);
  const LayoutWriter writer(slot->bytes);
  NumbersLayout(writer, *timing);
  slot->bytes[kFlagsByte] |= kDigitalSeparateSync;
  PolarityLayout(writer, *timing);
  return 0;
}
