// The whole table of operations over images of every kind: with each allocation failing in turn, and from several
// threads at once.
#include "tests/support/operations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <thread>

#include "tests/support/edid_builder.h"
#include "tests/support/failing_malloc.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"
#include "tests/support/sample_images.h"

namespace reedid::test {
namespace {

constexpr unsigned kMoreThanAnyNeeds = 5000;

// Whether every block has its bytes and the image can be written whole.
bool IsUsable(EdidHandle& handle) {
  size_t total = 0;
  for (const EdidBlock& block : std::span(handle.blocks, handle.blocks == nullptr ? 0 : handle.blockCount)) {
    if (block.bytes == nullptr) return false;
    total += block.size;
  }
  return total == 0 || Generate(&handle).size() == total;
}

// The image after an operation.
ByteVector Outcome(const Operation& operation, const ByteVector& image) {
  const Owned<EdidHandle> handle = OpenImage(image);
  operation.run(*handle);
  return Generate(handle.get());
}

// Whether the operation asked for its `nth` allocation.
bool FailsAt(const Operation& operation, const ByteVector& image, const ByteVector& done, unsigned nth) {
  bool failed = false;
  const long before = LiveAllocations();
  {
    Owned<EdidHandle> handle;
    LogOf([&] { handle = OpenImage(image); });
    const std::string log = LogOf([&] {
      const FailingMalloc failing(nth);
      operation.run(*handle);
      failed = failing.Failed();
    });
    EXPECT_EQ(log.find("malloc fail") != std::string::npos, failed) << log;
    EXPECT_TRUE(IsUsable(*handle));
    if (operation.whole && failed) {
      const ByteVector now = Generate(handle.get());
      EXPECT_TRUE(now == image || now == done) << "half done";
    }
    LogOf([&] { operation.run(*handle); });
    EXPECT_TRUE(IsUsable(*handle));
  }
  EXPECT_EQ(LiveAllocations(), before) << "leaked";
  return failed;
}

TEST(Operations, OutliveAnyFailedAllocation) {
  for (const SampleImage& sample : SampleImages()) {
    for (const Operation& operation : Operations()) {
      SCOPED_TRACE(sample.name + ": " + operation.name);
      ByteVector done;
      Quietly([&] { done = Outcome(operation, sample.bytes); });
      unsigned nth = 1;
      while (nth < kMoreThanAnyNeeds && FailsAt(operation, sample.bytes, done, nth) && !testing::Test::HasFailure())
        ++nth;
      EXPECT_LT(nth, kMoreThanAnyNeeds);
      if (testing::Test::HasFailure()) FAIL() << "allocation " << nth;
    }
  }
}

// What was copied before memory ran out is there.
TEST(Operations, OpenWhatMemoryAllows) {
  const ByteVector edid = Edid().Extension(Cta().Vdb({16, 31})).Extension(Cta().Vdb({16, 31})).Build();
  const ByteVector sections = Concat({Section().ExtensionCount(2).Build(), Section().Build(), Section().Build()});
  for (const ByteVector& image : {edid, sections}) {
    for (unsigned nth = 1; nth <= 6; ++nth) {  // handle, array, three blocks
      SCOPED_TRACE(nth);
      Owned<EdidHandle> handle;
      EXPECT_EQ(LogOf([&] {
                  const FailingMalloc failing(nth);
                  handle = OpenImage(image);
                }),
                nth > 5 ? "" : Err(image == edid ? "ParseEdid" : "ParseDisplayID", "malloc fail"));
      ASSERT_EQ(handle != nullptr, nth > 2);
      EXPECT_TRUE(handle == nullptr || handle->blockCount == std::min(nth - 3, 3u)) << "the blocks copied so far";
    }
  }
}

std::vector<ByteVector> Outcomes(const ByteVector& image) {
  std::vector<ByteVector> outcomes;
  for (const Operation& operation : Operations()) outcomes.push_back(Outcome(operation, image));
  return outcomes;
}

TEST(Operations, RunInThreadsOnHandlesOfTheirOwn) {
  constexpr unsigned kThreads = 8;
  for (const SampleImage& sample : SampleImages()) {
    SCOPED_TRACE(sample.name);
    std::vector<ByteVector> alone;
    std::vector<std::vector<ByteVector>> together(kThreads);
    LogOf([&] {
      alone = Outcomes(sample.bytes);
      std::vector<std::thread> threads;
      for (auto& outcomes : together) threads.emplace_back([&] { outcomes = Outcomes(sample.bytes); });
      for (std::thread& thread : threads) thread.join();
    });
    for (const auto& outcomes : together) EXPECT_EQ(outcomes, alone);
  }
}

}  // namespace
}  // namespace reedid::test
