// What a name such as "v4l2:/dev/video0" means, and where the system keeps its devices.
#pragma once

#include <string>
#include <string_view>

#include "tools/reedid/tool_error.h"

namespace reedid::tool::device {

// The folders that the kernel shows its devices in; tests have their own.
struct Roots {
  std::string sys = "/sys";
  std::string dev = "/dev";
  std::string debug = "/sys/kernel/debug";
  std::string firmware = "/lib/firmware";
};

// Of a name such as "v4l2:/dev/video0,pad=1": which connector of the device is meant.
inline constexpr std::string_view kPadMark = ",pad=";

struct Place {
  std::string name;   // as the user wrote it, for messages
  std::string where;  // what follows the scheme's colon
  Roots roots = {};
};

// `what` ends with the way out. Exit::kInput when it was to be read, Exit::kOutput when it was to be written.
[[noreturn]] void Fail(const Place& place, Exit exit, const std::string& what);

// Why a file of the system cannot be opened, read or written, with the way out. `absent` is that of a missing one.
[[noreturn]] void FailErrno(const Place& place, Exit exit, int error, const std::string& absent);

}  // namespace reedid::tool::device
