// The tree as indented text.

#include <fmt/color.h>
#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "tree.h"

namespace reedid::tool {
namespace {

constexpr size_t kIndent = 2;
constexpr size_t kNarrowestLine = 40;
constexpr size_t kNarrowestValue = 20;

constexpr fmt::terminal_color kNameColor = fmt::terminal_color::cyan;
constexpr fmt::terminal_color kFaultColor = fmt::terminal_color::red;

constexpr bool IsContinuation(char c) {
  return (static_cast<uint8_t>(c) & 0xC0) == 0x80;
}

// Characters shown: each UTF-8 sequence is one.
size_t Columns(std::string_view text) {
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

// Control characters as \x1b: those of ASCII, and U+0080 to U+009F, which UTF-8 begins with c2.
std::string WithoutControls(std::string_view text) {
  std::string shown;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<uint8_t>(text[i]);
    const auto next = static_cast<uint8_t>(i + 1 < text.size() ? text[i + 1] : '\0');
    if (c == 0xC2 && next >= 0x80 && next < 0xA0) {
      shown += fmt::format("\\xc2\\x{:02x}", next);
      ++i;
    } else {
      shown += c < 0x20 || c == 0x7F ? fmt::format("\\x{:02x}", c) : std::string(1, text[i]);
    }
  }
  return shown;
}

// Lines of at most `width` characters; a word that is longer stands alone.
std::vector<std::string> Wrapped(std::string_view text, size_t width) {
  std::vector<std::string> lines;
  while (Columns(text) > width) {
    size_t cut = text.rfind(' ', BytesOfColumns(text, width));
    if (cut == text.npos || cut == 0) cut = std::min(text.find(' ', 1), text.size());
    lines.emplace_back(text.substr(0, cut));
    text.remove_prefix(std::min(cut + 1, text.size()));
  }
  if (!text.empty() || lines.empty()) lines.emplace_back(text);
  return lines;
}

class TextWriter {
 public:
  explicit TextWriter(const TextStyle& style) : style_(style), width_(std::max(style.width, kNarrowestLine)) {}

  void Write(const Node& node, size_t depth) {
    WriteTitle(node, depth);
    const size_t indent = (depth + 1) * kIndent;
    size_t names = 0;
    for (const Field& field : node.fields) names = std::max(names, Columns(field.name));
    for (const Field& field : node.fields) WriteField(field, indent, names);
    for (const Node& child : node.children) Write(child, depth + 1);
  }

  std::string& text() { return out_; }

 private:
  void Append(std::string_view text, const fmt::text_style& look) {
    out_ += style_.color && !text.empty() ? fmt::format(look, "{}", text) : std::string(text);
  }

  void WriteTitle(const Node& node, size_t depth) {
    const size_t hanging = (depth + 2) * kIndent;
    size_t indent = depth * kIndent;
    auto look = fmt::text_style(fmt::emphasis::bold);
    if (depth <= 1) look |= fmt::emphasis::underline;
    for (const std::string& line : Wrapped(WithoutControls(node.title), width_ - hanging)) {
      out_.append(indent, ' ');
      Append(line, look);
      out_ += '\n';
      indent = hanging;
    }
  }

  void WriteField(const Field& field, size_t indent, size_t names) {
    const size_t column = indent + names + kIndent;
    const size_t room = width_ > column ? width_ - column : 0;
    const fmt::text_style look =
        field.isFault ? fmt::emphasis::bold | fmt::fg(kFaultColor) : fmt::text_style(fmt::emphasis{});
    out_.append(indent, ' ');
    Append(field.name, fmt::fg(kNameColor));
    size_t gap = column - indent - Columns(field.name);
    for (const std::string& line : Wrapped(WithoutControls(field.value), std::max(room, kNarrowestValue))) {
      out_.append(gap, ' ');
      Append(line, look);
      out_ += '\n';
      gap = column;
    }
  }

  const TextStyle& style_;
  size_t width_;
  std::string out_;
};

}  // namespace

std::string ToText(const Node& root, const TextStyle& style) {
  TextWriter writer(style);
  writer.Write(root, 0);
  return std::move(writer.text());
}

}  // namespace reedid::tool
