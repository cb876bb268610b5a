// The timings of two images, side by side.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "document/compare/changes.h"
#include "document/compare/parts.h"

namespace reedid::document {

// A timing and where it stands.
struct PlacedTiming {
  TimingItem item;
  size_t part;
  const Field* field;  // the one that tells it; null: the part itself does

  // What the timing itself is made from.
  SourceBytes Bytes(const std::vector<Part>& parts) const;
};

// One of them may be missing.
struct TimingPair {
  std::optional<PlacedTiming> before, after;
};

// The closest pairs that there are: timings of the first image in its order, then what only the second has.
std::vector<TimingPair> PairTimings(const std::vector<Part>& before, const std::vector<Part>& after);

// What became of a timing, by what a link must carry of it.
Change TimingChange(const TimingPair& pair);

}  // namespace reedid::document
