// Repairs of the display range limits descriptor. Each gives the bytes to write, none when it cannot be done.
#pragma once

#include <vector>

#include "document/check/check.h"
#include "document/check/image_view.h"

namespace reedid::document::check {

// Another formula code, without formula data.
std::vector<Patch> FormulaReplaced(const ImageView& view, unsigned formula);

// The limits that timings miss, moved so that they hold all detailed timings; none on a display of continuous
// frequency, whose limits are a promise, or where a limit does not fit its byte.
std::vector<Patch> WidenedLimits(const ImageView& view);

// A maximum of 255 replaced by the true one with its offset.
std::vector<Patch> OffsetLimits(const ImageView& view, bool rate, bool lineRate);

}  // namespace reedid::document::check
