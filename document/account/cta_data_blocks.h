// The accounts of CTA-861 data blocks, wherever a collection of them stands.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// `model` has the collection that the block stands in; `at` has the block from its header on.
Node DescribeCtaDataBlock(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at);

}  // namespace reedid::document
