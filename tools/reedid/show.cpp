// show: a readable account of everything in the image, with what is wrong beside it; or a list of its data blocks.

#include "commands.h"
#include "document/account/block_list.h"
#include "document/account/image_account.h"
#include "document/account/tree_json.h"
#include "document/check/marks.h"
#include "findings.h"
#include "inputs.h"
#include "terminal.h"

namespace reedid::tool {
namespace {

using document::DescribeImage;
using document::Image;
using document::Node;

Node Describe(const Image& image, bool hidePrivate) {
  Node account = DescribeImage(image);
  document::MarkFindings(document::Check(BytesOf(image), ThisYear()), account);
  if (hidePrivate) HidePrivate(account);
  return account;
}

Answer ListBlocks(const Node& account, const document::TextStyle& style) {
  const std::vector<document::BlockRow> rows = BlockRows(account);
  return {account.title + "\n" + BlockTable(rows, style.width),
          {{"title", account.title}, {"dataBlocks", BlockListJson(rows)}}};
}

}  // namespace

Exit RunShow(const ShowOptions& options, Streams& streams) {
  document::TextStyle style = StyleFor(options.color, streams);
  style.hex = options.hex;
  return AnswerEach(options.inputs, options.json, streams, [&](const Image& image, bool) {
    const Node account = Describe(image, options.hidePrivate);
    if (options.blocks) return ListBlocks(account, style);
    return options.json ? Answer{"", ToJson(account, options.hex)} : Answer{ToText(account, style), {}};
  });
}

}  // namespace reedid::tool
