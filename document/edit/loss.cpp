#include "document/edit/loss.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "reedid/reedid.hpp"

namespace reedid::document {
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
    const CtaExtension model(block);
    if (model) AddContent(block, *model, content);
  }
  return content;
}

void GiveUp(const Image& image, const std::string& what, Loss loss, Notes& notes) {
  if (loss == Loss::kRefuse) throw Error(ErrorKind::kLoss, fmt::format("{}: {} would be lost", image.name(), what));
  notes.push_back(fmt::format("{}: {} given up", image.name(), what));
}

void CheckLoss(const Image& edited, const CtaContent& before, Loss loss, Notes& notes) {
  const CtaContent after = CountCtaContent(edited);
  std::vector<std::string> lost;
  const auto compare = [&lost](size_t had, size_t has, const char* what) {
    if (has < had) lost.push_back(fmt::format("{} {}", had - has, what));
  };
  compare(before.dataBlocks, after.dataBlocks, "data block(s)");
  compare(before.timings, after.timings, "detailed timing(s)");
  compare(before.otherBytes, after.otherBytes, "byte(s) behind the timings or the data blocks");
  if (lost.empty()) return;
  GiveUp(edited, fmt::format("of the CTA-861 extension, {}", fmt::join(lost, ", ")), loss, notes);
}

}  // namespace reedid::document
