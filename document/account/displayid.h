// The account of a DisplayID section, in an EDID or on its own.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// The content of the block, added to `node`; false when it does not open. `at` hands out its bytes.
bool DescribeSection(const EdidBlock& block, const ByteSource& at, Node& node);

}  // namespace reedid::document
