// Edits of one image by another: the EDID of a splitter, and of a receiver that plays the sound itself.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "document/edit/edits.h"

namespace reedid::document {

// What all of several images have in common, in the words of the first. Throws kRefused.
Image CommonOf(std::span<const Image> images);

// The same as a step of an edit, with one more image.
Edit CommonEdit(Image other);

// The sound of another image in place of the image's own.
Edit AudioEdit(Image from);

// Dolby Vision as a repeater can pass it on that draws on the picture.
Edit DolbyLowLatencyEdit();

// A copy: images own their blocks.
Image CopyOf(const Image& image);

}  // namespace reedid::document
