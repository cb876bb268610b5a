// What the fuzzers share. Each fuzzer is one LLVMFuzzerTestOneInput, driven by libFuzzer or by replay_main.cpp.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/support/bytes.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace reedid::fuzz {

using test::ByteVector;
using test::ExactBytes;

// Stops the run, with the input kept by the fuzzer, when a property does not hold.
inline void Check(bool holds, const char* property, const char* where) {
  if (holds) return;
  std::fprintf(stderr, "FAILED: %s: %s\n", where, property);
  std::abort();
}

// The input as a sequence of choices; it yields 0 and nothing once it is used up.
class Input {
 public:
  Input(const uint8_t* data, size_t size) : at_(data), left_(size) {}

  bool Empty() const { return left_ == 0; }

  uint8_t Byte() {
    if (Empty()) return 0;
    --left_;
    return *at_++;
  }

  uint16_t Word() {
    const uint8_t low = Byte();
    return static_cast<uint16_t>(low | Byte() << 8);
  }

  ByteVector Take(size_t count) {
    count = std::min(count, left_);
    ByteVector bytes(at_, at_ + count);
    at_ += count;
    left_ -= count;
    return bytes;
  }

 private:
  const uint8_t* at_;
  size_t left_;
};

}  // namespace reedid::fuzz
