// Images that hold each kind of block and many kinds of data block, for tests that run something over all of them.
#pragma once

#include <string>
#include <vector>

#include "tests/support/bytes.h"

namespace reedid::test {

struct SampleImage {
  std::string name;
  ByteVector bytes;
};

std::vector<SampleImage> SampleImages();

}  // namespace reedid::test
