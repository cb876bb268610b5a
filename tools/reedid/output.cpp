#include "output.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "device/schemes.h"
#include "memory.h"
#include "send.h"

namespace reedid::tool {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& path, const std::string& what) {
  throw ToolError(Exit::kOutput, fmt::format("{}: not written: {}", path, what));
}

[[noreturn]] void FailErrno(const std::string& path, int error, const char* advice) {
  Fail(path, fmt::format("{}; {}", std::strerror(error), advice));
}

// Signals that would end the program between the making of a file and its renaming wait until it stands or is gone.
class SignalsHeld {
 public:
  SignalsHeld() {
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) sigaddset(&held, signal);
    sigprocmask(SIG_BLOCK, &held, &before_);
  }
  ~SignalsHeld() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t before_;
};

// What a file that replaces another takes over from it.
struct Attributes {
  mode_t mode;
  uid_t owner = geteuid();
  gid_t group = getegid();
};

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
  // An errno value, 0 when the bytes are on disk. The owner stays where we may give files away; a change of owner
  // clears set-group-id, so the mode comes behind it, without set-user-id: the content is ours, not the owner's.
  int Write(std::span<const uint8_t> bytes, const Attributes& attributes) {
    const int error = WriteAll(descriptor_, bytes);
    if (error != 0) return error;
    const bool ownerKept = fchown(descriptor_, attributes.owner, attributes.group) == 0 || errno == EPERM;
    const mode_t mode = attributes.mode & ~static_cast<mode_t>(S_ISUID);
    if (!ownerKept || fchmod(descriptor_, mode) != 0 || fsync(descriptor_) != 0) return errno;
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
  const int closed = close(descriptor) == 0 ? 0 : errno;
  if (error != 0 || closed != 0) FailErrno(path, error != 0 ? error : closed, "name another output");
}

// The file that a path means, through links, also through one whose target is not there yet.
fs::path FollowLinks(fs::path path) {
  constexpr unsigned kMaxLinks = 40;  // as many as the kernel follows
  std::error_code error;
  for (unsigned i = 0; i < kMaxLinks && fs::is_symlink(path, error); ++i) {
    const fs::path next = fs::read_symlink(path, error);
    if (error) break;
    path = next.is_absolute() ? next : path.parent_path() / next;
  }
  if (fs::is_symlink(path, error)) Fail(path, "a link that leads back to itself; name another output");
  return path;
}

void ReplaceFile(const std::string& path, std::span<const uint8_t> bytes, const Attributes& attributes) {
  const fs::path target = FollowLinks(path);
  const SignalsHeld held;
  TemporaryFile file(target);
  if (!file.IsOpen()) FailErrno(path, errno, "the folder must exist and be writable");
  int error = file.Write(bytes, attributes);
  if (error == 0) error = file.RenameTo(target);
  if (error != 0) FailErrno(path, error, "make room or name another output");
  SyncFolder(target.parent_path());
}

// Files of the kernel look like others, but are doors to it: they are written into, in one piece, and cannot be replaced.
bool IsKernelFile(const std::string& path) {
  struct statfs system;
  if (statfs(path.c_str(), &system) != 0) return false;
  constexpr auto kSecurityFs = 0x73636673;
  constexpr auto kConfigFs = 0x62656570;
  const auto type = static_cast<unsigned long>(system.f_type);
  return type == PROC_SUPER_MAGIC || type == SYSFS_MAGIC || type == DEBUGFS_MAGIC || type == TRACEFS_MAGIC ||
         type == kSecurityFs || type == kConfigFs;
}

// Descriptor 1 leads nowhere while the tool runs, so its names must not be opened.
bool IsStandardOutput(const std::string& path) {
  return path == "-" || path == "/dev/stdout" || path == "/dev/fd/1" || path == "/proc/self/fd/1";
}

}  // namespace

void WriteOutput(const Output& output, std::span<const uint8_t> bytes, Streams& streams) {
  RequireMemory();
  const std::string& path = output.name;
  if (device::FindScheme(path) != nullptr) return SendToDevice(output, bytes, streams);
  if (IsStandardOutput(path)) return streams.Result(bytes);
  struct stat status;
  if (stat(path.c_str(), &status) != 0) return ReplaceFile(path, bytes, {NewFileMode()});
  if (S_ISDIR(status.st_mode)) Fail(path, "is a folder; name a file in it");
  if (!S_ISREG(status.st_mode) || IsKernelFile(path)) return WriteDirectly(path, bytes);
  if ((status.st_mode & 0222) == 0 || access(path.c_str(), W_OK) != 0) {
    Fail(path, "exists and is write-protected; remove it or name another output");
  }
  if (status.st_nlink > 1) {
    Note(fmt::format("{}: the file has {} names; the others keep the old content", path, status.st_nlink));
  }
  ReplaceFile(path, bytes, {status.st_mode & 07777, status.st_uid, status.st_gid});
}

void RequireOutput(const Output& output, const std::string& command) {
  if (device::FindScheme(output.name) != nullptr) device::OutputScheme(output.name);
  if (!output.empty()) return;
  throw ToolError(Exit::kUsage, fmt::format("{} writes an EDID: name the output with -o FILE (-o - is standard output, "
                                            "the input's own name replaces the input)",
                                            command));
}

void OfferTable(const std::string& text, const Output& output, Streams& streams) {
  if (output.name != "-") {
    streams.Offer(text);
  } else {
    Tell(text);
  }
}

}  // namespace reedid::tool
