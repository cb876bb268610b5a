// diff, limit, edit and high-refresh: edits of a whole image with a table of what changed.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <utility>

#include "commands.h"
#include "document/account/image_account.h"
#include "document/account/queries.h"
#include "document/account/tree_json.h"
#include "document/compare/changes.h"
#include "document/edit/address.h"
#include "document/edit/edits.h"
#include "document/edit/high_refresh.h"
#include "input.h"
#include "output.h"

namespace reedid::tool {
namespace {

using document::DescribeImage;
using document::Edit;
using document::Image;
using document::Link;
using document::Loss;
using document::Node;
using document::Rates;

bool NoteWhatIsAbove(const Link& link, const Node& account, const std::string& name) {
  const std::vector<std::string> above = document::TimingsAbove(account, link.clock, link.has420);
  for (const std::string& timing : above) {
    Note(fmt::format("{}: still above {} MHz: {}", name, link.clock / 1000, timing));
  }
  return above.empty();
}

// The table goes where it cannot be mixed with the image.
void PrintTable(const std::string& text, const std::string& output, Streams& streams) {
  if (output != "-") {
    streams.Offer(text);
  } else {
    Tell(text);
  }
}

// The table comes first: when it cannot be printed, the exit code says that no output was written.
void Finish(Image& image, const Node& before, const std::string& output, bool quiet, Streams& streams,
            const std::string& more = "") {
  const document::ByteVector bytes = image.Generate(ToldNotes());
  if (!quiet) PrintTable(ChangesText(FindChanges(before, DescribeImage(image))) + more, output, streams);
  WriteOutput(output, bytes, streams);
}

// Nothing is begun that cannot be ended: a word that is wrong is found before the image is read.
std::vector<Edit> ParseEdits(const std::vector<EditWord>& words) {
  if (words.empty()) throw ToolError(Exit::kUsage, "edit: name an edit, --limit or --phys");
  std::vector<Edit> edits;
  for (const EditWord& word : words) {
    edits.push_back(word.isLimit ? Edit{&document::FindLimit(word.value)}
                                 : Edit{nullptr, document::ParseAddress(word.value, ToldNotes())});
  }
  return edits;
}

std::string RatesText(const Image& image) {
  std::vector<std::string> texts;
  for (const uint32_t rate : document::AllRates(image)) texts.push_back(document::RateText(rate));
  return fmt::format("{}", fmt::join(texts, ", "));
}

}  // namespace

Exit RunEdit(const EditOptions& options, Streams& streams) {
  RequireOutput(options.output, "an edit");
  const std::vector<Edit> edits = ParseEdits(options.edits);
  const Rates rates = options.rates.empty() ? Rates() : document::ParseRates(options.rates);
  Image image = ReadImage(options.input);
  const Node before = DescribeImage(image);
  const Loss loss = options.allowLoss ? Loss::kAllow : Loss::kRefuse;
  image = document::ApplyEdits(std::move(image), edits, rates, loss, ToldNotes());
  Finish(image, before, options.output, options.quiet, streams);
  const Link* link = document::SlowestLink(edits);
  if (link == nullptr) return Exit::kDone;
  return NoteWhatIsAbove(*link, DescribeImage(image), image.name()) ? Exit::kDone : Exit::kNo;
}

Exit RunDiff(const DiffOptions& options, Streams& streams) {
  const Node first = DescribeImage(ReadImage(options.first));
  const Node second = DescribeImage(ReadImage(options.second));
  const std::vector<document::Change> changes = FindChanges(first, second);
  streams.Result(options.json ? document::JsonText(ChangesJson(changes)) : ChangesText(changes));
  return AreSame(changes) ? Exit::kDone : Exit::kNo;
}

Exit RunHighRefresh(const HighRefreshOptions& options, Streams& streams) {
  RequireOutput(options.output, "high-refresh");
  Image image = ReadImage(options.input);
  document::CheckHighRefresh(image);
  const Node before = DescribeImage(image);
  const std::string ratesBefore = RatesText(image);
  image = document::HighRefresh(std::move(image));
  const std::string rates = fmt::format("rates before: {} Hz\nrates after:  {} Hz\n", ratesBefore, RatesText(image));
  Finish(image, before, options.output, options.quiet, streams, rates);
  return Exit::kDone;
}

}  // namespace reedid::tool
