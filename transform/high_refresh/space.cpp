#include "transform/high_refresh/space.h"

#include <algorithm>

#include "base/log.h"
#include "inventory/walk.h"
#include "timing/dtd.h"
#include "transform/edit.h"

namespace reedid {
namespace {

// Descriptors that stay even when space is short.
bool IsCommonDescriptor(const DtdSlot& slot) {
  return slot.flag == EDID_DESCRIPTOR_EST3 || slot.flag == EDID_DESCRIPTOR_CVT_CODES ||
         slot.flag == EDID_DESCRIPTOR_STD_TIMINGS || slot.flag == EDID_DESCRIPTOR_PRODUCT_NAME;
}

template <class IsSpace>
uint8_t CountSpace(const EdidHandle& handle, MemoryWatch& memory, unsigned blocks, IsSpace isSpace) {
  EdidHandle part = handle;
  part.blockCount = Low8(std::min<unsigned>(part.blockCount, blocks));
  unsigned space = 0;
  VisitBlocks(part, memory,
              Overloaded{[&](const VesaBlock& model) {
                           space += static_cast<unsigned>(
                               std::count_if(model.descriptors, model.descriptors + kDescriptorSlots, isSpace));
                         },
                         [&](const CeaBlock& model) { space += model.dtdCount + model.freeSpace / kDtdSize; }});
  return Low8(space);
}

const char* UncommonDescriptorName(uint8_t flag) {
  switch (flag) {
    case EDID_DESCRIPTOR_COLOR_MANAGEMENT:
      return "Display Color Management (DCM) Data";
    case EDID_DESCRIPTOR_COLOR_POINT:
      return "Color Point Data";
    case EDID_DESCRIPTOR_RANGE_LIMITS:
      return "Display Range Limits";
    case EDID_DESCRIPTOR_DATA_STRING:
      return "Alphanumeric Data String (ASCII)";
    case EDID_DESCRIPTOR_SERIAL_NUMBER:
      return "Display Product Serial Number";
    default:
      return nullptr;
  }
}

void DeleteUncommonDesc(VesaBlock& model, unsigned count) {
  const char* const function = __func__;
  KeepDescriptors(model, [&](const DtdSlot& slot) {
    if (count == 0 || slot.flag == kDtdSlotFlag || IsCommonDescriptor(slot)) return true;
    if (const char* name = UncommonDescriptorName(slot.flag)) REEDID_WARN_AS(function, "delete %s", name);
    --count;
    return false;
  });
}

}  // namespace

uint8_t GetDtdSpace(const EdidHandle& handle, MemoryWatch& memory, unsigned blocks) {
  return CountSpace(handle, memory, blocks, IsDtdOrEmpty);
}

uint8_t GetDtdSpaceMax(const EdidHandle& handle, MemoryWatch& memory, unsigned blocks) {
  return CountSpace(handle, memory, blocks, [](const DtdSlot& slot) { return !IsCommonDescriptor(slot); });
}

void DeleteUncommonDesc(EdidHandle& handle, MemoryWatch& memory, unsigned count) {
  EditBlocks(handle, memory, [&](VesaBlock& model) { DeleteUncommonDesc(model, Low8(count)); });
}

}  // namespace reedid
