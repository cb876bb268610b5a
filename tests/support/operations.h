// Every whole-image question and edit, and every edit of a block's model, by name and with fixed arguments: what is run
// with failing allocations, from several threads and by the fuzzers.
#pragma once

#include <span>

#include "reedid/reedid.h"
#include "tests/support/bytes.h"

namespace reedid::test {

// What an operation gives that has no result: for lack of memory all give -1.
inline constexpr int32_t kNoResult = -1;

struct Operation {
  const char* name;
  int32_t (*run)(EdidHandle& handle);
  bool byBlock = false;  // each block is edited whole or not at all, rather than the image
};

std::span<const Operation> Operations();

// What an operation returns and makes of an image.
struct Outcome {
  int32_t result;
  ByteVector image;
  bool operator==(const Outcome&) const = default;
};
Outcome OutcomeOf(const Operation& operation, const ByteVector& image);

}  // namespace reedid::test
