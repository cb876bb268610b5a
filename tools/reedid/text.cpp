// export, build and paths: an EDID as text that people write, and back.

#include <fmt/format.h>

#include "commands.h"
#include "document/text/text_form.h"
#include "input.h"
#include "output.h"

namespace reedid::tool {
namespace {

std::span<const uint8_t> AsBytes(const std::string& text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

}  // namespace

Exit RunExport(const ExportOptions& options, Streams& streams) {
  if (!options.schema && options.input.empty()) throw ToolError(Exit::kUsage, "export: name an EDID");
  const std::string text = options.schema
                               ? document::FormText(document::TextSchema())
                               : document::ExportText(ReadImage(options.input),
                                                      options.all ? document::Fields::kAll : document::Fields::kSet);
  WriteOutput(options.output.empty() ? Output{"-"} : options.output, AsBytes(text), streams);
  return Exit::kDone;
}

Exit RunBuild(const BuildOptions& options, Streams& streams) {
  RequireOutput(options.output, "build");
  const document::ByteVector bytes =
      document::BuildText(ShownName(options.input), ReadText(options.input), ToldNotes());
  WriteOutput(options.output, bytes, streams);
  return Exit::kDone;
}

}  // namespace reedid::tool
