// The panel of a picture that shows every timing.
#pragma once

#include <optional>
#include <vector>

#include "document/account/timing_text.h"
#include "document/plot/box.h"
#include "document/plot/display_limits.h"
#include "document/plot/svg.h"

namespace reedid::document {

// All timings by pixel clock and refresh rate, the limits of the display and of HDMI links among them; `preferred` is
// marked.
void DrawTimings(const std::vector<TimingItem>& items, const std::optional<TimingItem>& preferred,
                 const DisplayLimits& limits, const Box& frame, Svg& svg);

}  // namespace reedid::document
