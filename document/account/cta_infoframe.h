// The account of the CTA-861 data block about InfoFrames.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// False when the block cannot be decoded; `at` has the data block from its header on.
bool DescribeInfoFrame(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);

}  // namespace reedid::document
