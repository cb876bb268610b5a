// What is measured: each operation starts from the bytes of one image and leaves nothing behind.
#pragma once

#include <cstddef>
#include <span>

#include "tests/support/bytes.h"

namespace reedid::bench {

struct Operation {
  const char* name;
  void (*run)(const test::ByteVector& image);
  size_t minSize = 0;  // smaller images are none of its business and left out
};

std::span<const Operation> Operations();

// The least that anybody who takes an image must do: copy it and add up the bytes of each block, one after the other.
void Floor(const test::ByteVector& image);

}  // namespace reedid::bench
