#include "input.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "hex_text.h"
#include "reedid/image.h"
#include "samples.h"

namespace reedid::tool {
namespace {

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

bool HasEdidHeader(const ByteVector& bytes) {
  return bytes.size() >= 8 && isEdidHeader(bytes.data()) != 0;
}

}  // namespace

ByteVector ReadInput(const std::string& name) {
  if (name.starts_with(kSamplePrefix)) return SampleBytes(name.substr(kSamplePrefix.size()));
  const std::string shown = name == "-" ? "standard input" : name;
  ByteVector bytes = ReadToEnd(name);
  if (bytes.empty()) {
    Fail(shown, "empty; a connector of /sys/class/drm without a display gives no EDID, other files must hold one");
  }
  if (HasEdidHeader(bytes) || !LooksLikeText(bytes)) return bytes;
  try {
    ByteVector parsed = ParseHexText({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    if (parsed.empty()) throw ToolError(Exit::kInput, "text without hexadecimal digits");
    return parsed;
  } catch (const ToolError& error) {
    Fail(shown, error.what());
  }
}

}  // namespace reedid::tool
