// Timings as points of a picture.
#pragma once

#include <optional>
#include <vector>

#include "document/account/timing_text.h"

namespace reedid::document {

// Resolutions by width, as people sort displays.
struct SizeClass {
  unsigned leastWidth;
  const char* name;
  const char* color;
};
inline constexpr SizeClass kSizes[] = {{7680, "8K", "#862e9c"},        {3840, "4K", "#c92a2a"},
                                       {2560, "2560 wide", "#e67700"}, {1920, "1920 wide", "#2b8a3e"},
                                       {1280, "1280 wide", "#1864ab"}, {0, "smaller", "#6c757d"}};

// Beyond this nothing is drawn: a descriptor of a few pixels has a rate of megahertz.
inline constexpr double kHighestRate = 1000;  // Hz
inline constexpr double kLowestClock = 1;     // MHz

struct Point {
  TimingItem item;
  double clock;  // MHz
  double rate;   // Hz
  bool preferred;
};

const SizeClass& SizeOf(const TimingItem& item);

// An image lists some timings more than once, by identifier and in full; each is one point.
std::vector<Point> PointsOf(const std::vector<TimingItem>& items, const std::optional<TimingItem>& preferred);

bool IsDrawn(const Point& point);

}  // namespace reedid::document
