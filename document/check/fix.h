// Mends what the check found: writes the repairs that findings carry, and the checksums that follow.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "document/check/check.h"

namespace reedid::document {

// Which repairs to make.
struct FixSelection {
  std::vector<std::string> rules = {};  // ids; of these also the repairs that must be asked for. None: all safe ones
};

struct Fixed {
  std::vector<uint8_t> image;
  std::vector<Finding> done;  // what was mended, in that order
  std::vector<Finding> open;  // what is left
};

// Mends one finding after the other. A repair is kept only if its finding is gone then and no other came up, so the
// findings get fewer with every step and nothing is left to a second run.
Fixed Fix(std::span<const uint8_t> image, int thisYear, const FixSelection& selection = {});

}  // namespace reedid::document
