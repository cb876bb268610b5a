#include "transform/reclock.h"

#include <algorithm>
#include <cmath>

#include "timing/dtd.h"
#include "transform/edit.h"

namespace reedid {
namespace {

constexpr float kNtscRatio = 0.999001f;  // 1000/1001
constexpr float kNtscTolerance = 0.0001f;

// Whether a rate is 1000/1001 of a whole number.
bool IsNtscRate(float rate) {
  const long long whole = std::llround(rate);
  return whole != 0 && std::fabs(rate / static_cast<float>(whole) - kNtscRatio) < kNtscTolerance;
}

// The timing that a request generates, if any.
std::optional<DtdTiming> Generated(const CvtTiming& request) {
  DtdTiming timing;
  if (Cvt2ToDtd(&request, &timing) != 0) return std::nullopt;
  return timing;
}

// The clock of a timing's totals at `rate`.
SlowerClock ClockAtRate(const DtdTiming& timing, uint32_t rate) {
  const auto whole = static_cast<uint32_t>(uint64_t{HTotal(timing)} * VTotal(timing) * rate / 1000);
  if (!IsNtscRate(FormulaRate<float>(timing))) return {whole, whole};
  return {whole, static_cast<uint32_t>(static_cast<float>(whole) * 1000.0f / 1001.0f)};
}

}  // namespace

std::optional<SlowerClock> SlowDown(const DtdTiming& timing, const LinkLimit& limit, Rates rates) {
  const float share = static_cast<float>(limit.clock) / static_cast<float>(timing.pixelClock);
  const uint32_t reachable =
      static_cast<uint32_t>(std::llround(share * FormulaRate<float>(timing))) & limit.reachableMask;
  const auto rate = std::find_if(rates.begin(), rates.end(), [&](uint16_t r) { return r <= reachable; });
  if (rate == rates.end()) return std::nullopt;
  return ClockAtRate(timing, *rate);
}

Fate LimitTiming(DtdTiming& timing, const LinkLimit& limit, Rates rates) {
  if (timing.pixelClock <= limit.clock || !HasRate(timing)) return Fate::kKept;
  const auto slower = SlowDown(timing, limit, rates);
  if (!slower) return Fate::kDropped;
  timing.pixelClock = slower->clock;
  return Fate::kSlowed;
}

SlotFate LimitSlot(DtdSlot& slot, const LinkLimit& limit, Rates rates) {
  DtdTiming timing;
  int32_t status = VESA_GetDTD(&slot, &timing);
  if (status != 0) return {Fate::kKept, status};
  const Fate fate = LimitTiming(timing, limit, rates);
  if (fate != Fate::kSlowed) return {fate, status};
  status = Rewrite(slot, VESA_SetDTD, &timing);
  return {status == 0 ? fate : Fate::kKept, status};
}

Fate LimitFormula(CvtTiming& timing, const LinkLimit& limit, Rates rates, bool halves420) {
  const auto full = Generated(timing);
  const bool half = halves420 && timing.ycc420 != 0;
  if (!full || full->pixelClock / (half ? 2 : 1) <= limit.clock) return Fate::kKept;
  const float refresh = FormulaRate<float>(*full);
  for (const uint16_t rate : rates) {
    if (static_cast<float>(rate) >= refresh) continue;
    CvtTiming slower = timing;
    slower.frameRate = rate;
    const auto generated = Generated(slower);
    if (!generated || generated->pixelClock > limit.clock) continue;
    if (halves420 && generated->pixelClock < kClockWithout420) slower.ycc420 = 0;
    timing = slower;
    return Fate::kSlowed;
  }
  return Fate::kDropped;
}

}  // namespace reedid
