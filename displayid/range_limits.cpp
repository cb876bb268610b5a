// Video timing range limits: tag 0x09 (DisplayID 1.3, table 4-18) and the dynamic ones of tag 0x25 (DisplayID 2.0,
// table 4-20).
//
// 1.x, 18 bytes                                      2.0, 12 bytes
//  3-5, 6-8   min, max pixel clock / 10 kHz - 1       3-5, 6-8  min, max pixel clock - 1, kHz
//  9, 10      min, max horizontal frequency, kHz      9, 10     min, max vertical rate, Hz
//  11-12      min horizontal blanking                 11        seamless transition 7
//  13, 14     min, max vertical rate, Hz
//  15-16      min vertical blanking
//  17         interlaced 7, CVT 6, CVT reduced 5, discrete frequencies 4

#include "base/layout.h"
#include "base/log.h"
#include "base/pinned.h"
#include "displayid/codec.h"

namespace reedid {
namespace {

PIN_FIELDS(DispIdRangeLimits, 0, 4, minPixelClock, maxPixelClock);
PIN_FIELDS(DispIdRangeLimits, 8, 2, minHRate, maxHRate, minHBlank, minVRate, maxVRate, minVBlank);
PIN_FIELDS(DispIdRangeLimits, 20, 1, interlaced, cvtStandard, cvtReduced, discreteFrequency, seamlessTransition);
PIN_SIZE(DispIdRangeLimits, 28);

constexpr unsigned kSize = 18;
constexpr unsigned k20Size = 12;
constexpr uint32_t kClocks = 0x1000000;  // that 24 bits can tell

template <class Io, class Record>
constexpr void ClocksLayout(const Io& io, Record& r, uint32_t unit) {
  ScaledLessOne(io, r.minPixelClock, unit, Place{3}, Place{4}, Place{5});
  ScaledLessOne(io, r.maxPixelClock, unit, Place{6}, Place{7}, Place{8});
}

template <class Io, class Record>
constexpr void RangeLimitsLayout(const Io& io, Record& r) {
  ClocksLayout(io, r, 10);
  io(r.minHRate, Place{9});
  io(r.maxHRate, Place{10});
  io(r.minHBlank, Place{11}, Place{12});
  io(r.minVRate, Place{13});
  io(r.maxVRate, Place{14});
  io(r.minVBlank, Place{15}, Place{16});
  io(r.interlaced, Place{17, 7, 1});
  io(r.cvtStandard, Place{17, 6, 1});
  io(r.cvtReduced, Place{17, 5, 1});
  io(r.discreteFrequency, Place{17, 4, 1});
}

template <class Io, class Record>
constexpr void RangeLimits20Layout(const Io& io, Record& r) {
  ClocksLayout(io, r, 1);
  io(r.minVRate, Place{9});
  io(r.maxVRate, Place{10});
  io(r.seamlessTransition, Place{11, 7, 1});
}

// Clocks out of range are the caller's to mend; they are reported and written all the same.
void ReportClocks(const DispIdRangeLimits& limits, uint32_t unit, Caller caller = {}) {
  for (const uint32_t clock : {limits.minPixelClock, limits.maxPixelClock}) {
    if (clock / unit - 1 >= kClocks) REEDID_ERR_AS(caller, "invalid pclk");
  }
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID_GetRangeLimits(const DispIdDataBlock* entry, DispIdRangeLimits* limits) {
  if (!Matches(entry, DISPID_TAG_RANGE_LIMITS, kSize) || entry->size != kSize || limits == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  *limits = {};
  RangeLimitsLayout(LayoutReader(BytesOf(*entry)), *limits);
  return 0;
}

int32_t DispID_SetRangeLimits(const DispIdRangeLimits* limits, DispIdDataBlock* entry) {
  if (limits == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  ReportClocks(*limits, 10);
  RangeLimitsLayout(BeginDataBlock(*entry, {DISPID_TAG_RANGE_LIMITS, 0, 0}, kSize - kDispIdHeaderSize), *limits);
  return 0;
}

int32_t DispID20_GetRangeLimits(const DispIdDataBlock* entry, DispIdRangeLimits* limits) {
  if (!Matches(entry, DISPID20_TAG_RANGE_LIMITS, k20Size) || entry->size != k20Size || limits == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  *limits = {};
  RangeLimits20Layout(LayoutReader(BytesOf(*entry)), *limits);
  return 0;
}

int32_t DispID20_SetRangeLimits(const DispIdRangeLimits* limits, DispIdDataBlock* entry) {
  if (limits == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  ReportClocks(*limits, 1);
  RangeLimits20Layout(BeginDataBlock(*entry, {DISPID20_TAG_RANGE_LIMITS}, k20Size - kDispIdHeaderSize), *limits);
  return 0;
}
