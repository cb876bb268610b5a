// The account of a CTA-861 extension.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// The content of the block, added to `node`; false when it does not open. `at` hands out its bytes.
bool DescribeCta(const EdidBlock& block, const ByteSource& at, Node& node);

}  // namespace reedid::document
