#include "loss.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "streams.h"

namespace reedid::tool {
namespace {

size_t CountNonZero(std::span<const uint8_t> bytes) {
  return bytes.size() - static_cast<size_t>(std::count(bytes.begin(), bytes.end(), uint8_t{0}));
}

void AddContent(const EdidBlock& block, const CeaBlock& model, CtaContent& content) {
  size_t known = 0;
  for (const CeaDataBlock& entry : std::span(model.dataBlocks, model.dataBlockCount)) {
    if (entry.bytes != nullptr) known += CountNonZero({entry.bytes, entry.size});
  }
  const size_t timings = model.dtds == nullptr ? 0 : model.dtdCount;
  for (const DtdSlot& slot : std::span(model.dtds, timings)) known += CountNonZero(slot.bytes);
  content.dataBlocks += model.dataBlockCount;
  content.timings += timings;
  content.otherBytes += CountNonZero({block.bytes + 4, 123}) - known;
}

}  // namespace

CtaContent CountCtaContent(const Image& image) {
  CtaContent content;
  for (const EdidBlock& block : image.blocks()) {
    if (block.type != EDID_BLOCK_CEA) continue;
    const Owned<CeaBlock> model(CEA_Open(&block));
    if (model != nullptr) AddContent(block, *model, content);
  }
  return content;
}

void GiveUp(const Image& image, const std::string& what, bool allow) {
  if (!allow) {
    throw ToolError(
        Exit::kRefused,
        fmt::format("{}: {} would be lost; allow that with --allow-loss; nothing was written", image.name(), what));
  }
  Note(fmt::format("{}: {} given up", image.name(), what));
}

void CheckLoss(const Image& edited, const CtaContent& before, bool allow) {
  const CtaContent after = CountCtaContent(edited);
  std::vector<std::string> lost;
  const auto compare = [&lost](size_t had, size_t has, const char* what) {
    if (has < had) lost.push_back(fmt::format("{} {}", had - has, what));
  };
  compare(before.dataBlocks, after.dataBlocks, "data block(s)");
  compare(before.timings, after.timings, "detailed timing(s)");
  compare(before.otherBytes, after.otherBytes, "byte(s) behind the timings or the data blocks");
  if (!lost.empty()) GiveUp(edited, fmt::format("of the CTA-861 extension, {}", fmt::join(lost, ", ")), allow);
}

}  // namespace reedid::tool
