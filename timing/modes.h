// What a display means by an identifier, an established bit, a standard timing code or a descriptor: the mode with its
// true totals. The tables of identifiers state some modes otherwise, because their users match against them.
#pragma once

#include <cstdint>

#include "reedid/timing.h"

namespace reedid {

// Blanking and front porches of `timing` hold the borders; its rate and `preferred` are not set.
struct Mode {
  DtdTiming timing = {};
  uint8_t hBorder = 0;  // on each side
  uint8_t vBorder = 0;
  uint32_t vTotalHalfLines = 0;
};

// A mode without borders. An interlaced field has half a line more than it tells; VIC 39 is the exception.
Mode ModeOf(const DtdTiming& timing);

// Gives a mode borders that its blanking has room for, but that its front porches do not count yet.
void AddBorders(Mode& mode, uint8_t horizontal, uint8_t vertical);

// mHz, rounded; 0 without a rate and for one that 32 bits cannot tell.
uint32_t RateOf(const Mode& mode);

// By timing table index and DMT identifier. False when there is none.
bool VicMode(unsigned index, Mode& mode);
bool DmtMode(unsigned id, Mode& mode);

// Established timings I and II, index 0..16; `id` becomes the DMT identifier, 0 for the modes of VGA and Apple.
bool EstablishedMode(unsigned index, Mode& mode, uint8_t& id);

// The DMT identifier of an established timing III, bit 0 of the first byte of its bitmap first; 0 for none.
uint8_t Established3Dmt(unsigned bit);

// How a sink makes a timing of a width, a height and a rate, and the curve of its own that it may have for GTF.
struct GtfCurve {
  double c = 30, m = 300;  // C' and M': duty cycle in % = C' - M' * horizontal period in ms
};
struct StandardFormula {
  enum Kind : uint8_t { kGtf, kCvt, kCvtReduced } kind = kGtf;
  bool squareAspect = false;    // before EDID 1.3, the first aspect code is 1:1
  uint32_t secondaryStart = 0;  // kHz from which the secondary curve holds; 0 without one
  GtfCurve secondary = {};
};

// The mode of a standard timing; `id` becomes the DMT identifier, 0 for a computed one. False for none.
bool StandardMode(const StdTiming& std, const StandardFormula& formula, Mode& mode, uint8_t& id);

// Generalized Timing Formula (VESA GTF 1.1) by refresh rate, progressive, without margins. False where no such timing
// can be.
bool GtfMode(uint32_t hactive, uint32_t vactive, uint32_t frameRate, const StandardFormula& formula, Mode& mode);

// Coordinated Video Timing; Cvt2ToDtd without its messages. Returns what is wrong, null when the mode is there.
const char* ExpandCvt(const CvtTiming& request, DtdTiming& out);

}  // namespace reedid
