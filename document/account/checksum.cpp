#include "document/account/checksum.h"

#include <fmt/format.h>

#include "reedid/image.h"

namespace reedid::document {
namespace {

// "a5, right" or "a5, wrong (must be b7)"
std::string ChecksumText(std::span<const uint8_t> bytes) {
  const unsigned stored = bytes.back();
  const unsigned right = GetChecksum(bytes.data(), static_cast<uint32_t>(bytes.size()));
  if (stored == right) return fmt::format("{:02x}, right", stored);
  return fmt::format("{:02x}, wrong (must be {:02x})", stored, right);
}

}  // namespace

void AddChecksum(const std::string& name, std::span<const uint8_t> bytes, const ByteSource& at, Node& node) {
  const bool isRight = GetChecksum(bytes.data(), static_cast<uint32_t>(bytes.size())) == bytes.back();
  Field& field = node.Add(name, ChecksumText(bytes), at(bytes.size() - 1));
  field.isFault = !isRight;
  field.publicValue = isRight ? "right" : "wrong";
}

}  // namespace reedid::document
