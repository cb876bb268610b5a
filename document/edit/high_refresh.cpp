#include "document/edit/high_refresh.h"

#include <fmt/format.h>

namespace reedid::document {

void CheckHighRefresh(const Image& image) {
  if (image.IsEdid() && image.blocks().size() >= 3) return;
  throw Error(ErrorKind::kRefused, fmt::format("{}: has no more than two blocks already", image.name()));
}

Image HighRefresh(Image image) {
  CheckHighRefresh(image);
  if (EDID_FitTwoBlocks(image.handle()) != 0) {
    throw Error(ErrorKind::kRefused, fmt::format("{}: no memory", image.name()));
  }
  return image;
}

}  // namespace reedid::document
