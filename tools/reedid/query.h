// Answers that several commands need.
#pragma once

#include <vector>

#include "image.h"

namespace reedid::tool {

// All whole-number frame rates that the image offers, highest first.
std::vector<uint16_t> AllRates(const Image& image);

}  // namespace reedid::tool
