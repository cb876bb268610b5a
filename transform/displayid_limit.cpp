// A link limit on a DisplayID section: detailed timings, formula timings, range limits.

#include <algorithm>

#include "base/log.h"
#include "base/memory.h"
#include "displayid/codec.h"
#include "displayid/timing_forms.h"
#include "transform/edit.h"
#include "transform/link_limit.h"

namespace reedid {
namespace {

enum class Verdict { kStays, kGoes, kNoMemory };

// Reads a block's records, keeps those that `isKept` wants and writes them back; a block without any left goes.
template <class Record, class IsKept>
Verdict LimitForm(MemoryWatch& memory, DispIdBlock& model, DispIdDataBlock& entry, const DispIdForm<Record>& form,
                  IsKept isKept) {
  const int32_t timings = DispID_GetTimingCnt(&entry);
  if (timings < 1) return Verdict::kStays;
  auto count = static_cast<unsigned>(timings);
  const Owned<Record[]> records(AllocateZeroed<Record>(count));
  if (records == nullptr) return Verdict::kNoMemory;
  if (form.get(&entry, records.get(), count) != 0) return Verdict::kStays;
  count = KeepIf(records.get(), count, isKept);
  if (count == 0) return Verdict::kGoes;
  Rewrite(memory, model, entry, form.set, records.get(), count);
  return Verdict::kStays;
}

Verdict LimitRange(MemoryWatch& memory, DispIdBlock& model, DispIdDataBlock& entry, const LinkLimit& limit) {
  DispIdRangeLimits range;
  if (DispID_GetRangeLimits(&entry, &range) != 0) return Verdict::kStays;
  range.maxPixelClock = std::min(range.maxPixelClock, limit.clock);
  Rewrite(memory, model, entry, DispID_SetRangeLimits, &range);
  return Verdict::kStays;
}

Verdict LimitDataBlock(MemoryWatch& memory, DispIdBlock& model, DispIdDataBlock& entry, const LinkLimit& limit,
                       Rates rates) {
  if (entry.tag == DISPID_TAG_RANGE_LIMITS) return LimitRange(memory, model, entry, limit);
  if (const auto* form = FindForm(kDetailedForms, entry.tag)) {
    return LimitForm(memory, model, entry, *form,
                     [&](DtdTiming& timing) { return LimitTiming(timing, limit, rates) != Fate::kDropped; });
  }
  if (const auto* form = FindForm(kCvtForms, entry.tag)) {
    return LimitForm(memory, model, entry, *form,
                     [&](CvtTiming& timing) { return LimitFormula(timing, limit, rates, true) != Fate::kDropped; });
  }
  return Verdict::kStays;
}

}  // namespace

void LimitDispId(MemoryWatch& memory, DispIdBlock& model, const LinkLimit& limit, Rates rates) {
  bool goesOn = true;  // until memory runs out
  KeepDataBlocks(model, [&](DispIdDataBlock& entry) {
    if (!goesOn) return true;
    const Verdict verdict = LimitDataBlock(memory, model, entry, limit, rates);
    goesOn = verdict != Verdict::kNoMemory;
    return verdict != Verdict::kGoes;
  });
  if (goesOn) return;
  memory.Lack();
  REEDID_ERR_AS("DispID_LimitToHDMI20", "malloc fail");
}

}  // namespace reedid
