// What other rooms need of the base block model beyond the public interface.
#pragma once

#include "base/memory.h"
#include "reedid/vesa.h"

namespace reedid {

inline constexpr unsigned kDescriptorSlots = 4;

// Several fields exist, or mean what they do, in EDID 1.4 only.
constexpr bool IsEdid14(const VesaBlock& model) {
  return model.version == 1 && model.revision == 4;
}

// VESA_Open that tells a refused block from lacking memory.
VesaBlock* OpenVesa(const EdidBlock* block, MemoryWatch& memory);

}  // namespace reedid
