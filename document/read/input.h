// An EDID in any form that people have it in, as bytes.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "document/bytes.h"

namespace reedid::document {

// Raw bytes as they are, text as the bytes that it stands for: of several EDIDs when it holds several (ParseHexTexts).
// Never none. Throws kInput, with `name` in front.
std::vector<ByteVector> ParseInput(const std::string& name, std::span<const uint8_t> content);

// Whether it was meant as an EDID: it begins like one, or it is text with the digits that one begins with.
bool MayBeEdid(std::span<const uint8_t> content);

}  // namespace reedid::document
