#include "base/log.h"

#include <cstdarg>
#include <cstdio>

namespace reedid {

Failure Print(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vprintf(format, arguments);
  va_end(arguments);
  return {};
}

}  // namespace reedid
