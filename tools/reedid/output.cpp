#include "output.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace reedid::tool {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& path, const std::string& what) {
  throw ToolError(Exit::kOutput, fmt::format("{}: not written: {}", path, what));
}

[[noreturn]] void FailErrno(const std::string& path, int error, const char* advice) {
  Fail(path, fmt::format("{}; {}", std::strerror(error), advice));
}

// A new file beside the target that removes itself unless it was renamed.
class TemporaryFile {
 public:
  explicit TemporaryFile(const fs::path& target) : name_((target.parent_path() / ".reedid-XXXXXX").string()) {
    descriptor_ = mkostemp(name_.data(), O_CLOEXEC);
  }
  ~TemporaryFile() {
    if (descriptor_ >= 0) close(descriptor_);
    if (created_) unlink(name_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool IsOpen() {
    created_ = descriptor_ >= 0;
    return created_;
  }
  // An errno value, 0 when the bytes are on disk.
  int Write(std::span<const uint8_t> bytes, mode_t mode) {
    const int error = WriteAll(descriptor_, bytes);
    if (error != 0) return error;
    if (fchmod(descriptor_, mode) != 0 || fsync(descriptor_) != 0) return errno;
    const int closed = close(descriptor_);
    descriptor_ = -1;
    return closed == 0 ? 0 : errno;
  }
  int RenameTo(const fs::path& target) {
    if (rename(name_.c_str(), target.c_str()) != 0) return errno;
    created_ = false;
    return 0;
  }

 private:
  std::string name_;
  int descriptor_ = -1;
  bool created_ = false;
};

// The rename itself reaches the disk with the folder. Not every file system can do this, and the file is whole anyway.
void SyncFolder(const fs::path& folder) {
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  fsync(descriptor);
  close(descriptor);
}

// What a new file may have, by the user's mask.
mode_t NewFileMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

void WriteDirectly(const std::string& path, std::span<const uint8_t> bytes) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (descriptor < 0) FailErrno(path, errno, "name another output");
  const int error = WriteAll(descriptor, bytes);
  close(descriptor);
  if (error != 0) FailErrno(path, error, "name another output");
}

void ReplaceFile(const std::string& path, std::span<const uint8_t> bytes, mode_t mode) {
  std::error_code ignored;
  fs::path target = fs::weakly_canonical(path, ignored);  // through links: the file that they name is replaced
  if (target.empty()) target = path;
  TemporaryFile file(target);
  if (!file.IsOpen()) FailErrno(path, errno, "the folder must exist and be writable");
  int error = file.Write(bytes, mode);
  if (error == 0) error = file.RenameTo(target);
  if (error != 0) FailErrno(path, error, "make room or name another output");
  SyncFolder(target.parent_path());
}

}  // namespace

void WriteOutput(const std::string& path, std::span<const uint8_t> bytes, Streams& streams) {
  if (path == "-") return streams.Result(bytes);
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return ReplaceFile(path, bytes, NewFileMode());
  if (S_ISDIR(status.st_mode)) Fail(path, "is a folder; name a file in it");
  if (!S_ISREG(status.st_mode)) return WriteDirectly(path, bytes);
  if ((status.st_mode & 0222) == 0 || access(path.c_str(), W_OK) != 0) {
    Fail(path, "exists and is write-protected; remove it or name another output");
  }
  ReplaceFile(path, bytes, status.st_mode & 07777);
}

void RequireOutput(const std::string& path, const std::string& command) {
  if (!path.empty()) return;
  throw ToolError(Exit::kUsage, fmt::format("{} writes an EDID: name the output with -o FILE (-o - is standard output, "
                                            "the input's own name replaces the input)",
                                            command));
}

}  // namespace reedid::tool
