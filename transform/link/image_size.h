// How large the picture of a detailed timing is on the screen, in mm: bytes 12 to 14 of its descriptor (EDID 1.4, table 3.21).
#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "reedid/image.h"
#include "reedid/timing.h"

namespace reedid {

// As hImageSize and vImageSize of an otherwise empty timing.
DtdTiming SizeOf(Bytes slot);
void WriteSize(uint8_t* slot, const DtdTiming& timing);

// The screen as the base block tells it (bytes 21 and 22, cm); 0 x 0 where one of them is 0, which makes them a ratio.
DtdTiming ScreenSize(const EdidBlock& base);

// Gives a timing the size of its picture: that of the screen on which `told` fills the width or the height, less what a
// picture of another shape leaves of it.
void SetImageSize(const EdidBlock& base, const DtdTiming& told, DtdTiming& timing);

// Whether a descriptor tells this size, but for rounding.
bool IsSizeOf(Bytes slot, const DtdTiming& wanted);

}  // namespace reedid
