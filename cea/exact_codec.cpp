#include "cea/exact_codec.h"

namespace reedid {
namespace {

// Whether `block` was filled with what is this record when it is read.
bool Write(const CeaKind& kind, const ExactCodec& codec, const void* record, CeaDataBlock& block) {
  BeginDataBlock(block, kind.form, REEDID_CEA_DATA_BLOCK_SIZE);
  if (kind.oui != 0) PutLe24(block.bytes + OuiPlace(block.tag), kind.oui);
  const unsigned size = WriteExact(codec, record, block.bytes, REEDID_CEA_DATA_BLOCK_SIZE);
  if (size < kind.form.minSize || size > kind.form.maxSize) return false;
  block.size = Low8(size);
  block.bytes[0] = Low8(unsigned{block.tag} << 5 | (size - 1));
  return IsExactly(codec, BytesOf(block), record);
}

}  // namespace

int32_t GetExactBlock(const CeaKind& kind, const ExactCodec& codec, const CeaDataBlock* entry, void* record,
                      Caller caller) {
  if (!Matches(entry, kind.form) || record == nullptr) return REEDID_ERR_AS(caller, "invalid parameters");
  if (kind.oui != 0 && !HasOui(*entry, kind.oui)) return BadOui(*entry, caller);
  if (!ReadExact(codec, BytesOf(*entry), record)) return REEDID_ERR_AS(caller, "invalid parameters");
  return 0;
}

int32_t SetExactBlock(const CeaKind& kind, const ExactCodec& codec, const void* record, CeaDataBlock* entry,
                      Caller caller) {
  ScratchDataBlock block;
  if (record == nullptr || !CanHold(entry) || !Write(kind, codec, record, block)) {
    return REEDID_ERR_AS(caller, "invalid parameters");
  }
  std::memcpy(entry->bytes, block.buffer, sizeof block.buffer);
  entry->tag = block.tag;
  entry->extTag = block.extTag;
  entry->size = block.size;
  return 0;
}

}  // namespace reedid
