#include "document/account/block_list.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "document/account/values.h"
#include "document/printable.h"

namespace reedid::document {
namespace {

constexpr char kColumns[] = "{:>5}  {:>4}  {:>4}  {:<{}}  {}";

// "20 timings up to 3840x2160 60.000 Hz ...": the largest, of those the fastest.
std::string TimingsText(std::span<const TimingItem> timings) {
  const auto weight = [](const TimingItem& item) {
    return std::pair(uint64_t{item.timing.hactive} * item.timing.vactive, RefreshRate(item.timing));
  };
  const auto& largest = *std::max_element(
      timings.begin(), timings.end(), [&](const TimingItem& a, const TimingItem& b) { return weight(a) < weight(b); });
  if (timings.size() == 1) return TimingText(largest.timing);
  return fmt::format("{} timings up to {}", timings.size(), TimingText(largest.timing));
}

std::string MeaningOf(const Node& node) {
  if (!node.summary.empty()) return node.summary;
  if (const std::vector<TimingItem> timings = ItemsOf(node); !timings.empty()) return TimingsText(timings);
  std::vector<std::string> texts;
  for (const Field& field : node.fields) {
    if (!field.value.empty()) texts.push_back(fmt::format("{} {}", field.name, field.value));
  }
  return fmt::format("{}", fmt::join(texts, "; "));
}

// The title without what changes with the content, or with the place among the descriptors.
std::string KindOf(const Node& node) {
  if (node.isTiming) return "Detailed timing";
  return !node.kind.empty() ? node.kind : !node.label.empty() ? node.label : node.title;
}

void Collect(const Node& node, unsigned block, unsigned depth, std::vector<BlockRow>& rows) {
  if (node.extent) rows.push_back({block, *node.extent, depth++, KindOf(node), MeaningOf(node)});
  for (const Node& child : node.children) Collect(child, block, depth, rows);
}

std::string Cut(std::string text, size_t width) {
  if (text.size() <= width) return text;
  while (width > 0 && (static_cast<uint8_t>(text[width]) & 0xC0) == 0x80) --width;
  return text.substr(0, width);
}

}  // namespace

std::vector<BlockRow> BlockRows(const Node& account) {
  std::vector<BlockRow> rows;
  for (unsigned i = 0; i < account.children.size(); ++i) Collect(account.children[i], i, 0, rows);
  return rows;
}

std::string BlockTable(std::span<const BlockRow> rows, size_t width) {
  const auto kind = [](const BlockRow& row) { return std::string(2 * row.depth, ' ') + row.kind; };
  size_t kindWidth = 4;
  for (const BlockRow& row : rows) kindWidth = std::max(kindWidth, kind(row).size());
  std::string text = fmt::format(kColumns, "block", "byte", "size", "kind", kindWidth, "meaning") + "\n";
  for (const BlockRow& row : rows) {
    const std::string line = fmt::format(kColumns, row.block, row.extent.offset, row.extent.size, kind(row), kindWidth,
                                         WithoutControls(row.meaning));
    text += Cut(line, width);
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
  }
  return text;
}

Json BlockListJson(std::span<const BlockRow> rows) {
  Json json = Json::array();
  for (const BlockRow& row : rows) {
    json.push_back({{"block", row.block},
                    {"byte", row.extent.offset},
                    {"size", row.extent.size},
                    {"kind", row.kind},
                    {"inside", row.depth != 0},
                    {"meaning", row.meaning}});
  }
  return json;
}

}  // namespace reedid::document
