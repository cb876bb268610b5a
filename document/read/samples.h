// EDIDs of our own making, to try things with when no display is at hand.
#pragma once

#include <span>
#include <string>

#include "document/bytes.h"

namespace reedid::document {

struct Sample {
  const char* name;
  const char* text;  // what it is
  ByteVector (*build)();
};

std::span<const Sample> Samples();

// The bytes of a sample. Throws kInput with the names that there are.
ByteVector SampleBytes(const std::string& name);

}  // namespace reedid::document
