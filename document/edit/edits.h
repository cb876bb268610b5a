// Several edits of one image, one behind the other. Whoever has words for an edit makes a step of them.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "document/edit/limits.h"

namespace reedid::document {

struct Edit {
  std::function<Image(Image)> apply;  // throws kRefused
  std::optional<EdidLink> link = {};  // what the edit holds the image to
};

Edit LimitEdit(const Limit& limit, const Rates& rates);
// `name` is the link's in messages.
Edit LinkEdit(const EdidLink& link, const std::string& name, const Rates& rates);
Edit AddressEdit(uint16_t address);

// The image with all edits, in their order. Throws kRefused.
Image ApplyEdits(Image image, std::span<const Edit> edits);

// The slowest link that an edit holds the image to; none when none has a clock.
std::optional<EdidLink> SlowestLink(std::span<const Edit> edits);

}  // namespace reedid::document
