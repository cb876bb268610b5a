// The accounts of the CTA-861 data blocks that vendors define for variable rates and for HDR.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// Each is false when the block cannot be decoded; `at` has the data block from its header on.
bool DescribeAmd(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeNvidia(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeFilmmaker(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeDolbyVision(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeHdr10Plus(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);

}  // namespace reedid::document
