#include "document/check/range_repair.h"

#include <algorithm>
#include <cmath>

#include "document/check/draft.h"

namespace reedid::document::check {
namespace {

constexpr unsigned kOffset = 255;

// A minimum and a maximum as whole numbers.
struct Span {
  unsigned min, max;
};

// Writes a span into two bytes and its two flags of byte 4 (EDID 1.4: 10 an offset of the maximum, 11 of both).
bool WriteSpan(const ImageView& view, Draft& draft, Span span, size_t minByte, unsigned shift) {
  const size_t slot = view.range->slot.at;
  const bool maxOffset = span.max > kOffset, minOffset = span.min > kOffset;
  if (span.min == 0 || span.max > (view.minor >= 4 ? 2 * kOffset : kOffset)) return false;
  if (view.minor >= 4) {
    const unsigned flags = minOffset ? 3u : maxOffset ? 2u : 0u;
    draft[slot + 4] = static_cast<uint8_t>((draft[slot + 4] & ~(3u << shift)) | flags << shift);
  }
  draft[slot + minByte] = static_cast<uint8_t>(minOffset ? span.min - kOffset : span.min);
  draft[slot + minByte + 1] = static_cast<uint8_t>(maxOffset ? span.max - kOffset : span.max);
  return true;
}

unsigned Ceil(double value) {
  return static_cast<unsigned>(std::ceil(value));
}

}  // namespace

std::vector<Patch> FormulaReplaced(const ImageView& view, unsigned formula) {
  Draft draft(view);
  draft[view.range->slot.at + 10] = static_cast<uint8_t>(formula);
  draft.Write(view.range->slot.at + 11, {0x0A, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20});
  return draft.Changes();
}

std::vector<Patch> WidenedLimits(const ImageView& view) {
  if (view.continuous()) return {};
  const RangeLimits& range = *view.range;
  Span rates = {range.vMin, range.vMax}, lineRates = {range.hMin, range.hMax};
  unsigned clock = range.maxClock;
  for (const DetailedTiming& dtd : view.dtds) {
    if (!dtd.HasPlausibleClock() || !range.Misses(dtd)) continue;
    if (range.RateAbove(dtd)) rates.max = std::max(rates.max, Ceil(dtd.Rate()));
    if (range.RateBelow(dtd)) rates.min = std::min(rates.min, static_cast<unsigned>(dtd.Rate()));
    if (range.LineRateAbove(dtd)) lineRates.max = std::max(lineRates.max, Ceil(dtd.LineRate()));
    if (range.LineRateBelow(dtd)) lineRates.min = std::min(lineRates.min, static_cast<unsigned>(dtd.LineRate()));
    if (range.ClockAbove(dtd)) clock = std::max(clock, Ceil(dtd.Mhz() / 10) * 10);
  }
  if (range.hMin == range.hMax) lineRates.min = lineRates.max;  // marks a variable refresh rate
  Draft draft(view);
  const size_t slot = range.slot.at;
  if ((rates.min != range.vMin || rates.max != range.vMax) && !WriteSpan(view, draft, rates, 5, 0)) return {};
  if ((lineRates.min != range.hMin || lineRates.max != range.hMax) && !WriteSpan(view, draft, lineRates, 7, 2))
    return {};
  if (clock > 2550) return {};
  if (clock != range.maxClock) draft[slot + 9] = static_cast<uint8_t>(clock / 10);
  return draft.Changes();
}

std::vector<Patch> OffsetLimits(const ImageView& view, bool rate, bool lineRate) {
  const RangeLimits& range = *view.range;
  double highestRate = 0, highestLineRate = 0;
  for (const DetailedTiming& dtd : view.dtds) {
    if (!dtd.HasPlausibleClock()) continue;
    highestRate = std::max(highestRate, dtd.Rate());
    highestLineRate = std::max(highestLineRate, dtd.LineRate());
  }
  Draft draft(view);
  const auto write = [&](unsigned min, double highest, size_t minByte, unsigned shift) {
    const unsigned max = Ceil(highest);
    return WriteSpan(view, draft, {min == kOffset ? max : min, max}, minByte, shift);
  };
  if (rate && !write(range.vMin, highestRate, 5, 0)) return {};
  if (lineRate && !write(range.hMin, highestLineRate, 7, 2)) return {};
  return draft.Changes();
}

}  // namespace reedid::document::check
