// Lists of timings that stand in blocks of several kinds, one field for each timing.
#pragma once

#include <span>

#include "document/account/tree.h"

namespace reedid::document {

// Standard timings, of the base block or of its descriptor; `at` has the two bytes of each from 0 on.
void AddStandard(const VesaBlock& model, std::span<const StdTiming> timings, const ByteSource& at, Node& node);

// Timing codes and formula timings of `size` bytes each; DisplayID and CTA-861 share their forms and their payloads.
void AddTimingCodes(const TimingCodeRecord& record, const ByteSource& payload, Node& node);
void AddFormulas(std::span<const CvtTiming> timings, size_t size, const ByteSource& payload, Node& node);

}  // namespace reedid::document
