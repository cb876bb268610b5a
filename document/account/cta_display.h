// The accounts of the CTA-861 data blocks about the display as a device, and about formats by resolution.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// Each is false when the block cannot be decoded; `at` has the data block from its header on.
bool DescribeVesaDevice(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeVesaTransfer(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeVideoFormats(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeMicrosoft(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);
bool DescribeProductInformation(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at, Node& node);

}  // namespace reedid::document
