// Every whole-image question and edit, and every edit of a block's model, by name and with fixed arguments: what is run
// with failing allocations, from several threads and by the fuzzers.
#pragma once

#include <span>

#include "reedid/reedid.h"

namespace reedid::test {

struct Operation {
  const char* name;
  void (*run)(EdidHandle& handle);
  bool whole = false;  // done or not done, never half done
};

std::span<const Operation> Operations();

}  // namespace reedid::test
