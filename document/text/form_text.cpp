// JSON in few lines: what fits one line stands in one, short values of an object share lines.

#include <fmt/format.h>

#include "document/text/text_form.h"

namespace reedid::document {
namespace {

constexpr size_t kWidth = 110, kIndent = 2;

std::string Flat(const Json& json) {
  const auto dump = [](const Json& value) { return value.dump(-1, ' ', true, Json::error_handler_t::replace); };
  if (!json.is_structured()) return dump(json);
  std::string text;
  for (const auto& [key, value] : json.items()) {
    if (!text.empty()) text += ", ";
    text += json.is_object() ? fmt::format("{}: {}", dump(key), Flat(value)) : Flat(value);
  }
  return json.is_object() ? fmt::format("{{{}}}", text) : fmt::format("[{}]", text);
}

// Lists of parts stand in lines of their own, however short.
bool IsLong(const Json& json, size_t column) {
  if (!json.is_structured()) return false;
  if (json.is_array() && !json.empty() && json[0].is_object() && json[0].contains("kind")) return true;
  for (const Json& value : json) {
    if (IsLong(value, 0)) return true;
  }
  return column + Flat(json).size() > kWidth;
}

void Write(const Json& json, size_t indent, std::string& out) {
  if (!IsLong(json, out.size() - (out.rfind('\n') + 1))) {
    out += Flat(json);
    return;
  }
  const std::string margin = "\n" + std::string(indent + kIndent, ' ');
  out += json.is_object() ? '{' : '[';
  bool first = true, shares = false;
  for (const auto& [key, value] : json.items()) {
    const std::string name = json.is_object() ? Json(key).dump() + ": " : "";
    const bool single = !value.is_object() && !IsLong(value, 0);
    const size_t column = out.size() - (out.rfind('\n') + 1);
    if (!first) out += ',';
    if (shares && single && column + name.size() + Flat(value).size() + 3 < kWidth) {
      out += ' ';
    } else {
      out += margin;
    }
    out += name;
    Write(value, indent + kIndent, out);
    first = false;
    shares = single;
  }
  out += "\n" + std::string(indent, ' ') + (json.is_object() ? '}' : ']');
}

}  // namespace

std::string FormText(const Json& json) {
  std::string text;
  Write(json, 0, text);
  return text + "\n";
}

}  // namespace reedid::document
