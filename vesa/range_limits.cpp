// Display range limits and timing descriptor (EDID 1.4, 3.10.3.3).
//
//  4     1.4 only, 255 more: vertical maximum 1, minimum too 0; horizontal maximum 3, minimum too 2
//  5, 6  vertical rate, minimum and maximum, Hz        9   maximum pixel clock, 10 MHz
//  7, 8  horizontal rate, minimum and maximum, kHz    10   kind: 0 default GTF, 1 limits only, 2 secondary GTF, 4 CVT
//
// Secondary GTF: 12 start frequency / 2, 13 C * 2, 14-15 M, 16 K, 17 J * 2
// CVT, 1.4 only: 11 version major 7..4, minor 3..0      15 preferred aspect 7..5, reduced blanking 4, standard 3
//                12 clock precision 7..2 (0.25 MHz)     16 scaling: h shrink 7, h stretch 6, v shrink 5, v stretch 4
//                12-13 maximum hactive / 8, 10 bits     17 preferred vertical rate
//                14 aspects: 4:3 7, 16:9 6, 16:10 5, 5:4 4, 15:9 3

#include <algorithm>

#include "base/layout.h"
#include "base/log.h"
#include "base/pinned.h"
#include "vesa/descriptor.h"
#include "vesa/model.h"

