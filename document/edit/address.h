// The HDMI physical address (HDMI 1.4b, 8.7): an image without one is a DVI EDID.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "document/edit/loss.h"
#include "document/read/image.h"

namespace reedid::document {

// "1.2.0.0" with one hexadecimal digit a place, or "0x1200". Notes an address that no port can have. Throws kArgument.
uint16_t ParseAddress(const std::string& text, Notes& notes);

// None when the image has no HDMI block.
std::optional<uint16_t> AddressOf(const Image& image);

// The image with another address. Notes what else of the HDMI block changed. Throws kRefused, kLoss.
Image SetAddress(Image image, uint16_t address, Loss loss, Notes& notes);

// The same as one of several edits, whose losses are looked at when all are done. Throws kRefused.
Image SetAddressUnchecked(Image image, uint16_t address);

}  // namespace reedid::document
