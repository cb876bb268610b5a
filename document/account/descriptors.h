// The account of the descriptors of a base block.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// Descriptor 0 to 3; `at` has its 18 bytes.
Node DescribeDescriptor(const VesaBlock& model, unsigned index, const ByteSource& at);

// Timings whose bytes are those that a descriptor would have for them: three of a CVT code, two of a standard timing.
void AddCvtBytes(std::span<const uint8_t> code, unsigned number, const SourceBytes& from, Node& node);
void AddStandardBytes(std::span<const uint8_t> code, unsigned number, const ByteSource& at, Node& node);

}  // namespace reedid::document
