// Text from outside, made fit to be shown.
#pragma once

#include <string>
#include <string_view>

namespace reedid::document {

inline constexpr char32_t kNoCharacter = 0xFFFFFFFF;
struct Character {
  char32_t code;  // kNoCharacter: the byte is no UTF-8
  size_t size;    // bytes
};

// The first character of a text that is not empty; of UTF-8, the shortest form only.
Character FirstCharacter(std::string_view text);

// What a terminal would obey as \x1b: control characters, DEL, U+0080 to U+009F, and bytes that are no UTF-8, which
// other terminals take for these. Names of files may have any of them.
std::string WithoutControls(std::string_view text);

// A word of a user or a file in a message: at most 40 characters of it.
std::string Shortened(std::string_view text);

// Text of an EDID: all characters but the printable ones of ASCII as \x1b.
std::string PrintableText(const char* text);

// The same as a value, which is never empty.
std::string TextValue(const char* text);

}  // namespace reedid::document
