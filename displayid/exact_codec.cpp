#include "displayid/exact_codec.h"

namespace reedid {
namespace {

constexpr uint8_t kOuiPlace = kDispIdHeaderSize;

// The size of the block that this record is when it is read; 0 when there is none.
unsigned Write(const DispIdForm& form, const ExactCodec& codec, const void* record, uint8_t* block) {
  block[0] = form.tag;
  if (form.oui != 0) {
    for (unsigned i = 0; i < 3; ++i) block[kOuiPlace + i] = Low8(form.oui >> (16 - 8 * i));
  }
  const unsigned size = WriteExact(codec, record, block, REEDID_DISPID_DATA_BLOCK_SIZE);
  if (size < form.minSize || size > form.maxSize) return 0;
  block[2] = Low8(size - kDispIdHeaderSize);
  return IsExactly(codec, Bytes(block, size), record) ? size : 0;
}

}  // namespace

int32_t GetExactBlock(const DispIdForm& form, const ExactCodec& codec, const DispIdDataBlock* entry, void* record,
                      Caller caller) {
  if (!Matches(entry, form.tag, form.minSize) || entry->size > form.maxSize || record == nullptr) {
    return REEDID_ERR_AS(caller, "invalid parameters");
  }
  if (form.oui != 0) {
    const uint8_t* oui = entry->bytes + kOuiPlace;
    const bool same = (uint32_t{oui[0]} << 16 | uint32_t{oui[1]} << 8 | oui[2]) == form.oui;
    if (!same) return REEDID_ERR_AS(caller, "invalid OUI(%02X%02X%02x)", oui[0], oui[1], oui[2]);
  }
  if (!ReadExact(codec, BytesOf(*entry), record)) return REEDID_ERR_AS(caller, "invalid parameters");
  return 0;
}

int32_t SetExactBlock(const DispIdForm& form, const ExactCodec& codec, const void* record, DispIdDataBlock* entry,
                      Caller caller) {
  uint8_t block[REEDID_DISPID_DATA_BLOCK_SIZE] = {};
  const unsigned size = record == nullptr || !CanHold(entry) ? 0 : Write(form, codec, record, block);
  if (size == 0) return REEDID_ERR_AS(caller, "invalid parameters");
  std::memcpy(entry->bytes, block, size);
  entry->tag = form.tag;
  entry->revision = block[1] & 7;
  entry->headerFlags = block[1] >> 3;
  entry->size = Low8(size);
  return 0;
}

}  // namespace reedid
