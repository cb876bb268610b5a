// A list of detailed timings on the heap, owned.
#pragma once

#include <cstdint>

#include "base/memory.h"
#include "reedid/transforms.h"

namespace reedid {

// EDID_GetDTDCnt as a step of an edit.
uint32_t CountDtds(const EdidHandle& handle, MemoryWatch& memory);

// Decodes the detailed timings of an image, at most `room` of them, and returns how many it decoded.
uint32_t CollectDtds(const EdidHandle& handle, DtdTiming* list, uint32_t room, MemoryWatch& memory);

// The rate by which lists are ordered, in Hz: computed in double, rounded to single. 0 without a rate.
float SortingRate(const DtdTiming& timing);

class DtdList {
 public:
  // All detailed timings of an image, in its order, with room for `spare` more. False without memory for the list.
  bool Collect(const EdidHandle& handle, MemoryWatch& memory, uint32_t spare = 0) {
    const uint32_t found = CountDtds(handle, memory);
    room_ = found + spare;
    if (room_ == 0) return true;
    records_.reset(AllocateZeroed<DtdTiming>(room_));
    if (records_ == nullptr) {
      memory.Lack();
      return false;
    }
    count_ = CollectDtds(handle, records_.get(), found, memory);
    return true;
  }

  // The same for an image that has changed, into the room that there is.
  void CollectAgain(const EdidHandle& handle, MemoryWatch& memory) {
    const uint32_t found = CountDtds(handle, memory);
    count_ = CollectDtds(handle, records_.get(), found < room_ ? found : room_, memory);
  }

  void Truncate(uint32_t count) { count_ = count < count_ ? count : count_; }

  // Into room that there is.
  void Append(const DtdTiming& timing) {
    if (count_ < room_) records_[count_++] = timing;
  }

  uint32_t count() const { return count_; }
  uint32_t room() const { return room_; }
  DtdTiming* data() const { return records_.get(); }
  DtdTiming& operator[](uint32_t at) const { return records_[at]; }

 private:
  Owned<DtdTiming[]> records_;
  uint32_t count_ = 0;
  uint32_t room_ = 0;
};

}  // namespace reedid
