// diff, limit, edit and high-refresh: edits of a whole image with a table of what changed.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <optional>
#include <utility>

#include "commands.h"
#include "document/account/image_account.h"
#include "document/account/queries.h"
#include "document/account/tree_json.h"
#include "document/compare/changes.h"
#include "document/edit/address.h"
#include "document/edit/high_refresh.h"
#include "edit_steps.h"
#include "input.h"
#include "output.h"

namespace reedid::tool {
namespace {

using document::DescribeImage;
using document::Image;
using document::Node;
using document::Rates;

// What is told of an edit beside its changes: as text, and as more keys of the JSON.
struct More {
  std::string text;
  document::Json json = document::Json::object();
};

// The account of an image as it was written, with the counts and checksums that generating it mended.
Node DescribeBytes(const std::string& name, const document::ByteVector& bytes) {
  return DescribeImage(Image::FromBytes(name, bytes));
}

// Takes the accounts with it: even to go they need memory, so that they must be gone before anything is written.
std::string TableText(Node before, Node after, const TableOptions& table, const More& more) {
  const std::vector<document::Change> changes = FindChanges(before, after);
  if (table.quiet && !table.json) return "";
  if (!table.json) return ChangesText(changes, table.all) + more.text;
  document::Json json = ChangesJson(changes, table.all);
  json.update(more.json);
  return document::JsonText(json);
}

// The table comes first, where it cannot be mixed with the image: when it cannot be printed, the exit code says that no
// output was written.
void Finish(const std::string& text, const document::ByteVector& bytes, const Output& output, Streams& streams) {
  OfferTable(text, output, streams);
  WriteOutput(output, bytes, streams);
}

// Nothing is begun that cannot be ended: a word that is wrong is found before the image is read.
std::vector<document::Edit> MakeEdits(const EditOptions& options) {
  if (options.edits.empty()) throw ToolError(Exit::kUsage, "edit: name an edit, such as --limit or --phys");
  const Rates rates = options.rates.empty() ? Rates() : document::ParseRates(options.rates);
  const StepSettings settings = {rates, options.output.force};
  std::vector<document::Edit> edits;
  for (const EditWord& word : options.edits) edits.push_back(word.step->make(word.value, settings));
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
  const std::vector<document::Edit> edits = MakeEdits(options);
  Image image = ReadImage(options.input);
  Node before = DescribeImage(image);
  image = document::ApplyEdits(std::move(image), edits);
  const document::ByteVector bytes = image.Generate(ToldNotes());
  const std::optional<EdidLink> link = document::SlowestLink(edits);
  std::vector<std::string> above;
  if (link) above = document::TimingsAbove(image, *link);
  const std::string text =
      TableText(std::move(before), DescribeBytes(image.name(), bytes), options.table, {"", {{"above", above}}});
  for (const std::string& timing : above) {
    Note(fmt::format("{}: still above {} MHz: {}", image.name(), link->maxTmdsClock / 1000, timing));
  }
  Finish(text, bytes, options.output, streams);
  return above.empty() ? Exit::kDone : Exit::kNo;
}

// A receiver plays the sound itself: that of its own EDID, behind the television's picture.
Exit RunReceiver(const ReceiverOptions& options, Streams& streams) {
  EditOptions edit;
  edit.input = options.video;
  edit.edits = {{&FindStep("--audio-from"), options.audio}, {&FindStep("--phys"), options.address}};
  edit.output = options.output;
  edit.table = options.table;
  return RunEdit(edit, streams);
}

Exit RunDiff(const DiffOptions& options, Streams& streams) {
  const Node first = DescribeImage(ReadImage(options.first));
  const Node second = DescribeImage(ReadImage(options.second));
  const std::vector<document::Change> changes = FindChanges(first, second);
  const bool all = options.table.all;
  streams.Result(options.table.json ? document::JsonText(ChangesJson(changes, all)) : ChangesText(changes, all));
  return AreSame(changes) ? Exit::kDone : Exit::kNo;
}

Exit RunHighRefresh(const HighRefreshOptions& options, Streams& streams) {
  RequireOutput(options.output, "high-refresh");
  Image image = ReadImage(options.input);
  document::CheckHighRefresh(image);
  Node before = DescribeImage(image);
  const std::string ratesBefore = RatesText(image);
  image = document::HighRefresh(std::move(image));
  const std::string rates = fmt::format("rates before: {} Hz\nrates after:  {} Hz\n", ratesBefore, RatesText(image));
  const document::ByteVector bytes = image.Generate(ToldNotes());
  Finish(TableText(std::move(before), DescribeBytes(image.name(), bytes), options.table, {rates}), bytes,
         options.output, streams);
  return Exit::kDone;
}

}  // namespace reedid::tool
