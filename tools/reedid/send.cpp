// send: an EDID as it is, to a device; and what every command with a device behind -o does.

#include "send.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "commands.h"
#include "device/schemes.h"
#include "findings.h"
#include "input.h"

namespace reedid::tool {
namespace {

void RequireEdid(const std::string& name, std::span<const uint8_t> bytes) {
  if (bytes.size() % REEDID_BLOCK_SIZE == 0 && bytes.size() >= 8 && isEdidHeader(bytes.data()) != 0) return;
  throw ToolError(Exit::kRefused, fmt::format("{}: not written: this is no EDID in raw bytes; name a file", name));
}

void RequireSound(const std::string& name, std::span<const uint8_t> bytes) {
  std::vector<std::string> rules;
  for (const document::Finding& finding : document::Check(bytes, ThisYear())) {
    if (finding.severity != document::Severity::kError) continue;
    if (std::ranges::find(rules, finding.rule->id) == rules.end()) rules.emplace_back(finding.rule->id);
  }
  if (rules.empty()) return;
  throw ToolError(Exit::kRefused, fmt::format("{}: not written: 'reedid check' finds errors in it ({}); mend them "
                                              "('reedid fix'), or send it all the same with --force",
                                              name, fmt::join(rules, ", ")));
}

void Tell(const document::Notes& notes) {
  for (const std::string& note : notes) Note(note);
}

}  // namespace

void SendToDevice(const Output& output, std::span<const uint8_t> bytes, Streams& streams) {
  const device::Scheme& scheme = device::OutputScheme(output.name);
  const device::Place place = device::PlaceIn(output.name);
  RequireEdid(output.name, bytes);
  if (!output.force) RequireSound(output.name, bytes);
  document::Notes notes;
  if (scheme.file != nullptr) {
    WriteOutput({scheme.file(place, notes)}, bytes, streams);
  } else {
    scheme.write(place, bytes, notes);
  }
  Tell(notes);
}

Exit RunSend(const SendOptions& options, Streams& streams) {
  if (device::FindScheme(options.output.name) == nullptr) {
    throw ToolError(Exit::kUsage,
                    "send: name a device behind -o, v4l2:, override: or firmware:; 'reedid convert' "
                    "writes files");
  }
  const device::Scheme& scheme = device::OutputScheme(options.output.name);
  if (options.clear == !options.input.empty()) {
    throw ToolError(Exit::kUsage, "send: name an input, or --clear to take away what was sent");
  }
  if (options.clear) {
    document::Notes notes;
    scheme.clear(device::PlaceIn(options.output.name), notes);
    Tell(notes);
  } else {
    SendToDevice(options.output, BytesOf(ReadImage(options.input)), streams);
  }
  return Exit::kDone;
}

}  // namespace reedid::tool
