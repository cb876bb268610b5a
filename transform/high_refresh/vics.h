// Bringing rates back as VICs in the Video Data Block of an image's first CTA extension.
#pragma once

#include "reedid/image.h"
#include "transform/high_refresh/rates.h"

namespace reedid {

// Adds a VIC of 1920x1080 for each lost rate, as space goes, and takes those rates from the list.
void FillWith1080pVIC(EdidHandle& handle, MemoryWatch& memory, RateArray& lost);

// The same with VICs of any format, the highest number first.
void FillWithVIC(EdidHandle& handle, MemoryWatch& memory, RateArray& lost);

}  // namespace reedid
