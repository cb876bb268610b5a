// The latencies and the video part of the HDMI 1.4b block.
#pragma once

#include "document/account/tree.h"

namespace reedid::document {

// What stands from byte 9 on: latencies, the meaning of the image size, HDMI VICs, 3D formats.
void AddHdmiVideo(const H14b3dRecord& record, const CeaBlock& model, const ByteSource& at, Node& node);

}  // namespace reedid::document
