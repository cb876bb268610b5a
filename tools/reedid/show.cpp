// show: a readable account of everything in the image.

#include <sstream>

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

// The library's warnings of wrong checksums tell what the account hides.
void PrintWithoutChecksums(const std::string& diagnostics) {
  std::istringstream lines(diagnostics);
  for (std::string line; std::getline(lines, line);) {
    if (line.find("checksum error") == line.npos) Tell(line + "\n");
  }
}

Node Describe(const Image& image, bool hidePrivate) {
  if (!hidePrivate) return DescribeImage(image);
  Node account;
  PrintWithoutChecksums(CaptureDiagnostics([&] { account = DescribeImage(image); }));
  HidePrivate(account);
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
