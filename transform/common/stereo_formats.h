// The 3D formats of HDMI 1.4b that two displays both take.
#pragma once

#include "reedid/cea_hdmi.h"
#include "reedid/image.h"

namespace reedid {

// Leaves in the record of an image's block what `theirs`, the record of another image's block, lists for the same VICs.
void Mix3dFormats(const EdidHandle& image, H14b3dRecord& record, const EdidHandle& other, const H14b3dRecord& theirs);

}  // namespace reedid
