#include "base/exact_codec.h"

namespace reedid {
namespace {

// Fields are numbers of 8, 16 or 32 bits, signed or not.
template <class Number>
uint32_t Load(const void* field) {
  Number number;
  std::memcpy(&number, field, sizeof number);
  return number;
}

template <class Number>
void Store(void* field, uint32_t value) {
  const auto number = static_cast<Number>(value);
  std::memcpy(field, &number, sizeof number);
}

}  // namespace

void ExactIo::Move(void* field, unsigned size, const uint32_t* places) const {
  uint32_t value = 0;
  if (!Reads()) value = size == 1 ? Load<uint8_t>(field) : size == 2 ? Load<uint16_t>(field) : Load<uint32_t>(field);
  uint32_t read = 0;
  unsigned shift = 0;
  for (; *places != 0; ++places) {
    const unsigned byte = *places & 0xFF, low = Bits(*places, 8, 8), width = *places >> 16;
    read |= Bits(bytes_[byte], low, width) << shift;
    if (!Reads() && byte < bytes_.size()) {
      target_[byte] = Low8(target_[byte] | Bits(value >> shift, 0, width) << low);
    }
    shift += width;
  }
  if (!Reads()) return;
  size == 1 ? Store<uint8_t>(field, read) : size == 2 ? Store<uint16_t>(field, read) : Store<uint32_t>(field, read);
}

void ExactIo::Move(void* field, unsigned size, uint32_t place) const {
  const uint32_t places[] = {place, 0};
  Move(field, size, places);
}

void ExactIo::Move(void* field, unsigned size, uint32_t first, uint32_t second) const {
  const uint32_t places[] = {first, second, 0};
  Move(field, size, places);
}

void ExactIo::Copy(uint8_t* fields, unsigned count, unsigned at) const {
  for (unsigned i = 0; i < count; ++i) Move(&fields[i], 1, Packed({Low8(at + i)}));
}

bool ReadExact(const ExactCodec& codec, Bytes bytes, void* record) {
  const ExactIo reader(bytes);
  if (codec.run(ExactStep::kTakes, reader, record) == 0) return false;
  std::memset(record, 0, codec.recordSize);
  codec.run(ExactStep::kLayout, reader, record);
  return true;
}

unsigned WriteExact(const ExactCodec& codec, const void* record, uint8_t* block, unsigned room) {
  alignas(uint32_t) uint8_t copy[kMaxExactRecord];  // layouts take what they could write to
  std::memcpy(copy, record, codec.recordSize);
  const ExactIo writer(block, room);
  if (codec.run(ExactStep::kHolds, writer, copy) == 0) return 0;
  codec.run(ExactStep::kLayout, writer, copy);
  const unsigned size = codec.run(ExactStep::kSize, writer, copy);
  if (size < room) std::memset(block + size, 0, room - size);
  return size <= room ? size : 0;
}

bool IsExactly(const ExactCodec& codec, Bytes bytes, const void* record) {
  alignas(uint32_t) uint8_t again[kMaxExactRecord];
  return ReadExact(codec, bytes, again) && std::memcmp(again, record, codec.recordSize) == 0;
}

unsigned UsedSize(const uint8_t* bytes, unsigned least, unsigned room) {
  while (room > least && bytes[room - 1] == 0) --room;
  return room;
}

}  // namespace reedid
