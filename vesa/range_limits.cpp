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

#include "base/bytes.h"
#include "base/log.h"
#include "vesa/descriptor.h"
#include "vesa/model.h"

namespace reedid {
namespace {

enum Formula : uint8_t { kDefaultGtf = 0, kSecondaryGtf = 1, kCvt = 2, kLimitsOnly = 3 };

constexpr unsigned kKindByte = 10;
constexpr uint8_t kKindOfFormula[] = {0, 2, 4, 1};
constexpr uint16_t kRateOffset = 255;
constexpr unsigned kClockStep = 10000;         // kHz
constexpr unsigned kClockPrecisionStep = 250;  // kHz

// The preferred aspect is read by two bits, so that 15:9 comes back as 4:3, but written by three.
constexpr uint8_t kAspectOfCode[] = {ASPECT_4_3, ASPECT_16_9, ASPECT_16_10, ASPECT_5_4};
constexpr unsigned kCodeOf15To9 = 4;

// A pair of rates and where they stand. The minimum has an offset only together with the maximum.
struct RatePair {
  unsigned minByte, maxByte;
  unsigned minBit, maxBit;  // of the flags byte
};
constexpr RatePair kVertical = {5, 6, 0, 1};
constexpr RatePair kHorizontal = {7, 8, 2, 3};

void ReadRates(Bytes bytes, const RatePair& at, bool offsets, uint16_t& min, uint16_t& max) {
  const bool maxOffset = offsets && Bit(bytes[kDescriptorFlagsByte], at.maxBit);
  const bool minOffset = maxOffset && Bit(bytes[kDescriptorFlagsByte], at.minBit);
  min = Low16(bytes[at.minByte] + (minOffset ? kRateOffset : 0));
  max = Low16(bytes[at.maxByte] + (maxOffset ? kRateOffset : 0));
}

void WriteRates(uint8_t* bytes, const RatePair& at, bool offsets, uint16_t min, uint16_t max) {
  const bool maxOffset = offsets && max > kRateOffset;
  const bool minOffset = maxOffset && min > kRateOffset;
  bytes[at.minByte] = Low8(min - (minOffset ? kRateOffset : 0));
  bytes[at.maxByte] = Low8(max - (maxOffset ? kRateOffset : 0));
  bytes[kDescriptorFlagsByte] =
      Low8(bytes[kDescriptorFlagsByte] | unsigned{maxOffset} << at.maxBit | unsigned{minOffset} << at.minBit);
}

uint8_t FormulaOfKind(uint8_t kind) {
  for (unsigned formula = 0; formula < sizeof kKindOfFormula; ++formula) {
    if (kKindOfFormula[formula] == kind) return Low8(formula);
  }
  return kDefaultGtf;
}

template <class Io, class Limits>
constexpr void CvtLayout(const Io& io, Limits& limits) {
  io(limits.cvtVersionMajor, Place{11, 4, 4});
  io(limits.cvtVersionMinor, Place{11, 0, 4});
  io(limits.cvtAspect[ASPECT_4_3], Place{14, 7, 1});
  io(limits.cvtAspect[ASPECT_16_9], Place{14, 6, 1});
  io(limits.cvtAspect[ASPECT_16_10], Place{14, 5, 1});
  io(limits.cvtAspect[ASPECT_5_4], Place{14, 4, 1});
  io(limits.cvtAspect[ASPECT_5_3], Place{14, 3, 1});
  io(limits.cvtReducedBlanking, Place{15, 4, 1});
  io(limits.cvtStandardBlanking, Place{15, 3, 1});
  io(limits.hShrink, Place{16, 7, 1});
  io(limits.hStretch, Place{16, 6, 1});
  io(limits.vShrink, Place{16, 5, 1});
  io(limits.vStretch, Place{16, 4, 1});
  io(limits.preferredRefresh, Place{17});
}

void ReadCvt(Bytes bytes, RangeLimits& limits) {
  CvtLayout(LayoutReader(bytes), limits);
  limits.cvtClockPrecision = Low16(Bits(bytes[12], 2, 6) * kClockPrecisionStep);
  limits.cvtMaxHactive = Low16((Bits(bytes[12], 0, 2) << 8 | bytes[13]) * 8);
  limits.cvtPreferredAspect = kAspectOfCode[Bits(bytes[15], 5, 2)];
}

unsigned CodeOfPreferredAspect(uint8_t aspect) {
  if (aspect == ASPECT_5_3) return kCodeOf15To9;
  for (unsigned code = 0; code < sizeof kAspectOfCode; ++code) {
    if (kAspectOfCode[code] == aspect) return code;
  }
  return 0;
}

void WriteCvt(const LayoutWriter& writer, const RangeLimits& limits) {
  CvtLayout(writer, limits);
  writer(limits.cvtClockPrecision / kClockPrecisionStep, Place{12, 2, 6});
  writer(limits.cvtMaxHactive / 8u, Place{13}, Place{12, 0, 2});
  writer(CodeOfPreferredAspect(limits.cvtPreferredAspect), Place{15, 5, 3});
}

void ReadSecondaryGtf(Bytes bytes, RangeLimits& limits) {
  limits.gtfStartFreq = Low16(bytes[12] * 2);
  limits.gtfC = bytes[13] / 2;
  limits.gtfM = bytes.Le16(14);
  limits.gtfK = bytes[16];
  limits.gtfJ = bytes[17] / 2;
}

void WriteSecondaryGtf(uint8_t* bytes, const RangeLimits& limits) {
  bytes[12] = Low8(limits.gtfStartFreq / 2);
  bytes[13] = Low8(limits.gtfC * 2);
  PutLe16(bytes + 14, limits.gtfM);
  bytes[16] = limits.gtfK;
  bytes[17] = Low8(limits.gtfJ * 2);
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t VESA_GetRangeLimits(const VesaBlock* model, const DtdSlot* slot, RangeLimits* limits) {
  if (model == nullptr || slot == nullptr || limits == nullptr || slot->flag != kRangeLimitsDescriptor) {
    return REEDID_ERR("invalid parameters");
  }
  if (!HasTag(*slot, kRangeLimitsDescriptor)) return REEDID_ERR("invalid range limits descriptor");
  const Bytes bytes = BytesOf(*slot);
  const bool is14 = IsEdid14(*model);
  *limits = {};
  ReadRates(bytes, kVertical, is14, limits->minVRate, limits->maxVRate);
  ReadRates(bytes, kHorizontal, is14, limits->minHRate, limits->maxHRate);
  limits->maxPixelClock = bytes[9] * kClockStep;
  limits->timingFormula = FormulaOfKind(bytes[kKindByte]);
  if (limits->timingFormula == kSecondaryGtf) ReadSecondaryGtf(bytes, *limits);
  if (limits->timingFormula == kCvt && is14) ReadCvt(bytes, *limits);
  return 0;
}

int32_t VESA_SetRangeLimits(const VesaBlock* model, const RangeLimits* limits, DtdSlot* slot) {
  if (model == nullptr || limits == nullptr || slot == nullptr) return REEDID_ERR("invalid parameters");
  const LayoutWriter writer = BeginDescriptor(*slot, kRangeLimitsDescriptor);
  uint8_t* bytes = slot->bytes;
  const bool is14 = IsEdid14(*model);
  WriteRates(bytes, kVertical, is14, limits->minVRate, limits->maxVRate);
  WriteRates(bytes, kHorizontal, is14, limits->minHRate, limits->maxHRate);
  bytes[9] = Low8(limits->maxPixelClock / kClockStep);

  const uint8_t formula = limits->timingFormula;
  if (formula < kLimitsOnly && model->continuousFreq == 0) REEDID_WARN("please set supportGTF");
  bytes[kKindByte] = kKindOfFormula[formula <= kLimitsOnly ? formula : uint8_t{kLimitsOnly}];
  if (formula > kLimitsOnly) REEDID_ERR("invalid timing formula: %d", formula);
  if (formula == kSecondaryGtf) WriteSecondaryGtf(bytes, *limits);
  if (formula == kCvt && is14) WriteCvt(writer, *limits);
  return 0;
}
