// plot: a picture of what the display can show.

#include <fmt/format.h>

#include <filesystem>

#include "commands.h"
#include "document/account/image_account.h"
#include "document/plot/picture.h"
#include "input.h"
#include "output.h"

namespace reedid::tool {

Exit RunPlot(const PlotOptions& options, Streams& streams) {
  std::error_code ignored;
  if (options.output.empty()) {
    throw ToolError(Exit::kUsage, "plot writes a picture: name it with -o FILE.svg (-o - is standard output)");
  }
  if (std::filesystem::equivalent(options.input, options.output.name, ignored)) {
    throw ToolError(Exit::kUsage, fmt::format("{}: a picture in its place would lose the EDID", options.output.name));
  }
  const document::Image image = ReadImage(options.input);
  const std::string picture = document::DrawPicture(image, document::DescribeImage(image));
  WriteOutput(options.output, {reinterpret_cast<const uint8_t*>(picture.data()), picture.size()}, streams);
  return Exit::kDone;
}

}  // namespace reedid::tool
