// show: a readable account of everything in the image.

#include "commands.h"
#include "describe.h"

namespace reedid::tool {

Exit RunShow(const ShowOptions& options, Streams& streams) {
  const Image image = Image::Read(options.input);
  const Node account = DescribeImage(image);
  streams.Result(options.json ? JsonText(ToJson(account)) : ToText(account));
  return Exit::kDone;
}

}  // namespace reedid::tool
