// A picture of what a display can show: its colours beside its timings.
#pragma once

#include <string>

#include "document/account/tree.h"
#include "document/read/image.h"

namespace reedid::document {

// As SVG; `account` is that of the image (DescribeImage).
std::string DrawPicture(const Image& image, const Node& account);

}  // namespace reedid::document
