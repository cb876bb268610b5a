// Several edits of one image, one behind the other.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "document/account/tree.h"
#include "document/edit/limits.h"
#include "document/edit/loss.h"

namespace reedid::document {

struct Edit {
  const Limit* limit;    // null: a physical address
  uint16_t address = 0;  // when there is no limit
};

// The image with all edits. Limits leave data blocks and timings out on purpose, but nothing of what stands behind them.
// Throws kRefused, kLoss.
Image ApplyEdits(Image image, std::span<const Edit> edits, const Rates& rates, Loss loss, Notes& notes);

// The slowest link that an edit holds the image to; null when none does.
const Link* SlowestLink(std::span<const Edit> edits);

// Every timing of an account that needs a higher pixel clock (kHz) than this; where there is YCbCr 4:2:0, it needs half.
// A limit leaves some where the library refuses to write a block anew, and where a rate is rounded to the nearest hertz.
std::vector<std::string> TimingsAbove(const Node& account, uint32_t clock, bool has420);

}  // namespace reedid::document
