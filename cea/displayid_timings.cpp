// The timing data blocks that CTA-861 takes over from DisplayID 2.0: type VII (7.5.17), type VIII (7.5.18) and type X
// (7.5.19). Extended tag and payload are DisplayID's tag and payload, so that the DisplayID codecs do the work on a
// block wrapped around the payload; only the header differs.
//
//  1   extended tag 0x22, 0x23 or 0x2A            type VII: 3 a flag, 6..4 bytes beyond 20 per descriptor
//  2   revision 2..0 and flags                    type VIII: 3 two-byte codes, 5 YCbCr 4:2:0, 7..6 kind of code
//  3.. payload                                    type X: 6..4 bytes beyond 6 per descriptor

#include <cstring>

#include "base/bytes.h"
#include "base/log.h"
#include "base/pinned.h"
#include "cea/codec.h"
#include "displayid/codec.h"

namespace reedid {
namespace {

PIN_FIELDS(Cea20ByteDtdRecord, 0, 1, flagBit3, extraBytes, preferred);
PIN_FIELDS(Cea20ByteDtdRecord, 4, 36, timing);
PIN_SIZE(Cea20ByteDtdRecord, 40);

constexpr CeaForm kTypeVii = {CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VII, 23, 32};
constexpr CeaForm kTypeViii = {CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VIII, 4, 32};
constexpr CeaForm kTypeX = {CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_X, 9, 32};
constexpr unsigned kFlagsByte = 2;
constexpr unsigned kPayloadStart = 3;
constexpr unsigned kTypeViiSize = 23;          // with one descriptor
constexpr unsigned kTypeViiPreferredByte = 6;  // in bit 7
constexpr uint8_t kTypeViiRevision = 2;
constexpr uint8_t kTypeViiiRevision = 2;
constexpr uint8_t kTypeViiiFlags = 0x19;  // DisplayID's own among the header flags
constexpr uint8_t kOneExtraByte = 2;      // of type X header flags

// A DisplayID data block in a buffer of its own, to be written by a setter or read by a getter.
struct WrappedBlock : DispIdDataBlock {
  WrappedBlock(uint8_t blockTag, uint8_t blockRevision, uint8_t flags)
      : DispIdDataBlock{blockTag, blockRevision, flags, 0, buffer} {}

  // Around the payload of a CTA data block, with those of its flags that DisplayID knows.
  WrappedBlock(uint8_t blockTag, Bytes cta, uint8_t flagMask)
      : WrappedBlock(blockTag, cta[kFlagsByte] & 7, (cta[kFlagsByte] >> 3) & flagMask) {
    const Bytes payload = cta.From(kPayloadStart);
    BeginDataBlock(*this, {blockTag}, static_cast<unsigned>(payload.size()));
    payload.CopyTo(buffer + kPayloadStart);
  }

  WrappedBlock(const WrappedBlock&) = delete;
  WrappedBlock& operator=(const WrappedBlock&) = delete;

  uint8_t buffer[REEDID_DISPID_DATA_BLOCK_SIZE];
};

// Writes the CTA form of a DisplayID block, with `extra` zero bytes behind it.
void Unwrap(const WrappedBlock& block, const CeaForm& form, CeaDataBlock& entry, unsigned extra = 0) {
  BeginDataBlock(entry, form, block.size + extra);
  entry.bytes[kFlagsByte] = HeaderByte(block);
  std::memcpy(entry.bytes + kPayloadStart, block.buffer + kPayloadStart, block.size - kPayloadStart);
}

void OrBits(uint8_t& byte, unsigned bits) {
  byte = Low8(byte | bits);
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_Get20ByteDTD(const CeaDataBlock* entry, Cea20ByteDtdRecord* record) {
  if (!Matches(entry, kTypeVii) || record == nullptr) return REEDID_ERR("invalid parameters");
  *record = {};
  const Bytes bytes = BytesOf(*entry).First(kTypeViiSize);
  const WrappedBlock block(DISPID20_TAG_TYPE_VII, bytes, 0);
  const int32_t result = DispID20_Get20ByteDTD(&block, &record->timing, 1);
  record->flagBit3 = Bit(bytes[kFlagsByte], 3);
  record->extraBytes = Low8(Bits(bytes[kFlagsByte], 4, 3));
  record->preferred = record->timing.preferred;  // CTA-861 gives the bit another meaning
  record->timing.preferred = 0;
  return result;
}

int32_t CEA_Set20ByteDTD(const Cea20ByteDtdRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  WrappedBlock block(DISPID20_TAG_TYPE_VII, kTypeViiRevision, 0);
  const int32_t result = DispID20_Set20ByteDTD(&record->timing, 1, &block);
  if (result != 0) return result;
  const unsigned extra = Bits(record->extraBytes, 0, 3);
  Unwrap(block, kTypeVii, *entry, extra);
  OrBits(entry->bytes[kFlagsByte], extra << 4 | (record->flagBit3 & 1u) << 3);
  uint8_t& preferredByte = entry->bytes[kTypeViiPreferredByte];
  preferredByte = Low8(Bits(preferredByte, 0, 7) | (record->preferred & 1u) << 7);
  return 0;
}

int32_t CEA_GetTimingCode(const CeaDataBlock* entry, TimingCodeRecord* record) {
  if (!Matches(entry, kTypeViii) || record == nullptr) return REEDID_ERR("invalid parameters");
  const Bytes bytes = BytesOf(*entry);
  const WrappedBlock block(DISPID20_TAG_TYPE_VIII, bytes, kTypeViiiFlags);
  const int32_t result = DispID20_GetTimingCode(&block, record, static_cast<uint32_t>(DispID_GetTimingCnt(&block)));
  record->reserved = Bit(bytes[kFlagsByte], 5);
  return result;
}

int32_t CEA_SetTimingCode(const TimingCodeRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || record->codeCount == 0 || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  WrappedBlock block(DISPID20_TAG_TYPE_VIII, kTypeViiiRevision, 0);
  const int32_t result = DispID20_SetTimingCode(record, &block);
  if (result != 0) return result;
  if (block.size > REEDID_CEA_DATA_BLOCK_SIZE) return REEDID_ERR("invalid parameters");
  Unwrap(block, kTypeViii, *entry);
  OrBits(entry->bytes[kFlagsByte], unsigned{record->reserved} << 5);
  return 0;
}

int32_t CEA_Get6ByteCVT(const CeaDataBlock* entry, CvtTiming* timings) {
  if (!Matches(entry, kTypeX) || timings == nullptr) return REEDID_ERR("invalid parameters");
  const WrappedBlock block(DISPID20_TAG_TYPE_X, BytesOf(*entry), 0x1F);
  return DispID20_Get6ByteCVT(&block, timings, static_cast<uint32_t>(DispID_GetTimingCnt(&block)));
}

int32_t CEA_Set6ByteCVT(const CvtTiming* timings, uint32_t count, CeaDataBlock* entry) {
  if (timings == nullptr || count == 0 || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  // All descriptors have the size of the first: a later rate above 256 does not make room for itself.
  const bool fastRate = Bits(timings[0].frameRate - 1u, 8, 2) != 0;
  WrappedBlock block(DISPID20_TAG_TYPE_X, 0, fastRate ? kOneExtraByte : uint8_t{0});
  const int32_t result = DispID20_Set6ByteCVT(timings, count, &block);
  if (result != 0) return result;
  if (block.size > REEDID_CEA_DATA_BLOCK_SIZE) return REEDID_ERR("invalid parameters");
  Unwrap(block, kTypeX, *entry);
  return 0;
}
