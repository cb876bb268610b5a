// Writing a list of timings back as the DTDs of an image.
#pragma once

#include "inventory/dtds.h"
#include "reedid/image.h"

namespace reedid {

// Fills the base block, then the CTA extensions, as far as their space goes. The extensions lose the DTDs that they
// had.
void WriteBackDTD(EdidHandle& handle, MemoryWatch& memory, const DtdList& list);

}  // namespace reedid
