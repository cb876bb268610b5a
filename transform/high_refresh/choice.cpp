#include "transform/high_refresh/choice.h"

#include <cmath>

#include "base/bytes.h"
#include "base/log.h"
#include "timing/dtd.h"
#include "transform/edit.h"
#include "transform/reclock.h"

namespace reedid {
namespace {

constexpr float kHighRate = 99.0f;  // Hz, from here on a rate counts as high

// Re-clocking here keeps the reachable rate as it is.
constexpr LinkLimit kReclockLimit = {kHdmi20.clock, 0xFFFFFFFF, true};

// The same format by formula, when a descriptor can hold that within the limit.
bool ReplaceByCvt(DtdTiming& timing) {
  CvtTiming request = {};
  request.formula = 1;
  request.aspectRatio = Low8(timing.aspectRatio);
  request.hactive = timing.hactive;
  request.vactive = timing.vactive;
  request.interlaced = timing.interlaced;
  request.frameRate = Low16(std::llround(FormulaRate<float>(timing)));
  if (request.frameRate > 60) {
    request.formula = 2;
    request.flagA = 1;
  }
  DtdTiming generated;
  DtdSlot slot;
  if (Cvt2ToDtd(&request, &generated) != 0 || generated.pixelClock > kHdmi20.clock ||
      VESA_SetDTD(&generated, &slot) != 0) {
    return false;
  }
  timing = generated;
  return true;
}

bool IsSameFormat(const DtdTiming& a, const DtdTiming& b) {
  return a.hactive == b.hactive && a.vactive == b.vactive && a.interlaced == b.interlaced;
}

}  // namespace

bool Cvt1080p(uint16_t rate, DtdTiming& timing) {
  CvtTiming request = {};
  request.formula = 2;
  request.aspectRatio = ASPECT_16_9;
  request.hactive = 1920;
  request.vactive = 1080;
  request.frameRate = rate;
  request.flagA = 1;
  return Cvt2ToDtd(&request, &timing) == 0;
}

void DeleteUnspportDTD(DtdList& list) {
  const char* const name = __func__;
  list.Truncate(KeepIf(list.data(), list.count(), [&](DtdTiming& timing) {
    DtdSlot slot;
    if (VESA_SetDTD(&timing, &slot) == 0 || ReplaceByCvt(timing)) return true;
    REEDID_WARN_AS(name, "%ux%u@%0.2f %uKHz outof DTD range, drop", timing.hactive, timing.vactive,
                   static_cast<double>(FormulaRate<float>(timing)), timing.pixelClock);
    return false;
  }));
}

// The line shows the dropped rate beside the clock of the record that stays: docs/oddities.md.
void DeleteRepeatDTD(DtdList& list) {
  const char* const name = __func__;
  for (uint32_t i = 0; i < list.count(); ++i) {
    const DtdTiming kept = list[i];
    const unsigned later = KeepIf(list.data() + i + 1, list.count() - i - 1, [&](const DtdTiming& timing) {
      if (!IsSameFormat(kept, timing)) return true;
      REEDID_WARN_AS(name, "%ux%u@%u %uKHz", timing.hactive, timing.vactive, RateForMessage(timing), kept.pixelClock);
      return false;
    });
    list.Truncate(i + 1 + later);
  }
}

void ReclockDtds(DtdList& list, const RateArray& wanted) {
  if (wanted.count() == 0) return;
  for (uint32_t i = 1; i < list.count(); ++i) {
    DtdTiming& timing = list[i];
    if (timing.pixelClock == 0 || !HasRate(timing)) continue;
    if (const auto clock = SlowDown(timing, kReclockLimit, {wanted.begin(), wanted.end()})) {
      timing.pixelClock = clock->clock;
    }
  }
}

uint32_t SortByRate(DtdList& list) {
  if (list.count() < 2) return list.count();
  SortDTDbyFrameRate(list.data() + 1, static_cast<int32_t>(list.count() - 1));
  uint32_t k = 1;
  while (k < list.count() && SortingRate(list[k]) >= kHighRate) ++k;
  return k;
}

void TrimDtds(DtdList& list, unsigned space) {
  const uint32_t k = SortByRate(list);
  if (k < list.count()) SortDTDbyResolution(list.data() + k, list.count() - k);
  list.Truncate(space);
}

}  // namespace reedid