namespace reedid {
namespace {

PIN_FIELDS(RangeLimits, 0, 2, minVRate, maxVRate, minHRate, maxHRate);
PIN_FIELDS(RangeLimits, 8, 4, maxPixelClock);
PIN_FIELDS(RangeLimits, 12, 1, timingFormula);
PIN_FIELDS(RangeLimits, 14, 2, gtfStartFreq, gtfM);
PIN_FIELDS(RangeLimits, 18, 1, gtfC, gtfK, gtfJ, cvtVersionMajor, cvtVersionMinor);
PIN_FIELDS(RangeLimits, 24, 2, cvtClockPrecision, cvtMaxHactive);
PIN_FIELDS(RangeLimits, 28, 6, cvtAspect);
PIN_FIELDS(RangeLimits, 34, 1, cvtPreferredAspect, cvtStandardBlanking, cvtReducedBlanking, hShrink, hStretch, vShrink,
           vStretch, preferredRefresh);
PIN_SIZE(RangeLimits, 44);

enum Formula : uint8_t { kDefaultGtf = 0, kSecondaryGtf = 1, kCvt = 2, kLimitsOnly = 3 };

constexpr uint8_t kKinds[] = {0, 2, 4, 1};  // by formula
constexpr uint8_t kAspects[] = {ASPECT_4_3, ASPECT_16_9, ASPECT_16_10, ASPECT_5_4, ASPECT_5_3};
constexpr uint16_t kRateOffset = 255;

// Where a pair of rates and the flags of their offsets stand.
struct RatePair {
  uint8_t minByte, maxByte;
  uint8_t minBit, maxBit;  // of the flags byte
};
constexpr RatePair kVertical = {5, 6, 0, 1};
constexpr RatePair kHorizontal = {7, 8, 2, 3};

// The minimum has an offset only together with the maximum.
template <class Io, class Rate>
constexpr void RatesLayout(const Io& io, const RatePair& at, bool is14, Rate& min, Rate& max) {
  bool maxOffset = max > kRateOffset;  // a reader takes both from the bytes
  bool minOffset = maxOffset && min > kRateOffset;
  if (is14) {
    io(maxOffset, Place{kDescriptorFlagsByte, at.maxBit, 1});
    io(minOffset, Place{kDescriptorFlagsByte, at.minBit, 1});
  }
  Above(io, min, is14 && maxOffset && minOffset ? kRateOffset : 0, Place{at.minByte});
  Above(io, max, is14 && maxOffset ? kRateOffset : 0, Place{at.maxByte});
}

template <class Io, class Limits>
constexpr void LimitsLayout(const Io& io, Limits& limits, bool is14) {
  RatesLayout(io, kVertical, is14, limits.minVRate, limits.maxVRate);
  RatesLayout(io, kHorizontal, is14, limits.minHRate, limits.maxHRate);
  Scaled(io, limits.maxPixelClock, 10000, Place{9});
  Coded(
      io, limits.timingFormula, [](uint32_t kind) { return IndexOf(kKinds, kind, kDefaultGtf); },
      [](uint32_t formula) { return kKinds[std::min<uint32_t>(formula, kLimitsOnly)]; }, Place{10});
}

template <class Io, class Limits>
constexpr void CvtLayout(const Io& io, Limits& limits) {
  io(limits.cvtVersionMajor, Place{11, 4, 4});
  io(limits.cvtVersionMinor, Place{11, 0, 4});
  Scaled(io, limits.cvtClockPrecision, 250, Place{12, 2, 6});
  Scaled(io, limits.cvtMaxHactive, 8, Place{13}, Place{12, 0, 2});
  io(limits.cvtAspect[ASPECT_4_3], Place{14, 7, 1});
  io(limits.cvtAspect[ASPECT_16_9], Place{14, 6, 1});
  io(limits.cvtAspect[ASPECT_16_10], Place{14, 5, 1});
  io(limits.cvtAspect[ASPECT_5_4], Place{14, 4, 1});
  io(limits.cvtAspect[ASPECT_5_3], Place{14, 3, 1});
  // Read by one bit less than written, so that 15:9 comes back as 4:3: odd on purpose, docs/oddities.md.
  Listed(io, limits.cvtPreferredAspect, kAspects, 0, Place{15, 5, Io::kReads ? 2 : 3});
  io(limits.cvtReducedBlanking, Place{15, 4, 1});
  io(limits.cvtStandardBlanking, Place{15, 3, 1});
  io(limits.hShrink, Place{16, 7, 1});
  io(limits.hStretch, Place{16, 6, 1});
  io(limits.vShrink, Place{16, 5, 1});
  io(limits.vStretch, Place{16, 4, 1});
  io(limits.preferredRefresh, Place{17});
}

template <class Io, class Limits>
constexpr void SecondaryGtfLayout(const Io& io, Limits& limits) {
  const auto halves = [&io](auto& field, Place place) {
    Coded(
        io, field, [](uint32_t code) { return code / 2; }, [](uint32_t value) { return value * 2; }, place);
  };
  Scaled(io, limits.gtfStartFreq, 2, Place{12});
  halves(limits.gtfC, Place{13});
  io(limits.gtfM, Place{14}, Place{15});
  io(limits.gtfK, Place{16});
  halves(limits.gtfJ, Place{17});
}

template <class Io, class Limits>
constexpr void RangeLimitsLayout(const Io& io, Limits& limits, bool is14) {
  LimitsLayout(io, limits, is14);
  if (limits.timingFormula == kSecondaryGtf) SecondaryGtfLayout(io, limits);
  if (limits.timingFormula == kCvt && is14) CvtLayout(io, limits);
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t VESA_GetRangeLimits(const VesaBlock* model, const DtdSlot* slot, RangeLimits* limits) {
  if (model == nullptr || slot == nullptr || limits == nullptr || slot->flag != EDID_DESCRIPTOR_RANGE_LIMITS) {
    return REEDID_ERR("invalid parameters");
  }
  if (!HasTag(*slot, EDID_DESCRIPTOR_RANGE_LIMITS)) return REEDID_ERR("invalid range limits descriptor");
  *limits = {};
  RangeLimitsLayout(LayoutReader(BytesOf(*slot)), *limits, IsEdid14(*model));
  return 0;
}

int32_t VESA_SetRangeLimits(const VesaBlock* model, const RangeLimits* limits, DtdSlot* slot) {
  if (model == nullptr || limits == nullptr || slot == nullptr) return REEDID_ERR("invalid parameters");
  const uint8_t formula = limits->timingFormula;
  if (formula < kLimitsOnly && model->continuousFreq == 0) REEDID_WARN("please set supportGTF");
  if (formula > kLimitsOnly) REEDID_ERR("invalid timing formula: %d", formula);
  RangeLimitsLayout(BeginDescriptor(*slot, EDID_DESCRIPTOR_RANGE_LIMITS), *limits, IsEdid14(*model));
  return 0;
}
