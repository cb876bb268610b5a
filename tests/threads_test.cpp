// All operations from several threads at once, a program of its own: the thread sanitizer needs no more.
#include <gtest/gtest.h>

#include <thread>

#include "tests/support/log_capture.h"
#include "tests/support/operations.h"
#include "tests/support/sample_images.h"

namespace reedid::test {
namespace {

TEST(Threads, WorkOnHandlesOfTheirOwn) {
  for (const SampleImage& sample : SampleImages()) {
    const auto runAll = [&] {
      std::vector<Outcome> outcomes;
      for (const Operation& operation : Operations()) outcomes.push_back(OutcomeOf(operation, sample.bytes));
      return outcomes;
    };
    std::vector<Outcome> alone;
    std::vector<std::vector<Outcome>> together(8);
    LogOf([&] {
      alone = runAll();
      std::vector<std::thread> threads;
      for (auto& outcomes : together) threads.emplace_back([&] { outcomes = runAll(); });
      for (std::thread& thread : threads) thread.join();
    });
    for (const auto& outcomes : together) EXPECT_TRUE(outcomes == alone) << sample.name;
  }
}

}  // namespace
}  // namespace reedid::test
