// The accounts of the data blocks of a DisplayID section.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// False when the block cannot be decoded; `at` has the data block from its header on.
bool DescribeSectionBlock(const DispIdDataBlock& entry, const ByteSource& at, Node& node);

}  // namespace reedid::document
