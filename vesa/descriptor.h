// What every display descriptor starts with (EDID 1.4, table 3.23): three zero bytes, the tag, and a byte that is zero
// but for range limits.
#pragma once

#include <cstdint>

#include "base/layout.h"
#include "reedid/timing.h"
#include "timing/dtd.h"

namespace reedid {

inline constexpr unsigned kDescriptorTagByte = 3;
inline constexpr uint8_t kDescriptorFlagsByte = 4;
inline constexpr unsigned kDescriptorPayload = 5;

inline Bytes BytesOf(const DtdSlot& slot) {
  return {slot.bytes, kDtdSize};
}

// Bytes 0..3, that a slot with this tag must have: its flag can have been set by hand.
inline bool HasTag(const DtdSlot& slot, uint8_t tag) {
  return BytesOf(slot).Le24(0) == 0 && slot.bytes[kDescriptorTagByte] == tag;
}

inline bool HasPlainHeader(const DtdSlot& slot, uint8_t tag) {
  return HasTag(slot, tag) && slot.bytes[kDescriptorFlagsByte] == 0;
}

// Clears a slot and gives it flag and tag, for the payload to be written behind.
inline LayoutWriter BeginDescriptor(DtdSlot& slot, uint8_t tag) {
  slot = {};
  slot.flag = tag;
  slot.bytes[kDescriptorTagByte] = tag;
  return LayoutWriter(slot.bytes);
}

}  // namespace reedid
