// Dumps: rows of bytes behind their offsets (xxd, hexdump, od, i2cdump).
#pragma once

#include <string_view>
#include <vector>

#include "document/bytes.h"

namespace reedid::document {

// One dump behind the other: each begins with offset 0. None when the text has no rows with offsets. Throws kInput with
// the line that is at fault.
std::vector<ByteVector> ReadDumps(std::string_view text);

}  // namespace reedid::document
