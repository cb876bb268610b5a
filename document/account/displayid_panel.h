// The accounts of the DisplayID data blocks about what a display is: its colours, its tiles, its device, its optics.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// Each is false when the block cannot be decoded; `at` has the data block from its header on.
bool DescribeColor(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribeTransfer(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribeBrightness(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribeDisplayDevice(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribeTiles(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribeContainerId(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribeHeadMounted(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribeHeadMountedLayer(const DispIdDataBlock& entry, const ByteSource& at, Node& node);

}  // namespace reedid::document
