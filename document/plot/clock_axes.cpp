#include "document/plot/clock_axes.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace reedid::document {

Axes::Axes(const Box& frame, const std::vector<Point>& points) : frame_(frame) {
  double lowest = 24;
  for (const Point& point : points) {
    leastClock_ = std::min(leastClock_, point.clock * 0.9);
    mostClock_ = std::max(mostClock_, point.clock * 1.2);
    mostRate_ = std::max(mostRate_, point.rate * 1.08);
    lowest = std::min(lowest, point.rate);
  }
  rateStep_ = mostRate_ <= 100 ? 10 : mostRate_ <= 200 ? 20 : mostRate_ <= 400 ? 50 : 100;
  leastRate_ = rateStep_ <= 20 && lowest >= 23 ? 20 : 0;
  mostRate_ = std::ceil(mostRate_ / rateStep_) * rateStep_;
}

double Axes::X(double clock) const {
  return frame_.x + frame_.width * std::log(clock / leastClock_) / std::log(mostClock_ / leastClock_);
}

double Axes::Y(double rate) const {
  return frame_.bottom() - frame_.height * (rate - leastRate_) / (mostRate_ - leastRate_);
}

void Axes::Draw(Svg& svg) const {
  const long steps = std::lround((mostRate_ - leastRate_) / rateStep_);
  for (long i = 0; i <= steps; ++i) {
    const double rate = leastRate_ + rateStep_ * static_cast<double>(i);
    svg.Line("grid", frame_.x, Y(rate), frame_.right(), Y(rate));
    svg.Text("tick end", frame_.x - 8, Y(rate) + 4, fmt::format("{:.0f}", rate));
  }
  for (const int decade : {1, 10, 100, 1000, 10000}) {
    for (int digit = 1; digit <= 9; ++digit) {
      const int clock = decade * digit;
      if (clock < leastClock_ || clock > mostClock_) continue;
      svg.Line("grid", X(clock), frame_.y, X(clock), frame_.bottom());
      const bool named = digit <= 3 || digit == 5 || digit == 7;
      if (named) svg.Text("tick mid", X(clock), frame_.bottom() + 17, fmt::format("{}", clock));
    }
  }
  svg.Text("axis mid", frame_.x + frame_.width / 2, frame_.bottom() + 38, "pixel clock in MHz");
  svg.Element("text",
              {{"class", "axis mid"},
               {"transform", fmt::format("translate({} {}) rotate(-90)", SvgNumber(frame_.x - 42),
                                         SvgNumber(frame_.y + frame_.height / 2))}},
              "refresh rate in Hz (of fields when interlaced)");
}

}  // namespace reedid::document
