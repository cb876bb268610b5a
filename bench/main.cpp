// Times every operation on every image, next to the floor, and prints one table in Markdown.
//
// Other work on the machine only ever adds time. So each image's operation and its floor are timed in short batches,
// one right after the other, and the shortest of all rounds counts. The library's diagnostics go to /dev/null.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iterator>
#include <numeric>
#include <string>
#include <vector>

#include "bench/corpus.h"
#include "bench/heap_count.h"
#include "bench/operations.h"
#include "reedid/reedid.h"

namespace reedid::bench {
namespace {

using test::ByteVector;

constexpr int kBatch = 8;

template <class Work>
double NanosecondsOf(Work work) {
  work();  // its code and data are in the caches, whichever ran before
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kBatch; ++i) work();
  const std::chrono::duration<double, std::nano> passed = std::chrono::steady_clock::now() - start;
  return passed.count() / kBatch;
}

// The shortest times of one image, in ns.
struct Times {
  double work = 1e300;
  double muted = 1e300;
  double floor = 1e300;
};

double Measure(const Operation& operation, const ByteVector& image, Times& shortest) {
  const auto keep = [](double& best, double now) { best = std::min(best, now); };
  keep(shortest.floor, NanosecondsOf([&] { Floor(image); }));
  const double now = NanosecondsOf([&] { operation.run(image); });
  keep(shortest.work, now);
  const MuteLog mute;
  keep(shortest.muted, NanosecondsOf([&] { operation.run(image); }));
  return now;
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

template <class Value>
double MedianOf(const std::vector<Times>& times, Value value) {
  std::vector<double> values;
  for (const Times& each : times) values.push_back(value(each));
  return Median(values);
}

void Report(benchmark::State& state, const std::vector<Times>& times, const Use& use) {
  const auto count = static_cast<double>(times.size());
  const double all = std::accumulate(times.begin(), times.end(), 0.0, [](double sum, auto& t) { return sum + t.work; });
  const double muted =
      std::accumulate(times.begin(), times.end(), 0.0, [](double sum, auto& t) { return sum + t.muted; });
  state.counters["images"] = count;
  state.counters["ns"] = MedianOf(times, [](auto& t) { return t.work; });
  state.counters["mean ns"] = all / count;
  state.counters["floor ns"] = MedianOf(times, [](auto& t) { return t.floor; });
  state.counters["ratio"] = MedianOf(times, [](auto& t) { return t.work / t.floor; });
  state.counters["muted ratio"] = MedianOf(times, [](auto& t) { return t.muted / t.floor; });
  state.counters["printing %"] = 100 * (all - muted) / all;
  state.counters["lines"] = static_cast<double>(use.logLines) / count;
  state.counters["requests"] = static_cast<double>(use.heapRequests) / count;
  state.counters["bytes"] = static_cast<double>(use.heapBytes) / count;
}

void Run(benchmark::State& state, const Operation& operation, const std::vector<ByteVector>& all) {
  std::vector<ByteVector> images;
  std::copy_if(all.begin(), all.end(), std::back_inserter(images),
               [&](const ByteVector& image) { return image.size() >= operation.minSize; });
  if (images.empty()) return state.SkipWithError("no EDID of this size");
  const Use before = UseSoFar();
  for (const ByteVector& image : images) operation.run(image);
  const Use after = UseSoFar();
  std::vector<Times> times(images.size());
  for (auto _ : state) {
    double passed = 0;
    for (size_t i = 0; i < images.size(); ++i) passed += Measure(operation, images[i], times[i]);
    state.SetIterationTime(passed * 1e-9);
  }
  Report(
      state, times,
      {after.heapRequests - before.heapRequests, after.heapBytes - before.heapBytes, after.logLines - before.logLines});
}

// Whether the wrapped calls are the ones that the library makes.
bool CountsWork() {
  const Use before = UseSoFar();
  EDID_Open(nullptr, 0);
  const Use after = UseSoFar();
  return after.logLines == before.logLines + 1;
}

class TableReporter : public benchmark::BenchmarkReporter {
 public:
  explicit TableReporter(std::FILE* out) : out_(out) {}

  bool ReportContext(const Context&) override {
    std::fprintf(
        out_,
        "| Per EDID | EDIDs | median ns | mean ns | times the floor | without printing | printing | heap requests |"
        " heap bytes | log lines |\n|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|\n");
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) {
        std::fprintf(out_, "| %s | %s |\n", run.run_name.function_name.c_str(), run.error_message.c_str());
        continue;
      }
      const auto value = [&](const char* name) { return run.counters.at(name).value; };
      std::fprintf(out_, "| %s | %.0f | %.0f | %.0f | %.1f | %.1f | %.0f %% | %.1f | %.0f | %.2f |\n",
                   run.run_name.function_name.c_str(), value("images"), value("ns"), value("mean ns"), value("ratio"),
                   value("muted ratio"), value("printing %"), value("requests"), value("bytes"), value("lines"));
      if (floor_ == 0) floor_ = value("floor ns");  // of the first operation, which takes all images
    }
    std::fflush(out_);
  }

  void Finalize() override { std::fprintf(out_, "\nFloor at the median EDID: %.0f ns.\n", floor_); }

 private:
  std::FILE* out_;
  double floor_ = 0;
};

}  // namespace
}  // namespace reedid::bench

int main(int argc, char** argv) {
  using namespace reedid::bench;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  const std::vector<reedid::test::ByteVector> images = Corpus();
  std::FILE* table = fdopen(dup(STDOUT_FILENO), "w");
  if (table == nullptr || std::freopen("/dev/null", "w", stdout) == nullptr) return 1;
  if (!CountsWork()) {
    std::fputs("the library's diagnostics are not counted\n", stderr);
    return 1;
  }
  for (const Operation& operation : Operations()) {
    benchmark::RegisterBenchmark(operation.name, [&](benchmark::State& state) { Run(state, operation, images); })
        ->UseManualTime()
        ->Iterations(50);
  }
  std::fprintf(table, "%zu EDIDs.\n\n", images.size());
  TableReporter reporter(table);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::fclose(table);
  return 0;
}
