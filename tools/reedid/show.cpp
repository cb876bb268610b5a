// show: a readable account of everything in the image.

#include "commands.h"
#include "describe.h"
#include "inputs.h"
#include "terminal.h"

namespace reedid::tool {

Exit RunShow(const ShowOptions& options, Streams& streams) {
  TextStyle style = StyleFor(options.color, streams);
  style.hex = options.hex;
  return AnswerEach(options.inputs, options.json, streams, [&](const Image& image, bool) {
    const Node account = DescribeImage(image);
    return options.json ? Answer{"", ToJson(account, options.hex)} : Answer{ToText(account, style), {}};
  });
}

}  // namespace reedid::tool
