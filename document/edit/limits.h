// Holding an image to what a link carries, or to fewer capabilities.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "document/read/image.h"

namespace reedid::document {

struct Limit {
  const char* name;               // "hdmi20"
  const char* meaning;            // in a word or two
  const EdidLink* link;           // null: not a link
  int32_t (*apply)(EdidHandle*);  // when there is no link
};

// All limits, links first.
std::span<const Limit> Limits();

// Throws kArgument with the names that there are.
const Limit& FindLimit(const std::string& name);

using Rates = std::vector<uint32_t>;  // mHz

// "120,60,50". Throws kArgument.
Rates ParseRates(const std::string& text);

// The image held to the limit. Of a link, what it does not carry is slowed down to the highest of `rates` that fits, or
// to one of the display's own rates when there are none. Throws kRefused.
Image ApplyLimit(Image image, const Limit& limit, const Rates& rates);

// The same for any link, which messages name by `name`.
Image ApplyLink(Image image, const EdidLink& link, const std::string& name, const Rates& rates);

// A link with one limit of its own, from "300" (MHz), "60" (Hz), "3840x2160@60" and "40" (Gbit/s of FRL). Throw kArgument.
EdidLink ParseMaxClock(const std::string& text);
EdidLink ParseMaxRate(const std::string& text);
EdidLink ParseMaxPicture(const std::string& text);
EdidLink ParseMaxFrl(const std::string& text);

// What an EdidLinkFailure means for its users.
std::string WhyNotLimited(const Image& image, int32_t result);

// Every timing that needs a higher clock than a link without FRL has; where it has YCbCr 4:2:0, such a timing needs half.
std::vector<std::string> TimingsAbove(const Image& image, const EdidLink& link);

}  // namespace reedid::document
