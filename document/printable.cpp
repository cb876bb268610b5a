#include "document/printable.h"

#include <fmt/format.h>

#include <cstdint>

namespace reedid::document {
namespace {

constexpr size_t kLongestToken = 40;

// Of ASCII, and those of ISO 6429 behind it.
bool IsControl(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

}  // namespace

Character FirstCharacter(std::string_view text) {
  const auto byte = [text](size_t i) { return i < text.size() ? static_cast<uint8_t>(text[i]) : 0u; };
  const unsigned lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  const size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return {kNoCharacter, 1};
  char32_t code = lead & (0x7Fu >> size);
  for (size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {kNoCharacter, 1};
    code = code << 6 | (byte(i) & 0x3F);
  }
  constexpr char32_t kSmallest[] = {0x80, 0x800, 0x10000};
  return code < kSmallest[size - 2] ? Character{kNoCharacter, 1} : Character{code, size};
}

std::string WithoutControls(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const auto [code, size] = FirstCharacter(text);
    const std::string_view bytes = text.substr(0, size);
    text.remove_prefix(size);
    if (code != kNoCharacter && !IsControl(code)) {
      shown += bytes;
      continue;
    }
    for (const char byte : bytes) shown += fmt::format("\\x{:02x}", static_cast<uint8_t>(byte));
  }
  return shown;
}

std::string Shortened(std::string_view text) {
  size_t characters = 0, cut = 0;
  for (size_t at = 0; at < text.size(); ++characters) {
    if (characters + 3 == kLongestToken) cut = at;
    if (characters == kLongestToken) return fmt::format("{}...", text.substr(0, cut));
    at += FirstCharacter(text.substr(at)).size;
  }
  return std::string(text);
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
