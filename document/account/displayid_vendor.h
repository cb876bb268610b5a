// The accounts of the DisplayID data blocks that vendors define, and of CTA-861 data blocks inside one.
#pragma once

#include <cstdint>
#include <string>

#include "document/account/tree.h"

namespace reedid::document {

// Who three bytes of a DisplayID block stand for: letters, unless they are an OUI, most significant byte first.
std::string MakerOrVendorText(const uint8_t (&id)[3], bool isOui);

// Each is false when the block cannot be decoded; `at` has the data block from its header on.
bool DescribeVendor(const DispIdDataBlock& entry, const ByteSource& at, Node& node);
bool DescribeCtaInside(const DispIdDataBlock& entry, const ByteSource& at, Node& node);

}  // namespace reedid::document
