// Places labels beside their points so that nothing covers anything else.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "document/plot/box.h"

namespace reedid::document {

class Labels {
 public:
  explicit Labels(const Box& frame) : frame_(frame) {}

  // Keeps labels off this.
  void Occupy(const Box& box) { taken_.push_back(box); }

  // The nearest free place for a label of this size beside a point; none when all near places are taken.
  std::optional<Box> Place(double x, double y, double width, double height);

 private:
  bool IsFree(const Box& box) const;
  Box frame_;
  std::vector<Box> taken_;
};

// The width of a text in the label font, rather too much than too little.
double LabelWidth(const std::string& text);

}  // namespace reedid::document
