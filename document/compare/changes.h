// What differs between two images, in the words of their users: timings, VICs, every other field that has a name, and
// the bytes that no field tells of.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "document/account/tree.h"

namespace reedid::document {

enum class ChangeKind : uint8_t { kKept, kLowered, kRaised, kReplaced, kDropped, kAdded, kChanged, kMoved };

struct Change {
  ChangeKind kind;
  std::string where;   // "detailed timing", "VIC", "Block 1 / HDMI Forum / FRL rate", "Block 0: base block, byte 12"
  std::string before;  // empty: was not there
  std::string after;   // empty: is not there
};

/*
 * The timings first, kept ones too; then what else differs, in the order of the first image, what is new in the order
 * of the second. Each byte that differs is told: by the field that was made from it, by what moved to its place, or as
 * a byte. So nothing but kept timings means equal bytes.
 */
std::vector<Change> FindChanges(const Node& before, const Node& after);

// Nothing but kept timings.
bool AreSame(const std::vector<Change>& changes);

// One line for each change and a line of totals; kept timings stand among them only with `all`.
std::string ChangesText(const std::vector<Change>& changes, bool all = false);
Json ChangesJson(const std::vector<Change>& changes, bool all = false);

}  // namespace reedid::document
