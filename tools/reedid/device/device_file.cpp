#include "tools/reedid/device/device_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace reedid::tool::device {
namespace {

class OpenedFile : public DeviceFile {
 public:
  explicit OpenedFile(int descriptor) : descriptor_(descriptor) {}
  ~OpenedFile() override { close(descriptor_); }
  OpenedFile(const OpenedFile&) = delete;
  OpenedFile& operator=(const OpenedFile&) = delete;
  int Control(unsigned long request, void* argument) override {
    int result = 0;
    do {
      result = ioctl(descriptor_, request, argument);
    } while (result < 0 && errno == EINTR);
    return result < 0 ? -errno : result;
  }

 private:
  int descriptor_;
};

}  // namespace

std::unique_ptr<DeviceFile> OpenDeviceFile(const Place& place, const std::string& path, Exit exit,
                                           const std::string& absent) {
  struct stat status;  // the opening of a pipe would wait for its other end
  if (stat(path.c_str(), &status) != 0) FailErrno(place, exit, errno, absent);
  if (!S_ISCHR(status.st_mode)) Fail(place, exit, fmt::format("{} is no device; {}", path, absent));
  const int descriptor = open(path.c_str(), O_RDWR | O_CLOEXEC);
  if (descriptor < 0) FailErrno(place, exit, errno, absent);
  return std::make_unique<OpenedFile>(descriptor);
}

}  // namespace reedid::tool::device
