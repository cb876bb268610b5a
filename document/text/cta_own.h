// Blocks of CTA-861 that say more than their codec tells, or that hang on others.
#pragma once

#include "document/text/kinds.h"

namespace reedid::document::text {

// VICs as CTA-861 numbers them, and which of them carry the native mark: the codec knows one of them only.
extern const Form kVideoForm;

// The VICs whose descriptors the map marks, whatever their places.
extern const Form kMapForm;

// The number of extensions, which follows from the image.
extern const Form kOverrideForm;

}  // namespace reedid::document::text
