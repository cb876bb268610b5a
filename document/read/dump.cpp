#include "document/read/dump.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "document/printable.h"
#include "document/read/digits.h"

namespace reedid::document {
namespace {

constexpr size_t kUsualRow = 16;
constexpr uint64_t kMaxGap = 65536;  // no image is longer; an offset that jumps further is a wrong one
constexpr uint8_t kSwappedHeader[] = {0xFF, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0xFF};

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

bool BeginsDump(const Row& row) {
  return row.offset.find_first_not_of('0') == row.offset.npos && !Trim(row.rest).empty();
}

// A dump without colons begins with offset 0, as no EDID and no DisplayID section begins. Text may stand above it.
bool IsBareDump(const std::vector<Line>& lines) {
  for (const Line& line : lines) {
    const std::string_view text = Trim(line.text);
    Row row;
    if (SplitBareRow(line, row)) return BeginsDump(row);
    if (SplitColonRow(line, row) || IsHex(text.substr(0, text.find_first_of(kSpace)))) return false;
  }
  return false;
}

[[noreturn]] void FailInText(const Line& line) {
  FailInLine(line.number,
             fmt::format("'{}' is no row of the dump; remove what does not belong to it", Shortened(Trim(line.text))));
}

// So many bytes in a line were meant as a row, which is damaged.
bool LooksLikeRow(std::string_view text) {
  constexpr size_t kDamaged = 4;
  size_t bytes = 0;
  while (!text.empty()) {
    const std::string_view token = text.substr(0, text.find_first_of(kSpace));
    if (IsHex(token)) bytes += token.size() / 2;
    text.remove_prefix(std::min(text.size(), token.size() + 1));
  }
  return bytes >= kDamaged;
}

// The rows of dumps, none when the text is something else. Text may stand in front of each dump, nothing between rows.
std::vector<Row> FindRows(const std::vector<Line>& lines) {
  const auto split = IsBareDump(lines) ? SplitBareRow : SplitColonRow;
  std::vector<Row> rows;
  const Line* text = nullptr;  // the first one since the last row
  for (const Line& line : lines) {
    Row row;
    if (Trim(line.text).empty()) continue;
    if (split(line, row)) {
      if (text != nullptr && !rows.empty() && !BeginsDump(row)) FailInText(*text);
      rows.push_back(row);
      text = nullptr;
    } else if (Trim(line.text) == "*" && !rows.empty() && text == nullptr) {
      rows.back().repeated = true;
    } else if (!rows.empty() && LooksLikeRow(Trim(line.text))) {
      FailInText(line);
    } else if (text == nullptr) {
      text = &line;
    }
  }
  if (text != nullptr && !rows.empty()) FailInText(*text);
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
std::optional<ByteVector> ReadRows(std::span<const Row> rows, int base) {
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

ByteVector ReadDump(std::span<const Row> rows) {
  for (const int base : {16, 10, 8}) {
    if (std::optional<ByteVector> bytes = ReadRows(rows, base)) {
      UndoWordOrder(*bytes);
      return *bytes;
    }
  }
  FailInLine(rows.front().line, "this dump has rows whose bytes do not fit their offsets; make it anew");
}

}  // namespace

std::vector<ByteVector> ReadDumps(std::string_view text) {
  const std::vector<Row> rows = FindRows(SplitLines(text));
  std::vector<ByteVector> dumps;
  for (size_t first = 0, end = 0; first < rows.size(); first = end) {
    for (end = first + 1; end < rows.size() && !BeginsDump(rows[end]);) ++end;
    dumps.push_back(ReadDump(std::span(rows).subspan(first, end - first)));
  }
  return dumps;
}

}  // namespace reedid::document
