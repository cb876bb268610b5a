// The accounts of the CTA-861 data blocks about colours, their range and their luminance.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// Each is false when the block cannot be decoded; `at` has the data block from its header on.
bool DescribeColorimetry(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeVideoCapability(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeStaticHdr(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeToneMapping(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeDynamicHdr(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);

}  // namespace reedid::document
