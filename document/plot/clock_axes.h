// The axes of pixel clock and refresh rate.
#pragma once

#include <vector>

#include "document/plot/box.h"
#include "document/plot/svg.h"
#include "document/plot/timing_points.h"

namespace reedid::document {

// The clock has a logarithmic axis: from 25 to 2400 MHz every factor counts alike.
class Axes {
 public:
  // Wide enough for all points.
  Axes(const Box& frame, const std::vector<Point>& points);

  double X(double clock) const;
  double Y(double rate) const;

  void Draw(Svg& svg) const;

 private:
  Box frame_;
  double leastClock_ = 20, mostClock_ = 2600;  // MHz
  double leastRate_ = 0, mostRate_ = 65, rateStep_ = 10;
};

}  // namespace reedid::document
