#include "document/account/values.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace reedid::document {

std::string Joined(std::span<const std::string> texts, const char* none) {
  return texts.empty() ? none : fmt::format("{}", fmt::join(texts, ", "));
}

std::string SetFlags(std::span<const NamedFlag> flags, const char* none) {
  std::vector<std::string> names;
  for (const NamedFlag& flag : flags) {
    if (flag.flag != 0) names.emplace_back(flag.name);
  }
  return Joined(names, none);
}

std::string SetBits(unsigned bits, std::span<const char* const> names, const char* none) {
  std::vector<std::string> set;
  for (size_t i = 0; i < 32; ++i) {
    if ((bits >> i & 1) != 0) set.push_back(i < names.size() ? names[i] : fmt::format("bit {}", i));
  }
  return Joined(set, none);
}

std::string ContainerIdText(const uint8_t (&id)[16]) {
  std::string text;
  for (size_t i = 0; i < std::size(id); ++i) {
    const bool isGroup = i == 4 || i == 6 || i == 8 || i == 10;
    text += fmt::format("{}{:02x}", isGroup ? "-" : "", id[i]);
  }
  return text;
}

std::string PhysAddrText(uint16_t address) {
  return fmt::format("{:x}.{:x}.{:x}.{:x}", address >> 12, address >> 8 & 0xF, address >> 4 & 0xF, address & 0xF);
}

}  // namespace reedid::document
