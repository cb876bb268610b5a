// override:CONNECTOR, an EDID that the kernel takes for the display's own until it is undone or the machine restarts: the
// file edid_override of the connector in debugfs.
#pragma once

#include <span>

#include "document/error.h"
#include "tools/reedid/device/place.h"

namespace reedid::tool::device {

// Writes it, reads it back, and has the connector looked at again. Throws Exit::kOutput; what is not whole is undone.
void WriteOverride(const Place& place, std::span<const uint8_t> bytes, document::Notes& notes);

// The display's own EDID counts again. Throws Exit::kOutput.
void ClearOverride(const Place& place, document::Notes& notes);

}  // namespace reedid::tool::device
