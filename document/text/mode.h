// Timings by a mode's name.
#pragma once

#include <optional>
#include <string_view>

#include "document/text/fields.h"

namespace reedid::document::text {

// "1920x1080@60", "1920x1080i@50": the format of CTA-861, else that of VESA DMT, else CVT with reduced blanking. Nothing
// when it is none, or no formula gives it.
std::optional<DtdTiming> ModeTiming(std::string_view mode);

// A timing's keys in place of its "mode"; what stands beside it counts more.
Json WithMode(const Json& json, const Place& place);

}  // namespace reedid::document::text
