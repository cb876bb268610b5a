// The space for DTDs in the first blocks of an image, and making more of it.
#pragma once

#include <cstdint>

#include "base/memory.h"
#include "reedid/image.h"
#include "vesa/descriptor.h"

namespace reedid {

inline constexpr unsigned kAllBlocks = 255;

// Whether a slot of the base block is free for a DTD: it holds one, nothing, or what no EDID reader knows.
constexpr bool IsDtdOrEmpty(const DtdSlot& slot) {
  return slot.flag < EDID_DESCRIPTOR_EST3;  // the lowest tag of a display descriptor
}

// How many DTDs the first `blocks` blocks can hold now.
uint8_t GetDtdSpace(const EdidHandle& handle, MemoryWatch& memory, unsigned blocks);

// How many they could hold without the uncommon descriptors.
uint8_t GetDtdSpaceMax(const EdidHandle& handle, MemoryWatch& memory, unsigned blocks);

// Deletes up to `count` uncommon descriptors, empty slots and unknown ones included; the others move up.
void DeleteUncommonDesc(EdidHandle& handle, MemoryWatch& memory, unsigned count);

}  // namespace reedid
