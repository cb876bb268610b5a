// show: a readable account of everything in the image.

#include "commands.h"
#include "document/account/image_account.h"
#include "document/account/tree_json.h"
#include "inputs.h"
#include "terminal.h"

namespace reedid::tool {
namespace {

using document::DescribeImage;
using document::Image;
using document::Node;

Node Describe(const Image& image, bool hidePrivate) {
  Node account = DescribeImage(image);
  if (hidePrivate) HidePrivate(account);
  return account;
}

}  // namespace

Exit RunShow(const ShowOptions& options, Streams& streams) {
  document::TextStyle style = StyleFor(options.color, streams);
  style.hex = options.hex;
  return AnswerEach(options.inputs, options.json, streams, [&](const Image& image, bool) {
    const Node account = Describe(image, options.hidePrivate);
    return options.json ? Answer{"", ToJson(account, options.hex)} : Answer{ToText(account, style), {}};
  });
}

}  // namespace reedid::tool
