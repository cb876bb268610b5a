#include "input.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <string_view>
#include <utility>

#include "device/schemes.h"
#include "document/read/input.h"
#include "streams.h"
#include "tool_error.h"

namespace reedid::tool {
namespace {

using document::ByteVector;

constexpr size_t kMaxInput = 1 << 20;  // 255 blocks written as text with every byte on a line of its own, and more

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

// What was read last: a pipe can be read only once, but is asked for its names and then for each of its images; and a
// display is not asked twice.
const ByteVector& Content(const std::string& name) {
  static std::string last;
  static ByteVector content;
  if (last != name || name.empty()) {
    last.clear();  // what is thrown on the way leaves no name for the wrong content
    content = device::FindScheme(name) != nullptr ? device::ReadFrom(name, ToldNotes()) : ReadToEnd(name);
    last = name;
  }
  return content;
}

std::vector<ByteVector> ImagesIn(const std::string& name) {
  if (device::FindScheme(name) != nullptr) return {Content(name)};
  return document::ParseInput(ShownName(name), Content(name));
}

// "paste.txt#2", unless there is a file of this name; 0: no number.
size_t NumberIn(const std::string& name, std::string& file) {
  const size_t mark = name.rfind('#');
  size_t number = 0;
  file = name;
  if (mark == name.npos || access(name.c_str(), F_OK) == 0) return 0;
  const auto [end, error] = std::from_chars(name.data() + mark + 1, name.data() + name.size(), number);
  if (error != std::errc() || end != name.data() + name.size() || number == 0) return 0;
  file = name.substr(0, mark);
  return number;
}

ByteVector ReadInput(const std::string& name) {
  std::string file;
  const size_t number = NumberIn(name, file);
  std::vector<ByteVector> images = ImagesIn(file);
  if (number > images.size()) Fail(name, fmt::format("there are {} EDIDs in {}", images.size(), ShownName(file)));
  if (number == 0 && images.size() > 1) {
    Fail(ShownName(name), fmt::format("a text with {} EDIDs; name one of them, such as {}#1", images.size(), name));
  }
  return std::move(images[number == 0 ? 0 : number - 1]);
}

}  // namespace

document::Image ReadImage(const std::string& name) {
  try {
    return document::Image::FromBytes(ShownName(name), ReadInput(name));
  } catch (const document::Error& error) {
    throw FromDocument(error);
  }
}

std::string ReadText(const std::string& name) {
  const ByteVector& content = Content(name);
  return {content.begin(), content.end()};
}

std::vector<std::string> NamesIn(const std::string& name) {
  std::string file;
  if (NumberIn(name, file) != 0 || device::FindScheme(name) != nullptr) return {name};
  size_t count = 1;
  try {
    count = ImagesIn(name).size();
  } catch (const ToolError&) {
  } catch (const document::Error&) {
  }
  if (count == 1) return {name};
  std::vector<std::string> names;
  for (size_t i = 1; i <= count; ++i) names.push_back(fmt::format("{}#{}", name, i));
  return names;
}

bool MayBeEdid(const std::string& name) {
  try {
    if (document::MayBeEdid(Content(name))) return true;
  } catch (const ToolError&) {
    return true;
  }
  try {
    ReadImage(name);
    return true;
  } catch (const ToolError&) {
    return false;
  }
}

std::string ShownName(const std::string& name) {
  return name == "-" || name.starts_with("-#") ? "standard input" + name.substr(1) : name;
}

}  // namespace reedid::tool
