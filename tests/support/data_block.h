// Data blocks and descriptors outside a model: `Held` with content that is to be read, `Blank` to be written. Bytes
// stand in heap buffers of exactly their size.
#pragma once

#include "reedid/reedid.h"
#include "tests/support/bytes.h"

namespace reedid::test {

template <class Entry>
struct Held;
template <class Entry>
struct Blank;

template <>
struct Held<CeaDataBlock> : CeaDataBlock {
  explicit Held(const ByteVector& content) : CeaDataBlock{}, storage(content) {
    if (!content.empty()) SetKind(content);
    size = static_cast<uint8_t>(content.size());
    bytes = storage.data();
  }
  // Whatever the bytes say.
  void SetKind(const ByteVector& head, uint8_t = 0) {
    tag = head[0] >> 5;
    extTag = tag == 7 && head.size() > 1 ? head[1] : uint8_t{0};
  }
  ExactBytes storage;
};

template <>
struct Held<DispIdDataBlock> : DispIdDataBlock {
  explicit Held(const ByteVector& content) : DispIdDataBlock{}, storage(content) {
    if (content.size() > 1) SetKind(content, content[1] >> 3);
    if (content.size() > 1) revision = content[1] & 7;
    size = static_cast<uint8_t>(content.size());
    bytes = storage.data();
  }
  void SetKind(const ByteVector& head, uint8_t flags) {
    tag = head[0];
    headerFlags = flags & 0x1F;
  }
  ExactBytes storage;
};

template <>
struct Held<DtdSlot> : DtdSlot {
  explicit Held(const ByteVector& content) : DtdSlot{} {
    flag = content[0] != 0 || content[1] != 0 ? uint8_t{1} : content[3];
    std::copy(content.begin(), content.end(), bytes);
  }
};

// A setter of a CTA block has 32 bytes of room and clears what it does not need.
template <>
struct Blank<CeaDataBlock> : CeaDataBlock {
  explicit Blank(size_t = 0, uint8_t = 0) : CeaDataBlock{0xEE, 0xEE, 0xEE, nullptr}, storage(ByteVector(32, 0xEE)) {
    bytes = storage.data();
  }
  ByteVector Written() const {
    size_t end = 32;
    while (end > size && bytes[end - 1] == 0) --end;
    return ByteVector(bytes, bytes + end);
  }
  bool Untouched() const { return tag == 0xEE && extTag == 0xEE && size == 0xEE && Written() == ByteVector(32, 0xEE); }
  bool IsKind(const CeaDataBlock& other) const { return tag == other.tag && extTag == other.extTag; }
  void KeepHeader(const CeaDataBlock&) {}
  ExactBytes storage;
};

// A setter of a DisplayID block writes as many bytes as it needs and may keep part of the header.
template <>
struct Blank<DispIdDataBlock> : DispIdDataBlock {
  explicit Blank(size_t room, uint8_t blockTag = 0x55)
      : DispIdDataBlock{blockTag, 5, 0x12, 0xEE, nullptr}, storage(ByteVector(room, 0xCC)) {
    bytes = storage.data();
  }
  ByteVector Written() const { return ByteVector(bytes, bytes + size); }
  ByteVector All() const { return ByteVector(bytes, bytes + storage.size()); }
  bool Untouched() const {
    return revision == 5 && headerFlags == 0x12 && size == 0xEE && All() == ByteVector(storage.size(), 0xCC);
  }
  bool IsKind(const DispIdDataBlock& other) const { return tag == other.tag; }
  void KeepHeader(const DispIdDataBlock& other) {
    tag = other.tag;
    revision = other.revision;
    headerFlags = other.headerFlags;
  }
  ExactBytes storage;
};

template <>
struct Blank<DtdSlot> : DtdSlot {
  explicit Blank(size_t = 0, uint8_t = 0) : DtdSlot{} {
    flag = 0xEE;
    std::fill(bytes, bytes + 18, uint8_t{0xEE});
  }
  ByteVector Written() const { return ByteVector(bytes, bytes + 18); }
  bool Untouched() const { return flag == 0xEE && Written() == ByteVector(18, 0xEE); }
  bool IsKind(const DtdSlot& other) const { return flag == other.flag; }
  void KeepHeader(const DtdSlot&) {}
};

using DataBlock = Held<CeaDataBlock>;
using BlankDataBlock = Blank<CeaDataBlock>;

}  // namespace reedid::test
