// A link limit on a block of each family.
#pragma once

#include <cstdint>

#include "base/memory.h"
#include "reedid/cea.h"
#include "reedid/displayid.h"
#include "reedid/vesa.h"
#include "transform/reclock.h"

namespace reedid {

int32_t LimitVesa(VesaBlock& model, const LinkLimit& limit, Rates rates);  // as the last codec answered
void LimitCea(MemoryWatch& memory, CeaBlock& model, const LinkLimit& limit, Rates rates);
void LimitDispId(MemoryWatch& memory, DispIdBlock& model, const LinkLimit& limit, Rates rates);

// The HDMI 2.0 limit on a whole image. When memory lacks it stays half done.
void LimitImageToHdmi20(EdidHandle& handle, Rates rates, MemoryWatch& memory);

}  // namespace reedid
