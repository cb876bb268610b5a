#include "document/plot/picture.h"

#include "document/account/queries.h"
#include "document/plot/display_gamut.h"
#include "document/plot/gamut_panel.h"
#include "document/plot/timings_panel.h"
#include "document/printable.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

constexpr double kWidth = 1280;
constexpr double kHeight = 768;
constexpr Box kGamutFrame = {66, 92, 480, 540};
constexpr Box kTimingsFrame = {640, 92, 604, 540};

// A background of its own: the picture reads the same in a dark viewer. A label is edged in it, to stand out of lines.
constexpr char kStyle[] =
    "text{font-family:Helvetica,Arial,'DejaVu Sans',sans-serif;font-size:12px;fill:#22272e}"
    ".title{font-size:21px;font-weight:bold}.subtitle{font-size:13px;fill:#57606a}"
    ".heading{font-size:15px;font-weight:bold}.axis{font-size:13px}.tick{fill:#57606a}.small,.note{font-size:10.5px;"
    "fill:#57606a}"
    ".mid{text-anchor:middle}.end{text-anchor:end}.missing{font-size:14px;font-weight:bold;fill:#a40e26}"
    ".paper{fill:#fdfdfc}.legend{fill:#fdfdfc;fill-opacity:.9;stroke:#d0d7de}"
    ".grid{stroke:#57606a;stroke-opacity:.16}.frame{fill:none;stroke:#8b949e}"
    ".locus{fill:none;stroke:#57606a;stroke-width:1.2}"
    ".reference{fill:none;stroke-width:1.5}.display{fill:none;stroke:#111;stroke-width:2.6;stroke-linejoin:round}"
    ".corner{fill:#111;stroke:#fdfdfc}.white{fill:#fdfdfc;stroke:#111;stroke-width:2}.d65{stroke:#111;stroke-width:1.4}"
    ".limit{stroke:#a40e26;stroke-width:1.3;stroke-dasharray:6 4}.own{stroke-width:2.4;stroke-dasharray:none}"
    ".range{fill:#1a7f37;fill-opacity:.05;stroke:#1a7f37;stroke-width:1.3;stroke-dasharray:2 3}"
    ".variable{fill:#0969da;fill-opacity:.25;stroke:#0969da}.variablename{font-size:8.5px;fill:#0a3069}"
    ".limitname{fill:#a40e26;font-weight:bold}"
    ".beyond{fill:#a40e26;fill-opacity:.035}.series{fill:none;stroke-opacity:.45}.leader{stroke:#8b949e;stroke-width:."
    "8}"
    ".preferred{fill:none;stroke:#111;stroke-width:2}"
    ".name{font-size:11.5px;paint-order:stroke;stroke:#fdfdfc;stroke-width:3px;stroke-linejoin:round}"
    ".best{font-weight:bold}";

// The name that the display gives itself in the base block; empty without one.
std::string ProductName(const Image& image) {
  const BaseBlock base(image.IsEdid() ? VESA_Open(&image.blocks()[0]) : nullptr);
  if (!base) return "";
  for (const DtdSlot& slot : base.Descriptors()) {
    char name[REEDID_TEXT_SIZE] = {};
    if (slot.flag == EDID_DESCRIPTOR_PRODUCT_NAME && VESA_GetProductName(&slot, name, sizeof name) == 0)
      return PrintableText(name);
  }
  return "";
}

// What stands in a line of the picture: the end of a long path tells more than its beginning.
std::string Shortened(const std::string& text, size_t most) {
  if (text.size() <= most) return text;
  size_t start = text.size() - most;
  while (start < text.size() && (static_cast<uint8_t>(text[start]) & 0xC0) == 0x80) ++start;
  return "\xE2\x80\xA6" + text.substr(start);
}

}  // namespace

std::string DrawPicture(const Image& image, const Node& account) {
  std::string name = ProductName(image);
  if (name.empty()) name = Shortened(image.name(), 40);
  Svg svg(kWidth, kHeight);
  svg.Element("title", {}, account.title);
  svg.Element("style", {}, kStyle);
  svg.Element("rect", {{"class", "paper"}, {"width", kWidth}, {"height", kHeight}});
  svg.Text("title", 30, 38, name);
  svg.Text("subtitle end", kWidth - 30, 38, Shortened(account.title, 90));
  DrawGamut(GamutOf(image), kGamutFrame, svg);
  DrawTimings(ItemsOf(account), PreferredOf(image), LimitsOf(image), kTimingsFrame, svg);
  return svg.Finish();
}

}  // namespace reedid::document
