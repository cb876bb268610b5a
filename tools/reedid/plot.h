// The parts of the picture that `plot` draws: each panel draws itself into a frame.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "image.h"
#include "svg.h"
#include "timing_text.h"

namespace reedid::tool {

// One rectangle of the picture, in SVG units.
struct Box {
  double x, y, width, height;
  double right() const { return x + width; }
  double bottom() const { return y + height; }
};

// CIE 1931 chromaticity coordinates.
struct Chromaticity {
  double x, y;
};
struct Gamut {
  Chromaticity red, green, blue, white;
};

// What the base block says, else the Display Parameters of a DisplayID 2.0 section.
std::optional<Gamut> GamutOf(const Image& image);

// The chromaticity diagram (CIE 015, 1931 standard observer) with the display's triangle, or a word that there is none.
void DrawGamut(const std::optional<Gamut>& gamut, const Box& frame, Svg& svg);

// All timings by pixel clock and refresh rate, the HDMI links' limits among them; `preferred` is marked.
void DrawTimings(const std::vector<TimingItem>& items, const std::optional<TimingItem>& preferred, const Box& frame,
                 Svg& svg);

// The whole picture.
std::string PlotImage(const Image& image);

}  // namespace reedid::tool
