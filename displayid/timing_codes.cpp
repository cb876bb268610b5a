// Timings by number. Codes, one byte each: type IV, tag 0x06 (DisplayID 1.3, table 4-13), and type VIII, tag 0x23
// (DisplayID 2.0, table 4-13). Header byte 1 tells the kind of code in bits 7..6 and, in bit 3, two bytes per code,
// which is not supported. Bitmaps: VESA, tag 0x07, and CTA, tag 0x08 (DisplayID 1.3, tables 4-14 and 4-15); bit i of
// the payload, lowest first, is the timing with identifier or VIC i + 1.

#include <algorithm>
#include <cstring>

#include "base/bytes.h"
#include "base/log.h"
#include "base/pinned.h"
#include "displayid/codec.h"
#include "displayid/descriptors.h"

namespace reedid {
namespace {

PIN_FIELDS(TimingCodeRecord, 0, 1, codeType, reserved, twoByteCodes, codeCount);
PIN_FIELDS(TimingCodeRecord, kPointer, kPointer, codes);
PIN_SIZE(TimingCodeRecord, 2 * kPointer);

constexpr unsigned kMaxCodes = kMaxDispIdPayload;
constexpr unsigned kVesaBitmapMinSize = 13;
constexpr unsigned kCtaBitmapMinSize = 11;

// Types IV and VIII. The exported getters check the tag.
int32_t GetTimingCode(const DispIdDataBlock& entry, TimingCodeRecord* record, uint32_t requested) {
  if (entry.bytes == nullptr || record == nullptr || record->codes == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  if (Bit(entry.headerFlags, 0)) return REEDID_ERR("Not support 2byte code now!!!");
  const int32_t count = DispID_GetTimingCnt(&entry);
  if (count < 0) return -1;
  record->codeType = Low8(Bits(entry.headerFlags, 3, 2));
  record->twoByteCodes = 0;
  record->codeCount = Low8(std::min(requested, static_cast<uint32_t>(count)));
  PayloadOf(entry).First(record->codeCount).CopyTo(record->codes);
  return 0;
}

int32_t SetTimingCode(DispIdHeader header, const TimingCodeRecord* record, DispIdDataBlock* entry) {
  if (record == nullptr || record->codes == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  if (record->twoByteCodes != 0) return REEDID_ERR("Not support 2byte code now!!!");
  if (record->codeCount == 0 || record->codeCount > kMaxCodes) return REEDID_ERR("invalid parameters");
  header.flags = Low8(record->codeType << 3);
  BeginDataBlock(*entry, header, record->codeCount);
  std::memcpy(entry->bytes + kDispIdHeaderSize, record->codes, record->codeCount);
  return 0;
}

int32_t GetBitmap(const DispIdDataBlock& entry, uint8_t* flags, uint32_t requested) {
  const int32_t count = DispID_GetTimingCnt(&entry);
  if (count < 0) return -1;
  const Bytes payload = PayloadOf(entry);
  const uint32_t delivered = std::min(requested, static_cast<uint32_t>(count));
  for (uint32_t i = 1; i < delivered; ++i) flags[i] = Bit(payload[(i - 1) / 8], (i - 1) % 8);
  return 0;
}

// The size counts one payload byte too few, and the last eight elements go into the byte behind the block, over what
// stands there: odd on purpose, docs/oddities.md.
int32_t SetBitmap(uint8_t tag, const uint8_t* flags, uint32_t count, DispIdDataBlock* entry, Caller caller = {}) {
  if (flags == nullptr || !CanHold(entry) || count == 0 || count % 8 != 0 || (count - 1) / 8 > kMaxDispIdPayload) {
    return REEDID_ERR_AS(caller, "invalid parameters");
  }
  BeginDataBlock(*entry, {tag, 0}, (count - 1) / 8);
  uint8_t* payload = entry->bytes + kDispIdHeaderSize;
  for (uint32_t i = 1; i < count; ++i) {
    uint8_t& byte = payload[(i - 1) / 8];
    byte = Low8(byte | (flags[i] & 1u) << ((i - 1) % 8));
  }
  return 0;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID_GetTimingCode(const DispIdDataBlock* entry, TimingCodeRecord* record, uint32_t requested) {
  if (!HasTag(entry, DISPID_TAG_TYPE_IV)) return REEDID_ERR("invalid parameters");
  return GetTimingCode(*entry, record, requested);
}

int32_t DispID_SetTimingCode(const TimingCodeRecord* record, DispIdDataBlock* entry) {
  return SetTimingCode({DISPID_TAG_TYPE_IV, 1}, record, entry);
}

int32_t DispID20_GetTimingCode(const DispIdDataBlock* entry, TimingCodeRecord* record, uint32_t requested) {
  if (!HasTag(entry, DISPID20_TAG_TYPE_VIII)) return REEDID_ERR("invalid parameters");
  return GetTimingCode(*entry, record, requested);
}

int32_t DispID20_SetTimingCode(const TimingCodeRecord* record, DispIdDataBlock* entry) {
  return SetTimingCode({DISPID20_TAG_TYPE_VIII}, record, entry);
}

int32_t DispID_GetVESATiming(const DispIdDataBlock* entry, uint8_t* flags, uint32_t requested) {
  if (!Matches(entry, DISPID_TAG_VESA_TIMINGS, kVesaBitmapMinSize) || flags == nullptr)
    return REEDID_ERR("invalid parameters");
  return GetBitmap(*entry, flags, requested);
}

int32_t DispID_SetVESATiming(const uint8_t* flags, uint32_t count, DispIdDataBlock* entry) {
  return SetBitmap(DISPID_TAG_VESA_TIMINGS, flags, count, entry);
}

int32_t DispID_GetCEATiming(const DispIdDataBlock* entry, uint8_t* flags, uint32_t requested) {
  if (!Matches(entry, DISPID_TAG_CTA_TIMINGS, kCtaBitmapMinSize) || flags == nullptr)
    return REEDID_ERR("invalid parameters");
  return GetBitmap(*entry, flags, requested);
}

int32_t DispID_SetCEATiming(const uint8_t* flags, uint32_t count, DispIdDataBlock* entry) {
  return SetBitmap(DISPID_TAG_CTA_TIMINGS, flags, count, entry);
}
