// What the block models need of the image beyond the public interface.
#pragma once

#include <cstdint>

#include "base/log.h"
#include "reedid/image.h"

namespace reedid {

inline constexpr uint16_t kEdidBlockSize = 128;
inline constexpr uint16_t kMaxSectionSize = 256;  // a DisplayID section: as far as an 8-bit checksum index reaches
inline constexpr uint8_t kSectionOverhead = 5;    // section header (4) and checksum (1)

// Whether a block begins with the EDID header; never looks past its size.
bool HasEdidHeader(const uint8_t* bytes, uint32_t size);

// Compares the checksum byte at the end of `size` bytes with the right one; warns when they differ.
bool CheckChecksum(const uint8_t* bytes, uint32_t size, Caller caller = {});

}  // namespace reedid
