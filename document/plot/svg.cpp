#include "document/plot/svg.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "document/printable.h"

namespace reedid::document {
namespace {

constexpr double kLargest = 1e6;  // no picture is larger, and renderers choke on more

// XML 1.0, production 2.
bool IsXmlCharacter(char32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code <= 0xD7FF || (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

}  // namespace

std::string SvgNumber(double value) {
  if (!std::isfinite(value)) return "0";
  std::string text = fmt::format("{:.2f}", std::min(std::max(value, -kLargest), kLargest));
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string XmlText(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const Character c = FirstCharacter(text);
    switch (c.code) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += IsXmlCharacter(c.code) ? text.substr(0, c.size) : "\xEF\xBF\xBD";
    }
    text.remove_prefix(c.size);
  }
  return out;
}

Svg::Svg(double width, double height) {
  out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  Open("svg", {{"xmlns", "http://www.w3.org/2000/svg"},
               {"width", width},
               {"height", height},
               {"viewBox", fmt::format("0 0 {} {}", SvgNumber(width), SvgNumber(height))}});
}

void Svg::Begin(const char* tag, SvgAttributes attributes) {
  out_ += fmt::format("<{}", tag);
  for (const SvgAttribute& attribute : attributes) {
    out_ += fmt::format(" {}=\"{}\"", attribute.name, XmlText(attribute.value));
  }
}

Svg& Svg::Open(const char* tag, SvgAttributes attributes) {
  Begin(tag, attributes);
  out_ += ">\n";
  open_.push_back(tag);
  return *this;
}

Svg& Svg::Close() {
  out_ += fmt::format("</{}>\n", open_.back());
  open_.pop_back();
  return *this;
}

Svg& Svg::Element(const char* tag, SvgAttributes attributes, std::string_view text) {
  Begin(tag, attributes);
  out_ += text.empty() ? "/>\n" : fmt::format(">{}</{}>\n", XmlText(text), tag);
  return *this;
}

Svg& Svg::Titled(const char* tag, SvgAttributes attributes, std::string_view title) {
  Begin(tag, attributes);
  out_ += fmt::format("><title>{}</title></{}>\n", XmlText(title), tag);
  return *this;
}

Svg& Svg::Text(const char* style, double x, double y, std::string_view text) {
  return Element("text", {{"class", style}, {"x", x}, {"y", y}}, text);
}

Svg& Svg::Line(const char* style, double x1, double y1, double x2, double y2) {
  return Element("line", {{"class", style}, {"x1", x1}, {"y1", y1}, {"x2", x2}, {"y2", y2}});
}

std::string Svg::Finish() {
  while (!open_.empty()) Close();
  return std::move(out_);
}

SvgPath& SvgPath::Add(char command, std::initializer_list<double> numbers) {
  text_ += command;
  const char* blank = "";
  for (const double number : numbers) {
    text_ += blank;
    text_ += SvgNumber(number);
    blank = " ";
  }
  return *this;
}

}  // namespace reedid::document
