// Holding an image to what a link carries, or to fewer capabilities.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "document/read/image.h"

namespace reedid::document {

// A link whose clock bounds every timing; HDMI 1.4 knows no YCbCr 4:2:0, so nothing there needs half a clock.
struct Link {
  uint32_t clock;  // kHz
  bool has420;
  void (*limitImage)(EdidHandle*, const uint16_t*, uint32_t);
  void (*limitExtension)(CeaBlock*, const uint16_t*, uint32_t);
};

struct Limit {
  const char* name;            // "hdmi20"
  const Link* link;            // null: not a link
  void (*apply)(EdidHandle*);  // when there is no link
};

// Throws kArgument with the names that there are.
const Limit& FindLimit(const std::string& name);

using Rates = std::vector<uint16_t>;  // Hz

// "120,60,50". Throws kArgument.
Rates ParseRates(const std::string& text);

// The image held to the limit; of a link, timings are lowered to the first of `rates` that fits, or to one of the
// image's own rates when there are none.
Image ApplyLimit(Image image, const Limit& limit, const Rates& rates);

}  // namespace reedid::document
