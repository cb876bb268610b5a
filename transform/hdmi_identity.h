// Whether an image is HDMI, as a step of an edit.
#pragma once

#include "base/memory.h"
#include "reedid/image.h"

namespace reedid {

// isDVIEdid; means nothing once memory lacked.
bool IsDvi(const EdidHandle& handle, MemoryWatch& memory);

}  // namespace reedid
