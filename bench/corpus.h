// The EDIDs to measure with: the files of a folder, or built ones when there is none.
#pragma once

#include <vector>

#include "tests/support/bytes.h"

namespace reedid::bench {

// Of the folder that REEDID_CORPUS names; built when it is unset or holds no *.bin file.
std::vector<test::ByteVector> Corpus();

}  // namespace reedid::bench
