// What the reader of a text result can see.
#pragma once

#include <string>

#include "document/account/tree_text.h"
#include "streams.h"

namespace reedid::tool {

/*
 * As wide as the terminal, else as COLUMNS says, else as usual. `color` is "always", "never" or "auto": on a terminal
 * that has colours, unless NO_COLOR is set.
 */
document::TextStyle StyleFor(const std::string& color, const Streams& streams);

}  // namespace reedid::tool
