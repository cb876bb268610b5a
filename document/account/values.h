// Values as people write them.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace reedid::document {

// A flag and what it means.
struct NamedFlag {
  uint8_t flag;
  const char* name;
};
// The names whose flags are set, with commas; `none` when there are none.
std::string SetFlags(std::span<const NamedFlag> flags, const char* none = "none");

// A physical address of HDMI, "1.2.0.0".
std::string PhysAddrText(uint16_t address);

}  // namespace reedid::document
