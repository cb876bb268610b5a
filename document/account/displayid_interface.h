// The accounts of the DisplayID data blocks about how a display is driven.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// Each is false when the block cannot be decoded; `at` has the data block from its header on.
bool DescribeAdaptiveSync(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribeInterfaceFeatures(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribeDisplayInterface(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribePowerSequencing(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribeStereo(const DispIdDataBlock& entry, const ByteSource& at, Node& node);

}  // namespace reedid::document
