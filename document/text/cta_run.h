// Data blocks of CTA-861 one behind another: the collection of an extension, or a DisplayID data block.
#pragma once

#include "document/text/kinds.h"

namespace reedid::document::text {

// What is no data block stands there as bytes, but for zeros at the end.
Json CtaRunToJson(Bytes run, Context context);

ByteVector CtaRunFromJson(const Json& json, Context context, const Place& place);

}  // namespace reedid::document::text
