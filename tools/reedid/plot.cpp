// plot: a picture of what the display can show.

#include "plot.h"

#include <fmt/format.h>

#include <filesystem>

#include "commands.h"
#include "describe.h"
#include "output.h"
#include "query.h"

namespace reedid::tool {
namespace {

constexpr double kWidth = 1280;
constexpr double kHeight = 754;
constexpr Box kGamutFrame = {66, 92, 480, 540};
constexpr Box kTimingsFrame = {640, 92, 604, 540};
constexpr uint8_t kProductNameTag = 0xFC;
constexpr uint8_t kDisplayParametersTag = 0x21;

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
    ".limit{stroke:#a40e26;stroke-width:1.3;stroke-dasharray:6 4}.limitname{fill:#a40e26;font-weight:bold}"
    ".beyond{fill:#a40e26;fill-opacity:.035}.series{fill:none;stroke-opacity:.45}.leader{stroke:#8b949e;stroke-width:."
    "8}"
    ".preferred{fill:none;stroke:#111;stroke-width:2}"
    ".name{font-size:11.5px;paint-order:stroke;stroke:#fdfdfc;stroke-width:3px;stroke-linejoin:round}"
    ".best{font-weight:bold}";

Chromaticity Coordinates(uint16_t x, uint16_t y, double unit) {
  return {x / unit, y / unit};
}

// VesaBlock and DisplayParams20Record name these fields alike; nothing but zeros is nothing stated.
template <class Record>
std::optional<Gamut> ReadGamut(const Record& r, double unit) {
  const Gamut gamut = {Coordinates(r.redX, r.redY, unit), Coordinates(r.greenX, r.greenY, unit),
                       Coordinates(r.blueX, r.blueY, unit), Coordinates(r.whiteX, r.whiteY, unit)};
  if ((r.redX | r.redY | r.greenX | r.greenY | r.blueX | r.blueY) == 0) return std::nullopt;
  return gamut;
}

std::optional<Gamut> SectionGamut(const EdidBlock& block) {
  const Owned<DispIdBlock> model(DispID_Open(&block));
  if (model == nullptr || model->version != 2) return std::nullopt;
  const DispIdDataBlock* entry = DispID_FindDB(model.get(), kDisplayParametersTag);
  DisplayParams20Record record = {};
  if (entry == nullptr || DispID20_GetDPDB(entry, &record) != 0) return std::nullopt;
  return ReadGamut(record, 4096);
}

std::optional<Gamut> BlockGamut(const EdidBlock& block) {
  if (block.type == EDID_BLOCK_VESA) {
    const Owned<VesaBlock> base(VESA_Open(&block));
    return base == nullptr ? std::nullopt : ReadGamut(*base, 1024);
  }
  const bool section = block.type == EDID_BLOCK_DISPID_FIRST || block.type == EDID_BLOCK_DISPID_NEXT ||
                       block.type == EDID_BLOCK_DISPID_EXT;
  return section ? SectionGamut(block) : std::nullopt;
}

// The name that the display gives itself in the base block; empty without one.
std::string ProductName(const Image& image) {
  const Owned<VesaBlock> base(image.IsEdid() ? VESA_Open(&image.blocks()[0]) : nullptr);
  if (base == nullptr) return "";
  for (const DtdSlot& slot : base->descriptors) {
    char name[14] = {};
    if (slot.flag == kProductNameTag && VESA_GetProductName(&slot, name, sizeof name) == 0) return PrintableText(name);
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

std::optional<Gamut> GamutOf(const Image& image) {
  for (const EdidBlock& block : image.blocks()) {
    if (auto gamut = BlockGamut(block)) return gamut;
  }
  return std::nullopt;
}

std::string PlotImage(const Image& image) {
  const Node account = DescribeImage(image);
  std::string name;
  std::optional<Gamut> gamut;
  std::optional<TimingItem> preferred;
  CaptureDiagnostics([&] {  // describing the image has printed them
    name = ProductName(image);
    gamut = GamutOf(image);
    preferred = PreferredOf(image);
  });
  if (name.empty()) name = Shortened(image.name(), 40);
  Svg svg(kWidth, kHeight);
  svg.Element("title", {}, account.title);
  svg.Element("style", {}, kStyle);
  svg.Element("rect", {{"class", "paper"}, {"width", kWidth}, {"height", kHeight}});
  svg.Text("title", 30, 38, name);
  svg.Text("subtitle end", kWidth - 30, 38, Shortened(account.title, 90));
  DrawGamut(gamut, kGamutFrame, svg);
  DrawTimings(ItemsOf(account), preferred, kTimingsFrame, svg);
  return svg.Finish();
}

Exit RunPlot(const PlotOptions& options, Streams& streams) {
  std::error_code ignored;
  if (options.output.empty()) {
    throw ToolError(Exit::kUsage, "plot writes a picture: name it with -o FILE.svg (-o - is standard output)");
  }
  if (std::filesystem::equivalent(options.input, options.output, ignored)) {
    throw ToolError(Exit::kUsage, fmt::format("{}: a picture in its place would lose the EDID", options.output));
  }
  const std::string picture = PlotImage(Image::Read(options.input));
  WriteOutput(options.output, {reinterpret_cast<const uint8_t*>(picture.data()), picture.size()}, streams);
  return Exit::kDone;
}

}  // namespace reedid::tool
