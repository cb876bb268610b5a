// An EDID in any form that people have it in, as bytes.
#pragma once

#include <span>
#include <string>

#include "document/bytes.h"

namespace reedid::document {

// Raw bytes as they are, text as the bytes that it stands for (ParseHexText). Throws kInput, with `name` in front.
ByteVector ParseInput(const std::string& name, std::span<const uint8_t> content);

}  // namespace reedid::document
