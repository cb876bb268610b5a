#include "document/plot/labels.h"

#include <algorithm>

namespace reedid::document {

bool Labels::IsFree(const Box& box) const {
  if (box.x < frame_.x || box.y < frame_.y || box.right() > frame_.right() || box.bottom() > frame_.bottom()) {
    return false;
  }
  return std::none_of(taken_.begin(), taken_.end(), [&box](const Box& other) {
    return box.x < other.right() && other.x < box.right() && box.y < other.bottom() && other.y < box.bottom();
  });
}

std::optional<Box> Labels::Place(double x, double y, double width, double height) {
  constexpr double kFirst = 7, kStep = 8;
  constexpr int kRings = 8;
  struct Direction {
    double dx, dy;    // away from the point
    double left, up;  // the part of the label left of and above its anchor
  };
  constexpr Direction kDirections[] = {{-1, 0, 1, .5},   {1, 0, 0, .5},   {0, -1, .5, 1},  {0, 1, .5, 0},
                                       {-.7, -.7, 1, 1}, {.7, -.7, 0, 1}, {-.7, .7, 1, 0}, {.7, .7, 0, 0}};
  for (int ring = 0; ring < kRings; ++ring) {
    const double distance = kFirst + kStep * ring;
    for (const Direction& d : kDirections) {
      const Box box = {x + d.dx * distance - d.left * width, y + d.dy * distance - d.up * height, width, height};
      if (!IsFree(box)) continue;
      Occupy(box);
      return box;
    }
  }
  return std::nullopt;
}

double LabelWidth(const std::string& text) {
  return 6.9 * static_cast<double>(text.size()) + 2;
}

}  // namespace reedid::document
