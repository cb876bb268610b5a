// Limits among the timings of a picture: of HDMI links, and of the display itself.
#pragma once

#include "document/plot/box.h"
#include "document/plot/clock_axes.h"
#include "document/plot/display_limits.h"
#include "document/plot/svg.h"

namespace reedid::document {

// Vertical lines where HDMI links end, for a display that has HDMI, those that it has itself in bold; a box of its range
// limits; and bars of its variable rates beside the frame.
void DrawLimits(const DisplayLimits& limits, const Axes& axes, const Box& frame, Svg& svg);

}  // namespace reedid::document
