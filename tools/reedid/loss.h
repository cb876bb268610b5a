// What an edit of a CTA-861 extension leaves out. The library writes an extension anew from its model: data blocks and
// timings that do not fit are left out, and so is what stands behind the last timing, such as display descriptors.
#pragma once

#include "image.h"

namespace reedid::tool {

// What the CTA-861 extensions of an image hold.
struct CtaContent {
  size_t dataBlocks = 0;
  size_t timings = 0;
  size_t otherBytes = 0;  // bytes other than 0 that belong to neither
};
CtaContent CountCtaContent(const Image& image);

// Stops an edit that lost something of `before` with Exit::kRefused; with `allow`, it is only said.
void CheckLoss(const Image& edited, const CtaContent& before, bool allow);

// Says what will be given up, or refuses it.
void GiveUp(const Image& image, const std::string& what, bool allow);

}  // namespace reedid::tool
