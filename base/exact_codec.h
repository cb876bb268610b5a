// Codecs whose getter and setter are each other's reverse, made of one layout: a setter reads back what it wrote and
// hands it over only when that is the record again. Thus a value that is too large, lies between two codes or belongs to
// another version of the block is refused without a check of its own.
//
// A codec is a structure with what its family asks for (cea/exact_codec.h, displayid/exact_codec.h) and
//   Takes(bytes)               whether the version is known and has this size
//   Holds(record)              whether the layout may be written: lists that end within their arrays and the block
//   Layout(io, record, size)   the fields, of a block of this size; the largest size while it is written
//   Size(record, bytes)        of the block that was written into cleared bytes; what is behind it is dropped
#pragma once

#include <type_traits>

#include "base/layout.h"

namespace reedid {

// Runs a layout in the direction that it was made for. There are many of these codecs and none is in a hurry: a layout is
// compiled once for both directions and to be small, and a field costs it one call.
class ExactIo {
 public:
  // Reads; beyond the end there are zeroes.
  explicit ExactIo(Bytes bytes) : bytes_(bytes) {}
  // Ors into place, for the bytes are cleared before; what would stand beyond the end is left out.
  ExactIo(uint8_t* bytes, size_t size) : bytes_(bytes, size), target_(bytes) {}

  bool Reads() const { return target_ == nullptr; }
  Bytes bytes() const { return bytes_; }

  template <class Field, class... Places>
  void operator()(Field& field, Places... places) const {
    static_assert(sizeof...(places) <= 4);
    if constexpr (sizeof...(places) <= 2) {
      Move(&field, sizeof field, Packed(places)...);
    } else {
      const uint32_t packed[] = {Packed(places)..., 0};
      Move(&field, sizeof field, packed);
    }
  }

  // As many single bytes.
  void Copy(uint8_t* fields, unsigned count, unsigned at) const;

 private:
  static constexpr uint32_t Packed(Place place) {
    return place.byte | uint32_t{place.low} << 8 | uint32_t{place.width} << 16;
  }
  void Move(void* field, unsigned size, uint32_t place) const;
  void Move(void* field, unsigned size, uint32_t first, uint32_t second) const;
  void Move(void* field, unsigned size, const uint32_t* places) const;  // up to one without bits

  Bytes bytes_;
  uint8_t* target_ = nullptr;
};

template <class Field, class Decode, class Encode, class... Places>
void Coded(const ExactIo& io, Field& field, Decode decode, Encode encode, Places... places) {
  uint32_t code = io.Reads() ? 0 : static_cast<uint32_t>(encode(static_cast<uint32_t>(field)));
  io(code, places...);
  if (io.Reads()) field = static_cast<Field>(decode(code));
}

// Entries one after another from byte `at` on: `entry(item, at)` moves one and gives back how many bytes it has, or 0 when
// it is none. One that does not end before `end` is left out. `count` is 0 before entries are read.
template <class Count, class Item, size_t kMost, class Entry>
void List(const ExactIo& io, Count& count, Item (&items)[kMost], unsigned at, unsigned end, Entry entry) {
  if (!io.Reads()) {
    for (unsigned i = 0; i < count; ++i) at += entry(items[i], at);
    return;
  }
  while (at < end && count < kMost) {
    Item item = {};
    const unsigned size = entry(item, at);
    if (size == 0 || at + size > end) return;
    items[count++] = item;
    at += size;
  }
}

enum class ExactStep { kTakes, kHolds, kLayout, kSize };

// A codec for those who know its record by its size only.
struct ExactCodec {
  unsigned (*run)(ExactStep step, const ExactIo& io, void* record);
  unsigned recordSize;
};
inline constexpr unsigned kMaxExactRecord = 768;

// What most codecs say.
struct ExactDefaults {
  static constexpr uint32_t kOui = 0;
  static constexpr bool Takes(Bytes) { return true; }
  template <class Record>
  static constexpr bool Holds(const Record&) {
    return true;
  }
};

// Cold is what the compiler makes small.
template <class Codec, class Record>
[[gnu::cold]] unsigned RunExact(ExactStep step, const ExactIo& io, void* memory) {
  auto& record = *static_cast<Record*>(memory);
  switch (step) {
    case ExactStep::kTakes:
      return Codec::Takes(io.bytes());
    case ExactStep::kHolds:
      return Codec::Holds(record);
    case ExactStep::kSize:
      return Codec::Size(record, io.bytes().data());
    case ExactStep::kLayout:
      Codec::Layout(io, record, static_cast<unsigned>(io.bytes().size()));
  }
  return 0;
}

template <class Codec, class Record>
constexpr ExactCodec ExactCodecOf() {
  static_assert(std::has_unique_object_representations_v<Record>, "padding would be compared");
  static_assert(sizeof(Record) <= kMaxExactRecord);
  static_assert(alignof(Record) <= alignof(uint32_t));
  return {RunExact<Codec, Record>, sizeof(Record)};
}

// Whether the codec takes these bytes, which `record` is then made of.
bool ReadExact(const ExactCodec& codec, Bytes bytes, void* record);

// Writes a record into `block`, of which only the header is not 0. Gives back its size, with what is behind it cleared; 0
// when the record cannot be held.
unsigned WriteExact(const ExactCodec& codec, const void* record, uint8_t* block, unsigned room);

// Whether the bytes are read as this record.
bool IsExactly(const ExactCodec& codec, Bytes bytes, const void* record);

// Up to the last of `room` bytes that is not 0, and no less than `least`.
unsigned UsedSize(const uint8_t* bytes, unsigned least, unsigned room);

}  // namespace reedid
