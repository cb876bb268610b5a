// Every detailed timing of an image, as one list, and the two orders of such a list.

#include "inventory/dtds.h"

#include <algorithm>
#include <utility>

#include "base/bytes.h"
#include "base/log.h"
#include "displayid/timing_forms.h"
#include "inventory/walk.h"
#include "timing/dtd.h"
#include "vesa/model.h"

namespace reedid {
namespace {

constexpr unsigned kMaxCount = 255;
constexpr unsigned kShortestDtd = 11;  // bytes, a type II timing

unsigned CountDtds(const VesaBlock& model) {
  return static_cast<unsigned>(std::count_if(model.descriptors, model.descriptors + kDescriptorSlots,
                                             [](const DtdSlot& slot) { return slot.flag == kDtdSlotFlag; }));
}

unsigned CountDtds(const CeaBlock& model) {
  return model.dtds == nullptr ? 0 : model.dtdCount;
}

unsigned CountDtds(const DispIdDataBlock& entry) {
  if (entry.bytes == nullptr || FindForm(kDetailedForms, entry.tag) == nullptr) return 0;
  const int32_t count = DispID_GetTimingCnt(&entry);
  return count < 1 ? 0 : static_cast<unsigned>(count);
}

unsigned CountDtds(const DispIdBlock& model) {
  unsigned count = 0;
  for (unsigned i = 0; i < model.dataBlockCount; ++i) count += CountDtds(model.dataBlocks[i]);
  return count;
}

// Fills the caller's list up to its room and no further.
class Collector {
 public:
  Collector(DtdTiming* list, unsigned room) : list_(list), room_(room) {}

  unsigned count() const { return count_; }

  void operator()(const VesaBlock& model) {
    for (unsigned i = 0; i < kDescriptorSlots; ++i) {
      if (Take(model.descriptors[i]) && i == 0) list_[count_ - 1].preferred = 1;
    }
  }

  void operator()(const CeaBlock& model) {
    for (unsigned i = 0; i < CountDtds(model); ++i) Take(model.dtds[i]);
  }

  void operator()(const DispIdBlock& model) {
    for (unsigned i = 0; i < model.dataBlockCount; ++i) Take(model.dataBlocks[i]);
  }

 private:
  bool Take(const DtdSlot& slot) {
    if (slot.flag != kDtdSlotFlag || count_ == room_ || VESA_GetDTD(&slot, list_ + count_) != 0) return false;
    ++count_;
    return true;
  }

  // A getter that fails leaves its positions to the next data block.
  void Take(const DispIdDataBlock& entry) {
    const auto* form = FindForm(kDetailedForms, entry.tag);
    const unsigned count = std::min(CountDtds(entry), room_ - count_);
    if (form == nullptr || count == 0) return;
    if (form->get(&entry, list_ + count_, count) == 0) count_ += count;
  }

  DtdTiming* list_;
  unsigned room_;
  unsigned count_ = 0;
};

// Whether the 8-bit count of the timings can have wrapped, going by the bytes alone.
bool CanWrap(const EdidHandle& handle) {
  unsigned bytes = 0;
  for (unsigned i = 0; handle.blocks != nullptr && i < handle.blockCount; ++i) bytes += handle.blocks[i].size;
  return bytes / kShortestDtd > kMaxCount;
}

// A caller whose count wrapped gave room for what is left of it, which only the end of the walk can tell: the timings
// wait elsewhere for it.
uint32_t CollectWrapped(const EdidHandle& handle, DtdTiming* list) {
  const Owned<DtdTiming[]> found(AllocateZeroed<DtdTiming>(kMaxCount));
  if (found == nullptr) {
    REEDID_ERR_AS("EDID_FindOutAllDTD", "malloc fail");
    return 0;
  }
  Collector collect(found.get(), kMaxCount);
  unsigned total = 0;
  VisitBlocks(handle, [&]<class Model>(const Model& model) {
    total += CountDtds(model);
    collect(model);
  });
  const unsigned count = std::min<unsigned>(collect.count(), Low8(total));
  std::copy(found.get(), found.get() + count, list);
  return count;
}

// Ends of lists are kept in 16 bits.
int EndOf(uint32_t count) {
  return static_cast<int16_t>(Low16(count));
}

int32_t Area(const DtdTiming& timing) {
  return static_cast<int32_t>(uint32_t{timing.hactive} * timing.vactive);
}

}  // namespace

uint32_t CountDtds(const EdidHandle& handle, MemoryWatch& memory) {
  unsigned count = 0;
  VisitBlocks(handle, memory, [&](const auto& model) { count += CountDtds(model); });
  return Low8(count);
}

uint32_t CollectDtds(const EdidHandle& handle, DtdTiming* list, uint32_t room, MemoryWatch& memory) {
  Collector collector(list, room);
  VisitBlocks(handle, memory, collector);
  return collector.count();
}

float SortingRate(const DtdTiming& timing) {
  return static_cast<float>(FormulaRate<double>(timing));
}

}  // namespace reedid

using namespace reedid;

uint32_t EDID_GetDTDCnt(const EdidHandle* handle) {
  if (handle == nullptr) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  MemoryWatch unwatched;
  return CountDtds(*handle, unwatched);
}

uint32_t EDID_FindOutAllDTD(const EdidHandle* handle, DtdTiming* list, uint32_t) {
  if (handle == nullptr || list == nullptr) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  if (CanWrap(*handle)) return CollectWrapped(*handle, list);
  MemoryWatch unwatched;
  return CollectDtds(*handle, list, kMaxCount, unwatched);
}

void SortDTDbyResolution(DtdTiming* list, uint32_t count) {
  if (list == nullptr) {
    REEDID_ERR("invalid parameters");
    return;
  }
  const int end = EndOf(count);
  for (int i = 0; i < end - 1; ++i) {
    for (int j = i + 1; j < end; ++j) {
      if (Area(list[j]) > Area(list[i])) std::swap(list[i], list[j]);
    }
  }
}

void SortDTDbyFrameRate(DtdTiming* list, int32_t count) {
  if (list == nullptr) {
    REEDID_ERR("invalid parameters");
    return;
  }
  const int end = EndOf(static_cast<uint32_t>(count));
  for (int i = 0; i < end - 1; ++i) {
    const float pivot = SortingRate(list[i]);  // of the record that started the row: docs/oddities.md
    for (int j = i + 1; j < end; ++j) {
      if (pivot < SortingRate(list[j])) std::swap(list[i], list[j]);
    }
  }
}
