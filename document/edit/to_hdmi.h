// A DVI or DisplayPort EDID made an HDMI one.
#pragma once

#include <cstdint>

#include "document/read/image.h"

namespace reedid::document {

// The image with what a source of HDMI looks for: HDMI block, sound, video formats. Timings that no TMDS link carries
// are slowed down as by the limit hdmi20, which is noted. Throws kRefused.
Image ToHdmi(Image image, uint16_t address, Notes& notes);

}  // namespace reedid::document
