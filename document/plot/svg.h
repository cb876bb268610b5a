// A writer of SVG pictures (SVG 1.1): elements nest as they are opened, texts are escaped, numbers know no locale.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace reedid::document {

// At most two digits behind a decimal point, whatever the locale: "12", "0.5", "-3.25". What is no number is 0.
std::string SvgNumber(double value);

// Text for content and attributes. Bytes that are no UTF-8, and characters that XML does not know, become U+FFFD.
std::string XmlText(std::string_view text);

struct SvgAttribute {
  SvgAttribute(const char* attributeName, std::string_view text) : name(attributeName), value(text) {}
  SvgAttribute(const char* attributeName, double number) : name(attributeName), value(SvgNumber(number)) {}
  const char* name;
  std::string value;
};
using SvgAttributes = std::initializer_list<SvgAttribute>;

class Svg {
 public:
  Svg(double width, double height);
  Svg& Open(const char* tag, SvgAttributes attributes = {});
  Svg& Close();
  // An element of text, or of nothing.
  Svg& Element(const char* tag, SvgAttributes attributes, std::string_view text = "");
  // An element that tells `title` when it is pointed at.
  Svg& Titled(const char* tag, SvgAttributes attributes, std::string_view title);
  // What pictures have most of; `style` is a class.
  Svg& Text(const char* style, double x, double y, std::string_view text);
  Svg& Line(const char* style, double x1, double y1, double x2, double y2);

  // Closes all that is open; the picture is complete.
  std::string Finish();

 private:
  void Begin(const char* tag, SvgAttributes attributes);
  std::string out_;
  std::vector<const char*> open_;
};

// The "d" of a path, in the commands of SVG.
class SvgPath {
 public:
  SvgPath& Move(double x, double y) { return Add('M', {x, y}); }
  SvgPath& Line(double x, double y) { return Add('L', {x, y}); }
  SvgPath& Curve(double x1, double y1, double x2, double y2, double x, double y) {
    return Add('C', {x1, y1, x2, y2, x, y});
  }
  SvgPath& Close() { return Add('Z', {}); }
  const std::string& Text() const { return text_; }

 private:
  SvgPath& Add(char command, std::initializer_list<double> numbers);
  std::string text_;
};

}  // namespace reedid::document
