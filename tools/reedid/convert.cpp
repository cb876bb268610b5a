// convert: the same image in another form.

#include <fmt/format.h>

#include "commands.h"
#include "input.h"
#include "output.h"

namespace reedid::tool {
namespace {

std::span<const uint8_t> AsBytes(const std::string& text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

}  // namespace

Exit RunConvert(const ConvertOptions& options, Streams& streams) {
  RequireOutput(options.output, "convert");
  document::Image image = ReadImage(options.input);
  const document::ByteVector bytes = image.Generate(ToldNotes());
  if (options.form == "raw") {
    if (options.output.name == "-" && streams.ResultIsTerminal()) {
      throw ToolError(Exit::kUsage, "raw bytes do no good on a terminal; use --to hex, or -o FILE");
    }
    WriteOutput(options.output, bytes, streams);
  } else {
    WriteOutput(options.output, AsBytes(options.form == "c" ? document::CArray(bytes) : document::HexRows(bytes)),
                streams);
  }
  return Exit::kDone;
}

}  // namespace reedid::tool
