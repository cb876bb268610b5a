// The latencies and the video part of the HDMI 1.4b block.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// From byte 8 on, which says what is there: latencies, the meaning of the image size, HDMI VICs, 3D formats.
void AddHdmiVideo(const CeaDataBlock& entry, const ByteSource& at, Node& node);

}  // namespace reedid::document
