#include "tools/reedid/device/connectors.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "tools/reedid/device/files.h"

namespace reedid::tool::device {
namespace {

namespace fs = std::filesystem;

// The link "ddc" leads to the bus of an adapter's own lines; DisplayPort's, behind its AUX channel, is a folder.
std::string FindBus(const std::string& folder, const Roots& roots) {
  std::error_code error;
  const fs::path link = fs::read_symlink(folder + "/ddc", error);
  if (!error) return fmt::format("{}/{}", roots.dev, link.filename().string());
  std::string bus;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    const std::string name = at->path().filename().string();
    if (name.starts_with("i2c-") && (bus.empty() || name < bus)) bus = name;
  }
  return bus.empty() ? "" : fmt::format("{}/{}", roots.dev, bus);
}

std::string NamesOf(const std::vector<Connector>& connectors) {
  std::string names;
  for (const Connector& connector : connectors) {
    names += fmt::format("{}{}", names.empty() ? "" : ", ", connector.FullName());
  }
  return names;
}

}  // namespace

std::vector<Connector> FindConnectors(const Roots& roots) {
  std::vector<Connector> connectors;
  std::error_code error;
  for (fs::directory_iterator at(roots.sys + "/class/drm", error), end; !error && at != end; at.increment(error)) {
    const std::string full = at->path().filename().string();
    const size_t mark = full.find('-');
    if (!full.starts_with("card") || mark == full.npos) continue;
    const std::string folder = at->path().string();
    const std::string status = ReadKernelText(folder + "/status");
    if (status.empty()) continue;
    connectors.push_back({full.substr(0, mark), full.substr(mark + 1), folder, status,
                          ReadKernelText(folder + "/enabled"), FindBus(folder, roots)});
  }
  std::sort(connectors.begin(), connectors.end(),
            [](const Connector& a, const Connector& b) { return a.FullName() < b.FullName(); });
  return connectors;
}

Connector FindConnector(const Place& place, Exit exit) {
  const std::vector<Connector> all = FindConnectors(place.roots);
  if (all.empty()) Fail(place, exit, "the machine has no connectors; load the driver of the graphics adapter");
  std::vector<Connector> found;
  std::copy_if(all.begin(), all.end(), std::back_inserter(found), [&](const Connector& connector) {
    return place.where == connector.name || place.where == connector.FullName();
  });
  if (found.empty()) Fail(place, exit, fmt::format("no such connector; there are {}", NamesOf(all)));
  if (found.size() > 1) Fail(place, exit, fmt::format("several connectors; name one of {}", NamesOf(found)));
  return found[0];
}

document::ByteVector ReadConnector(const Place& place, document::Notes&) {
  const Connector connector = FindConnector(place, Exit::kInput);
  document::ByteVector bytes;
  const int error = ReadKernelFile(connector.EdidFile(), bytes);
  if (error != 0) FailErrno(place, Exit::kInput, error, "'reedid displays' lists the connectors");
  if (!bytes.empty()) return bytes;
  if (connector.status == "connected") {
    Fail(place, Exit::kInput,
         connector.bus.empty() ? "the display gave the kernel no EDID; check the cable, and the kernel's log (dmesg)"
                               : fmt::format("the display gave the kernel no EDID; ask it with i2c:{}", connector.bus));
  }
  Fail(place, Exit::kInput,
       fmt::format("{}; plug a display in and switch it on ('reedid displays' lists them all)", connector.status));
}

}  // namespace reedid::tool::device
