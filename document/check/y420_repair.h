// Repairs of the 4:2:0 capability map (CTA-861, 7.5.11).
#pragma once

#include <functional>
#include <vector>

#include "document/check/check.h"
#include "document/check/image_view.h"

namespace reedid::document::check {

// Whether a map marks the n-th code of the video blocks. A map without bytes marks all of them.
bool MapMarks(const DataBlock& map, size_t n);

// Clears the bits of a map for which `drop` holds. A map that is empty then goes, and with the last of the 4:2:0 blocks
// the deep colour flags that speak of 4:2:0. None for a map without bytes.
std::vector<Patch> ClearMapBits(const ImageView& view, const DataBlock& map, const std::function<bool(size_t)>& drop);

}  // namespace reedid::document::check
