// The connectors of the machine's graphics adapters, as the kernel lists them below /sys/class/drm.
#pragma once

#include <string>
#include <vector>

#include "document/bytes.h"
#include "document/error.h"
#include "tools/reedid/device/place.h"

namespace reedid::tool::device {

struct Connector {
  std::string card;     // "card0"
  std::string name;     // "HDMI-A-1"
  std::string folder;   // "/sys/class/drm/card0-HDMI-A-1"
  std::string status;   // "connected", "disconnected", "unknown"
  std::string enabled;  // "enabled", "disabled"
  std::string bus;      // "/dev/i2c-4" of its DDC lines; empty: the kernel names none

  std::string FullName() const { return card + "-" + name; }
  std::string EdidFile() const { return folder + "/edid"; }
};

// All of them, by name. Each card has a folder that is named after it, and each connector one behind it.
std::vector<Connector> FindConnectors(const Roots& roots);

// "HDMI-A-1", or "card1-HDMI-A-1" where two cards have one. Throws `exit` with the names that there are.
Connector FindConnector(const Place& place, Exit exit);

// connector:NAME, the EDID that the kernel has read there. Throws Exit::kInput.
document::ByteVector ReadConnector(const Place& place, document::Notes& notes);

}  // namespace reedid::tool::device
