#include "document/read/input.h"

#include <fmt/format.h>

#include "document/error.h"
#include "document/read/hex_text.h"
#include "reedid/image.h"

namespace reedid::document {
namespace {

[[noreturn]] void Fail(const std::string& name, const std::string& what) {
  throw Error(ErrorKind::kInput, fmt::format("{}: {}", name, what));
}

bool HasEdidHeader(std::span<const uint8_t> bytes) {
  return bytes.size() >= 8 && isEdidHeader(bytes.data()) != 0;
}

}  // namespace

ByteVector ParseInput(const std::string& name, std::span<const uint8_t> content) {
  if (content.empty()) {
    Fail(name, "empty; a connector of /sys/class/drm without a display gives no EDID, other files must hold one");
  }
  if (HasEdidHeader(content) || !LooksLikeText(content)) return {content.begin(), content.end()};
  try {
    ByteVector parsed = ParseHexText({reinterpret_cast<const char*>(content.data()), content.size()});
    if (parsed.empty()) throw Error(ErrorKind::kInput, "text without hexadecimal digits");
    return parsed;
  } catch (const Error& error) {
    Fail(name, error.what());
  }
}

}  // namespace reedid::document
