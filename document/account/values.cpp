#include "document/account/values.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <vector>

namespace reedid::document {

std::string SetFlags(std::span<const NamedFlag> flags, const char* none) {
  std::vector<const char*> names;
  for (const NamedFlag& flag : flags) {
    if (flag.flag != 0) names.push_back(flag.name);
  }
  return names.empty() ? none : fmt::format("{}", fmt::join(names, ", "));
}

std::string PhysAddrText(uint16_t address) {
  return fmt::format("{:x}.{:x}.{:x}.{:x}", address >> 12, address >> 8 & 0xF, address >> 4 & 0xF, address & 0xF);
}

}  // namespace reedid::document
