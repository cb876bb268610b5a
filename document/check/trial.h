// A repair tried on a copy of the image.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "document/check/check.h"

namespace reedid::document::check {

// What the rules say, repairs that were not tried among it.
std::vector<Finding> RunRules(std::span<const uint8_t> image, int thisYear);

// The bytes with changes written, and with right checksums in every block and section that they touch. Changes beyond
// the image are left out.
std::vector<uint8_t> WithChanges(std::span<const uint8_t> image, std::span<const Patch> changes);

struct Trial {
  std::vector<uint8_t> image;
  std::vector<Finding> left;
  const Rule* broken = nullptr;  // one that comes up with the repair, or its own if it does not help

  bool isBetter() const { return broken == nullptr; }
};

// Makes the repair of one of the `findings` of an image. It is better when that finding is gone and no other came up;
// findings are told apart by rule and severity and counted, because a repair may move what stands behind it.
Trial Try(std::span<const uint8_t> image, const std::vector<Finding>& findings, const Finding& mended, int thisYear);

}  // namespace reedid::document::check
