// What an edit of a CTA-861 extension leaves out. The library writes an extension anew from its model: data blocks and
// timings that do not fit are left out, and so is what stands behind the last timing, such as display descriptors.
#pragma once

#include <cstddef>
#include <string>

#include "document/read/image.h"

namespace reedid::document {

// What the CTA-861 extensions of an image hold.
struct CtaContent {
  size_t dataBlocks = 0;
  size_t timings = 0;
  size_t otherBytes = 0;  // bytes other than 0 that belong to neither
};
CtaContent CountCtaContent(const Image& image);

// Whether an edit may leave something out that it was not asked to.
enum class Loss : bool { kRefuse, kAllow };

// Stops an edit that lost something of `before`, with kLoss; where that is allowed, it is only noted.
void CheckLoss(const Image& edited, const CtaContent& before, Loss loss, Notes& notes);

// Notes what will be given up, or refuses it.
void GiveUp(const Image& image, const std::string& what, Loss loss, Notes& notes);

}  // namespace reedid::document
