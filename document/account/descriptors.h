// The account of the descriptors of a base block.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// Descriptor 0 to 3; `at` has its 18 bytes.
Node DescribeDescriptor(const VesaBlock& model, unsigned index, const ByteSource& at);

}  // namespace reedid::document
