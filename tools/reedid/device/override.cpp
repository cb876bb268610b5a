#include "tools/reedid/device/override.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "tools/reedid/device/connectors.h"
#include "tools/reedid/device/files.h"

namespace reedid::tool::device {
namespace {

constexpr char kReset[] = "reset";  // to edid_override: no longer

// "card1" is the folder dri/1.
std::string DebugFolder(const Connector& connector, const Roots& roots) {
  return fmt::format("{}/dri/{}/{}", roots.debug, connector.card.substr(4), connector.name);
}

[[noreturn]] void FailOverride(const Place& place, const std::string& folder, int error) {
  std::error_code ignored;
  if (error == ENOENT && !std::filesystem::exists(place.roots.debug + "/dri", ignored)) {
    Fail(place, Exit::kOutput,
         fmt::format("debugfs is not mounted; as root: mount -t debugfs none {}", place.roots.debug));
  }
  if (error == EINVAL) Fail(place, Exit::kOutput, "the kernel does not take this EDID; 'reedid check' tells why");
  FailErrno(place, Exit::kOutput, error,
            fmt::format("the driver of this connector has no {}/edid_override; use firmware:NAME", folder));
}

// The kernel reads the EDID again when it is told to detect. That ends a state that was forced on or off, which comes back.
void LookAgain(const Connector& connector, const std::string& folder, document::Notes& notes) {
  const std::string forced = ReadKernelText(folder + "/force");
  const std::string status = connector.folder + "/status";
  int error = WriteKernelFile(status, "detect");
  if (error == 0 && (forced == "on" || forced == "off")) error = WriteKernelFile(status, forced);
  if (error == 0 && forced == "digital") error = WriteKernelFile(status, "on-digital");
  if (error == 0) return;
  notes.push_back(fmt::format("{}: the connector could not be looked at again; unplug the display and plug it in again",
                              connector.FullName()));
}

}  // namespace

void WriteOverride(const Place& place, std::span<const uint8_t> bytes, document::Notes& notes) {
  const Connector connector = FindConnector(place, Exit::kOutput);
  const std::string folder = DebugFolder(connector, place.roots);
  const std::string file = folder + "/edid_override";
  if (const int error = WriteKernelFile(file, bytes); error != 0) FailOverride(place, folder, error);
  document::ByteVector held;
  const int error = ReadKernelFile(file, held);
  if (error != 0 || !std::ranges::equal(bytes, held)) {
    WriteKernelFile(file, kReset);
    Fail(place, Exit::kOutput, "the kernel holds another EDID than was sent, so it was undone; use firmware:NAME");
  }
  LookAgain(connector, folder, notes);
  notes.push_back(
      fmt::format("{0}: in force until the machine restarts; undo it with: reedid send --clear -o {0}", place.name));
  if (ReadKernelText(connector.folder + "/status") != "disconnected") return;
  notes.push_back(fmt::format("{}: nothing is plugged in; to go on as if a display were, as root: echo on >{}/status",
                              place.name, connector.folder));
}

void ClearOverride(const Place& place, document::Notes& notes) {
  const Connector connector = FindConnector(place, Exit::kOutput);
  const std::string folder = DebugFolder(connector, place.roots);
  const std::string file = folder + "/edid_override";
  if (const int error = WriteKernelFile(file, kReset); error != 0) FailOverride(place, folder, error);
  document::ByteVector held;
  if (ReadKernelFile(file, held) != 0 || !held.empty()) Fail(place, Exit::kOutput, "the override stays; restart");
  LookAgain(connector, folder, notes);
  notes.push_back(fmt::format("{}: the display's own EDID counts again", place.name));
  if (ReadKernelText(connector.folder + "/status") != "connected") return;
  if (ReadKernelFile(connector.EdidFile(), held) == 0 && !held.empty()) return;
  notes.push_back(fmt::format("{}: the driver has not read it again; unplug the display and plug it in", place.name));
}

}  // namespace reedid::tool::device
