#include "document/edit/two_displays.h"

#include <fmt/format.h>

#include <memory>
#include <new>
#include <utility>

namespace reedid::document {
namespace {

Image LimitToCommon(Image image, const Image& other) {
  if (EDID_LimitToCommon(image.handle(), other.handle()) != 0) throw std::bad_alloc();
  return image;
}

}  // namespace

Image CopyOf(const Image& image) {
  Notes notes;
  return Image::FromBytes(image.name(), image.Generate(notes));
}

Image CommonOf(std::span<const Image> images) {
  Image common = CopyOf(images.front());
  for (const Image& other : images.subspan(1)) common = LimitToCommon(std::move(common), other);
  return common;
}

Edit CommonEdit(Image other) {
  const auto shared = std::make_shared<const Image>(std::move(other));
  return {[shared](Image image) { return LimitToCommon(std::move(image), *shared); }};
}

Edit AudioEdit(Image from) {
  const auto shared = std::make_shared<const Image>(std::move(from));
  return {[shared](Image image) {
    if (EDID_TakeAudio(image.handle(), shared->handle()) != 0) {
      throw Error(ErrorKind::kRefused, fmt::format("{}: no room for the sound of {}", image.name(), shared->name()));
    }
    return image;
  }};
}

Edit DolbyLowLatencyEdit() {
  return {[](Image image) {
    EDID_LimitToDolbyLowlatency(image.handle());
    return image;
  }};
}

}  // namespace reedid::document
