#include "document/read/hex_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "document/error.h"
#include "document/printable.h"
#include "document/read/digits.h"
#include "document/read/dump.h"

namespace reedid::document {
namespace {

constexpr uint8_t kHeader[] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};

// ---- C arrays

// Comments become spaces, so that line numbers stay.
std::string WithoutComments(std::string_view text) {
  std::string out(text);
  const auto blank = [&out](size_t begin, size_t end) {
    for (size_t i = begin; i < std::min(end, out.size()); ++i) {
      if (out[i] != '\n') out[i] = ' ';
    }
  };
  for (size_t i = 0; i < out.size(); ++i) {
    if (out.compare(i, 2, "/*") == 0) {
      const size_t end = out.find("*/", i + 2);
      blank(i, end == out.npos ? end : end + 2);
    } else if (out.compare(i, 2, "//") == 0 || out[i] == '#') {
      blank(i, out.find('\n', i));
    }
  }
  return out;
}

std::vector<std::string_view> SplitTokens(std::string_view text, std::string_view separators) {
  std::vector<std::string_view> tokens;
  for (size_t at = 0; (at = text.find_first_not_of(separators, at)) != text.npos;) {
    const size_t end = std::min(text.find_first_of(separators, at), text.size());
    tokens.push_back(text.substr(at, end - at));
    at = end;
  }
  return tokens;
}

// One element by C's rules. A leading 0 without x would be octal there and is surely meant otherwise here.
std::optional<uint8_t> ReadElement(std::string_view token) {
  const std::string_view digits = WithoutPrefix(token);
  const bool hexadecimal = digits.size() != token.size();
  if (!hexadecimal && token.size() > 1 && token.front() == '0') return std::nullopt;
  const std::optional<uint64_t> value = ToNumber(digits, hexadecimal ? 16 : 10);
  if (!value || *value > 0xFF) return std::nullopt;
  return static_cast<uint8_t>(*value);
}

// The array whose '{' stands at `open`; `end` is what follows it.
ByteVector ReadCArray(std::string_view text, size_t open, size_t& end) {
  const size_t line = 1 + static_cast<size_t>(std::count(text.begin(), text.begin() + static_cast<long>(open), '\n'));
  const size_t close = text.find('}', open);
  if (close == text.npos) FailInLine(line, "the array has no '}'");
  if (text.find('{', open + 1) < close) FailInLine(line, "an array inside of an array: keep the one that is the EDID");
  ByteVector bytes;
  for (const std::string_view token : SplitTokens(text.substr(open + 1, close - open - 1), ", \t\r\n")) {
    const std::optional<uint8_t> value = ReadElement(token);
    if (!value) FailInLine(line, fmt::format("'{}' in the array is no byte; write 0x00 to 0xFF", Shortened(token)));
    bytes.push_back(*value);
  }
  end = close + 1;
  return bytes;
}

// One array is taken as it is; of several, each must be an EDID.
std::vector<ByteVector> ReadCArrays(std::string_view text) {
  std::vector<ByteVector> arrays;
  for (size_t at = 0; (at = text.find('{', at)) != text.npos;) arrays.push_back(ReadCArray(text, at, at));
  const auto isEdid = [](const ByteVector& bytes) { return StartsWith(bytes, kHeader); };
  if (arrays.size() > 1 && !std::all_of(arrays.begin(), arrays.end(), isEdid)) {
    throw Error(ErrorKind::kInput, fmt::format("{} arrays, not all of which begin with 00 ff ff as an EDID does; keep "
                                               "those that are EDIDs",
                                               arrays.size()));
  }
  return arrays;
}

// ---- plain digits

constexpr size_t kDamaged = 4;  // a line with so many bytes before its first bad character was meant as bytes

// The bytes of a line; `bad` is what is not hexadecimal in it.
ByteVector ReadPlainLine(std::string_view line, std::string_view& bad) {
  ByteVector bytes;
  for (const std::string_view token : SplitTokens(line, " \t\r\f\v,;:-\"'\\")) {
    const std::string_view digits = WithoutPrefix(token.starts_with('x') ? token.substr(1) : token);
    const bool oneDigit = digits.size() == 1 && digits.size() != token.size();
    if (!IsHex(digits) || (digits.size() % 2 != 0 && !oneDigit)) {
      bad = token;
      break;
    }
    if (oneDigit) {
      bytes.push_back(static_cast<uint8_t>(*ToNumber(digits, 16)));
    } else {
      AppendPairs(digits, bytes);
    }
  }
  return bytes;
}

// Consecutive lines of digits, and the lines that are something else.
struct PlainText {
  std::vector<ByteVector> runs;
  std::vector<std::pair<size_t, std::string_view>> badLines;
};

PlainText ReadPlainText(const std::vector<Line>& lines) {
  PlainText result;
  bool inRun = false;
  for (const Line& line : lines) {
    std::string_view bad;
    const ByteVector bytes = ReadPlainLine(line.text, bad);
    if (!bad.empty()) {
      if (bytes.size() >= kDamaged) FailInLine(line.number, fmt::format("'{}' is not hexadecimal", Shortened(bad)));
      result.badLines.emplace_back(line.number, bad);
      inRun = false;
    } else if (!bytes.empty()) {
      if (!inRun) result.runs.emplace_back();
      result.runs.back().insert(result.runs.back().end(), bytes.begin(), bytes.end());
      inRun = true;
    }
  }
  return result;
}

// Digits alone are taken as they are. Among other text each run of digits must be an EDID.
std::vector<ByteVector> ReadPlain(const std::vector<Line>& lines) {
  PlainText text = ReadPlainText(lines);
  if (text.badLines.empty()) return std::move(text.runs);
  const auto [number, bad] = text.badLines.front();
  if (text.runs.empty() || !StartsWith(text.runs.front(), kHeader)) {
    FailInLine(number, fmt::format("'{}' is not hexadecimal, and the text holds no EDID that begins with 00 ff ff",
                                   Shortened(bad)));
  }
  if (!std::all_of(text.runs.begin(), text.runs.end(),
                   [](const ByteVector& run) { return StartsWith(run, kHeader); })) {
    FailInLine(number, "digits of an EDID with text in its midst; keep the digits alone");
  }
  return std::move(text.runs);
}

// An EDID begins at a block whose first bytes are its header.
void AddImages(const ByteVector& bytes, std::vector<ByteVector>& images) {
  constexpr size_t kBlockSize = 128;
  size_t first = 0;
  for (size_t at = kBlockSize; at < bytes.size(); at += kBlockSize) {
    if (!StartsWith(bytes, kHeader) || !StartsWith(std::span(bytes).subspan(at), kHeader)) continue;
    images.emplace_back(bytes.begin() + static_cast<long>(first), bytes.begin() + static_cast<long>(at));
    first = at;
  }
  images.emplace_back(bytes.begin() + static_cast<long>(first), bytes.end());
}

}  // namespace

std::vector<ByteVector> ParseHexTexts(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);  // a byte order mark
  std::vector<ByteVector> parts = ReadDumps(text), images;
  if (parts.empty()) {
    const std::string bare = WithoutComments(text);
    if (bare.find('{') != bare.npos) {
      parts = ReadCArrays(bare);
    } else {
      parts = ReadPlain(SplitLines(bare));
    }
  }
  for (const ByteVector& part : parts) AddImages(part, images);
  return images;
}

ByteVector ParseHexText(std::string_view text) {
  const std::vector<ByteVector> images = ParseHexTexts(text);
  if (images.size() > 1) {
    throw Error(ErrorKind::kInput, fmt::format("digits of {} EDIDs; keep those of one", images.size()));
  }
  return images.empty() ? ByteVector() : images.front();
}

bool LooksLikeText(std::span<const uint8_t> bytes) {
  return std::none_of(bytes.begin(), bytes.end(),
                      [](uint8_t byte) { return byte == 0x7F || (byte < 0x20 && (byte < '\t' || byte > '\r')); });
}

}  // namespace reedid::document
