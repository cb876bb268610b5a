// Lines and digits: what every form of hexadecimal text is made of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "document/bytes.h"

namespace reedid::document {

inline constexpr std::string_view kSpace = " \t\r\f\v";
inline constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";

struct Line {
  size_t number;  // from 1 on
  std::string_view text;
};

// Throws kInput with the number of the line.
[[noreturn]] void FailInLine(size_t line, const std::string& what);

std::string_view Trim(std::string_view text);
std::vector<Line> SplitLines(std::string_view text);

// Without 0x.
std::string_view WithoutPrefix(std::string_view token);
bool IsHex(std::string_view digits);
std::optional<uint64_t> ToNumber(std::string_view digits, int base);

bool StartsWith(std::span<const uint8_t> bytes, std::span<const uint8_t> start);

// Pairs of digits; the caller has checked that they are hexadecimal and even in number.
void AppendPairs(std::string_view digits, ByteVector& out);

}  // namespace reedid::document
