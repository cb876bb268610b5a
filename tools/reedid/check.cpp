// check: are images valid, and what did the library have to say about them?

#include <fmt/format.h>

#include <optional>
#include <sstream>

#include "commands.h"
#include "document/account/image_account.h"
#include "document/read/override_count.h"
#include "input.h"
#include "inputs.h"
#include "terminal.h"

namespace reedid::tool {
namespace {

using document::Field;
using document::Image;
using document::Node;

constexpr char kNote[] = "note";

// "[WARN:CEA_Open:71]: checksum error(12,34)" -> "warning: checksum error(12,34) (CEA_Open)"
std::string ReadableDiagnostic(const std::string& line) {
  const size_t name = line.find(':');
  const size_t number = line.find(':', name + 1);
  const size_t end = line.find("]: ");
  if (!line.starts_with('[') || number == line.npos || end == line.npos || number > end) return line;
  const std::string level = line.substr(1, name - 1);
  const char* word = level == "ERR" ? "error" : level == "WARN" ? "warning" : kNote;
  return fmt::format("{}: {} ({})", word, line.substr(end + 3), line.substr(name + 1, number - name - 1));
}

void AddDiagnostics(const std::string& where, const std::string& log, Node& node) {
  std::istringstream lines(log);
  for (std::string line; std::getline(lines, line);) {
    Field& field = node.Add(where, ReadableDiagnostic(line));
    field.isFault = !field.value.starts_with(kNote);
  }
}

// The count byte may stay at 1 by intent, when the HDMI Forum's override block gives the real number.
bool CountIsRight(const Image& image) {
  const EdidBlock& first = image.blocks()[0];
  const unsigned extensions = static_cast<unsigned>(image.blocks().size() - 1);
  const unsigned count = first.bytes[image.IsEdid() ? 126 : 3];
  return count == extensions || (image.IsEdid() && count == 1 && document::OverrideCount(image.blocks()) == extensions);
}

void CheckBlock(const EdidBlock& block, unsigned index, Node& node) {
  const std::string where = fmt::format("block {}", index);
  if (block.type == EDID_BLOCK_UNKNOWN || block.type == EDID_BLOCK_MAP) {
    node.Add(where, fmt::format("{} (tag {:02x}), which a valid image here does not have",
                                document::BlockKindName(block), block.bytes[0]))
        .isFault = true;
  }
  // Describing a block opens it and decodes all that it holds.
  AddDiagnostics(where, CaptureDiagnostics([&] { document::DescribeBlock(block, index); }), node);
}

// What there is to say of one input, and why it is none.
struct Verdict {
  Node node;
  Exit exit = Exit::kDone;
  std::optional<ToolError> failure;
};

void CheckImage(const Image& image, Verdict& verdict) {
  const auto blocks = image.blocks();
  bool valid = false;
  CaptureDiagnostics([&] { valid = isValidEdid(image.handle()) != 0 && CountIsRight(image); });
  if (!image.firstBlockFaults().empty()) verdict.node.Add("block 0", image.firstBlockFaults()).isFault = true;
  for (unsigned i = 0; i < blocks.size(); ++i) CheckBlock(blocks[i], i, verdict.node);
  verdict.node.title = fmt::format("{}: {}", image.name(), valid ? "valid" : "not valid");
  verdict.exit = valid ? Exit::kDone : Exit::kNo;
}

Verdict Check(const std::string& input) {
  Verdict verdict;
  std::optional<Image> image;
  const std::string opening = CaptureDiagnostics([&] {
    try {
      image = ReadImage(input);
    } catch (const ToolError& error) {
      verdict.failure = error;
    }
  });
  AddDiagnostics("image", opening, verdict.node);
  if (image) {
    CheckImage(*image, verdict);
  } else {
    verdict.node.title = fmt::format("{}: no EDID", ShownName(input));
    verdict.exit = verdict.failure->code();
  }
  return verdict;
}

Exit CheckSingle(const CheckOptions& options, Streams& streams) {
  const document::TextStyle style = StyleFor(options.color, streams);
  const Verdict verdict = Check(options.inputs[0]);
  if (!options.quiet || verdict.exit != Exit::kDone) streams.Result(ToText(verdict.node, style));
  if (verdict.failure) throw ToolError(*verdict.failure);
  return verdict.exit;
}

// The reason among the diagnostics, without the name that stands in front of it already.
void AddReason(const std::string& input, Verdict& verdict) {
  std::string reason = verdict.failure->what();
  if (const std::string name = ShownName(input) + ": "; reason.starts_with(name)) reason.erase(0, name.size());
  verdict.node.Add("image", "error: " + reason).isFault = true;
}

}  // namespace

Exit RunCheck(const CheckOptions& options, Streams& streams) {
  if (IsSingle(options.inputs)) return CheckSingle(options, streams);
  size_t valid = 0, notValid = 0, none = 0;
  const document::TextStyle style = StyleFor(options.color, streams);
  Progress progress;
  const Exit worst = ForEachInput(options.inputs, progress, [&](const std::string& input) {
    Verdict verdict = Check(input);
    ++(verdict.failure ? none : verdict.exit == Exit::kDone ? valid : notValid);
    if (verdict.failure) AddReason(input, verdict);
    if (options.quiet && verdict.exit == Exit::kDone) return verdict.exit;
    progress.Erase();
    streams.Result(ToText(verdict.node, style));
    return verdict.exit;
  });
  progress.Erase();
  if (!options.quiet) streams.Result(fmt::format("{} valid, {} not valid, {} no EDID\n", valid, notValid, none));
  return worst;
}

}  // namespace reedid::tool
