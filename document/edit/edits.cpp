#include "document/edit/edits.h"

#include <utility>

#include "document/edit/address.h"

namespace reedid::document {

Edit LimitEdit(const Limit& limit, const Rates& rates) {
  Edit edit = {[&limit, rates](Image image) { return ApplyLimit(std::move(image), limit, rates); }};
  if (limit.link != nullptr) edit.link = *limit.link;
  return edit;
}

Edit LinkEdit(const EdidLink& link, const std::string& name, const Rates& rates) {
  return {[=](Image image) { return ApplyLink(std::move(image), link, name, rates); }, link};
}

Edit AddressEdit(uint16_t address) {
  return {[address](Image image) {
    Notes told;  // by what changed
    return SetAddress(std::move(image), address, told);
  }};
}

Image ApplyEdits(Image image, std::span<const Edit> edits) {
  for (const Edit& edit : edits) image = edit.apply(std::move(image));
  return image;
}

std::optional<EdidLink> SlowestLink(std::span<const Edit> edits) {
  std::optional<EdidLink> slowest;
  for (const Edit& edit : edits) {
    if (!edit.link || edit.link->maxFrlRate != 0 || edit.link->maxTmdsClock == 0) continue;
    if (!slowest || edit.link->maxTmdsClock < slowest->maxTmdsClock) slowest = edit.link;
  }
  return slowest;
}

}  // namespace reedid::document
