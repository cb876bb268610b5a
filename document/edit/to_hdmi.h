// A DVI EDID made an HDMI one.
#pragma once

#include <cstdint>

#include "document/edit/loss.h"
#include "document/read/image.h"

namespace reedid::document {

// The image with an HDMI block, audio and speakers in its CTA-861 extension, which it gets when it has none. Throws
// kRefused, kLoss.
Image ToHdmi(Image image, uint16_t address, Loss loss, Notes& notes);

}  // namespace reedid::document
