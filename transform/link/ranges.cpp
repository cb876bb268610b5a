// The limits that a display states of itself, where they exceed a link.
//
// Range limits descriptor (EDID 1.4, table 3.26): 4 offsets, 5-6 vertical, 7-8 horizontal rates, 9 pixel clock / 10 MHz,
// 10 kind, 12.7..2 precision of the clock for CVT. DisplayID range limits: 6-8 maximum pixel clock less one, in 10 kHz
// (tag 0x09) or kHz (tag 0x25); maximum vertical rate in byte 14 or 10.

#include <algorithm>

#include "patch/base_block.h"
#include "patch/section.h"
#include "transform/link/hdmi.h"

namespace reedid {
namespace {

constexpr uint32_t kClockStep = 10000;  // kHz
constexpr uint8_t kCvtKind = 4;

// The fastest pixel clock that the link carries in full colour; 0 without a limit.
uint32_t MostPixelClock(const EdidLink& link) {
  uint32_t most = link.maxPixelClock;
  if (link.maxFrlRate == 0 && link.maxTmdsClock != 0)
    most = most == 0 ? link.maxTmdsClock : std::min(most, link.maxTmdsClock);
  return most;
}

uint32_t FastestDetailed(const EdidHandle& image) {
  uint32_t fastest = 0;
  VisitOffers(image, [&](const OfferedTiming& offer) {
    if (offer.source == TIMING_DETAILED) fastest = std::max(fastest, offer.timing.pixelClock);
  });
  return fastest;
}

void LimitDescriptor(const EdidHandle& image, uint8_t* slot, bool offsets, const EdidLink& link) {
  const uint32_t most = MostPixelClock(link);
  if (most != 0 && slot[9] * kClockStep > most) {
    const bool rounds = FastestDetailed(image) <= most / kClockStep * kClockStep;
    slot[9] = Low8(std::max(1u, (most + (rounds ? 0 : kClockStep - 1)) / kClockStep));
    if (slot[10] == kCvtKind && offsets) slot[12] &= 3;
  }
  const unsigned flags = offsets ? slot[4] & 3u : 0;
  const unsigned rate = (link.maxRate + 999) / 1000;
  const unsigned least = slot[5] + (flags == 3 ? 255u : 0u), told = slot[6] + (flags != 0 ? 255u : 0u);
  if (rate == 0 || told <= rate || rate < least) return;
  slot[6] = Low8(rate > 255 ? rate - 255 : rate);
  if (flags != 0 && rate <= 255) slot[4] = Low8(slot[4] & ~3u);
}

void LimitDispIdRange(SectionCursor& cursor, const EdidLink& link) {
  const bool old = cursor.tag() == DISPID_TAG_RANGE_LIMITS;
  const unsigned rateAt = old ? 14 : 10;
  if (cursor.bytes().size() <= rateAt) return;
  const uint32_t unit = old ? 10 : 1, most = MostPixelClock(link);
  for (unsigned at = 3; most != 0 && at <= 6; at += 3) {  // minimum, maximum
    if ((uint64_t{cursor.bytes().Le24(at)} + 1) * unit <= most) continue;
    uint8_t clock[3];
    PutLe24(clock, most / unit - 1);
    for (unsigned i = 0; i < sizeof clock; ++i) cursor.Set(at + i, clock[i]);
  }
  const unsigned rate = (link.maxRate + 999) / 1000;
  if (rate != 0 && rate < 256 && cursor.bytes()[rateAt] > rate && cursor.bytes()[rateAt - 1] <= rate) {
    cursor.Set(rateAt, Low8(rate));
  }
}

// A range that holds a value, with a byte for either end. 1.4 adds 255 to the maximum, or to both.
void Widen(uint8_t* slot, unsigned minAt, unsigned offsetBit, bool offsets, uint32_t low, uint32_t high) {
  const unsigned flags = offsets ? Bits(slot[4], offsetBit, 2) : 0;
  uint32_t min = slot[minAt] + (flags == 3 ? 255u : 0u), max = slot[minAt + 1] + ((flags & 2) != 0 ? 255u : 0u);
  if (low >= min && high <= max) return;
  min = std::min(min, low);
  max = std::max(max, high);
  const unsigned now = max <= 255 || !offsets ? 0 : min > 255 ? 3 : 2;
  slot[minAt] = Low8(now == 3 ? min - 255 : min);
  slot[minAt + 1] = Low8(std::min(now == 0 ? max : max - 255, 255u));
  if (offsets) slot[4] = Low8((slot[4] & ~(3u << offsetBit)) | now << offsetBit);
}

// A maximum of 0 tells nothing; with CVT it is less precise steps of 250 kHz lower.
void WidenClock(uint8_t* slot, bool offsets, uint32_t clock) {
  const bool precise = slot[10] == kCvtKind && offsets;
  const uint32_t told = slot[9] * kClockStep - (precise ? (slot[12] >> 2) * 250u : 0u);
  if (slot[9] == 0 || clock <= told) return;
  slot[9] = Low8(std::max<uint32_t>(slot[9], std::min((clock + kClockStep - 1) / kClockStep, 255u)));
  if (precise) slot[12] &= 3;
}

// Bits per colour of a digital input (EDID 1.4, table 3.11): byte 20 bits 6..4, 0 undefined, 1 for 6, 2 for 8, ...
void LimitDepth(EdidBlock& base, unsigned most) {
  if (most == 0 || base.bytes[19] < 4 || (base.bytes[20] & 0x80) == 0) return;
  const unsigned code = Bits(base.bytes[20], 4, 3);
  if (code == 0 || code == 7 || 4 + 2 * code <= most) return;
  Overwrite(base, 20, Low8((base.bytes[20] & 0x8F) | std::max(1u, (most - 4) / 2) << 4));
}

template <class Edit>
void EditRangeLimits(EdidHandle& image, Edit edit) {
  if (image.blockCount == 0 || !HasBaseSlots(image.blocks[0])) return;
  for (unsigned i = 0; i < kBaseSlots; ++i) {
    uint8_t slot[kSlotSize];
    BaseSlot(image.blocks[0], i).CopyTo(slot);
    if ((slot[0] | slot[1] | slot[2]) != 0 || slot[3] != EDID_DESCRIPTOR_RANGE_LIMITS) continue;
    edit(slot, image.blocks[0].bytes[19] >= 4);
    SetBaseSlot(image.blocks[0], i, Bytes(slot, sizeof slot));
  }
}

}  // namespace

void LimitRanges(EdidHandle& image, const EdidLink& link) {
  EditRangeLimits(image, [&](uint8_t* slot, bool offsets) { LimitDescriptor(image, slot, offsets, link); });
  for (unsigned i = 0; i < image.blockCount; ++i) {
    EdidBlock& block = image.blocks[i];
    if (HasBaseSlots(block)) LimitDepth(block, link.maxBitsPerColour);
    for (SectionCursor cursor(block); cursor.Next();) {
      if (cursor.tag() == DISPID_TAG_RANGE_LIMITS || cursor.tag() == DISPID20_TAG_RANGE_LIMITS)
        LimitDispIdRange(cursor, link);
    }
  }
}

void WidenRange(EdidHandle& image, const OfferedTiming& mode) {
  const uint32_t total = mode.timing.hactive + uint32_t{mode.timing.hblank};
  if (total == 0) return;
  const uint64_t lines = uint64_t{mode.timing.pixelClock} * 1000 / total;
  EditRangeLimits(image, [&](uint8_t* slot, bool offsets) {
    const auto rounded = [](uint64_t value) { return static_cast<uint32_t>((value + 500) / 1000); };
    Widen(slot, 5, 0, offsets, rounded(mode.rate), rounded(mode.rate));
    if (slot[7] != slot[8]) Widen(slot, 7, 2, offsets, rounded(lines), rounded(lines));
    WidenClock(slot, offsets, mode.timing.pixelClock);
  });
}

}  // namespace reedid
