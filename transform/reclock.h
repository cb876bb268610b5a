// What an HDMI link can carry, and the one rule by which a timing that needs more is slowed down to it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "reedid/timing.h"

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

// A timing re-clocked below this, in kHz, fits without 4:2:0.
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

}  // namespace reedid
