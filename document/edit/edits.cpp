#include "document/edit/edits.h"

#include <utility>

#include "document/edit/address.h"

namespace reedid::document {

Image ApplyEdits(Image image, std::span<const Edit> edits, const Rates& rates) {
  for (const Edit& edit : edits) {
    image = edit.limit != nullptr ? ApplyLimit(std::move(image), *edit.limit, rates)
                                  : SetAddress(std::move(image), edit.address);
  }
  return image;
}

const EdidLink* SlowestLink(std::span<const Edit> edits) {
  const EdidLink* slowest = nullptr;
  for (const Edit& edit : edits) {
    const EdidLink* link = edit.limit != nullptr ? edit.limit->link : nullptr;
    if (link == nullptr || link->maxFrlRate != 0 || link->maxTmdsClock == 0) continue;
    if (slowest == nullptr || link->maxTmdsClock < slowest->maxTmdsClock) slowest = link;
  }
  return slowest;
}

}  // namespace reedid::document
