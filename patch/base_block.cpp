#include "patch/base_block.h"

#include "edid/image.h"

namespace reedid {
namespace {

constexpr uint8_t kDummy[kSlotSize] = {0, 0, 0, EDID_DESCRIPTOR_DUMMY};

}  // namespace

bool HasBaseSlots(const EdidBlock& block) {
  return block.type == EDID_BLOCK_VESA && IsWhole(block) && HasEdidHeader(block.bytes, block.size);
}

Bytes BaseSlot(const EdidBlock& block, unsigned index) {
  return BytesOf(block).From(BaseSlotAt(index)).First(kSlotSize);
}

void SetBaseSlot(EdidBlock& block, unsigned index, Bytes slot) {
  if (HasBaseSlots(block) && index < kBaseSlots && slot.size() == kSlotSize) Overwrite(block, BaseSlotAt(index), slot);
}

void EraseBaseSlot(EdidBlock& block, unsigned index) {
  if (!HasBaseSlots(block) || index >= kBaseSlots) return;
  unsigned freed = index;
  if (IsTimingSlot(BaseSlot(block, index))) {
    for (unsigned later = index + 1; later < kBaseSlots; ++later) {
      if (!IsTimingSlot(BaseSlot(block, later))) continue;
      SetBaseSlot(block, freed, BaseSlot(block, later));
      freed = later;
    }
  }
  SetBaseSlot(block, freed, Bytes(kDummy, sizeof kDummy));
}

unsigned FreeBaseSlot(const EdidBlock& block) {
  if (!HasBaseSlots(block)) return kBaseSlots;
  for (unsigned i = 0; i < kBaseSlots; ++i) {
    const Bytes slot = BaseSlot(block, i);
    if (UsedEnd(slot, 0, kSlotSize) == 0 || (!IsTimingSlot(slot) && slot[2] == 0 && slot[3] == EDID_DESCRIPTOR_DUMMY))
      return i;
  }
  return kBaseSlots;
}

unsigned LeadingTimings(const EdidBlock& block) {
  unsigned count = 0;
  while (HasBaseSlots(block) && count < kBaseSlots && IsTimingSlot(BaseSlot(block, count))) ++count;
  return count;
}

bool InsertBaseTiming(EdidBlock& block, Bytes slot) {
  const unsigned place = LeadingTimings(block), free = FreeBaseSlot(block);
  if (free == kBaseSlots || slot.size() != kSlotSize) return false;
  uint8_t moved[kSlotSize];
  for (unsigned i = free; i > place; --i) {
    BaseSlot(block, i - 1).CopyTo(moved);
    SetBaseSlot(block, i, Bytes(moved, sizeof moved));
  }
  SetBaseSlot(block, place, slot);
  return true;
}

}  // namespace reedid
