// What a display offers, one question at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "document/account/tree.h"
#include "document/read/image.h"

namespace reedid::document {

// All rates of the timings that the image offers, in mHz, highest first.
std::vector<uint32_t> AllRates(const Image& image);

// The timing that a source should use; none when the image names none.
std::optional<TimingItem> PreferredOf(const Image& image);

// Every detailed timing: as the image has them, or the highest rate or the largest area first.
enum class TimingOrder : uint8_t { kImage, kRate, kArea };
std::vector<OfferedTiming> DetailedTimings(const Image& image, TimingOrder order);
Node DescribeTimings(const std::string& name, std::span<const OfferedTiming> timings);

// The kinds of audio that the image offers.
Node DescribeAudioFormats(const Image& image);

}  // namespace reedid::document
