// The data blocks of an image, wherever they stand.
#pragma once

#include <functional>

#include "document/read/image.h"

namespace reedid::document {

// Whether a block is a DisplayID section, in an EDID or on its own.
bool IsSection(const EdidBlock& block);

// Every CTA-861 data block of an image: those of its CTA extensions, and those inside its DisplayID sections.
void ForEachCtaDataBlock(const Image& image, const std::function<void(const CeaDataBlock& entry)>& visit);

}  // namespace reedid::document
