// Makes the n-th allocation of the library fail, and counts what it has not freed; each thread on its own. The test
// program is linked so that malloc, calloc and free pass through here.
#pragma once

namespace reedid::test {

class FailingMalloc {
 public:
  // Counts from 1: the `nth` allocation from now on fails, those before and behind it succeed.
  explicit FailingMalloc(unsigned nth);
  ~FailingMalloc();
  FailingMalloc(const FailingMalloc&) = delete;
  FailingMalloc& operator=(const FailingMalloc&) = delete;

  // Whether that allocation has been asked for.
  bool Failed() const;
};

// Allocations of this thread less its frees, as a sum that only differences of tell something.
long LiveAllocations();

}  // namespace reedid::test
