// An image of three blocks or more brought into two, as sources expect that read no more.
#pragma once

#include "document/read/image.h"

namespace reedid::document {

// Throws kRefused when the image has no more than two blocks, or is no EDID.
void CheckHighRefresh(const Image& image);

// The image in two blocks with its high frame rates; what stood in them stays. Throws kRefused.
Image HighRefresh(Image image);

}  // namespace reedid::document
