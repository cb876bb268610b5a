// i2c:BUS, the EDID as the display itself gives it over its DDC lines.
#pragma once

#include "document/bytes.h"
#include "document/error.h"
#include "tools/reedid/device/device_file.h"
#include "tools/reedid/device/place.h"

namespace reedid::tool::device {

/*
 * All blocks that the base block, or the HDMI Forum's override block, says there are: at most 256. Each is tried four times
 * before what is wrong with it ends the reading; but a checksum that stays wrong is noted only, and so are the blocks
 * behind the second that an adapter of SMBus byte reads cannot reach. Throws Exit::kInput.
 */
document::ByteVector ReadDdc(const Place& place, DeviceFile& adapter, document::Notes& notes);

// The same from i2c:/dev/i2c-4, or from i2c:HDMI-A-1: the bus that the kernel says belongs to the connector.
document::ByteVector ReadI2c(const Place& place, document::Notes& notes);

}  // namespace reedid::tool::device
