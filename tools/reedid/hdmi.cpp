// phys and to-hdmi: the HDMI identity of an image.

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "commands.h"
#include "document/account/tree_json.h"
#include "document/account/values.h"
#include "document/edit/address.h"
#include "document/edit/to_hdmi.h"
#include "input.h"
#include "output.h"

namespace reedid::tool {
namespace {

using document::Image;

constexpr int kJsonVersion = 1;  // docs/json.md

Exit ReadPhys(const Image& image, bool json, Streams& streams) {
  const std::optional<uint16_t> address = document::AddressOf(image);
  if (json) {
    document::Json answer = {{"version", kJsonVersion}, {"physicalAddress", nullptr}};
    if (address) answer["physicalAddress"] = document::PhysAddrText(*address);
    streams.Result(document::JsonText(answer));
  }
  if (!address) {
    Note(fmt::format("{}: no HDMI block, so no physical address; 'reedid to-hdmi' adds one", image.name()));
    return Exit::kNo;
  }
  if (!json) streams.Result(document::PhysAddrText(*address) + "\n");
  return Exit::kDone;
}

}  // namespace

uint16_t AskedAddress(const std::string& text, bool force) {
  try {
    return document::ParseAddress(text, force ? document::Odd::kTake : document::Odd::kRefuse);
  } catch (const document::Error& error) {
    if (error.kind() != document::ErrorKind::kRefused) throw;
    throw ToolError(Exit::kRefused, fmt::format("{}; write it all the same with --force", error.what()));
  }
}

Exit RunPhys(const PhysOptions& options, Streams& streams) {
  if (options.address.empty() && !options.output.empty()) {
    throw ToolError(Exit::kUsage,
                    "phys with -o sets the address: name it, as in 'reedid phys in.bin 1.2.0.0 -o out.bin'");
  }
  if (!options.address.empty() && options.json) {
    throw ToolError(Exit::kUsage, "phys --json prints the address; setting one has nothing to print");
  }
  if (!options.address.empty()) RequireOutput(options.output, "phys with an address");
  Image image = ReadImage(options.input);
  if (options.address.empty()) return ReadPhys(image, options.json, streams);
  const uint16_t address = AskedAddress(options.address, options.output.force);
  image = document::SetAddress(std::move(image), address, ToldNotes());
  const document::ByteVector bytes = image.Generate(ToldNotes());
  WriteOutput(options.output, bytes, streams);
  return Exit::kDone;
}

Exit RunToHdmi(const ToHdmiOptions& options, Streams& streams) {
  RequireOutput(options.output, "to-hdmi");
  const uint16_t address = AskedAddress(options.address, options.output.force);
  Image image = document::ToHdmi(ReadImage(options.input), address, ToldNotes());
  const document::ByteVector bytes = image.Generate(ToldNotes());
  WriteOutput(options.output, bytes, streams);
  return Exit::kDone;
}

}  // namespace reedid::tool
