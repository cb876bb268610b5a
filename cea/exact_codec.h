// Codecs of CTA data blocks that are made as base/exact_codec.h tells. Besides, such a structure has
//   kForm, kOui   what its getter accepts; no vendor's block has OUI 0
#pragma once

#include "base/exact_codec.h"
#include "cea/codec.h"

namespace reedid {

inline unsigned UsedSize(const uint8_t* bytes, unsigned least) {
  return UsedSize(bytes, least, REEDID_CEA_DATA_BLOCK_SIZE);
}

struct CeaKind {
  CeaForm form;
  uint32_t oui;
};

int32_t GetExactBlock(const CeaKind& kind, const ExactCodec& codec, const CeaDataBlock* entry, void* record,
                      Caller caller);
int32_t SetExactBlock(const CeaKind& kind, const ExactCodec& codec, const void* record, CeaDataBlock* entry,
                      Caller caller);

template <class Codec, class Record>
int32_t GetExact(const CeaDataBlock* entry, Record* record, Caller caller = {}) {
  return GetExactBlock({Codec::kForm, Codec::kOui}, ExactCodecOf<Codec, Record>(), entry, record, caller);
}

template <class Codec, class Record>
int32_t SetExact(const Record* record, CeaDataBlock* entry, Caller caller = {}) {
  return SetExactBlock({Codec::kForm, Codec::kOui}, ExactCodecOf<Codec, Record>(), record, entry, caller);
}

}  // namespace reedid
