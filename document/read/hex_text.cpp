#include "document/read/hex_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "document/error.h"

namespace reedid::document {
namespace {

constexpr std::string_view kSpace = " \t\r\f\v";
constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";
constexpr size_t kUsualRow = 16;
constexpr uint64_t kMaxGap = 65536;  // no image is longer; an offset that jumps further is a wrong one
constexpr uint8_t kHeader[] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
constexpr uint8_t kSwappedHeader[] = {0xFF, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0xFF};

struct Line {
  size_t number;
  std::string_view text;
};

[[noreturn]] void Fail(size_t line, const std::string& what) {
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

bool StartsWith(const ByteVector& bytes, std::span<const uint8_t> start) {
  return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
}

// Pairs of digits; the caller has checked that they are hexadecimal and even in number.
void AppendPairs(std::string_view digits, ByteVector& out) {
  for (size_t i = 0; i < digits.size(); i += 2) {
    out.push_back(static_cast<uint8_t>(*ToNumber(digits.substr(i, 2), 16)));
  }
}

// ---- dumps with offsets

struct Row {
  size_t line;
  std::string_view offset;
  std::string_view rest;  // behind the offset: bytes, then perhaps a text column
  bool repeated;          // a "*" follows: the row fills all up to the next offset
};

// "0010: 00 ff"; 00:ff:ff is no offset but bytes.
bool SplitColonRow(const Line& line, Row& row) {
  const std::string_view text = Trim(line.text);
  const size_t colon = text.find(':');
  if (colon == text.npos || colon < 2 || !IsHex(WithoutPrefix(text.substr(0, colon)))) return false;
  const std::string_view rest = text.substr(colon + 1);
  if (!rest.empty() && kSpace.find(rest.front()) == kSpace.npos) return false;
  row = {line.number, WithoutPrefix(text.substr(0, colon)), rest, false};
  return true;
}

// "00000010  00 ff"
bool SplitBareRow(const Line& line, Row& row) {
  const std::string_view text = Trim(line.text);
  const size_t end = std::min(text.find_first_of(kSpace), text.size());
  const std::string_view offset = WithoutPrefix(text.substr(0, end));
  if (offset.size() < 4 || !IsHex(offset)) return false;
  row = {line.number, offset, text.substr(end), false};
  return true;
}

// A dump without colons begins with offset 0, as no EDID and no DisplayID section begins.
bool IsBareDump(const std::vector<Line>& lines) {
  for (const Line& line : lines) {
    if (Trim(line.text).empty()) continue;
    Row row;
    return SplitBareRow(line, row) && row.offset.find_first_not_of('0') == row.offset.npos;
  }
  return false;
}

// The rows of a dump, none when the text is something else. Headings may stand above the first row, nothing between.
std::vector<Row> FindRows(const std::vector<Line>& lines) {
  const auto split = IsBareDump(lines) ? SplitBareRow : SplitColonRow;
  std::vector<Row> rows;
  for (const Line& line : lines) {
    const std::string_view text = Trim(line.text);
    Row row;
    if (text.empty()) continue;
    if (split(line, row)) {
      rows.push_back(row);
    } else if (text == "*" && !rows.empty()) {
      rows.back().repeated = true;
    } else if (!rows.empty()) {
      Fail(line.number, fmt::format("'{}' is no row of the dump; remove what does not belong to it", text));
    }
  }
  return rows;
}

// Takes up to `want` bytes from the start of a row; `end` is where they ended.
ByteVector TakeBytes(std::string_view text, size_t want, size_t& end) {
  ByteVector bytes;
  end = 0;
  while (bytes.size() < want) {
    const size_t begin = text.find_first_not_of(" \t\r-", end);
    if (begin == text.npos) break;
    const size_t stop = std::min(text.find_first_not_of(kHexDigits, begin), text.size());
    const std::string_view token = text.substr(begin, stop - begin);
    if (token.empty() || token.size() % 2 != 0 || token.size() / 2 > want - bytes.size()) break;
    AppendPairs(token, bytes);
    end = stop;
  }
  return bytes;
}

// Behind the bytes: nothing, or a text column that is set apart from them.
bool IsTextColumn(std::string_view rest) {
  return Trim(rest).empty() || rest.starts_with("  ") || rest.starts_with(" |") || rest.starts_with('\t');
}

// The last row tells no length. Its bytes end where those of the rows above ended, or before a gap.
bool AppendLastRow(const Row& row, size_t width, size_t hexEnd, ByteVector& out) {
  if (row.repeated) return false;
  std::string_view rest = row.rest;
  if (hexEnd != 0) {
    rest = rest.substr(0, hexEnd);
  } else {
    const size_t begin = rest.find_first_not_of(kSpace);
    rest = rest.substr(0, begin == rest.npos ? rest.npos : rest.find("  ", begin));
  }
  rest = rest.substr(0, rest.find('|'));
  size_t end = 0;
  const ByteVector bytes = TakeBytes(rest, width, end);
  out.insert(out.end(), bytes.begin(), bytes.end());
  return Trim(rest.substr(end)).empty();
}

// Reads the rows with their offsets in this base; nothing when a row does not have the bytes that its offset tells.
std::optional<ByteVector> ReadRows(const std::vector<Row>& rows, int base) {
  ByteVector out;
  size_t width = kUsualRow;
  size_t hexEnd = 0;
  for (size_t i = 0; i + 1 < rows.size(); ++i) {
    const auto offset = ToNumber(rows[i].offset, base);
    const auto next = ToNumber(rows[i + 1].offset, base);
    if (!offset || !next || *next <= *offset || *next - *offset > kMaxGap) return std::nullopt;
    const size_t gap = *next - *offset;
    if (!rows[i].repeated) width = gap;
    const ByteVector bytes = TakeBytes(rows[i].rest, width, hexEnd);
    if (bytes.size() != width || gap % width != 0 || !IsTextColumn(rows[i].rest.substr(hexEnd))) return std::nullopt;
    for (size_t filled = 0; filled < gap; filled += width) out.insert(out.end(), bytes.begin(), bytes.end());
  }
  if (!AppendLastRow(rows.back(), width, hexEnd, out)) return std::nullopt;
  return out;
}

// hexdump and od -x print 16-bit words in the byte order of the machine; the header gives them away.
void UndoWordOrder(ByteVector& bytes) {
  if (!StartsWith(bytes, kSwappedHeader)) return;
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
}

ByteVector ReadDump(const std::vector<Row>& rows) {
  for (const int base : {16, 10, 8}) {
    if (std::optional<ByteVector> bytes = ReadRows(rows, base)) {
      UndoWordOrder(*bytes);
      return *bytes;
    }
  }
  Fail(rows.front().line, "this dump has rows whose bytes do not fit their offsets; make it anew");
}

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

ByteVector ReadCArray(std::string_view text) {
  const size_t open = text.find('{');
  const size_t close = text.find('}', open);
  const size_t line = 1 + static_cast<size_t>(std::count(text.begin(), text.begin() + static_cast<long>(open), '\n'));
  if (close == text.npos) Fail(line, "the array has no '}'");
  if (text.find('{', open + 1) != text.npos) Fail(line, "more than one '{': keep the one array that is the EDID");
  ByteVector bytes;
  for (const std::string_view token : SplitTokens(text.substr(open + 1, close - open - 1), ", \t\r\n")) {
    const std::optional<uint8_t> value = ReadElement(token);
    if (!value) Fail(line, fmt::format("'{}' in the array is no byte; write 0x00 to 0xFF", token));
    bytes.push_back(*value);
  }
  return bytes;
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
      if (bytes.size() >= kDamaged) Fail(line.number, fmt::format("'{}' is not hexadecimal", bad));
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

// Digits alone are taken as they are. Among other text there must be one run of digits, and it must be an EDID.
ByteVector ReadPlain(const std::vector<Line>& lines) {
  const PlainText text = ReadPlainText(lines);
  if (text.badLines.empty()) return text.runs.empty() ? ByteVector() : text.runs.front();
  const auto [number, bad] = text.badLines.front();
  if (text.runs.empty() || !StartsWith(text.runs.front(), kHeader)) {
    Fail(number, fmt::format("'{}' is not hexadecimal, and the text holds no EDID that begins with 00 ff ff", bad));
  }
  if (text.runs.size() > 1) {
    Fail(number, "digits of several EDIDs, or of one with text in its midst; keep the digits of one EDID");
  }
  return text.runs.front();
}

}  // namespace

ByteVector ParseHexText(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);  // a byte order mark
  if (const std::vector<Row> rows = FindRows(SplitLines(text)); !rows.empty()) return ReadDump(rows);
  const std::string bare = WithoutComments(text);
  return bare.find('{') != bare.npos ? ReadCArray(bare) : ReadPlain(SplitLines(bare));
}

bool LooksLikeText(std::span<const uint8_t> bytes) {
  return std::none_of(bytes.begin(), bytes.end(),
                      [](uint8_t byte) { return byte == 0x7F || (byte < 0x20 && (byte < '\t' || byte > '\r')); });
}

}  // namespace reedid::document
