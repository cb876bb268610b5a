#include "document/edit/edits.h"

#include <fmt/format.h>

#include <utility>

#include "document/edit/address.h"

namespace reedid::document {
namespace {

uint32_t NeededClock(const TimingItem& item, bool has420) {
  return has420 && item.ycc420 ? (item.timing.pixelClock + 1) / 2 : item.timing.pixelClock;
}

}  // namespace

Image ApplyEdits(Image image, std::span<const Edit> edits, const Rates& rates, Loss loss, Notes& notes) {
  CtaContent content = CountCtaContent(image);
  content.dataBlocks = 0;
  content.timings = 0;
  for (const Edit& edit : edits) {
    image = edit.limit != nullptr ? ApplyLimit(std::move(image), *edit.limit, rates)
                                  : SetAddressUnchecked(std::move(image), edit.address);
  }
  CheckLoss(image, content, loss, notes);
  return image;
}

const Link* SlowestLink(std::span<const Edit> edits) {
  const Link* slowest = nullptr;
  for (const Edit& edit : edits) {
    const Link* link = edit.limit != nullptr ? edit.limit->link : nullptr;
    if (link != nullptr && (slowest == nullptr || link->clock < slowest->clock)) slowest = link;
  }
  return slowest;
}

std::vector<std::string> TimingsAbove(const Node& account, uint32_t clock, bool has420) {
  std::vector<std::string> above;
  for (const TimingItem& item : ItemsOf(account)) {
    if (NeededClock(item, has420) > clock) above.push_back(fmt::format("{} {}", KindName(item.kind), ItemText(item)));
  }
  return above;
}

}  // namespace reedid::document
