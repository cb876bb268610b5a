// The account of a whole image, and of its blocks.
#pragma once

#include "document/account/tree.h"
#include "document/read/image.h"

namespace reedid::document {

Node DescribeImage(const Image& image);

// One block with its number, kind and checksum; a block that does not open is shown as bytes.
Node DescribeBlock(const EdidBlock& block, unsigned index);

}  // namespace reedid::document
