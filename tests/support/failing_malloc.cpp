#include "tests/support/failing_malloc.h"

#include <cstddef>

namespace {

thread_local unsigned untilFailure = 0;  // 0: none is to fail
thread_local long live = 0;

bool FailsNow() {
  return untilFailure != 0 && --untilFailure == 0;
}

void* Counted(void* memory) {
  if (memory != nullptr) ++live;
  return memory;
}

}  // namespace

// The linker's names for its option --wrap.
extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void __real_free(void* memory);

void* __wrap_malloc(size_t size) {
  return FailsNow() ? nullptr : Counted(__real_malloc(size));
}

void* __wrap_calloc(size_t count, size_t size) {
  return FailsNow() ? nullptr : Counted(__real_calloc(count, size));
}

void __wrap_free(void* memory) {
  if (memory != nullptr) --live;
  __real_free(memory);
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

long LiveAllocations() {
  return live;
}

}  // namespace reedid::test
