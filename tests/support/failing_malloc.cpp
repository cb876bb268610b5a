#include "tests/support/failing_malloc.h"

#include <cstddef>

namespace {

unsigned untilFailure = 0;  // 0: none is to fail

bool FailsNow() {
  return untilFailure != 0 && --untilFailure == 0;
}

}  // namespace

// The linker's names for its option --wrap.
extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);

void* __wrap_malloc(size_t size) {
  return FailsNow() ? nullptr : __real_malloc(size);
}

void* __wrap_calloc(size_t count, size_t size) {
  return FailsNow() ? nullptr : __real_calloc(count, size);
}
}

namespace reedid::test {

FailingMalloc::FailingMalloc(unsigned nth) {
  untilFailure = nth;
}

FailingMalloc::~FailingMalloc() {
  untilFailure = 0;
}

bool FailingMalloc::Failed() const {
  return untilFailure == 0;
}

}  // namespace reedid::test
