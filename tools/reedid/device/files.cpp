#include "tools/reedid/device/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace reedid::tool::device {
namespace {

constexpr size_t kMostBytes = 1 << 16;  // twice the largest EDID

class File {
 public:
  File(const std::string& path, int flags) : descriptor_(open(path.c_str(), flags | O_CLOEXEC)) {}
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace

int ReadKernelFile(const std::string& path, document::ByteVector& bytes) {
  bytes.clear();
  const File file(path, O_RDONLY);
  if (file.descriptor() < 0) return errno;
  uint8_t buffer[4096];
  while (bytes.size() < kMostBytes) {
    const ssize_t got = read(file.descriptor(), buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno;
    if (got == 0) return 0;
    bytes.insert(bytes.end(), buffer, buffer + got);
  }
  return EFBIG;
}

std::string ReadKernelText(const std::string& path) {
  document::ByteVector bytes;
  if (ReadKernelFile(path, bytes) != 0) return "";
  std::string text(bytes.begin(), bytes.end());
  while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
  return text;
}

int WriteKernelFile(const std::string& path, std::span<const uint8_t> bytes) {
  const File file(path, O_WRONLY);
  if (file.descriptor() < 0) return errno;
  ssize_t written = 0;
  do {
    written = write(file.descriptor(), bytes.data(), bytes.size());
  } while (written < 0 && errno == EINTR);
  if (written < 0) return errno;
  return static_cast<size_t>(written) == bytes.size() ? 0 : EIO;
}

int WriteKernelFile(const std::string& path, std::string_view text) {
  return WriteKernelFile(path, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
}

}  // namespace reedid::tool::device
