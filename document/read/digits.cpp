#include "document/read/digits.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "document/error.h"

namespace reedid::document {

void FailInLine(size_t line, const std::string& what) {
  throw Error(ErrorKind::kInput, fmt::format("line {}: {}", line, what));
}

std::string_view Trim(std::string_view text) {
  const size_t begin = text.find_first_not_of(kSpace);
  if (begin == text.npos) return {};
  return text.substr(begin, text.find_last_not_of(kSpace) - begin + 1);
}

std::vector<Line> SplitLines(std::string_view text) {
  std::vector<Line> lines;
  for (size_t number = 1; !text.empty(); ++number) {
    const size_t end = std::min(text.find('\n'), text.size());
    lines.push_back({number, text.substr(0, end)});
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::string_view WithoutPrefix(std::string_view token) {
  return token.starts_with("0x") || token.starts_with("0X") ? token.substr(2) : token;
}

bool IsHex(std::string_view digits) {
  return !digits.empty() && digits.find_first_not_of(kHexDigits) == digits.npos;
}

std::optional<uint64_t> ToNumber(std::string_view digits, int base) {
  uint64_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return value;
}

bool StartsWith(std::span<const uint8_t> bytes, std::span<const uint8_t> start) {
  return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

void AppendPairs(std::string_view digits, ByteVector& out) {
  for (size_t i = 0; i < digits.size(); i += 2) {
    out.push_back(static_cast<uint8_t>(*ToNumber(digits.substr(i, 2), 16)));
  }
}

}  // namespace reedid::document
