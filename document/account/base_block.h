// The account of a base block.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// The content of the block, added to `node`; false when it does not open. `at` hands out its bytes.
bool DescribeBase(const EdidBlock& block, const ByteSource& at, Node& node);

}  // namespace reedid::document
