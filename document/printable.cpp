#include "document/printable.h"

#include <fmt/format.h>

#include <cstdint>

namespace reedid::document {

std::string WithoutControls(std::string_view text) {
  std::string shown;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<uint8_t>(text[i]);
    const auto next = static_cast<uint8_t>(i + 1 < text.size() ? text[i + 1] : '\0');
    if (c == 0xC2 && next >= 0x80 && next < 0xA0) {
      shown += fmt::format("\\xc2\\x{:02x}", next);
      ++i;
    } else {
      shown += c < 0x20 || c == 0x7F ? fmt::format("\\x{:02x}", c) : std::string(1, text[i]);
    }
  }
  return shown;
}

std::string PrintableText(const char* text) {
  std::string shown;
  for (; *text != 0; ++text) {
    const auto c = static_cast<uint8_t>(*text);
    shown += c >= 0x20 && c < 0x7F ? std::string(1, *text) : fmt::format("\\x{:02x}", c);
  }
  return shown;
}

std::string TextValue(const char* text) {
  return *text == 0 ? "(empty)" : PrintableText(text);
}

}  // namespace reedid::document
