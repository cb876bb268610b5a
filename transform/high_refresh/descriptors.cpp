#include "transform/high_refresh/descriptors.h"

#include <algorithm>

#include "inventory/walk.h"
#include "timing/dtd.h"
#include "transform/edit.h"
#include "transform/high_refresh/space.h"

namespace reedid {
namespace {

// Hands out the records that a descriptor can hold; others are reported by the encoder and take no place.
class DtdSource {
 public:
  explicit DtdSource(const DtdList& list) : list_(list) {}

  bool empty() const { return next_ == list_.count(); }

  bool Next(DtdSlot& slot) {
    while (!empty()) {
      if (VESA_SetDTD(&list_[next_++], &slot) == 0) return true;
    }
    return false;
  }

 private:
  const DtdList& list_;
  uint32_t next_ = 0;
};

// DTDs take the slots from the first on; descriptors keep their order behind them. Slots behind the last DTD keep what
// they held.
void Write(VesaBlock& model, DtdSource& source) {
  DtdSlot* const end = model.descriptors + kDescriptorSlots;
  for (DtdSlot* slot = model.descriptors; slot != end && !source.empty(); ++slot) {
    DtdSlot* const place = std::find_if(slot, end, IsDtdOrEmpty);
    DtdSlot encoded;
    if (place == end || !source.Next(encoded)) return;
    std::copy_backward(slot, place, place + 1);
    *slot = encoded;
  }
}

void Write(MemoryWatch& memory, CeaBlock& model, DtdSource& source) {
  KeepDtds(model, [](const DtdSlot&) { return false; });
  DtdSlot slot;
  while (memory.sufficed() && model.freeSpace >= kDtdSize && source.Next(slot)) {
    if (CEA_AddDTD(&model, &slot, model.dtdCount) != 0) memory.Lack();
  }
}

}  // namespace

void WriteBackDTD(EdidHandle& handle, MemoryWatch& memory, const DtdList& list) {
  DtdSource source(list);
  EditBlocks(handle, memory,
             Overloaded{[&](VesaBlock& model) { Write(model, source); },
                        [&](CeaBlock& model) { Write(memory, model, source); }});
}

}  // namespace reedid
