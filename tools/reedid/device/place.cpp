#include "tools/reedid/device/place.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>

namespace reedid::tool::device {

void Fail(const Place& place, Exit exit, const std::string& what) {
  throw ToolError(exit, fmt::format("{}: {}{}", place.name, exit == Exit::kOutput ? "not written: " : "", what));
}

void FailErrno(const Place& place, Exit exit, int error, const std::string& absent) {
  const char* advice = "try again, or look into the kernel's log (dmesg)";
  switch (error) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
    case ENOTDIR:
      Fail(place, exit, fmt::format("no such device; {}", absent));
    case EACCES:
      advice = "run as root, or as a member of the group that owns the device (ls -l)";
      break;
    case EPERM:
      advice = "run as root; a kernel locked down by Secure Boot forbids it to root, too";
      break;
    case EBUSY:
      advice = "another program or driver uses it; stop that and try again";
      break;
    default:
      break;
  }
  Fail(place, exit, fmt::format("{}; {}", std::strerror(error), advice));
}

}  // namespace reedid::tool::device
