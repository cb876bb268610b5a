#include "findings.h"

#include <fmt/format.h>

#include <chrono>

#include "document/printable.h"
#include "tool_error.h"

namespace reedid::tool {

const document::Rule& NamedRule(const std::string& id) {
  const document::Rule* rule = document::FindRule(id);
  if (rule == nullptr) {
    throw ToolError(Exit::kUsage, fmt::format("no rule '{}'; reedid explain lists all", document::Shortened(id)));
  }
  return *rule;
}

document::ByteVector BytesOf(const document::Image& image) {
  document::ByteVector bytes;
  for (const EdidBlock& block : image.blocks()) bytes.insert(bytes.end(), block.bytes, block.bytes + block.size);
  return bytes;
}

int ThisYear() {
  const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
  return static_cast<int>(std::chrono::year_month_day(today).year());
}

}  // namespace reedid::tool
