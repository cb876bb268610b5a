// The accounts of EDID extensions that hold one record.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// The content of the block, added to `node`; false when it cannot be decoded. `at` hands out its bytes.
bool DescribeDisplayInfo(const EdidBlock& block, const ByteSource& at, Node& node);
bool DescribeVideoTimings(const EdidBlock& block, const ByteSource& at, Node& node);

}  // namespace reedid::document
