// Decodes all that a model holds with the codec of its kind, as a caller does who wants everything.
#pragma once

#include "reedid/reedid.h"

namespace reedid::bench {

void Decode(const VesaBlock& model);
void Decode(const CeaBlock& model);
void Decode(const DispIdBlock& model);

}  // namespace reedid::bench
