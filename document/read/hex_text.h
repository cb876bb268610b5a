// Bytes that were written as text, in the forms that people have them in.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "document/bytes.h"

namespace reedid::document {

/*
 * Reads hexadecimal text: plain digits in any grouping, 0x and \x prefixes, commas, C arrays (hexadecimal or decimal),
 * comments, and dumps with offsets (xxd, hexdump, hexdump -C, od -t x1, i2cdump) with or without a text column and "*"
 * for repeated rows. Text around digits, as in a log, and in front of a dump or an array is passed over. Throws kInput
 * with the line that is at fault; no byte is ever guessed or left out.
 */
ByteVector ParseHexText(std::string_view text);

// The same of a text that may have several EDIDs, one behind the other, with other text between or without; each begins
// with 00 ff ff ff ff ff ff 00. None when there are no digits.
std::vector<ByteVector> ParseHexTexts(std::string_view text);

// Whether the bytes are text at all: no control character other than white space.
bool LooksLikeText(std::span<const uint8_t> bytes);

}  // namespace reedid::document
