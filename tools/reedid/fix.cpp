// fix: mends what check found.

#include "document/check/fix.h"

#include <fmt/format.h>

#include "commands.h"
#include "document/account/image_account.h"
#include "document/account/tree_text.h"
#include "document/check/rule_text.h"
#include "document/compare/changes.h"
#include "findings.h"
#include "input.h"
#include "output.h"

namespace reedid::tool {
namespace {

using document::DescribeImage;
using document::Image;

std::string ChangesOf(const Image& before, const document::ByteVector& after) {
  const Image mended = Image::FromBytes(before.name(), after);
  return ChangesText(FindChanges(DescribeImage(before), DescribeImage(mended)));
}

std::string MendedText(const document::Fixed& fixed) {
  document::Node done;
  done.title = "mended";
  for (const document::Finding& finding : fixed.done) {
    done.Add(finding.rule->id, fmt::format("{}: {}", ToText(finding.place), finding.values));
  }
  std::string text = done.fields.empty() ? "nothing to mend\n" : ToText(done);
  const document::Node open = document::OpenNode("left to decide", fixed.open);
  return open.fields.empty() ? text : text + ToText(open);
}

}  // namespace

Exit RunFix(const FixOptions& options, Streams& streams) {
  RequireOutput(options.output, "fix");
  for (const std::string& id : options.rules) NamedRule(id);
  const Image image = ReadImage(options.input);
  const document::Fixed fixed = document::Fix(BytesOf(image), ThisYear(), {options.rules});
  if (!options.quiet) {
    const std::string text = (fixed.done.empty() ? "" : ChangesOf(image, fixed.image)) + MendedText(fixed);
    options.output.name == "-" ? Tell(text) : streams.Offer(text);
  }
  WriteOutput(options.output, fixed.image, streams);
  return Exit::kDone;
}

}  // namespace reedid::tool
