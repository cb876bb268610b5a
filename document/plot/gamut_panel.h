// The panel of a picture that shows the display's colours.
#pragma once

#include <optional>

#include "document/plot/box.h"
#include "document/plot/chromaticity.h"
#include "document/plot/svg.h"

namespace reedid::document {

// The chromaticity diagram (CIE 015, 1931 standard observer) with the display's triangle, or a word that there is none.
void DrawGamut(const std::optional<Gamut>& gamut, const Box& frame, Svg& svg);

}  // namespace reedid::document
