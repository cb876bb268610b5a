// What differs between two images, in the words of their users: timings, VICs, and every other field that has a name.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "document/account/tree.h"

namespace reedid::document {

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

}  // namespace reedid::document
