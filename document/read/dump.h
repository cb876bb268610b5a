// Dumps: rows of bytes behind their offsets (xxd, hexdump, od, i2cdump).
#pragma once

#include <optional>
#include <string_view>

#include "document/bytes.h"

namespace reedid::document {

// None when the text has no rows with offsets. Throws kInput with the line that is at fault.
std::optional<ByteVector> ReadDump(std::string_view text);

}  // namespace reedid::document
