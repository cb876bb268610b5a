// The tree as indented text.

#include "document/account/tree_text.h"

#include <fmt/color.h>
#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <string_view>

#include "document/printable.h"

namespace reedid::document {
namespace {

constexpr size_t kIndent = 2;
constexpr size_t kNarrowestLine = 40;
constexpr size_t kNarrowestValue = 20;
constexpr size_t kBytesPerRow = 8;

const fmt::text_style kTitleLook = fmt::emphasis::bold;
const fmt::text_style kNameLook = fmt::fg(fmt::terminal_color::cyan);
const fmt::text_style kHexLook = fmt::emphasis::faint;
const fmt::text_style kFaultLook = fmt::emphasis::bold | fmt::fg(fmt::terminal_color::red);
const fmt::text_style kWarningLook = fmt::emphasis::bold | fmt::fg(fmt::terminal_color::yellow);

constexpr bool IsContinuation(char c) {
  return (static_cast<uint8_t>(c) & 0xC0) == 0x80;
}

// Characters shown: each UTF-8 sequence is one.
size_t Width(std::string_view text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) { return !IsContinuation(c); }));
}

// The bytes of the first `columns` characters.
size_t BytesOfColumns(std::string_view text, size_t columns) {
  size_t at = 0;
  for (; at < text.size(); ++at) {
    if (IsContinuation(text[at])) continue;
    if (columns-- == 0) break;
  }
  return at;
}

// Lines of at most `width` characters; a word that is longer stands alone.
std::vector<std::string> Wrapped(std::string_view text, size_t width) {
  std::vector<std::string> lines;
  while (Width(text) > width) {
    size_t cut = text.rfind(' ', BytesOfColumns(text, width));
    if (cut == text.npos || cut == 0) cut = std::min(text.find(' ', 1), text.size());
    lines.emplace_back(text.substr(0, cut));
    text.remove_prefix(std::min(cut + 1, text.size()));
  }
  if (!text.empty() || lines.empty()) lines.emplace_back(text);
  return lines;
}

std::vector<std::string> HexLines(std::span<const uint8_t> bytes) {
  std::vector<std::string> lines;
  for (size_t at = 0; at < bytes.size(); at += kBytesPerRow) {
    lines.push_back(Hex(bytes.subspan(at, std::min(kBytesPerRow, bytes.size() - at))));
  }
  return lines;
}

const fmt::text_style& LookOf(const Remark& remark) {
  return remark.severity == "error" ? kFaultLook : remark.severity == "warning" ? kWarningLook : kHexLook;
}

class TextWriter {
 public:
  explicit TextWriter(const TextStyle& style) : style_(style), width_(std::max(style.width, kNarrowestLine)) {}

  void Write(const Node& node, size_t depth) {
    WriteTitle(node, depth);
    WriteRemarks(node.remarks, (depth + 1) * kIndent);
    WriteFields(node.fields, (depth + 1) * kIndent);
    for (const Node& child : node.children) Write(child, depth + 1);
  }

  std::string& text() { return out_; }

 private:
  // Widths of the columns before the values.
  struct Columns {
    size_t indent = 0;
    size_t names = 0;
    size_t hex = 0;  // 0: no such column

    size_t Names() const { return names + kIndent; }
    size_t Hex() const { return hex == 0 ? 0 : hex + kIndent; }
    size_t BeforeValue() const { return indent + Names() + Hex(); }
  };

  bool IsShown(const Field& field) const { return style_.hex || !field.value.empty(); }

  // Text and its look, and where the next column begins, counted from the beginning of this one.
  void Append(std::string_view text, const fmt::text_style& look) {
    if (text.empty()) return;
    out_.append(pending_, ' ');
    pending_ = 0;
    out_ += style_.color ? fmt::format(look, "{}", text) : std::string(text);
  }
  void AppendColumn(std::string_view text, const fmt::text_style& look, size_t width) {
    Append(text, look);
    pending_ += width - std::min(width, Width(text));
  }
  void EndLine() {
    out_ += '\n';
    pending_ = 0;
  }

  void WriteTitle(const Node& node, size_t depth) {
    const size_t hanging = (depth + 2) * kIndent;
    const auto look = depth <= 1 ? kTitleLook | fmt::emphasis::underline : kTitleLook;
    std::vector<std::string> lines = Wrapped(WithoutControls(node.title), width_ - hanging);
    pending_ = depth * kIndent;
    for (const std::string& line : lines) {
      if (&line != &lines.front()) NextLine(hanging);
      Append(line, look);
    }
    if (style_.hex && !node.bytes.empty()) {
      const std::string hex = fmt::format("[{}]", Hex(node.bytes));
      const size_t indent = lines.size() == 1 ? depth * kIndent : hanging;
      pending_ = kIndent;
      if (indent + Width(lines.back()) + kIndent + hex.size() > width_) NextLine(hanging);
      Append(hex, kHexLook);
    }
    EndLine();
  }

  void NextLine(size_t indent) {
    EndLine();
    pending_ = indent;
  }

  void WriteFields(const std::vector<Field>& fields, size_t indent) {
    Columns columns = {indent, 0, 0};
    for (const Field& field : fields) {
      if (!IsShown(field)) continue;
      columns.names = std::max(columns.names, Width(field.name));
      if (style_.hex) columns.hex = std::max(columns.hex, std::min(field.bytes.size(), kBytesPerRow) * 3);
    }
    if (columns.hex != 0) --columns.hex;  // no blank behind the last byte
    for (const Field& field : fields) {
      if (IsShown(field)) WriteField(field, columns);
    }
  }

  void WriteField(const Field& field, const Columns& columns) {
    const size_t before = columns.BeforeValue();
    const size_t room = std::max(kNarrowestValue, width_ - std::min(width_, before));
    const std::vector<std::string> hex = style_.hex ? HexLines(field.bytes) : std::vector<std::string>{};
    // A value that is its bytes would only be told twice.
    const bool isHex = style_.hex && field.value == Hex(field.bytes);
    const std::vector<std::string> values =
        isHex ? std::vector<std::string>{} : Wrapped(WithoutControls(field.value), room);
    for (size_t i = 0; i < std::max(hex.size(), values.size()); ++i) {
      pending_ = columns.indent;
      AppendColumn(i == 0 ? field.name : "", kNameLook, columns.Names());
      AppendColumn(i < hex.size() ? hex[i] : "", kHexLook, columns.Hex());
      Append(i < values.size() ? values[i] : "", field.isFault ? kFaultLook : fmt::text_style());
      EndLine();
    }
    WriteRemarks(field.remarks, before);
  }

  void WriteRemarks(const std::vector<Remark>& remarks, size_t indent) {
    const size_t room = std::max(kNarrowestValue, width_ - std::min(width_, indent + kIndent));
    for (const Remark& remark : remarks) {
      const std::string text = fmt::format("! {} {}: {}", remark.severity, remark.rule, WithoutControls(remark.text));
      pending_ = indent;
      for (const std::string& line : Wrapped(text, room)) {
        Append(line, LookOf(remark));
        NextLine(indent + kIndent);
      }
    }
    pending_ = 0;
  }

  const TextStyle& style_;
  size_t width_;
  size_t pending_ = 0;  // blanks, written once something follows them
  std::string out_;
};

}  // namespace

std::string ToText(const Node& root, const TextStyle& style) {
  TextWriter writer(style);
  writer.Write(root, 0);
  return std::move(writer.text());
}

}  // namespace reedid::document
