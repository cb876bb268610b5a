#include "terminal.h"

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace reedid::tool {
namespace {

std::string_view Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// 0: not stated.
size_t ColumnsOfEnvironment() {
  const std::string_view text = Environment("COLUMNS");
  size_t columns = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), columns);
  return error == std::errc() && end == text.data() + text.size() ? columns : 0;
}

bool ShowsColor(const Streams& streams) {
  const std::string_view terminal = Environment("TERM");
  return streams.ResultIsTerminal() && Environment("NO_COLOR").empty() && !terminal.empty() && terminal != "dumb";
}

}  // namespace

document::TextStyle StyleFor(const std::string& color, const Streams& streams) {
  document::TextStyle style;
  style.color = color == "always" || (color == "auto" && ShowsColor(streams));
  if (const size_t columns = streams.TerminalColumns(); columns != 0) {
    style.width = columns;
  } else if (const size_t stated = ColumnsOfEnvironment(); stated != 0) {
    style.width = stated;
  }
  return style;
}

}  // namespace reedid::tool
