#include "bench/heap_count.h"

#include <cstdarg>
#include <cstdio>

namespace {

reedid::bench::Use use;
bool muted = false;

}  // namespace

// The linker's names for its option --wrap.
extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
int __real_vprintf(const char* format, va_list arguments);
int __real_vfprintf(std::FILE* file, const char* format, va_list arguments);

void* __wrap_malloc(size_t size) {
  ++use.heapRequests;
  use.heapBytes += size;
  return __real_malloc(size);
}

void* __wrap_calloc(size_t count, size_t size) {
  ++use.heapRequests;
  use.heapBytes += count * size;
  return __real_calloc(count, size);
}

[[gnu::format(printf, 1, 0)]] int __wrap_vprintf(const char* format, va_list arguments) {
  ++use.logLines;
  return muted ? 0 : __real_vprintf(format, arguments);
}

// The C library's headers turn vprintf into this when they optimise.
[[gnu::format(printf, 2, 0)]] int __wrap_vfprintf(std::FILE* file, const char* format, va_list arguments) {
  ++use.logLines;
  return muted ? 0 : __real_vfprintf(file, format, arguments);
}
}

namespace reedid::bench {

Use UseSoFar() {
  return use;
}

MuteLog::MuteLog() {
  muted = true;
}

MuteLog::~MuteLog() {
  muted = false;
}

}  // namespace reedid::bench
