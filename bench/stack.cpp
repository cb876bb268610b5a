// How deep the stack of each operation gets: runs it on a painted stack and looks how much of the paint is gone.
// Counted is all below the operation, what the C library takes for the heap and for printing with it.

#include <ucontext.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "bench/corpus.h"
#include "bench/heap_count.h"
#include "bench/operations.h"

namespace reedid::bench {
namespace {

using test::ByteVector;

constexpr uint8_t kPaint = 0xA5;

// Work for the painted stack; a context takes no pointers as arguments.
struct Task {
  void (*run)(const ByteVector&);
  const ByteVector* image;
};
Task task;

void RunTask() {
  task.run(*task.image);
}

class PaintedStack {
 public:
  // The bytes that were written, from the deepest one up.
  size_t DepthOf(void (*run)(const ByteVector&), const ByteVector& image) {
    std::fill(bytes_.begin(), bytes_.end(), kPaint);
    ucontext_t back, work;
    getcontext(&work);
    work.uc_stack.ss_sp = bytes_.data();
    work.uc_stack.ss_size = bytes_.size();
    work.uc_link = &back;
    task = {run, &image};
    makecontext(&work, RunTask, 0);
    swapcontext(&back, &work);
    const auto deepest = std::find_if(bytes_.begin(), bytes_.end(), [](uint8_t byte) { return byte != kPaint; });
    return static_cast<size_t>(bytes_.end() - deepest);
  }

 private:
  std::vector<uint8_t> bytes_ = std::vector<uint8_t>(64 * 1024);
};

void Nothing(const ByteVector&) {}

size_t Deepest(PaintedStack& stack, const Operation& operation, const std::vector<ByteVector>& images) {
  size_t deepest = 0;
  for (const ByteVector& image : images) {
    if (image.size() >= operation.minSize) deepest = std::max(deepest, stack.DepthOf(operation.run, image));
  }
  return deepest - std::min(deepest, stack.DepthOf(Nothing, {}));
}

}  // namespace
}  // namespace reedid::bench

int main() {
  using namespace reedid::bench;
  const std::vector<reedid::test::ByteVector> images = Corpus();
  PaintedStack stack;
  std::fprintf(stderr, "| Over %zu EDIDs | stack, bytes | without printing |\n|---|--:|--:|\n", images.size());
  if (std::freopen("/dev/null", "w", stdout) == nullptr) return 1;
  for (const Operation& operation : Operations()) {
    const size_t printing = Deepest(stack, operation, images);
    const MuteLog mute;
    std::fprintf(stderr, "| %s | %zu | %zu |\n", operation.name, printing, Deepest(stack, operation, images));
  }
  return 0;
}
