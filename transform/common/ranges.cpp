// Range limits of two displays: what lies within both.
//
// Descriptor 0xFD (EDID 1.4, 3.10.3.3): 4 offsets of 255 (1.4: 1..0 vertical, 3..2 horizontal; 2 of the maximum, 3 of both),
//   5, 6 vertical rate, 7, 8 horizontal rate, 9 clock in 10 MHz, 10 formula: 0 GTF, 1 none, 2 secondary GTF, 4 CVT
// DisplayID 0x09: 3, 6 clock in 10 kHz less one, 9, 10 horizontal, 13, 14 vertical rate; 0x25: 3, 6 clock in kHz less one,
//   9 minimum, 10 and 11.1..0 maximum vertical rate

#include <algorithm>
#include <iterator>

#include "patch/base_block.h"
#include "patch/section.h"
#include "transform/common/mixes.h"
#include "transform/common/records.h"
#include "transform/link/hdmi.h"
#include "transform/link/timings.h"

namespace reedid {
namespace {

constexpr unsigned kFeaturesByte = 24, kContinuous = 1;
constexpr unsigned kOffsetsByte = 4, kVertical = 5, kHorizontal = 7, kClock = 9, kFormula = 10, kPrecision = 12;
constexpr uint32_t kClockStep = 10000;  // kHz
constexpr uint8_t kGtf = 0, kNoFormula = 1, kSecondaryGtf = 2, kCvt = 4;
constexpr uint8_t kPadding[] = {0x0A, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20};

struct Span {
  unsigned min = 0, max = 0;
  // False, unchanged, when the two do not meet.
  bool Meet(const Span& other) {
    const Span met = {Higher(min, other.min), Lower(max, other.max)};
    if (met.min > met.max) return false;
    *this = met;
    return true;
  }
};

// The range limits of a base block; `slot` is kBaseSlots when there are none.
struct Limits {
  explicit Limits(const EdidHandle& image) {
    if (image.blockCount == 0 || !HasBaseSlots(image.blocks[0])) return;
    const EdidBlock& base = image.blocks[0];
    hasBase = true;
    offsets = base.bytes[19] >= 4;
    continuous = (base.bytes[kFeaturesByte] & kContinuous) != 0;
    for (unsigned i = 0; i < kBaseSlots && slot == kBaseSlots; ++i) {
      const Bytes descriptor = BaseSlot(base, i);
      if (descriptor.Le24(0) == 0 && descriptor[3] == EDID_DESCRIPTOR_RANGE_LIMITS) slot = i;
    }
    if (slot != kBaseSlots) BaseSlot(base, slot).CopyTo(bytes);
  }
  bool told() const { return slot != kBaseSlots; }
  Span Read(unsigned at) const {
    const unsigned flags = Flags(at);
    return {bytes[at] + (flags == 3 ? 255u : 0u), bytes[at + 1] + ((flags & 2) != 0 ? 255u : 0u)};
  }
  void Write(unsigned at, const Span& span) {
    const unsigned flags = span.max <= 255 || !offsets ? 0 : span.min > 255 ? 3 : 2;
    bytes[at] = Low8(flags == 3 ? span.min - 255 : span.min);
    bytes[at + 1] = Low8(flags == 0 ? Lower(span.max, 255u) : span.max - 255);
    if (offsets) bytes[kOffsetsByte] = Low8((bytes[kOffsetsByte] & ~(3u << Shift(at))) | flags << Shift(at));
  }

  bool hasBase = false, offsets = false, continuous = false;
  unsigned slot = kBaseSlots;
  uint8_t bytes[kSlotSize] = {};

