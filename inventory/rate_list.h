// The list that a walk over an image's frame rates fills.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "base/bytes.h"
#include "base/memory.h"
#include "reedid/displayid.h"
#include "timing/dtd.h"

namespace reedid {

// Keeps the rates falling and without repeats. Returns the new count, in 8 bits.
inline uint8_t InsertFrameRate(uint16_t rate, uint16_t* rates, uint8_t count) {
  uint16_t* const end = rates + count;
  if (std::find(rates, end, rate) != end) return count;
  uint16_t* place = end;
  for (; place != rates && place[-1] < rate; --place) *place = place[-1];
  *place = rate;
  return Low8(count + 1);
}

// The caller's array. Each Add tells whether the walk over the block at hand goes on: a full array ends it.
class RateList {
 public:
  RateList(uint16_t* rates, uint32_t maxCount, MemoryWatch& memory)
      : rates_(rates), maxCount_(maxCount), memory_(memory) {}

  uint8_t count() const { return count_; }

  bool Add(uint16_t rate) {
    if (count_ >= maxCount_) return false;
    count_ = InsertFrameRate(rate, rates_, count_);
    return true;
  }

  bool AddFormulaRate(const DtdTiming& timing) {
    return !HasRate(timing) || Add(Low16(std::llround(FormulaRate<double>(timing))));
  }

  // The rate of a table row; identifiers without a row add nothing.
  bool AddVic(unsigned index) {
    DtdTiming timing;
    return VicToDtd(index, &timing) != 0 || Add(timing.frameRate);
  }

  bool AddDmt(unsigned id) {
    DtdTiming timing;
    return DmtToDtd(id, &timing) != 0 || Add(timing.frameRate);
  }

  // What a walk that needs memory says without it; the walk over the block ends.
  bool Lack() {
    memory_.Lack();
    return false;
  }

  // HDMI 1.4b, table 8-13: 2160p30, 2160p25, 2160p24 and 4096x2160p24.
  bool AddHdmiVic(unsigned vic) {
    static constexpr uint8_t kRates[] = {0, 30, 25, 24, 24};
    return vic == 0 || vic >= sizeof kRates || Add(kRates[vic]);
  }

 private:
  uint16_t* rates_;
  uint32_t maxCount_;
  MemoryWatch& memory_;
  uint8_t count_ = 0;
};

// The functions that add what a block offers return false when the walk over it ends.

template <class Items, class AddItem>
bool AddEach(const Items* items, unsigned count, AddItem add) {
  return std::all_of(items, items + count, add);
}

bool AddBlock(const DispIdBlock& model, RateList& rates);

// EDID_GetAllFrameRate as a step of an edit.
uint32_t CollectFrameRates(const EdidHandle& handle, uint16_t* rates, uint32_t maxCount, MemoryWatch& memory);

}  // namespace reedid
