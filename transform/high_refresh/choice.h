// Choosing among timings: those that a DTD can hold, one of each format, as fast as they go, the best ones first.
#pragma once

#include <cstdint>

#include "inventory/dtds.h"
#include "transform/high_refresh/rates.h"

namespace reedid {

// 1920x1080 with reduced blanking version 2, for a rate that no VIC has. False when it does not generate.
bool Cvt1080p(uint16_t rate, DtdTiming& timing);

// Timings that no descriptor can hold are made by formula, or dropped.
void DeleteUnspportDTD(DtdList& list);

// The first record of each resolution stays.
void DeleteRepeatDTD(DtdList& list);

// Every record but the first runs at the highest wanted rate that its totals reach.
void ReclockDtds(DtdList& list, const RateArray& wanted);

// Orders all records but the first by rate and returns the first position below the high rates, or the count.
uint32_t SortByRate(DtdList& list);

// Cuts the list to `space`: the small ones among the slow timings go first, then the fast ones, the first record last.
void TrimDtds(DtdList& list, unsigned space);

}  // namespace reedid
