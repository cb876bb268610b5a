// What an HDMI link can carry, and the one rule by which a timing that needs more is slowed down to it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "reedid/cea.h"
#include "reedid/displayid.h"
#include "reedid/timing.h"
#include "reedid/vesa.h"

namespace reedid {

// Acceptable frame rates in Hz, in the caller's order: the first that fits is taken.
using Rates = std::span<const uint16_t>;

struct LinkLimit {
  uint32_t clock;          // kHz: timings up to this are kept as they are
  uint32_t reachableMask;  // how many bits the reachable rate is kept in
  bool carries420;  // 4:2:0 formats, HDMI Forum features and DisplayID blocks stay, cut down; else they are removed
};

inline constexpr LinkLimit kHdmi20 = {600000, 0xFFFF, true};
inline constexpr LinkLimit kHdmi14 = {340000, 0xFFFFFFFF, false};

// A 4:2:0 format has half the TMDS clock of its pixel clock. One more than twice the limit, as sinks round their
// clocks.
inline constexpr uint32_t kMax420Clock = 1200001;
// A timing re-clocked below this fits without 4:2:0.
inline constexpr uint32_t kClockWithout420 = 590000;

// The clock of a timing at a lower rate; `whole` for the whole-number rate, `clock` in the timing's own system, which
// may be 1000/1001 of it (59.94 Hz and the like).
struct SlowerClock {
  uint32_t whole;
  uint32_t clock;
};

// The clock at the first listed rate that the timing's totals reach within the limit; empty when there is none. The
// timing must have a rate.
std::optional<SlowerClock> SlowDown(const DtdTiming& timing, const LinkLimit& limit, Rates rates);

// What becomes of a timing.
enum class Fate { kKept, kSlowed, kDropped };

// Slows a timing down to the limit in place, when it is above it. A timing without a total is kept.
Fate LimitTiming(DtdTiming& timing, const LinkLimit& limit, Rates rates);

// The same for a formula timing: the first listed rate below its own that generates within the limit. A request that
// does not generate is kept. With `halves420`, a record marked 4:2:0 counts half its clock, and loses the mark when the
// slower timing fits without it.
Fate LimitFormula(CvtTiming& timing, const LinkLimit& limit, Rates rates, bool halves420);

// The same for a detailed timing descriptor. A slowed timing that no descriptor can hold leaves the slot as it was.
struct SlotFate {
  Fate fate;
  int32_t status;  // of the last codec call
};
SlotFate LimitSlot(DtdSlot& slot, const LinkLimit& limit, Rates rates);

// The passes over one block each.
int32_t LimitVesa(VesaBlock& model, const LinkLimit& limit, Rates rates);
void LimitCea(CeaBlock& model, const LinkLimit& limit, Rates rates);
void LimitDispId(DispIdBlock& model, const LinkLimit& limit, Rates rates);

// Removes the records that `isKept` refuses; the order of the others stays.
template <class Record, class IsKept>
unsigned KeepIf(Record* records, unsigned count, IsKept isKept) {
  unsigned kept = 0;
  for (unsigned i = 0; i < count; ++i) {
    if (isKept(records[i])) records[kept++] = records[i];
  }
  return kept;
}

}  // namespace reedid
