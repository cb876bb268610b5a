// Blocks of DisplayID without a codec of one record.
#pragma once

#include "document/text/kinds.h"

namespace reedid::document::text {

// The numbers of the timings whose bits are set.
extern const Form kBitmapForm;

// Data blocks of CTA-861.
extern const Form kCtaBlocksForm;

}  // namespace reedid::document::text
