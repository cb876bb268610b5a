// A link limit on a block of each family.
#pragma once

#include <cstdint>

#include "reedid/cea.h"
#include "reedid/displayid.h"
#include "reedid/vesa.h"
#include "transform/reclock.h"

namespace reedid {

int32_t LimitVesa(VesaBlock& model, const LinkLimit& limit, Rates rates);  // as the last codec answered
void LimitCea(CeaBlock& model, const LinkLimit& limit, Rates rates);
void LimitDispId(DispIdBlock& model, const LinkLimit& limit, Rates rates);

}  // namespace reedid
