// The link limits as they are called: of a whole image, and of one model.

#include "transform/link_limit.h"

#include "base/log.h"
#include "inventory/walk.h"
#include "reedid/transforms.h"
#include "transform/edit.h"

using namespace reedid;

namespace {

bool HasArguments(const EdidHandle* handle, const uint16_t* frameRates, uint32_t count) {
  return HasBlockArray(handle) && frameRates != nullptr && count != 0;
}

}  // namespace

namespace reedid {

void LimitImageToHdmi20(EdidHandle& handle, Rates rates, MemoryWatch& memory) {
  EditBlocks(handle, memory,
             Overloaded{[&](VesaBlock& model) { LimitVesa(model, kHdmi20, rates); },
                        [&](CeaBlock& model) { LimitCea(memory, model, kHdmi20, rates); },
                        [&](DispIdBlock& model) { LimitDispId(memory, model, kHdmi20, rates); }});
}

}  // namespace reedid

int32_t VESA_LimitToHDMI20(VesaBlock* model, const uint16_t* frameRates, uint32_t frameRateCount) {
  if (model == nullptr || frameRates == nullptr) return -1;
  return LimitVesa(*model, kHdmi20, {frameRates, frameRateCount});
}

int32_t VESA_LimitToHDMI14(VesaBlock* model, const uint16_t* frameRates, uint32_t frameRateCount) {
  if (model == nullptr || frameRates == nullptr) return -1;
  return LimitVesa(*model, kHdmi14, {frameRates, frameRateCount});
}

void CEA_LimitToHDMI20(CeaBlock* model, const uint16_t* frameRates, uint32_t frameRateCount) {
  MemoryWatch unwatched;
  if (model != nullptr && frameRates != nullptr) LimitCea(unwatched, *model, kHdmi20, {frameRates, frameRateCount});
}

void CEA_LimitToHDMI14(CeaBlock* model, const uint16_t* frameRates, uint32_t frameRateCount) {
  MemoryWatch unwatched;
  if (model != nullptr && frameRates != nullptr) LimitCea(unwatched, *model, kHdmi14, {frameRates, frameRateCount});
}

void DispID_LimitToHDMI20(DispIdBlock* model, const uint16_t* frameRates, uint32_t frameRateCount) {
  MemoryWatch unwatched;
  if (model != nullptr && frameRates != nullptr) LimitDispId(unwatched, *model, kHdmi20, {frameRates, frameRateCount});
}

void EDID_LimitToHDMI20(EdidHandle* handle, const uint16_t* frameRates, uint32_t frameRateCount) {
  if (!HasArguments(handle, frameRates, frameRateCount)) {
    REEDID_ERR("invalid parameters");
    return;
  }
  EditWhole(*handle, [&](MemoryWatch& memory) { LimitImageToHdmi20(*handle, {frameRates, frameRateCount}, memory); });
}

void EDID_LimitToHDMI14(EdidHandle* handle, const uint16_t* frameRates, uint32_t frameRateCount) {
  if (!HasArguments(handle, frameRates, frameRateCount)) {
    REEDID_ERR("invalid parameters");
    return;
  }
  const Rates rates(frameRates, frameRateCount);
  EditWhole(*handle, [&](MemoryWatch& memory) {
    auto limitBlock = Overloaded{[&](VesaBlock& model) { LimitVesa(model, kHdmi14, rates); },
                                 [&](CeaBlock& model) { LimitCea(memory, model, kHdmi14, rates); }};
    KeepBlocks(*handle, [&](EdidBlock& block) {
      if (Family<DispIdBlock>::Owns(block.type)) return false;
      EditBlock(block, memory, limitBlock);
      return true;
    });
  });
}
