// Bytes, and how people write them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace reedid::document {

using ByteVector = std::vector<uint8_t>;

// "00 ff 10", for people.
std::string Hex(std::span<const uint8_t> bytes);

// A whole image in rows of 16 bytes, an empty line between blocks of 128; and as a C array.
std::string HexRows(std::span<const uint8_t> bytes);
std::string CArray(std::span<const uint8_t> bytes);

}  // namespace reedid::document
