// For every rule an image that breaks it and one that comes close.
#pragma once

#include <vector>

#include "tests/support/bytes.h"

namespace reedid::test {

struct CheckCase {
  const char* rule;
  ByteVector broken;
  ByteVector near;
};

std::vector<CheckCase> BaseBlockCases();
std::vector<CheckCase> ExtensionCases();
std::vector<CheckCase> CheckCases();  // all

}  // namespace reedid::test
