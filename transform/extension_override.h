// Taking the HDMI Forum EDID Extension Override Data Block out of an image, as a step of an edit.
#pragma once

#include "base/memory.h"
#include "reedid/image.h"

namespace reedid {

// Out of all CTA extensions. When memory lacks it stays half done.
void DeleteOverrides(EdidHandle& handle, MemoryWatch& memory);

}  // namespace reedid
