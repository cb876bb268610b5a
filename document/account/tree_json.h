// A tree as JSON for programs (docs/json.md).
#pragma once

#include <string>

#include "document/account/tree.h"

namespace reedid::document {

// "title", "text" (the fields), "findings" (the remarks), "record", "timings", "parts" (the children); with `hex`, also "titleBytes" and "bytes"
// (those of the fields).
Json ToJson(const Node& root, bool hex = false);

// A timing and what it is: "kind", "id", "ycc420Only", "refreshHz", "timing".
Json ItemJson(const TimingItem& item);

// As a file or a terminal gets it: two blanks of indentation, a newline at the end. All of it is ASCII, other characters
// are written as \u009b, so a terminal obeys none; bytes that are no UTF-8 are replaced.
std::string JsonText(const Json& json);

}  // namespace reedid::document
