// Answers that several commands need.
#pragma once

#include <optional>
#include <vector>

#include "image.h"
#include "timing_text.h"

namespace reedid::tool {

// All whole-number frame rates that the image offers, highest first.
std::vector<uint16_t> AllRates(const Image& image);

// The timing that a source should use; none when the image names none.
std::optional<TimingItem> PreferredOf(const Image& image);

}  // namespace reedid::tool
