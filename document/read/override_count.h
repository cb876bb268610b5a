// The HDMI Forum's word on how many extensions an EDID has.
#pragma once

#include <optional>
#include <span>

#include "reedid/image.h"

namespace reedid::document {

// The number of extensions by the override block (HDMI 2.1, 10.3.6), where byte 126 says 1 on purpose. Asked of the
// bytes, which prints nothing: each block has an account of its own, with the library's diagnostics.
std::optional<unsigned> OverrideCount(std::span<const EdidBlock> blocks);

}  // namespace reedid::document
