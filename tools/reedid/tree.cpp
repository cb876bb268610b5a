#include "tree.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace reedid::tool {
namespace {

constexpr size_t kLineWidth = 100;
constexpr size_t kIndent = 2;
constexpr size_t kNarrowest = 40;

// Appends `value` in lines of at most `width` characters; a word that is longer stands alone.
void AppendWrapped(std::string_view value, size_t width, size_t indent, std::string& out) {
  while (value.size() > width) {
    size_t cut = value.rfind(' ', width);
    if (cut == value.npos || cut == 0) cut = std::min(value.find(' '), value.size());
    out += fmt::format("{}\n", value.substr(0, cut));
    value.remove_prefix(std::min(cut + 1, value.size()));
    if (value.empty()) return;
    out.append(indent, ' ');
  }
  out += fmt::format("{}\n", value);
}

void AppendNode(const Node& node, size_t indent, std::string& out) {
  out += fmt::format("{:{}}{}\n", "", indent, node.title);
  indent += kIndent;
  size_t names = 0;
  for (const Field& field : node.fields) names = std::max(names, field.name.size());
  const size_t column = indent + names + kIndent;
  const size_t width = std::max(kNarrowest, kLineWidth - std::min(kLineWidth, column));
  for (const Field& field : node.fields) {
    out += fmt::format("{:{}}{:<{}}", "", indent, field.name, names + kIndent);
    AppendWrapped(field.value, width, column, out);
  }
  for (const Node& child : node.children) AppendNode(child, indent, out);
}

}  // namespace

std::string ToText(const Node& root) {
  std::string out;
  AppendNode(root, 0, out);
  return out;
}

}  // namespace reedid::tool
