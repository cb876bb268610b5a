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
using document::Loss;

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
  const uint16_t address = document::ParseAddress(options.address, ToldNotes());
  const Loss loss = options.allowLoss ? Loss::kAllow : Loss::kRefuse;
  image = document::SetAddress(std::move(image), address, loss, ToldNotes());
  WriteOutput(options.output, image.Generate(ToldNotes()), streams);
  return Exit::kDone;
}

Exit RunToHdmi(const ToHdmiOptions& options, Streams& streams) {
  RequireOutput(options.output, "to-hdmi");
  const uint16_t address = document::ParseAddress(options.address, ToldNotes());
  const Loss loss = options.allowLoss ? Loss::kAllow : Loss::kRefuse;
  Image image = document::ToHdmi(ReadImage(options.input), address, loss, ToldNotes());
  WriteOutput(options.output, image.Generate(ToldNotes()), streams);
  return Exit::kDone;
}

}  // namespace reedid::tool
