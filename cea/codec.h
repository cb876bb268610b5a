// What every data block codec of a CTA extension starts with: the block's header, the check of a getter, the header of
// a setter.
#pragma once

#include <cstdint>
#include <cstring>

#include "base/layout.h"
#include "base/log.h"
#include "base/memory.h"
#include "reedid/cea.h"

namespace reedid {

// The header byte: tag in bits 7..5, number of bytes that follow in bits 4..0.
struct CeaHeader {
  explicit constexpr CeaHeader(uint8_t byte) : tag(byte >> 5), size(Low8((byte & 0x1F) + 1)) {}
  uint8_t tag;
  uint8_t size;
};

// A kind of data block and the sizes that its getter accepts.
struct CeaForm {
  uint8_t tag;
  uint8_t extTag;  // of an extended block
  uint8_t minSize;
  uint8_t maxSize;
};

constexpr bool IsKind(const CeaDataBlock& entry, uint8_t tag, uint8_t extTag = 0) {
  return entry.tag == tag && (tag != CEA_TAG_EXTENDED || entry.extTag == extTag);
}

constexpr bool Matches(const CeaDataBlock* entry, const CeaForm& form) {
  return entry != nullptr && entry->bytes != nullptr && IsKind(*entry, form.tag, form.extTag) &&
         entry->size >= form.minSize && entry->size <= form.maxSize;
}

inline Bytes BytesOf(const CeaDataBlock& entry) {
  return {entry.bytes, entry.size};
}

// Where the OUI of a vendor's block stands, least significant byte first: behind the tag, or behind the extended tag.
constexpr unsigned OuiPlace(uint8_t tag) {
  return tag == CEA_TAG_EXTENDED ? 2 : 1;
}

inline bool HasOui(const CeaDataBlock& entry, uint32_t oui) {
  return BytesOf(entry).Le24(OuiPlace(entry.tag)) == oui;
}

inline Failure BadOui(const CeaDataBlock& entry, Caller caller = {}) {
  const uint8_t* oui = entry.bytes + OuiPlace(entry.tag);
  return REEDID_ERR_AS(caller, "invalid OUI(%02X%02X%02x)", oui[2], oui[1], oui[0]);
}

constexpr bool CanHold(const CeaDataBlock* entry) {
  return entry != nullptr && entry->bytes != nullptr;
}

// CEA_Open that tells a refused block from lacking memory.
CeaBlock* OpenCea(const EdidBlock* block, MemoryWatch& memory);

// The bytes that a data block in an entry's place may have.
constexpr unsigned RoomInPlaceOf(const CeaBlock& model, const CeaDataBlock& entry) {
  return unsigned{model.freeSpace} + entry.size;
}

// Gives an entry its tag, size and header bytes over a cleared buffer, for the payload to be written behind.
inline LayoutWriter BeginDataBlock(CeaDataBlock& entry, const CeaForm& form, unsigned size) {
  entry.tag = form.tag;
  entry.extTag = form.tag == CEA_TAG_EXTENDED ? form.extTag : uint8_t{0};
  entry.size = Low8(size);
  std::memset(entry.bytes, 0, REEDID_CEA_DATA_BLOCK_SIZE);
  entry.bytes[0] = Low8(static_cast<unsigned>(form.tag) << 5 | (size - 1));
  if (form.tag == CEA_TAG_EXTENDED) entry.bytes[1] = form.extTag;
  return LayoutWriter(entry.bytes);
}

// A data block in a buffer of its own, to set and then add or put in place of another.
struct ScratchDataBlock : CeaDataBlock {
  ScratchDataBlock() : CeaDataBlock{} { bytes = buffer; }
  ScratchDataBlock(const ScratchDataBlock&) = delete;
  ScratchDataBlock& operator=(const ScratchDataBlock&) = delete;
  uint8_t buffer[REEDID_CEA_DATA_BLOCK_SIZE] = {};
};

}  // namespace reedid
