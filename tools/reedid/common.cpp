// common: the EDID of a splitter, and what each of its displays costs the others.
#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "commands.h"
#include "document/account/image_account.h"
#include "document/account/tree_json.h"
#include "document/compare/changes.h"
#include "document/edit/two_displays.h"
#include "document/printable.h"
#include "input.h"
#include "output.h"

namespace reedid::tool {
namespace {

using document::Change;
using document::ChangeKind;
using document::Image;

constexpr int kJsonVersion = 1;  // docs/json.md

// What a source loses. Checksums, places and lengths follow from that.
bool IsCost(const Change& change) {
  const bool freed = change.kind == ChangeKind::kAdded && change.after == "there";  // a dummy in a slot
  if (change.kind == ChangeKind::kKept || change.kind == ChangeKind::kMoved || freed) return false;
  const auto ends = [&](std::string_view end) { return change.where.ends_with(end); };
  return !ends("Checksum") && !ends("Section checksum") && !ends("Timing offset") && !ends("Native timings") &&
         change.where.find(", byte") == std::string::npos;
}

// What the other displays would have in common without this one, and do not have with it.
std::vector<Change> CostOf(const std::vector<Image>& images, size_t display) {
  std::vector<Image> others;
  for (size_t i = 0; i < images.size(); ++i) {
    if (i != display) others.push_back(CopyOf(images[i]));
  }
  const Image without = document::CommonOf(others);
  others.push_back(CopyOf(images[display]));
  std::vector<Change> changes = FindChanges(DescribeImage(without), DescribeImage(document::CommonOf(others)));
  std::erase_if(changes, [](const Change& change) { return !IsCost(change); });
  return changes;
}

std::string CostText(const Image& image, const std::vector<Change>& changes) {
  if (changes.empty()) return fmt::format("{} costs the others nothing\n", document::WithoutControls(image.name()));
  return fmt::format("{} costs the others\n{}", document::WithoutControls(image.name()), ChangesText(changes));
}

}  // namespace

Exit RunCommon(const CommonOptions& options, Streams& streams) {
  RequireOutput(options.output, "common");
  std::vector<Image> images;
  for (const std::string& input : options.inputs) images.push_back(ReadImage(input));
  const document::ByteVector bytes = document::CommonOf(images).Generate(ToldNotes());
  std::string text;
  document::Json costs = document::Json::array();
  for (size_t i = 0; i < images.size() && (options.json || !options.quiet); ++i) {
    const std::vector<Change> changes = CostOf(images, i);
    text += CostText(images[i], changes);
    costs.push_back({{"display", images[i].name()}, {"changes", ChangesJson(changes)["changes"]}});
  }
  if (options.json) text = document::JsonText({{"version", kJsonVersion}, {"costs", costs}});
  if (!text.empty()) OfferTable(text, options.output, streams);
  WriteOutput(options.output, bytes, streams);
  return Exit::kDone;
}

}  // namespace reedid::tool
