#include "bench/operations.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>

#include "bench/decode.h"
#include "inventory/walk.h"
#include "tests/support/handle.h"

namespace reedid::bench {
namespace {

using test::ByteVector;

constexpr size_t kRoom = 256 * 256;
uint8_t output[kRoom];

void OpenAndClose(const ByteVector& image) {
  benchmark::DoNotOptimize(Image(image).get());
}

template <class Visit>
void WithModels(const ByteVector& image, Visit visit) {
  if (const auto handle = Image(image)) VisitBlocks(*handle, visit);
}

void OpenModels(const ByteVector& image) {
  WithModels(image, [](const auto& model) { benchmark::DoNotOptimize(&model); });
}

void OpenAndDecode(const ByteVector& image) {
  WithModels(image, [](const auto& model) { Decode(model); });
}

void AllFrameRates(const ByteVector& image) {
  uint16_t rates[255];
  if (const auto handle = Image(image)) benchmark::DoNotOptimize(EDID_GetAllFrameRate(handle.get(), rates, 255));
  benchmark::ClobberMemory();
}

void LimitToHdmi20(const ByteVector& image) {
  const auto handle = Image(image);
  if (!handle) return;
  uint16_t rates[255];
  const uint32_t count = EDID_GetAllFrameRate(handle.get(), rates, 255);
  EDID_LimitToHDMI20(handle.get(), rates, count);
  benchmark::DoNotOptimize(EDID_GenerateEdid(handle.get(), output, kRoom));
}

void HighRefresh(const ByteVector& image) {
  const auto handle = Image(image);
  if (!handle) return;
  benchmark::DoNotOptimize(EDID_HighRefreshRate(handle.get()));
  benchmark::DoNotOptimize(EDID_GenerateEdid(handle.get(), output, kRoom));
}

// With the first image that is measured: what a splitter does when a display is plugged in.
void LimitToCommon(const ByteVector& image) {
  static const Image other(image);
  const Image handle(image);
  if (!handle || !other) return;
  benchmark::DoNotOptimize(EDID_LimitToCommon(handle.get(), other.get()));
  benchmark::DoNotOptimize(EDID_GenerateEdid(handle.get(), output, kRoom));
}

constexpr Operation kOperations[] = {
    {"open, close", OpenAndClose},
    {"open, every block's model, close", OpenModels},
    {"open, every model, every data block decoded, close", OpenAndDecode},
    {"open, all frame rates, close", AllFrameRates},
    {"open, frame rates, limit to HDMI 2.0, generate, close", LimitToHdmi20},
    {"open, common with another, generate, close", LimitToCommon},
    {"open, high refresh, generate, close", HighRefresh, 3 * 128},
};

}  // namespace

std::span<const Operation> Operations() {
  return kOperations;
}

void Floor(const ByteVector& image) {
  const size_t size = std::min(image.size(), kRoom);
  std::memcpy(output, image.data(), size);
  benchmark::ClobberMemory();
  for (size_t block = 0; block < size; block += 128) {
    unsigned sum = 0;
    const size_t end = std::min(block + 128, size);
    for (size_t at = block; at < end; ++at) {
      sum += output[at];
      asm volatile("" : "+r"(sum));  // each byte's sum is wanted in a register: no vectors
    }
    benchmark::DoNotOptimize(sum);
  }
}

}  // namespace reedid::bench
