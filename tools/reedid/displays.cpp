// displays: what is plugged into the machine?

#include <fmt/format.h>

#include <optional>

#include "commands.h"
#include "device/connectors.h"
#include "device/files.h"
#include "document/account/identity.h"
#include "document/account/tree_json.h"
#include "terminal.h"

namespace reedid::tool {
namespace {

using device::Connector;
using document::Identity;
using document::Json;

constexpr int kJsonVersion = 1;  // docs/json.md

struct Display {
  Connector connector;
  bool hasEdid = false;
  std::string fault = {};  // why its EDID cannot be opened
  Identity identity = {};
};

Display LookAt(const Connector& connector) {
  Display display = {connector};
  document::ByteVector bytes;
  device::ReadKernelFile(connector.EdidFile(), bytes);
  display.hasEdid = !bytes.empty();
  if (!display.hasEdid) return display;
  try {
    display.identity = IdentityOf(document::Image::FromBytes("EDID", bytes));
  } catch (const document::Error& error) {
    display.fault = error.what();
  }
  return display;
}

document::Node Describe(const Display& display) {
  const Identity& identity = display.identity;
  document::Node node;
  node.title = fmt::format("{}: {}", display.connector.FullName(), display.connector.status);
  if (display.hasEdid && display.fault.empty()) {
    node.Add("Display", fmt::format("{}{}{}", identity.maker, identity.name.empty() ? "" : ", ", identity.name));
    const bool sized = identity.widthCm != 0 && identity.heightCm != 0;
    node.Add("Size", sized ? fmt::format("{} x {} cm", identity.widthCm, identity.heightCm) : "not stated");
    node.Add("Preferred", identity.preferred ? document::TimingText(identity.preferred->timing) : "no timing");
    node.Add("EDID", display.connector.EdidFile());
  } else if (!display.fault.empty()) {
    node.Add("EDID", display.fault).isFault = true;
  } else if (display.connector.status == "connected") {
    node.Add("EDID", "none").isFault = true;
  }
  if (!display.connector.bus.empty()) node.Add("DDC", display.connector.bus);
  return node;
}

Json TextOrNull(const std::string& text) {
  return text.empty() ? Json(nullptr) : Json(text);
}

Json Summary(const Display& display) {
  const Connector& connector = display.connector;
  Json json = {{"connector", connector.name},
               {"card", connector.card},
               {"status", connector.status},
               {"enabled", connector.enabled == "enabled"},
               {"path", connector.EdidFile()},
               {"bus", TextOrNull(connector.bus)},
               {"display", nullptr}};
  if (!display.fault.empty()) json["error"] = display.fault;
  if (!display.hasEdid || !display.fault.empty()) return json;
  const Identity& identity = display.identity;
  json["display"] = {{"maker", TextOrNull(identity.maker)},
                     {"name", TextOrNull(identity.name)},
                     {"widthCm", identity.widthCm},
                     {"heightCm", identity.heightCm},
                     {"preferred", identity.preferred ? ItemJson(*identity.preferred) : Json(nullptr)}};
  return json;
}

}  // namespace

Exit RunDisplays(const DisplaysOptions& options, Streams& streams) {
  const std::vector<Connector> connectors = device::FindConnectors({});
  Json list = Json::array();
  std::string text;
  for (const Connector& connector : connectors) {
    const Display display = LookAt(connector);
    list.push_back(Summary(display));
    text += ToText(Describe(display), StyleFor(options.color, streams));
  }
  streams.Result(options.json ? document::JsonText({{"version", kJsonVersion}, {"displays", list}}) : text);
  if (!connectors.empty()) return Exit::kDone;
  Note("no connectors; below /sys/class/drm are those of Linux machines whose graphics adapter has its driver");
  return Exit::kNo;
}

}  // namespace reedid::tool
