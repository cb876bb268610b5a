// The HDMI physical address (HDMI 1.4b, 8.7): an image without one is a DVI EDID.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "document/read/image.h"

namespace reedid::document {

// Whether an address that no port can have is taken: to see what a source makes of it.
enum class Odd : bool { kRefuse, kTake };

// "1.2.0.0" with one hexadecimal digit a place, or "0x1200". Throws kArgument; kRefused for an address that no port can
// have.
uint16_t ParseAddress(const std::string& text, Odd odd = Odd::kRefuse);

// None when no CTA-861 extension has an HDMI block with an address.
std::optional<uint16_t> AddressOf(const Image& image);

// The image with another address in all its HDMI blocks; nothing else changes. One without HDMI block becomes one of HDMI,
// which is noted. Throws kRefused.
Image SetAddress(Image image, uint16_t address, Notes& notes);

}  // namespace reedid::document
