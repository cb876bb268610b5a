// What VESA says of panels in DisplayID and in CTA-861 alike.
#pragma once

#include <string>

namespace reedid::document {

// "landscape, first pixel upper left, fast scan along the long axis"
std::string OrientationText(unsigned orientation, unsigned rotation, unsigned zeroPixel, unsigned scanDirection);
const char* SubPixelText(unsigned code);
// "5 ms black to white"
std::string ResponseText(unsigned milliseconds, bool whiteToBlack);

}  // namespace reedid::document
