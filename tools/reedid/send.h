// What goes to a device: looked at before it goes, because a display that comes up wrong is a black screen.
#pragma once

#include <span>

#include "output.h"

namespace reedid::tool {

/*
 * Sends a whole EDID to the device or to the kernel's file that output.name stands for (device/schemes.h), and tells what
 * became of it. Throws Exit::kRefused when check finds errors in it, unless output.force; Exit::kOutput.
 */
void SendToDevice(const Output& output, std::span<const uint8_t> bytes, Streams& streams);

}  // namespace reedid::tool
