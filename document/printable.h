// Text from outside, made fit to be shown.
#pragma once

#include <string>
#include <string_view>

namespace reedid::document {

// Control characters, which a terminal would obey, as \x1b: those of ASCII, and U+0080 to U+009F, which UTF-8 begins
// with c2. Names of files may have any of them.
std::string WithoutControls(std::string_view text);

// Text of an EDID: all characters but the printable ones of ASCII as \x1b.
std::string PrintableText(const char* text);

// The same as a value, which is never empty.
std::string TextValue(const char* text);

}  // namespace reedid::document
