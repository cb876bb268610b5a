// Makes the n-th allocation of the library fail. The test program is linked so that malloc and calloc pass through
// here.
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

}  // namespace reedid::test
