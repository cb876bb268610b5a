#include "document/plot/display_limits.h"

#include <algorithm>

#include "document/read/data_blocks.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

constexpr double kGigabits[] = {0, 9, 18, 24, 32, 40, 48};  // of the FRL rates

// Ranges that a display tells twice, in CTA-861 and in DisplayID, are one.
void AddRates(const char* name, double least, double most, DisplayLimits& limits) {
  if (most <= least) return;
  const auto same = [&](const VariableRates& rates) {
    return rates.name == name && rates.least == least && rates.most == most;
  };
  if (std::none_of(limits.variable.begin(), limits.variable.end(), same))
    limits.variable.push_back({name, least, most});
}

void TakeCta(const CeaDataBlock& entry, DisplayLimits& limits) {
  if (const auto hdmi = Get<H14b3dRecord>(entry)) {
    limits.hasHdmi = true;
    limits.tmdsClock = std::max<double>(limits.tmdsClock, hdmi->max_TMDS_Clock);
  }
  if (const auto sink = Get<HfScdsRecord>(entry)) {
    limits.hasHdmi = true;
    limits.tmdsClock = std::max<double>(limits.tmdsClock, sink->TMDS_Character_Rate);
    if (sink->Max_FRL_Rate < std::size(kGigabits)) {
      limits.frlRate = std::max(limits.frlRate, kGigabits[sink->Max_FRL_Rate]);
    }
    AddRates("VRR", sink->VRRmin, sink->VRRmax, limits);
  }
  if (const auto amd = Get<AmdVsdbRecord>(entry)) AddRates("FreeSync", amd->minRefresh, amd->maxRefresh, limits);
}

void TakeRange(double least, double most, double clock, DisplayLimits& limits) {
  if (limits.mostRate != 0) return;
  limits.leastRate = least;
  limits.mostRate = most;
  limits.mostClock = clock;
}

void TakeBase(const EdidBlock& block, DisplayLimits& limits) {
  const BaseBlock base(block);
  if (!base) return;
  for (const DtdSlot& slot : base.Descriptors()) {
    RangeLimits r;
    if (slot.flag != EDID_DESCRIPTOR_RANGE_LIMITS || VESA_GetRangeLimits(base.get(), &slot, &r) != 0) continue;
    TakeRange(r.minVRate, r.maxVRate, r.maxPixelClock / 1000.0, limits);
  }
}

void TakeSection(const EdidBlock& block, DisplayLimits& limits) {
  const DisplayIdSection section(block);
  if (!section) return;
  if (const auto r = Find<DispIdRangeLimits>(section)) {
    TakeRange(r->minVRate, r->maxVRate, r->maxPixelClock / 1000.0, limits);
  }
  const auto adaptive = Find<AdaptiveSyncRecord>(section);
  for (size_t i = 0; adaptive && i < adaptive->count; ++i) {
    AddRates("Adaptive-Sync", adaptive->ranges[i].minRefresh, adaptive->ranges[i].maxRefresh, limits);
  }
}

}  // namespace

DisplayLimits LimitsOf(const Image& image) {
  DisplayLimits limits;
  for (const EdidBlock& block : image.blocks()) {
    if (block.type == EDID_BLOCK_VESA) TakeBase(block, limits);
    if (IsSection(block)) TakeSection(block, limits);
  }
  ForEachCtaDataBlock(image, [&limits](const CeaDataBlock& entry) { TakeCta(entry, limits); });
  return limits;
}

double FrlClock(double gigabits) {
  return gigabits * 1000 * 16 / 18 / 24;
}

}  // namespace reedid::document
