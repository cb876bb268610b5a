// The EDIDs on which properties are tested: those of the folder REEDID_CORPUS (*.bin) when it is set, else a few of the
// builder's.
#pragma once

#include <map>
#include <string>

#include "tests/support/bytes.h"

namespace reedid::test {

// By file name, or by what it is.
const std::map<std::string, ByteVector>& Corpus();

}  // namespace reedid::test
