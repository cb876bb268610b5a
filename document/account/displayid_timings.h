// The accounts of the data blocks of a DisplayID section that list timings.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// False when the block is of another kind or cannot be decoded; `at` has it from its header on.
bool DescribeSectionTimings(const DispIdDataBlock& entry, const ByteSource& at, Node& node);

}  // namespace reedid::document
