// timing: what an identifier, a formula or a standard timing stands for.

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "commands.h"
#include "document/account/detailed_timing.h"
#include "document/account/tree_json.h"
#include "document/printable.h"
#include "terminal.h"

namespace reedid::tool {
namespace {

using document::Node;
using document::Shortened;
using document::TimingItem;

[[noreturn]] void Wrong(const std::string& what, const std::string& right) {
  throw ToolError(Exit::kUsage, fmt::format("timing: {}; write it like '{}'", what, right));
}

// Decimal, or hexadecimal after 0x.
std::optional<unsigned> ParseNumber(std::string_view text) {
  const bool hex = text.starts_with("0x") || text.starts_with("0X");
  if (hex) text.remove_prefix(2);
  unsigned number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, hex ? 16 : 10);
  if (error != std::errc() || end != text.data() + text.size() || number > 0xFFFF) return std::nullopt;
  return number;
}

uint16_t RequireNumber(std::string_view text, const char* right) {
  const std::optional<unsigned> number = ParseNumber(text);
  if (!number) Wrong(fmt::format("'{}' is no number up to 65535", Shortened(text)), right);
  return static_cast<uint16_t>(*number);
}

struct Format {
  uint16_t width;
  uint16_t lines;
  bool interlaced;
  uint16_t rate;
};

// "1920x1080i@60"
Format RequireFormat(std::string_view text, const char* right) {
  const size_t x = text.find('x');
  const size_t at = text.find('@');
  if (x == text.npos || at == text.npos || at < x + 2) Wrong(fmt::format("'{}' is no format", Shortened(text)), right);
  std::string_view lines = text.substr(x + 1, at - x - 1);
  const bool interlaced = lines.ends_with('i');
  if (interlaced) lines.remove_suffix(1);
  return {RequireNumber(text.substr(0, x), right), RequireNumber(lines, right), interlaced,
          RequireNumber(text.substr(at + 1), right)};
}

void AddKnown(const std::string& title, const TimingItem& item, Node& node) {
  if (IsKnown(item)) node.Child(DescribeIdentified(title, item));
}

void AddVic(const TimingOptions& options, Node& node) {
  const unsigned vic = RequireNumber(options.words[1], "vic 97");
  if (vic <= 127 || (vic >= 193 && vic <= 219))
    AddKnown(fmt::format("VIC {}", vic), document::VicItem(document::VicIndex(vic)), node);
}

void AddDmt(const TimingOptions& options, Node& node) {
  const unsigned id = RequireNumber(options.words[1], "dmt 0x52");
  AddKnown(fmt::format("DMT {:#04x}", id), document::DmtItem(id), node);
}

void AddCvt(const TimingOptions& options, Node& node) {
  const Format format = RequireFormat(options.words[1], "cvt 2560x1440@144");
  CvtTiming request = {};
  request.formula = options.rb2 ? 2 : options.rb1 ? 1 : 0;
  request.hactive = format.width;
  request.vactive = format.lines;
  request.frameRate = format.rate;
  request.interlaced = options.interlaced || format.interlaced;
  request.flagA = options.ntsc;
  request.aspectRatio = ASPECT_UNKNOWN;
  AddKnown(options.words[1], document::FormulaItem(request), node);
}

void AddStd(const TimingOptions& options, Node& node) {
  static constexpr const char* kRight = "std 1920 16:9 60";
  if (options.words.size() != 4) Wrong("a standard timing has width, aspect and rate", kRight);
  StdTiming standard = {1, 0, RequireNumber(options.words[1], kRight), 0};
  while (document::AspectText(standard.aspectRatio) != options.words[2]) {
    if (++standard.aspectRatio >= ASPECT_UNKNOWN)
      Wrong(fmt::format("'{}' is no aspect", Shortened(options.words[2])), kRight);
  }
  const unsigned rate = RequireNumber(options.words[3], kRight);
  if (rate > 255) return;
  standard.frameRate = static_cast<uint8_t>(rate);
  AddKnown("Standard timing", document::StandardItem(nullptr, standard), node);
}

// How far a timing is from a format: columns, lines, and rates that are more than 1000/1001 apart. Tables of interlaced formats count
// the lines of a field.
constexpr unsigned kFarAway = ~0u;
unsigned Distance(const DtdTiming& timing, const Format& format) {
  constexpr int kMost = 2;
  const int columns = std::abs(timing.hactive - format.width);
  const int lines = std::abs(timing.vactive * (timing.interlaced ? 2 : 1) - format.lines);
  const double rate = std::abs(document::RefreshRate(timing) - format.rate);
  if (columns > kMost || lines > kMost || rate > 1.001 || (timing.interlaced != 0) != format.interlaced)
    return kFarAway;
  return static_cast<unsigned>(columns + lines) + (rate > format.rate * 0.0011 ? 1 : 0);
}

// The nearest of the items that `make` has for the numbers up to `last`, the first of them when several are.
template <class Make>
void AddNearest(const char* name, unsigned last, const Format& format, Make make, Node& node) {
  unsigned best = 0, distance = kFarAway;
  for (unsigned number = 1; number <= last; ++number) {
    const TimingItem item = make(number);
    const unsigned found = IsKnown(item) ? Distance(item.timing, format) : kFarAway;
    if (found >= distance) continue;
    best = number;
    distance = found;
  }
  if (best == 0) return;
  AddKnown(fmt::format(fmt::runtime(name), best), make(best), node);
  if (distance == 0) return;
  node.children.back().Add("Near", fmt::format("{}x{}{} {} Hz was asked for", format.width, format.lines,
                                               format.interlaced ? "i" : "", format.rate));
}

void AddSearch(const TimingOptions& options, Node& node) {
  Format format = RequireFormat(options.words[1], "find 1920x1080@60");
  format.interlaced = options.interlaced || format.interlaced;
  const auto vic = [](unsigned number) { return document::VicItem(document::VicIndex(number)); };
  AddNearest("VIC {}", 219, format, vic, node);
  AddNearest("DMT {:#04x}", 89, format, document::DmtItem, node);
}

struct Source {
  const char* name;
  void (*add)(const TimingOptions&, Node&);
};

constexpr Source kSources[] = {{"vic", AddVic}, {"dmt", AddDmt}, {"cvt", AddCvt}, {"std", AddStd}, {"find", AddSearch}};

}  // namespace

Exit RunTiming(const TimingOptions& options, Streams& streams) {
  for (const Source& source : kSources) {
    if (options.words.empty() || options.words[0] != source.name) continue;
    const size_t words = options.words[0] == "std" ? 4 : 2;
    if (options.words.size() != words) Wrong("too few or too many words", "vic 97");
    Node node;
    source.add(options, node);
    if (node.children.empty()) {
      Note(fmt::format("timing: no timing for '{}'", Shortened(options.words[1])));
      return Exit::kNo;
    }
    if (options.json) {
      node.title = fmt::format("{} {}", options.words[0], options.words[1]);
      streams.Result(document::JsonText(ToJson(node)));
      return Exit::kDone;
    }
    const document::TextStyle style = StyleFor(options.color, streams);
    for (const Node& child : node.children) streams.Result(ToText(child, style));
    return Exit::kDone;
  }
  Wrong("say what it is, one of vic, dmt, cvt, std, find", "vic 97");
}

}  // namespace reedid::tool
