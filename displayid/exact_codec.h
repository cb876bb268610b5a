// Codecs of DisplayID data blocks that are made as base/exact_codec.h tells; a layout names revision and flags in byte 1,
// too. Besides, such a structure has
//   kForm   what its getter accepts; a vendor's block stands behind its OUI, most significant byte first, else 0
#pragma once

#include "base/exact_codec.h"
#include "displayid/codec.h"

namespace reedid {

struct DispIdForm {
  uint8_t tag;
  uint8_t minSize;
  uint8_t maxSize;
  uint32_t oui = 0;
};

int32_t GetExactBlock(const DispIdForm& form, const ExactCodec& codec, const DispIdDataBlock* entry, void* record,
                      Caller caller);
int32_t SetExactBlock(const DispIdForm& form, const ExactCodec& codec, const void* record, DispIdDataBlock* entry,
                      Caller caller);

template <class Codec, class Record>
int32_t GetExact(const DispIdDataBlock* entry, Record* record, Caller caller = {}) {
  return GetExactBlock(Codec::kForm, ExactCodecOf<Codec, Record>(), entry, record, caller);
}

template <class Codec, class Record>
int32_t SetExact(const Record* record, DispIdDataBlock* entry, Caller caller = {}) {
  return SetExactBlock(Codec::kForm, ExactCodecOf<Codec, Record>(), record, entry, caller);
}

// Byte 1 as far as all blocks have it.
inline constexpr Place kRevision = {1, 0, 3};

}  // namespace reedid
