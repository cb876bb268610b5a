// What every data block codec of a DisplayID section starts with: the check of a getter, the header of a setter.
#pragma once

#include <cstdint>
#include <cstring>

#include "base/bytes.h"
#include "base/log.h"
#include "reedid/displayid.h"

namespace reedid {

inline constexpr unsigned kDispIdHeaderSize = 3;    // tag, revision and flags, number of payload bytes
inline constexpr unsigned kMaxDispIdPayload = 248;  // as many as a section of 256 bytes holds
inline constexpr unsigned kMaxDispIdDataBlock = kDispIdHeaderSize + kMaxDispIdPayload;

constexpr uint8_t HeaderByte(const DispIdDataBlock& entry) {
  return Low8(entry.revision | entry.headerFlags << 3);
}

inline Bytes BytesOf(const DispIdDataBlock& entry) {
  return {entry.bytes, entry.size};
}

}  // namespace reedid
