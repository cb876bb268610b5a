#include "transform/high_refresh/vics.h"

#include <algorithm>

#include "base/log.h"
#include "cea/codec.h"
#include "inventory/walk.h"
#include "transform/edit.h"
#include "transform/reclock.h"

namespace reedid {
namespace {

constexpr uint32_t kLastVicIndex = 155;

bool FitsRate(uint32_t vic, uint16_t rate, DtdTiming& timing) {
  return VicToDtd(vic, &timing) == 0 && timing.frameRate == rate && timing.pixelClock <= kHdmi20.clock &&
         !timing.interlaced;
}

// Appends VICs to the model's Video Data Block within the free space, though the last bytes of an extension are none
// that a data block may reach (docs/oddities.md); false when the block stays as it was.
// `findVic(rate)` gives the VIC for a rate and logs it, or 0.
template <class FindVicForRate>
bool Fill(MemoryWatch& memory, CeaBlock& model, RateArray& lost, FindVicForRate findVic) {
  CeaDataBlock* entry = CEA_FindDataBlock(&model, CEA_TAG_VIDEO, 0);
  VdbRecord record;
  if (entry == nullptr || CEA_GetVDB(entry, &record) != 0 || record.vicCount >= sizeof record.vics) return false;
  unsigned budget = model.freeSpace;
  lost.Keep([&](uint16_t rate) {
    if (budget == 0 || record.vicCount == sizeof record.vics) return true;
    const uint8_t vic = findVic(rate);
    if (vic == 0) return true;
    record.vics[record.vicCount++] = vic;
    --budget;
    return false;
  });
  return Rewrite(memory, model, *entry, CEA_SetVDB, &record) == 0;
}

// Edits the first CTA extension; one whose edit changes nothing is not written back.
template <class Edit>
void EditFirstCea(EdidHandle& handle, MemoryWatch& memory, Edit edit) {
  EdidBlock* const end = handle.blocks + handle.blockCount;
  EdidBlock* const first =
      std::find_if(handle.blocks, end, [](const EdidBlock& b) { return b.type == EDID_BLOCK_CEA; });
  if (first != end) EditBlock(*first, memory, edit);
}

}  // namespace

void FillWith1080pVIC(EdidHandle& handle, MemoryWatch& memory, RateArray& lost) {
  const char* const name = __func__;
  const auto findVic = [&](uint16_t rate) -> uint8_t {
    for (uint32_t vic = 1; vic <= kLastVicIndex; ++vic) {
      DtdTiming t;
      if (!FitsRate(vic, rate, t) || t.hactive != 1920 || t.vactive != 1080 || t.aspectRatio != ASPECT_16_9) continue;
      REEDID_WARN_AS(name, "fill vic%d, 1080p%d", vic, rate);
      return Low8(vic);
    }
    return 0;
  };
  EditFirstCea(handle, memory, [&](CeaBlock& model) { return Fill(memory, model, lost, findVic); });
}

void FillWithVIC(EdidHandle& handle, MemoryWatch& memory, RateArray& lost) {
  const char* const name = __func__;
  const auto findVic = [&](uint16_t rate) -> uint8_t {
    for (uint32_t vic = kLastVicIndex; vic >= 1; --vic) {
      DtdTiming t;
      if (!FitsRate(vic, rate, t)) continue;
      REEDID_WARN_AS(name, "fill vic%d, %dx%d@%d", vic, t.hactive, t.vactive, rate);
      return Low8(vic);
    }
    return 0;
  };
  EditFirstCea(handle, memory,
               [&](CeaBlock& model) { return model.freeSpace > 0 && Fill(memory, model, lost, findVic); });
}

}  // namespace reedid
