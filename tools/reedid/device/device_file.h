// A device file that is spoken to with ioctl.
#pragma once

#include <memory>
#include <string>

#include "tools/reedid/device/place.h"

namespace reedid::tool::device {

class DeviceFile {
 public:
  virtual ~DeviceFile() = default;
  // What ioctl returns, or a negative errno value.
  virtual int Control(unsigned long request, void* argument) = 0;
};

// Throws `exit`, with `absent` as the way out when there is no such file.
std::unique_ptr<DeviceFile> OpenDeviceFile(const Place& place, const std::string& path, Exit exit,
                                           const std::string& absent);

}  // namespace reedid::tool::device
