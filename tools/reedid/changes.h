// What differs between two images, in the words of their users: timings, VICs, and every other field that has a name.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "image.h"
#include "tree.h"

namespace reedid::tool {

enum class ChangeKind : uint8_t { kKept, kLowered, kRaised, kReplaced, kDropped, kAdded, kChanged };

struct Change {
  ChangeKind kind;
  std::string where;   // "detailed timing", "VIC", "Block 1 / HDMI Forum / FRL rate"
  std::string before;  // empty: was not there
  std::string after;   // empty: is not there
};

// Timings first, then the other fields, in the order of the first image.
std::vector<Change> FindChanges(const Node& before, const Node& after);

// Nothing but kept timings.
bool AreSame(const std::vector<Change>& changes);

// One line for each change and a line of totals.
std::string ChangesText(const std::vector<Change>& changes);
Json ChangesJson(const std::vector<Change>& changes);

// Every timing of the tree that needs a higher pixel clock (kHz) than this; where there is YCbCr 4:2:0, it needs half.
std::vector<std::string> TimingsAbove(const Node& account, uint32_t limit, bool has420);

}  // namespace reedid::tool
