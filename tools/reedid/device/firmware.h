// firmware:NAME, a file of an EDID that the kernel takes for a connector from its start on: NAME.bin in the folder edid of
// its firmware.
#pragma once

#include <string>

#include "document/error.h"
#include "tools/reedid/device/place.h"

namespace reedid::tool::device {

// The file to write, in a folder that is there then; notes the kernel's parameter for it. Throws Exit::kOutput.
std::string FirmwareFile(const Place& place, document::Notes& notes);

// Removes the file. Throws Exit::kOutput.
void ClearFirmware(const Place& place, document::Notes& notes);

}  // namespace reedid::tool::device
