#include "document/compare/timing_pairs.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>

namespace reedid::document {
namespace {

using Alike = std::function<bool(const PlacedTiming&, const PlacedTiming&)>;

bool IsSameFormat(const TimingItem& a, const TimingItem& b) {
  return a.timing.hactive == b.timing.hactive && a.timing.vactive == b.timing.vactive &&
         a.timing.interlaced == b.timing.interlaced;
}

// Image size and preferred mark are no part of what a link must carry; the codes of a VIC are.
bool IsSameTiming(const TimingItem& a, const TimingItem& b) {
  const DtdTiming &s = a.timing, &t = b.timing;
  return IsSameFormat(a, b) && a.id == b.id && a.ycc420 == b.ycc420 && s.pixelClock == t.pixelClock &&
         s.hblank == t.hblank && s.hfrontPorch == t.hfrontPorch && s.hsyncWidth == t.hsyncWidth &&
         s.vblank == t.vblank && s.vfrontPorch == t.vfrontPorch && s.vsyncWidth == t.vsyncWidth &&
         s.hsyncPositive == t.hsyncPositive && s.vsyncPositive == t.vsyncPositive;
}

std::vector<PlacedTiming> TimingsOf(const std::vector<Part>& parts) {
  std::vector<PlacedTiming> timings;
  for (size_t i = 0; i < parts.size(); ++i) {
    const Node& node = *parts[i].node;
    if (node.isTiming) {
      timings.push_back({node.timings.front(), i, nullptr});
      continue;
    }
    auto item = node.timings.begin();
    for (const Field& field : node.fields) {
      if (field.isTiming) timings.push_back({*item++, i, &field});
    }
  }
  return timings;
}

// Gives pairs without a second timing the first one of `left` that is alike, which leaves `left`.
void Pair(std::vector<TimingPair>& pairs, std::vector<PlacedTiming>& left, const Alike& alike) {
  for (TimingPair& pair : pairs) {
    if (pair.after) continue;
    const auto found =
        std::find_if(left.begin(), left.end(), [&](const PlacedTiming& other) { return alike(*pair.before, other); });
    if (found == left.end()) continue;
    pair.after = *found;
    left.erase(found);
  }
}

}  // namespace

SourceBytes PlacedTiming::Bytes(const std::vector<Part>& parts) const {
  if (field != nullptr) return field->bytes;
  SourceBytes bytes = parts[part].node->bytes;
  for (const Field& of : parts[part].node->fields) {
    if (of.isTiming) bytes.Add(of.bytes);
  }
  return bytes;
}

std::vector<TimingPair> PairTimings(const std::vector<Part>& before, const std::vector<Part>& after) {
  std::vector<TimingPair> pairs;
  for (const PlacedTiming& timing : TimingsOf(before)) pairs.push_back({timing, std::nullopt});
  std::vector<PlacedTiming> left = TimingsOf(after);
  const auto isOfSamePart = [&](const PlacedTiming& b, const PlacedTiming& a) {
    const Part &pb = before[b.part], &pa = after[a.part];
    return pb.node->isTiming ? pb.path == pa.path && pa.node->isTiming : pb.partner == a.part;
  };
  const auto same = [](const PlacedTiming& b, const PlacedTiming& a) {
    return b.item.kind == a.item.kind && IsSameTiming(b.item, a.item);
  };
  Pair(pairs, left, [&](const PlacedTiming& b, const PlacedTiming& a) { return same(b, a) && isOfSamePart(b, a); });
  Pair(pairs, left, same);
  const auto sameFormat = [](const PlacedTiming& b, const PlacedTiming& a) {
    return b.item.kind == a.item.kind && IsSameFormat(b.item, a.item);
  };
  Pair(pairs, left,
       [&](const PlacedTiming& b, const PlacedTiming& a) { return sameFormat(b, a) && isOfSamePart(b, a); });
  Pair(pairs, left, sameFormat);
  // A VIC that is left in YCbCr 4:2:0 only, for its clock.
  Pair(pairs, left, [](const PlacedTiming& b, const PlacedTiming& a) {
    return b.item.kind == TimingKind::kVic && a.item.kind == TimingKind::kVic420 && b.item.id == a.item.id;
  });
  for (const PlacedTiming& timing : left) pairs.push_back({std::nullopt, timing});
  return pairs;
}

Change TimingChange(const TimingPair& pair) {
  if (!pair.before) return {ChangeKind::kAdded, KindName(pair.after->item.kind), "", ItemText(pair.after->item)};
  const TimingItem& before = pair.before->item;
  Change change = {ChangeKind::kDropped, KindName(before.kind), ItemText(before), ""};
  if (!pair.after) return change;
  const TimingItem& after = pair.after->item;
  change.after = ItemText(after);
  if (after.kind != before.kind) {
    change.kind = ChangeKind::kReplaced;
    change.after = fmt::format("{} {}", KindName(after.kind), change.after);
  } else if (IsSameTiming(before, after)) {
    change.kind = change.before == change.after ? ChangeKind::kKept : ChangeKind::kChanged;
  } else if (before.id != after.id || before.timing.pixelClock == after.timing.pixelClock) {
    change.kind = ChangeKind::kReplaced;
  } else {
    change.kind = after.timing.pixelClock < before.timing.pixelClock ? ChangeKind::kLowered : ChangeKind::kRaised;
  }
  return change;
}

}  // namespace reedid::document
