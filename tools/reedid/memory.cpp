#include "memory.h"

#include <unistd.h>

#include <cstddef>
#include <exception>
#include <new>
#include <utility>

#include "streams.h"

namespace {

bool ranOut = false;

void* Noted(void* memory) {
  ranOut = ranOut || memory == nullptr;
  return memory;
}

}  // namespace

// The library's calls, by the linker's option --wrap; the standard library has its own handler.
extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);

void* __wrap_malloc(size_t size) {
  return Noted(__real_malloc(size));
}

void* __wrap_calloc(size_t count, size_t size) {
  return Noted(__real_calloc(count, size));
}
}

namespace reedid::tool {

// Before anything else that the program begins with: the parser's constants need memory, too.
[[gnu::constructor(101)]] static void WatchMemory() {
  std::set_new_handler([] {
    ranOut = true;
    throw std::bad_alloc();
  });
  std::set_terminate([] {
    Tell("reedid: out of memory, or an error that should not happen\n");
    _exit(static_cast<int>(Exit::kNoMemory));
  });
}

void RequireMemory() {
  if (ranOut) throw std::bad_alloc();
}

bool MemoryRanOut() {
  return std::exchange(ranOut, false);
}

}  // namespace reedid::tool
