#include "document/read/input.h"

#include <fmt/format.h>

#include "document/error.h"
#include "document/read/digits.h"
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

std::vector<ByteVector> ParseInput(const std::string& name, std::span<const uint8_t> content) {
  if (content.empty()) {
    Fail(name, "empty; a connector of /sys/class/drm without a display gives no EDID, other files must hold one");
  }
  if (HasEdidHeader(content) || !LooksLikeText(content)) return {{content.begin(), content.end()}};
  try {
    std::vector<ByteVector> parsed = ParseHexTexts({reinterpret_cast<const char*>(content.data()), content.size()});
    if (parsed.empty()) throw Error(ErrorKind::kInput, "text without hexadecimal digits");
    return parsed;
  } catch (const Error& error) {
    Fail(name, error.what());
  }
}

bool MayBeEdid(std::span<const uint8_t> content) {
  if (HasEdidHeader(content)) return true;
  std::string digits;
  for (const uint8_t byte : content) {
    if ((byte | 0x20) == 'x' && digits.ends_with('0')) digits.pop_back();  // of a prefix
    if (kHexDigits.find(static_cast<char>(byte)) != kHexDigits.npos) digits += static_cast<char>(byte | 0x20);
  }
  return LooksLikeText(content) && digits.find("ffffffff") != digits.npos;
}

}  // namespace reedid::document
