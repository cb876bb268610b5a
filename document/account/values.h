// Values as people write them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace reedid::document {

// A flag and what it means.
struct NamedFlag {
  uint8_t flag;
  const char* name;
};
// The names whose flags are set, with commas; `none` when there are none.
std::string SetFlags(std::span<const NamedFlag> flags, const char* none = "none");

// The names of the bits that are set, from bit 0 on; bits without a name are counted from 0, "bit 7".
std::string SetBits(unsigned bits, std::span<const char* const> names, const char* none = "none");

// The name of a code, "reserved" beyond the last.
template <size_t count>
const char* NameOf(const char* const (&names)[count], unsigned code) {
  return code < count ? names[code] : "reserved";
}

// With commas; `none` when there are none.
std::string Joined(std::span<const std::string> texts, const char* none = "none");

// A ContainerID as it is printed: "00112233-4455-6677-8899-aabbccddeeff".
std::string ContainerIdText(const uint8_t (&id)[16]);

// A physical address of HDMI, "1.2.0.0".
std::string PhysAddrText(uint16_t address);

}  // namespace reedid::document
