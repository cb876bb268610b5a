// check: is the image valid, and what did the library have to say about it?

#include <fmt/format.h>

#include <optional>
#include <sstream>

#include "commands.h"
#include "describe.h"

namespace reedid::tool {
namespace {

// "[WARN:CEA_Open:71]: checksum error(12,34)" -> "warning: checksum error(12,34) (CEA_Open)"
std::string ReadableDiagnostic(const std::string& line) {
  const size_t name = line.find(':');
  const size_t number = line.find(':', name + 1);
  const size_t end = line.find("]: ");
  if (!line.starts_with('[') || number == line.npos || end == line.npos || number > end) return line;
  const std::string level = line.substr(1, name - 1);
  const char* word = level == "ERR" ? "error" : level == "WARN" ? "warning" : "note";
  return fmt::format("{}: {} ({})", word, line.substr(end + 3), line.substr(name + 1, number - name - 1));
}

void AddDiagnostics(const std::string& where, const std::string& log, Node& node) {
  std::istringstream lines(log);
  for (std::string line; std::getline(lines, line);) node.Add(where, ReadableDiagnostic(line));
}

// The count byte may stay at 1 by intent, when the HDMI Forum's override block gives the real number.
bool CountIsRight(const Image& image) {
  const EdidBlock& first = image.blocks()[0];
  const unsigned extensions = static_cast<unsigned>(image.blocks().size() - 1);
  const unsigned count = first.bytes[image.IsEdid() ? 126 : 3];
  return count == extensions || (image.IsEdid() && count == 1 && OverrideCount(image) == extensions);
}

void CheckBlock(const EdidBlock& block, unsigned index, Node& node) {
  const std::string where = fmt::format("block {}", index);
  if (block.type == EDID_BLOCK_UNKNOWN || block.type == EDID_BLOCK_MAP) {
    node.Add(where, fmt::format("{} (tag {:02x}), which a valid image here does not have", BlockKindName(block),
                                block.bytes[0]));
  }
  // Describing a block opens it and decodes all that it holds.
  AddDiagnostics(where, CaptureDiagnostics([&] { DescribeBlock(block, index); }), node);
}

}  // namespace

Exit RunCheck(const CheckOptions& options, Streams& streams) {
  std::optional<Image> image;
  std::string opening;
  std::optional<ToolError> failure;
  opening = CaptureDiagnostics([&] {
    try {
      image = Image::Read(options.input);
    } catch (const ToolError& error) {
      failure = error;
    }
  });
  Node node;
  AddDiagnostics("image", opening, node);
  if (failure) {
    node.title = fmt::format("{}: no EDID", ShownName(options.input));
    streams.Result(ToText(node));
    throw *failure;
  }

  const auto blocks = image->blocks();
  bool valid = false;
  CaptureDiagnostics([&] { valid = isValidEdid(image->handle()) != 0 && CountIsRight(*image); });
  if (!image->firstBlockFaults().empty()) node.Add("block 0", image->firstBlockFaults());
  for (unsigned i = 0; i < blocks.size(); ++i) CheckBlock(blocks[i], i, node);
  node.title = fmt::format("{}: {}", image->name(), valid ? "valid" : "not valid");
  streams.Result(ToText(node));
  return valid ? Exit::kDone : Exit::kNo;
}

}  // namespace reedid::tool
