// The checksum of a block or section.
#pragma once

#include <span>
#include <string>

#include "document/account/tree.h"

namespace reedid::document {

// A stored checksum and whether it is right; the bytes end with it. From the other bytes and the checksum, one that is
// hidden could be computed, so the checksum itself is private.
void AddChecksum(const std::string& name, std::span<const uint8_t> bytes, const ByteSource& at, Node& node);

}  // namespace reedid::document
