// The formula timings of a CTA type X block.
#pragma once

#include "base/bytes.h"
#include "cea/codec.h"
#include "reedid/cea.h"

namespace reedid {

inline constexpr unsigned kMaxTypeX = 4;  // records of 6 bytes that a data block of 32 bytes holds
inline constexpr unsigned kTypeXHeader = 3;
inline constexpr unsigned kTypeXRecord = 6;

// Records that the block's size would hold without extra bytes.
constexpr unsigned TypeXSlots(const CeaDataBlock& entry) {
  return entry.size < kTypeXHeader ? 0 : (entry.size - kTypeXHeader) / kTypeXRecord;
}

struct TypeXRecords {
  CvtTiming records[kMaxTypeX] = {};
  unsigned count = 0;  // delivered; with extra bytes per record fewer than TypeXSlots
};

// Reads the block; no records when it cannot be read.
inline TypeXRecords ReadTypeX(const CeaDataBlock& entry) {
  TypeXRecords read;
  if (CEA_Get6ByteCVT(&entry, read.records) != 0) return read;
  const unsigned extraBytes = Bits(entry.bytes[2], 4, 3);
  read.count = (entry.size - kTypeXHeader) / (kTypeXRecord + extraBytes);
  return read;
}

}  // namespace reedid