 private:
  static unsigned Shift(unsigned at) { return at == kVertical ? 0 : 2; }
  unsigned Flags(unsigned at) const { return offsets ? Bits(bytes[kOffsetsByte], Shift(at), 2) : 0; }
};

void MeetSpan(Limits& ours, const Limits& theirs, unsigned at) {
  const Span before = ours.Read(at);
  Span span = before, other = theirs.Read(at);
  // Equal limits of lines are how a display of variable refresh rate states the one line rate of its panel.
  const auto isOne = [at](const Span& s) { return at == kHorizontal && s.min == s.max; };
  if (isOne(span)) return;
  if (isOne(other)) other.min = 0;
  if (!span.Meet(other) || isOne(span)) return;
  if (span.min != before.min || span.max != before.max) ours.Write(at, span);
}

// `fastest` is the least clock that has to stay within, in the unit of the limits.
void MeetDescriptor(Limits& ours, const Limits& theirs, unsigned fastest) {
  MeetSpan(ours, theirs, kVertical);
  MeetSpan(ours, theirs, kHorizontal);
  const unsigned clock = Higher<unsigned>(theirs.bytes[kClock], fastest);
  if (theirs.bytes[kClock] == 0 || clock >= ours.bytes[kClock]) return;
  ours.bytes[kClock] = Low8(clock);
  if (ours.bytes[kFormula] == kCvt && ours.offsets) ours.bytes[kPrecision] &= 3;  // of the clock
}

// A formula by which sources make timings of their own is one of both displays, or goes. With it go the standard timings
// that it makes: another formula would make others.
void MixFormula(EdidHandle& image, Limits& ours, const Limits& theirs) {
  const uint8_t formula = ours.told() ? ours.bytes[kFormula] : kGtf,
                other = theirs.told() ? theirs.bytes[kFormula] : kGtf;
  if (!ours.continuous || (theirs.continuous && formula == other && ours.offsets == theirs.offsets)) return;
  const bool bothGtf =
      theirs.continuous && formula != kCvt && other != kCvt && formula != kNoFormula && other != kNoFormula;
  const bool stays = theirs.continuous && (bothGtf || ours.offsets);
  if (!stays) Overwrite(image.blocks[0], kFeaturesByte, Low8(image.blocks[0].bytes[kFeaturesByte] & ~kContinuous));
  const uint8_t now = bothGtf || !ours.offsets ? kGtf : kNoFormula;
  if (!ours.told() || formula == now || formula == kNoFormula) return;
  if (formula == kCvt || formula == kSecondaryGtf) {
    for (bool found = true; found;) {
      OfferedTiming made;
      found = false;
      VisitOffers(image, [&](const OfferedTiming& offer) {
        if (offer.source != TIMING_STANDARD || offer.dmt != 0) return;
        made = offer;
        found = true;
      });
      found = found && EraseOffer(image, made);
    }
  }
  ours.bytes[kFormula] = now;
  std::copy(std::begin(kPadding), std::end(kPadding), ours.bytes + kFormula + 1);
}

// Calls visit(offer) for what the image offers within its range limits: it stays within, also when the other display offers
// it in spite of its own.
template <class Visit>
void VisitWithin(const EdidHandle& image, const LinkBudget& rates, uint32_t clock, Visit visit) {
  VisitOffers(image, [&](const OfferedTiming& offer) {
    const bool told = offer.source == TIMING_DETAILED || offer.source == TIMING_VIC;
    if (told && offer.timing.pixelClock <= clock && rates.Takes(offer, offer.timing.pixelClock)) visit(offer);
  });
}

Bytes FirstRange(const EdidHandle& image, uint8_t tag) {
  Bytes found;
  for (unsigned i = 0; i < image.blockCount; ++i) {
    for (SectionCursor cursor(image.blocks[i]); cursor.Next();) {
      if (found.size() == 0 && cursor.tag() == tag && cursor.bytes().size() > 11) found = cursor.bytes();
    }
  }
  return found;
}

void MeetDispId(SectionCursor& cursor, Bytes theirs) {
  uint8_t fresh[REEDID_DISPID_DATA_BLOCK_SIZE] = {};
  cursor.bytes().CopyTo(fresh);
  const Bytes ours = cursor.bytes();
  Span clock = {ours.Le24(3), ours.Le24(6)};
  if (clock.Meet({theirs.Le24(3), theirs.Le24(6)})) {
    PutLe24(fresh + 3, clock.min);
    PutLe24(fresh + 6, clock.max);
  }
  const auto meetBytes = [&](unsigned minAt) {
    Span span = {ours[minAt], ours[minAt + 1]};
    if (!span.Meet({theirs[minAt], theirs[minAt + 1]})) return;
    fresh[minAt] = Low8(span.min);
    fresh[minAt + 1] = Low8(span.max);
  };
  if (cursor.tag() == DISPID_TAG_RANGE_LIMITS) {
    meetBytes(9);
    if (ours.size() > 14 && theirs.size() > 14) meetBytes(13);
  } else {
    const auto most = [](Bytes bytes) { return bytes[10] | Bits(bytes[11], 0, 2) << 8; };
    Span rates = {ours[9], most(ours)};
    if (rates.Meet({theirs[9], most(theirs)})) {
      fresh[9] = Low8(rates.min);
      fresh[10] = Low8(rates.max);
      fresh[11] = Low8((fresh[11] & 0xFC) | rates.max >> 8);
    }
  }
  cursor.Replace(Bytes(fresh, ours.size()));
}

}  // namespace

void MixRanges(EdidHandle& image, const EdidHandle& other) {
  Limits ours(image);
  const Limits theirs(other);
  const LinkBudget before(kAnyLink, image);
  if (ours.hasBase) {
    const uint32_t clock = ours.bytes[kClock] * kClockStep;
    unsigned fastest = 0;
    VisitWithin(image, before, clock, [&](const OfferedTiming& offer) {
      fastest = Higher(fastest, (offer.timing.pixelClock + kClockStep - 1) / kClockStep);
    });
    if (ours.told() && theirs.told()) MeetDescriptor(ours, theirs, fastest);
    MixFormula(image, ours, theirs);
    if (ours.told()) SetBaseSlot(image.blocks[0], ours.slot, Bytes(ours.bytes, sizeof ours.bytes));
    VisitWithin(image, before, clock, [&](const OfferedTiming& offer) { WidenRange(image, offer); });
  }
  for (const uint8_t tag : {DISPID_TAG_RANGE_LIMITS, DISPID20_TAG_RANGE_LIMITS}) {
    const Bytes limits = FirstRange(other, tag);
    for (unsigned i = 0; i < image.blockCount && limits.size() != 0; ++i) {
      for (SectionCursor cursor(image.blocks[i]); cursor.Next();) {
        if (cursor.tag() == tag && cursor.bytes().size() > 11) MeetDispId(cursor, limits);
      }
    }
  }
}

}  // namespace reedid
