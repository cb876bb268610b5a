#include "tools/reedid/device/firmware.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <string_view>

namespace reedid::tool::device {
namespace {

// The kernel has these within itself, and does not look for files.
constexpr std::string_view kBuiltIn[] = {"800x600", "1024x768", "1280x1024", "1600x1200", "1680x1050", "1920x1080"};

// It stands in a file name, and in a parameter of which , and : part the values.
std::string PathOf(const Place& place) {
  const std::string_view name = place.where;
  const auto fits = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_' ||
           c == '.';
  };
  if (name.empty() || name[0] == '.' || !std::all_of(name.begin(), name.end(), fits)) {
    Fail(place, Exit::kOutput, "a name of letters, digits, '-', '_' and '.' is needed, as in firmware:tv");
  }
  if (std::find(std::begin(kBuiltIn), std::end(kBuiltIn), name) != std::end(kBuiltIn)) {
    Fail(place, Exit::kOutput, "the kernel has an EDID of its own by this name; take another name");
  }
  return fmt::format("{}/edid/{}.bin", place.roots.firmware, name);
}

}  // namespace

std::string FirmwareFile(const Place& place, document::Notes& notes) {
  std::string path = PathOf(place);
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) FailErrno(place, Exit::kOutput, error.value(), fmt::format("{} must be a folder", folder.string()));
  if (access(folder.c_str(), W_OK) != 0) FailErrno(place, Exit::kOutput, errno, "the folder must be there");
  notes.push_back(fmt::format(
      "{0}: {1} is written; start the kernel with drm.edid_firmware=HDMI-A-1:edid/{2}.bin (or another "
      "connector of 'reedid displays'; the file must be in the initramfs when the driver is); undo it with: "
      "reedid send --clear -o {0}",
      place.name, path, place.where));
  return path;
}

void ClearFirmware(const Place& place, document::Notes& notes) {
  const std::string path = PathOf(place);
  if (unlink(path.c_str()) != 0) {
    if (errno == ENOENT) Fail(place, Exit::kOutput, fmt::format("there is no {}; nothing is to be undone", path));
    FailErrno(place, Exit::kOutput, errno, "nothing is to be undone");
  }
  notes.push_back(
      fmt::format("{}: {} is removed; take drm.edid_firmware off the kernel's parameters, too", place.name, path));
}

}  // namespace reedid::tool::device
