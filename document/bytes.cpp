#include "document/bytes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace reedid::document {
namespace {

constexpr size_t kUsualRow = 16;

}  // namespace

std::string Hex(std::span<const uint8_t> bytes) {
  return fmt::format("{:02x}", fmt::join(bytes, " "));
}

std::string HexRows(std::span<const uint8_t> bytes) {
  std::string out;
  for (size_t i = 0; i < bytes.size(); i += kUsualRow) {
    if (i > 0 && i % 128 == 0) out += '\n';
    out += Hex(bytes.subspan(i, std::min(kUsualRow, bytes.size() - i))) + '\n';
  }
  return out;
}

std::string CArray(std::span<const uint8_t> bytes) {
  std::string out = fmt::format("static const unsigned char edid[{}] = {{\n", bytes.size());
  for (size_t i = 0; i < bytes.size(); i += kUsualRow) {
    const auto row = bytes.subspan(i, std::min(kUsualRow, bytes.size() - i));
    out += fmt::format("    0x{:02x},\n", fmt::join(row, ", 0x"));
  }
  return out + "};\n";
}

}  // namespace reedid::document
