#include "document/plot/timing_points.h"

#include <algorithm>
#include <cmath>

namespace reedid::document {
namespace {

bool IsSamePoint(const TimingItem& a, const TimingItem& b) {
  return FormatText(a.timing) == FormatText(b.timing) && a.timing.pixelClock == b.timing.pixelClock &&
         a.ycc420 == b.ycc420 && std::abs(RefreshRate(a.timing) - RefreshRate(b.timing)) < 0.0005;
}

}  // namespace

const SizeClass& SizeOf(const TimingItem& item) {
  const auto fits = [&item](const SizeClass& size) { return item.timing.hactive >= size.leastWidth; };
  return *std::find_if(std::begin(kSizes), std::end(kSizes), fits);
}

std::vector<Point> PointsOf(const std::vector<TimingItem>& items, const std::optional<TimingItem>& preferred) {
  std::vector<Point> points;
  for (const TimingItem& item : items) {
    const auto same = [&item](const Point& point) { return IsSamePoint(point.item, item); };
    if (std::any_of(points.begin(), points.end(), same)) continue;
    const bool best = preferred && IsSamePoint(*preferred, item);
    points.push_back({item, item.timing.pixelClock / 1000.0, RefreshRate(item.timing), best});
  }
  return points;
}

bool IsDrawn(const Point& point) {
  return point.rate > 0 && point.rate <= kHighestRate && point.clock >= kLowestClock;
}

}  // namespace reedid::document
