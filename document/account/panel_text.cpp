#include "document/account/panel_text.h"

#include <fmt/format.h>

#include "document/account/values.h"

namespace reedid::document {

std::string OrientationText(unsigned orientation, unsigned rotation, unsigned zeroPixel, unsigned scanDirection) {
  static constexpr const char* kOrientations[] = {"landscape", "portrait", "not fixed", "undefined"};
  static constexpr const char* kRotations[] = {"", ", turns clockwise", ", turns counter-clockwise",
                                               ", turns both ways"};
  static constexpr const char* kCorners[] = {"upper left", "upper right", "lower left", "lower right"};
  static constexpr const char* kScans[] = {"", ", fast scan along the long axis", ", fast scan along the short axis"};
  return fmt::format("{}{}, first pixel {}{}", NameOf(kOrientations, orientation), NameOf(kRotations, rotation),
                     NameOf(kCorners, zeroPixel), NameOf(kScans, scanDirection));
}

const char* SubPixelText(unsigned code) {
  static constexpr const char* kLayouts[] = {"not stated",
                                             "RGB vertical stripes",
                                             "RGB horizontal stripes",
                                             "vertical stripes in the order of the primaries",
                                             "horizontal stripes in the order of the primaries",
                                             "quad, red upper left",
                                             "quad, red lower left",
                                             "delta",
                                             "mosaic",
                                             "quad and one more colour",
                                             "five sub-pixels",
                                             "six sub-pixels",
                                             "PenTile"};
  return NameOf(kLayouts, code);
}

std::string ResponseText(unsigned milliseconds, bool whiteToBlack) {
  return fmt::format("{} ms {}", milliseconds, whiteToBlack ? "white to black" : "black to white");
}

}  // namespace reedid::document
