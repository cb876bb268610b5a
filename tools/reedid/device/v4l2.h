// v4l2:/dev/video0, the EDID that a capture card or another receiver shows to its source. A device with several
// connectors has a pad for each: v4l2:/dev/video0,pad=1.
#pragma once

#include <span>

#include "document/bytes.h"
#include "document/error.h"
#include "tools/reedid/device/device_file.h"
#include "tools/reedid/device/place.h"

namespace reedid::tool::device {

// The EDID of a receiver, or the one that a transmitter has read. Throws Exit::kInput.
document::ByteVector ReadV4l2(const Place& place, DeviceFile& device);
document::ByteVector ReadV4l2(const Place& place, document::Notes& notes);

/*
 * Gives a receiver an EDID, reads it back, and notes what the driver changed in it: most write the physical address of
 * their connector. When another EDID is read back, the receiver gets the one that it had before. Throws Exit::kOutput.
 */
void WriteV4l2(const Place& place, DeviceFile& device, std::span<const uint8_t> bytes, document::Notes& notes);
void WriteV4l2(const Place& place, std::span<const uint8_t> bytes, document::Notes& notes);

// Takes the EDID away: the source sees no display. Throws Exit::kOutput.
void ClearV4l2(const Place& place, document::Notes& notes);

}  // namespace reedid::tool::device
