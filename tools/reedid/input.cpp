#include "input.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "document/read/input.h"
#include "document/read/samples.h"
#include "tool_error.h"

namespace reedid::tool {
namespace {

using document::ByteVector;

constexpr size_t kMaxInput = 1 << 20;  // 255 blocks written as text with every byte on a line of its own, and more
constexpr std::string_view kSamplePrefix = "sample:";

[[noreturn]] void Fail(const std::string& name, const std::string& what) {
  throw ToolError(Exit::kInput, fmt::format("{}: {}", name, what));
}

struct InputFile {
  explicit InputFile(const std::string& name)
      : descriptor(name == "-" ? STDIN_FILENO : open(name.c_str(), O_RDONLY | O_CLOEXEC)) {}
  ~InputFile() {
    if (descriptor > STDERR_FILENO) close(descriptor);
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  const int descriptor;
};

ByteVector ReadToEnd(const std::string& name) {
  const InputFile file(name);
  if (file.descriptor < 0) Fail(name, fmt::format("{}; check the name and its permissions", std::strerror(errno)));
  ByteVector bytes;
  uint8_t buffer[4096];
  for (;;) {
    const ssize_t got = read(file.descriptor, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) Fail(name, fmt::format("{}; name a file that holds an EDID", std::strerror(errno)));
    if (got == 0) return bytes;
    bytes.insert(bytes.end(), buffer, buffer + got);
    if (bytes.size() > kMaxInput) Fail(name, "more than 1 MiB: this is no EDID");
  }
}

ByteVector ReadInput(const std::string& name) {
  if (name.starts_with(kSamplePrefix)) return document::SampleBytes(name.substr(kSamplePrefix.size()));
  return document::ParseInput(ShownName(name), ReadToEnd(name));
}

}  // namespace

document::Image ReadImage(const std::string& name) {
  try {
    return document::Image::FromBytes(ShownName(name), ReadInput(name));
  } catch (const document::Error& error) {
    throw FromDocument(error);
  }
}

std::string ShownName(const std::string& name) {
  return name == "-" ? "standard input" : name;
}

}  // namespace reedid::tool
