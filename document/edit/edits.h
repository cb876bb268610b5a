// Several edits of one image, one behind the other.
#pragma once

#include <cstdint>
#include <span>

#include "document/edit/limits.h"

namespace reedid::document {

struct Edit {
  const Limit* limit;    // null: a physical address
  uint16_t address = 0;  // when there is no limit
};

// The image with all edits. Throws kRefused.
Image ApplyEdits(Image image, std::span<const Edit> edits, const Rates& rates);

// The slowest link that an edit holds the image to; null when none has a clock.
const EdidLink* SlowestLink(std::span<const Edit> edits);

}  // namespace reedid::document
