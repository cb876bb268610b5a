// A link limit on a DisplayID section: detailed timings, formula timings, range limits.

#include <algorithm>

#include "base/log.h"
#include "base/memory.h"
#include "displayid/codec.h"
#include "displayid/timing_forms.h"
#include "transform/link_limit.h"

namespace reedid {
namespace {

enum class Visit { kNext, kDeleted, kNoMemory };

// An entry to rebuild a data block in; it starts with the header of the block that it replaces.
struct ScratchEntry : DispIdDataBlock {
  explicit ScratchEntry(const DispIdDataBlock& old)
      : DispIdDataBlock{old.tag, old.revision, old.headerFlags, 0, buffer} {}
  ScratchEntry(const ScratchEntry&) = delete;
  ScratchEntry& operator=(const ScratchEntry&) = delete;
  uint8_t buffer[kMaxDispIdDataBlock] = {};
};

// Reads a block's records, keeps those that `isKept` wants and writes them back; a block without any left goes.
template <class Record, class IsKept>
Visit LimitForm(DispIdBlock& model, DispIdDataBlock& entry, const DispIdForm<Record>& form, IsKept isKept) {
  const int32_t timings = DispID_GetTimingCnt(&entry);
  if (timings < 1) return Visit::kNext;
  auto count = static_cast<unsigned>(timings);
  const MallocPtr<Record[]> records(AllocateZeroed<Record>(count));
  if (records == nullptr) return Visit::kNoMemory;
  if (form.get(&entry, records.get(), count) != 0) return Visit::kNext;
  count = KeepIf(records.get(), count, isKept);
  if (count == 0) {
    DispID_DeleteDB(&model, &entry);
    return Visit::kDeleted;
  }
  ScratchEntry block(entry);
  if (form.set(records.get(), count, &block) == 0) DispID_ReplaceDB(&model, &entry, &block);
  return Visit::kNext;
}

Visit LimitRange(DispIdBlock& model, DispIdDataBlock& entry, const LinkLimit& limit) {
  DispIdRangeLimits range;
  if (DispID_GetRangeLimits(&entry, &range) != 0) return Visit::kNext;
  range.maxPixelClock = std::min(range.maxPixelClock, limit.clock);
  ScratchEntry block(entry);
  if (DispID_SetRangeLimits(&range, &block) == 0) DispID_ReplaceDB(&model, &entry, &block);
  return Visit::kNext;
}

Visit LimitDataBlock(DispIdBlock& model, DispIdDataBlock& entry, const LinkLimit& limit, Rates rates) {
  if (entry.tag == kRangeLimitsTag) return LimitRange(model, entry, limit);
  if (const auto* form = FindForm(kDetailedForms, entry.tag)) {
    return LimitForm(model, entry, *form,
                     [&](DtdTiming& timing) { return LimitTiming(timing, limit, rates) != Fate::kDropped; });
  }
  if (const auto* form = FindForm(kCvtForms, entry.tag)) {
    return LimitForm(model, entry, *form,
                     [&](CvtTiming& timing) { return LimitFormula(timing, limit, rates, true) != Fate::kDropped; });
  }
  return Visit::kNext;
}

}  // namespace

void LimitDispId(DispIdBlock& model, const LinkLimit& limit, Rates rates) {
  for (unsigned i = 0; model.dataBlocks != nullptr && i < model.dataBlockCount;) {
    DispIdDataBlock& entry = model.dataBlocks[i];
    const Visit visit = entry.bytes == nullptr ? Visit::kNext : LimitDataBlock(model, entry, limit, rates);
    if (visit == Visit::kNoMemory) {
      REEDID_ERR_AS("DispID_LimitToHDMI20", "malloc fail");
      return;
    }
    if (visit == Visit::kNext) ++i;
  }
}

}  // namespace reedid
