// What an image tells of its link, cut down to a link.
#pragma once

#include "transform/link/budget.h"

namespace reedid {

// The HDMI blocks, once the timings are carried: clocks, FRL and DSC, deep colour, 4:2:0. The extension that has no room
// for a TMDS clock which has to be told now, if any.
std::optional<unsigned> LimitHdmi(EdidHandle& image, const EdidLink& link, const HdmiRates& before);

// The TMDS clock in kHz that the fastest timing of an image needs.
uint32_t FastestTmds(const EdidHandle& image);

// All that makes a display one of HDMI goes: a source of DVI sends pictures only.
void MakeDvi(EdidHandle& image);

// The display's own limits: range limits descriptor, DisplayID range limits, bits per colour.
void LimitRanges(EdidHandle& image, const EdidLink& link);

// The range limits hold a mode that the display offers in spite of them.
void WidenRange(EdidHandle& image, const OfferedTiming& mode);

}  // namespace reedid
