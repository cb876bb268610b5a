// The colours that a display says it has.
#pragma once

#include <optional>

#include "document/plot/chromaticity.h"
#include "document/read/image.h"

namespace reedid::document {

// What the base block says, else the Display Parameters of a DisplayID 2.0 section.
std::optional<Gamut> GamutOf(const Image& image);

}  // namespace reedid::document
