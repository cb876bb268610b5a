// The data blocks and descriptors of an image, a line for each: for somebody who looks for one.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "document/account/tree.h"

namespace reedid::document {

struct BlockRow {
  unsigned block;    // of the image
  Extent extent;     // in that block
  unsigned depth;    // 1 for a data block inside another
  std::string kind;  // "Video Data Block (2)"
  std::string meaning;
};

// Of the account of an image (DescribeImage), in the image's order.
std::vector<BlockRow> BlockRows(const Node& account);

// A table with a head; lines of `width` characters, of which what is too long is cut off.
std::string BlockTable(std::span<const BlockRow> rows, size_t width);

// "block", "byte", "size", "kind", "meaning" of each; "inside" is true for a data block in another.
Json BlockListJson(std::span<const BlockRow> rows);

}  // namespace reedid::document
