// One rectangle of a picture.
#pragma once

namespace reedid::document {

// In SVG units; y grows downwards.
struct Box {
  double x, y, width, height;
  double right() const { return x + width; }
  double bottom() const { return y + height; }
};

}  // namespace reedid::document
