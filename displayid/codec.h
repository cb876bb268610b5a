// What every data block codec of a DisplayID section starts with: the check of a getter and the header of a setter.
#pragma once

#include <cstdint>
#include <cstring>
#include <optional>

#include "base/layout.h"
#include "base/log.h"
#include "base/memory.h"
#include "edid/image.h"
#include "reedid/displayid.h"

namespace reedid {

inline constexpr unsigned kDispIdHeaderSize = 3;  // tag, revision and flags, number of payload bytes
inline constexpr unsigned kMaxDispIdPayload = REEDID_DISPID_DATA_BLOCK_SIZE - kDispIdHeaderSize;

constexpr uint8_t HeaderByte(const DispIdDataBlock& entry) {
  return Low8(entry.revision | entry.headerFlags << 3);
}

inline Bytes BytesOf(const DispIdDataBlock& entry) {
  return {entry.bytes, entry.size};
}

inline Bytes PayloadOf(const DispIdDataBlock& entry) {
  return BytesOf(entry).From(kDispIdHeaderSize);
}

constexpr bool HasTag(const DispIdDataBlock* entry, uint8_t tag) {
  return entry != nullptr && entry->tag == tag;
}

// The check of a getter: the tag and enough bytes.
constexpr bool Matches(const DispIdDataBlock* entry, uint8_t tag, unsigned minSize) {
  return HasTag(entry, tag) && entry->bytes != nullptr && entry->size >= minSize;
}

constexpr bool CanHold(const DispIdDataBlock* entry) {
  return entry != nullptr && entry->bytes != nullptr;
}

// DispID_Open that tells a refused section from lacking memory.
DispIdBlock* OpenDispId(const EdidBlock* block, MemoryWatch& memory);

// Room for data blocks; counted in 8 bits.
constexpr uint8_t FreeSpace(const DispIdBlock& model) {
  return Low8(model.sectionSize - model.payloadUsed - kSectionOverhead);
}

// The bytes that a data block in an entry's place may have.
constexpr unsigned RoomInPlaceOf(const DispIdBlock& model, const DispIdDataBlock& entry) {
  return unsigned{FreeSpace(model)} + entry.size;
}

// What a setter writes into the header; what it does not name stays as the caller set it.
struct DispIdHeader {
  uint8_t tag;
  std::optional<uint8_t> revision = std::nullopt;
  std::optional<uint8_t> flags = std::nullopt;
};

// Gives an entry its header over `payload` cleared bytes.
inline LayoutWriter BeginDataBlock(DispIdDataBlock& entry, const DispIdHeader& header, unsigned payload) {
  entry.tag = header.tag;
  entry.revision = header.revision.value_or(entry.revision);
  entry.headerFlags = header.flags.value_or(entry.headerFlags);
  entry.size = Low8(payload + kDispIdHeaderSize);
  std::memset(entry.bytes, 0, entry.size);
  entry.bytes[0] = entry.tag;
  entry.bytes[1] = HeaderByte(entry);
  entry.bytes[2] = Low8(payload);
  return LayoutWriter(entry.bytes);
}

}  // namespace reedid
