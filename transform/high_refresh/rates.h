// The frame rates that a high-refresh image is after.
#pragma once

#include <algorithm>
#include <cstdint>

#include "base/memory.h"
#include "inventory/rate_list.h"
#include "transform/edit.h"

namespace reedid {

// Rates in Hz, falling, each once.
class RateArray {
 public:
  void Collect(const EdidHandle& handle, MemoryWatch& memory) {
    count_ = CollectFrameRates(handle, rates_, kMaxRates, memory);
  }

  // Keeps the film, PAL and NTSC rates and every high rate.
  void FilterFrameRate() {
    Keep([](uint16_t rate) {
      return rate == 24 || rate == 25 || rate == 30 || rate == 50 || rate == 60 || rate >= 100;
    });
  }

  template <class IsKept>
  void Keep(IsKept isKept) {
    count_ = KeepIf(rates_, count_, isKept);
  }

  bool Holds(uint16_t rate) const { return std::find(begin(), end(), rate) != end(); }
  unsigned count() const { return count_; }
  const uint16_t* begin() const { return rates_; }
  const uint16_t* end() const { return rates_ + count_; }
  uint16_t operator[](unsigned at) const { return rates_[at]; }

 private:
  static constexpr unsigned kMaxRates = 50;
  uint16_t rates_[kMaxRates] = {};
  unsigned count_ = 0;
};

}  // namespace reedid
