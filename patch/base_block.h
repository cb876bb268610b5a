// The four descriptor slots of the base block by their bytes (EDID 1.4, 3.10).
#pragma once

#include <cstdint>

#include "patch/block.h"

namespace reedid {

inline constexpr unsigned kBaseSlots = 4;
inline constexpr unsigned kSlotSize = 18;

constexpr unsigned BaseSlotAt(unsigned index) {
  return 54 + kSlotSize * index;
}

// Whether 18 bytes are a timing: a display descriptor has no pixel clock.
constexpr bool IsTimingSlot(Bytes slot) {
  return slot[0] != 0 || slot[1] != 0;
}

// Whether a block is a base block with descriptor slots.
bool HasBaseSlots(const EdidBlock& block);

Bytes BaseSlot(const EdidBlock& block, unsigned index);
void SetBaseSlot(EdidBlock& block, unsigned index, Bytes slot);

// Removes a descriptor. Timings stand before all others: those behind a timing that goes move up. The slot that gets
// free is a dummy, which no reader takes for anything.
void EraseBaseSlot(EdidBlock& block, unsigned index);

// How many slots from the first on are timings.
unsigned LeadingTimings(const EdidBlock& block);

// Puts a timing behind those; what stands there moves down into a free slot. False, nothing changed, without one.
bool InsertBaseTiming(EdidBlock& block, Bytes slot);

// The first slot that is free (a dummy, or all zero); kBaseSlots when there is none.
unsigned FreeBaseSlot(const EdidBlock& block);

}  // namespace reedid
