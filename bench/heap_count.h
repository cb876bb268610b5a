// What a piece of work takes from the heap and prints. The program is linked with --wrap for malloc, calloc and
// vprintf and vfprintf.
#pragma once

#include <cstddef>

namespace reedid::bench {

struct Use {
  size_t heapRequests = 0;
  size_t heapBytes = 0;
  size_t logLines = 0;
};

// Counts of the program so far.
Use UseSoFar();

// While it lives, diagnostics are counted but neither formatted nor written.
class MuteLog {
 public:
  MuteLog();
  ~MuteLog();
  MuteLog(const MuteLog&) = delete;
  MuteLog& operator=(const MuteLog&) = delete;
};

}  // namespace reedid::bench
