// The timings of the base block (EDID 1.4, table 3.1) and of a video timing block extension (VESA VTB-EXT 1.0), which
// has the same items.
//
// Base block: 35-37 established timings, 38-53 standard timings, 54-125 four descriptors of 18 bytes
// VTB-EXT:    0 tag 0x10, 1 version, 2-4 number of detailed timings, CVT codes and standard timings, which follow from 5

#include "inventory/offers.h"
#include "timing/dtd.h"
#include "vesa/descriptor.h"
#include "vesa/model.h"
#include "vesa/std_timing.h"

namespace reedid {
namespace {

constexpr unsigned kEstablishedByte = 35, kEstablishedModes = 17;
constexpr unsigned kStandardByte = 38, kStandardTimings = 8, kStandardInDescriptor = 6, kStandardSize = 2;
constexpr unsigned kDescriptorsByte = 54;
constexpr unsigned kCvtCodes = 4, kCvtCodeSize = 3;
constexpr unsigned kListByte = 6;  // of CVT codes and established timings III
constexpr unsigned kEst3Bits = 48;

// Byte 10 of the range limits.
constexpr unsigned kKindByte = 10;
constexpr uint8_t kSecondaryGtf = 2, kCvt = 4;

bool IsDescriptor(Bytes slot, uint8_t tag) {
  return slot.Le24(0) == 0 && slot[kDescriptorTagByte] == tag;
}

Part SlotAt(Part block, unsigned i) {
  return block.From(kDescriptorsByte + i * kDtdSize).First(kDtdSize);
}

// The secondary curve as GTF uses it: C' = (C - J) * K / 256 + J, M' = K / 256 * M; C and J are stored doubled.
void ReadSecondaryCurve(Bytes limits, StandardFormula& formula) {
  const double c = limits[13] / 2.0, m = limits.Le16(14), k = limits[16] / 256.0, j = limits[17] / 2.0;
  formula.secondaryStart = limits[12] * 2u;
  formula.secondary = {(c - j) * k + j, m * k};
}

void OfferEstablished(Part block, Offers& offers) {
  offers.place.source = TIMING_ESTABLISHED;
  for (unsigned i = 0; i < kEstablishedModes; ++i) {
    const unsigned byte = kEstablishedByte + i / 8;
    const unsigned bit = i == 16 ? 7 : i % 8;
    Mode mode;
    if (!Bit(block[byte], bit) || !EstablishedMode(i, mode, offers.place.dmt)) continue;
    offers.place.offset = Low16(block.offset + byte);
    offers.place.index = Low16(i);
    offers.Add(mode);
  }
  offers.place.dmt = 0;
}

void OfferEstablished3(Part slot, Offers& offers) {
  offers.place.source = TIMING_ESTABLISHED_III;
  for (unsigned i = 0; i < kEst3Bits; ++i) {
    if (!Bit(slot[kListByte + i / 8], i % 8)) continue;
    offers.place.offset = Low16(slot.offset + kListByte + i / 8);
    offers.place.index = Low16(i);
    offers.AddDmt(Established3Dmt(i));
  }
}

// The timings that a display descriptor lists.
void OfferLists(Part slot, const StandardFormula& formula, Offers& offers) {
  if (IsDescriptor(slot.bytes, EDID_DESCRIPTOR_STD_TIMINGS)) {
    OfferStandardTimings(slot.From(kDescriptorPayload), kStandardInDescriptor, formula, offers);
  } else if (IsDescriptor(slot.bytes, EDID_DESCRIPTOR_CVT_CODES)) {
    OfferCvtCodes(slot.From(kListByte), kCvtCodes, offers);
  } else if (IsDescriptor(slot.bytes, EDID_DESCRIPTOR_EST3)) {
    OfferEstablished3(slot, offers);
  }
}

}  // namespace

StandardFormula FormulaOf(uint8_t version, uint8_t revision, const Bytes (&slots)[4]) {
  StandardFormula formula;
  formula.squareAspect = version == 1 && revision < 3;
  for (const Bytes limits : slots) {
    if (!IsDescriptor(limits, EDID_DESCRIPTOR_RANGE_LIMITS)) continue;
    if (limits[kKindByte] == kSecondaryGtf) ReadSecondaryCurve(limits, formula);
    if (limits[kKindByte] != kCvt || revision < 4) continue;
    const bool onlyReduced = Bits(limits[15], 3, 2) == 2;
    formula.kind = onlyReduced ? StandardFormula::kCvtReduced : StandardFormula::kCvt;
  }
  return formula;
}

void OfferStandardTimings(Part at, unsigned count, const StandardFormula& formula, Offers& offers) {
  offers.place.source = TIMING_STANDARD;
  for (unsigned i = 0; i < count; ++i) {
    const Part code = at.From(kStandardSize * i);
    StdTiming std = {};
    DecodeStdTiming(code.bytes, std);
    Mode mode;
    if (!StandardMode(std, formula, mode, offers.place.dmt)) continue;
    offers.place.offset = Low16(code.offset);
    offers.place.index = Low16(i);
    offers.Add(mode);
  }
  offers.place.dmt = 0;
}

// EDID 1.4, table 3.30: lines / 2 - 1 in byte 0 and 1.7-4, aspect 1.3-2, rates 2.4-0: 50, 60, 75, 85 Hz, and 60 Hz with
// reduced blanking.
void OfferCvtCodes(Part at, unsigned count, Offers& offers) {
  static constexpr struct {
    uint8_t code, width, height;
  } kAspects[] = {{ASPECT_4_3, 4, 3}, {ASPECT_16_9, 16, 9}, {ASPECT_16_10, 16, 10}, {ASPECT_5_3, 15, 9}};
  static constexpr uint8_t kRates[] = {60, 85, 75, 60, 50};  // by bit
  offers.place.source = TIMING_CVT_CODE;
  for (unsigned i = 0; i < count; ++i) {
    const Part code = at.From(kCvtCodeSize * i);
    if (code.bytes.Le24(0) == 0) continue;
    const auto& aspect = kAspects[Bits(code[1], 2, 2)];
    CvtTiming request = {};
    request.aspectRatio = aspect.code;
    request.vactive = Low16((Bits(code[1], 4, 4) << 8 | code[0]) * 2 + 2);
    request.hactive = Low16(request.vactive * aspect.width / aspect.height / 8 * 8);
    offers.place.offset = Low16(code.offset);
    offers.place.index = Low16(i);
    for (unsigned bit = sizeof kRates; bit-- > 0;) {
      if (!Bit(code[2], bit)) continue;
      request.formula = bit == 0 ? 1 : 0;
      request.frameRate = kRates[bit];
      offers.AddCvt(request);
      ++offers.place.variant;
    }
    offers.place.variant = 0;
  }
}

StandardFormula OfferBaseBlock(Part block, Offers& offers) {
  const auto slotBytes = [block](unsigned i) { return SlotAt(block, i).bytes; };
  const StandardFormula formula =
      FormulaOf(block[18], block[19], {slotBytes(0), slotBytes(1), slotBytes(2), slotBytes(3)});
  OfferEstablished(block, offers);
  OfferStandardTimings(block.From(kStandardByte), kStandardTimings, formula, offers);
  offers.place.index = 0;
  offers.place.timing.preferred = 1;
  offers.place.native = block[19] >= 4 && Bit(block[24], 1) ? 1 : 0;
  offers.AddDtd(SlotAt(block, 0));
  offers.place.timing.preferred = offers.place.native = 0;
  for (unsigned i = 0; i < kDescriptorSlots; ++i) {
    offers.place.index = Low16(i);
    const Part slot = SlotAt(block, i);
    if (i > 0) offers.AddDtd(slot);
    OfferLists(slot, formula, offers);
  }
  return formula;
}

void OfferVideoTimingExtension(Part block, const StandardFormula& formula, Offers& offers) {
  const unsigned detailed = block[2], cvt = block[3], standard = block[4];
  if (kDtdSize * detailed + kCvtCodeSize * cvt + kStandardSize * standard > 122) return;
  Part at = block.From(5);
  for (unsigned i = 0; i < detailed; ++i, at = at.From(kDtdSize)) {
    offers.place.index = Low16(i);
    offers.AddDtd(at.First(kDtdSize));
  }
  OfferCvtCodes(at, cvt, offers);
  OfferStandardTimings(at.From(kCvtCodeSize * cvt), standard, formula, offers);
}

}  // namespace reedid
