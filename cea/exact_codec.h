// Codecs whose getter and setter are each other's reverse, made of one layout: a setter reads back what it wrote and
// hands it over only when that is the record again. Thus a value that is too large, lies between two codes or belongs to
// another version of the block is refused without a check of its own.
//
// A codec is a structure with
//   Record                               without padding, because records are compared byte by byte
//   kForm, kOui                          what its getter accepts; no vendor's block has OUI 0
//   Takes(bytes)                         whether the version is known and has this size
//   Holds(record)                        whether the layout may be written: lists that end within their arrays and the block
//   Layout(io, record, size)             the fields, of a block of this size; the largest size while it is written
//   Size(record, bytes)                  of the block that was written into cleared bytes; what is behind it is dropped
#pragma once

#include <cstring>
#include <type_traits>

#include "cea/codec.h"

namespace reedid {

struct ExactCodec {
  static constexpr uint32_t kOui = 0;
  static constexpr bool Takes(Bytes) { return true; }
  template <class Record>
  static constexpr bool Holds(const Record&) {
    return true;
  }
};

// Up to the last byte that is not 0, and no less than `least`.
inline unsigned UsedSize(const uint8_t* bytes, unsigned least) {
  unsigned size = REEDID_CEA_DATA_BLOCK_SIZE;
  while (size > least && bytes[size - 1] == 0) --size;
  return size;
}

template <class Codec, class Record>
int32_t GetExact(const CeaDataBlock* entry, Record* record, Caller caller = {}) {
  if (!Matches(entry, Codec::kForm) || record == nullptr) return REEDID_ERR_AS(caller, "invalid parameters");
  if (Codec::kOui != 0 && !HasOui(*entry, Codec::kOui)) return BadOui(*entry, caller);
  const Bytes bytes = BytesOf(*entry);
  if (!Codec::Takes(bytes)) return REEDID_ERR_AS(caller, "invalid parameters");
  *record = {};
  Codec::Layout(LayoutReader(bytes), *record, entry->size);
  return 0;
}

// Whether `block` was filled with what is this record when it is read.
template <class Codec, class Record>
bool WriteExact(const Record& record, CeaDataBlock& block) {
  static_assert(std::has_unique_object_representations_v<Record>, "padding would be compared");
  if (!Codec::Holds(record)) return false;
  const LayoutWriter writer = BeginDataBlock(block, Codec::kForm, REEDID_CEA_DATA_BLOCK_SIZE);
  if (Codec::kOui != 0) PutLe24(block.bytes + OuiPlace(block.tag), Codec::kOui);
  Codec::Layout(writer, record, REEDID_CEA_DATA_BLOCK_SIZE);
  block.size = Low8(Codec::Size(record, block.bytes));
  std::memset(block.bytes + block.size, 0, REEDID_CEA_DATA_BLOCK_SIZE - block.size);
  block.bytes[0] = Low8(unsigned{block.tag} << 5 | (block.size - 1u));
  if (block.size < Codec::kForm.minSize || !Codec::Takes(BytesOf(block))) return false;
  Record again = {};
  Codec::Layout(LayoutReader(BytesOf(block)), again, block.size);
  return std::memcmp(&again, &record, sizeof record) == 0;
}

template <class Codec, class Record>
int32_t SetExact(const Record* record, CeaDataBlock* entry, Caller caller = {}) {
  ScratchDataBlock block;
  if (record == nullptr || !CanHold(entry) || !WriteExact<Codec>(*record, block)) {
    return REEDID_ERR_AS(caller, "invalid parameters");
  }
  std::memcpy(entry->bytes, block.buffer, sizeof block.buffer);
  entry->tag = block.tag;
  entry->extTag = block.extTag;
  entry->size = block.size;
  return 0;
}

}  // namespace reedid
