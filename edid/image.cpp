// The image: bytes <-> list of blocks.
//
// EDID: the base block (eight header bytes, byte 126 = number of extensions), then extensions of 128 bytes whose byte 0
// is the tag. DisplayID: sections of byte 1 + 5 bytes; byte 3 of the first is the number of further sections. The last
// byte of every block and section makes its bytes add up to 0 modulo 256.

#include "edid/image.h"

#include <algorithm>
#include <cstring>

#include "base/bytes.h"
#include "base/list.h"
#include "base/log.h"
#include "base/memory.h"
#include "base/pinned.h"

namespace reedid {
namespace {

PIN_FIELDS(EdidBlock, 0, 1, type);
PIN_FIELDS(EdidBlock, 2, 2, capacity, size);
PIN_FIELDS(EdidBlock, 8, kPointer, bytes);
PIN_SIZE(EdidBlock, 8 + kPointer);
PIN_FIELDS(EdidHandle, 0, 1, blockCount);
PIN_FIELDS(EdidHandle, kPointer, kPointer, blocks);
PIN_SIZE(EdidHandle, 2 * kPointer);

constexpr uint8_t kEdidHeader[8] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
constexpr uint32_t kEdidCountByte = 126;
constexpr uint32_t kSectionCountByte = 3;

uint32_t CountByte(const uint8_t* bytes, uint32_t size) {
  return HasEdidHeader(bytes, size) ? kEdidCountByte : kSectionCountByte;
}

void SetCountByte(uint8_t* bytes, uint32_t size, uint8_t count) {
  const uint32_t at = CountByte(bytes, size);
  if (at < size) bytes[at] = count;
}

void SetChecksum(EdidBlock& block) {
  if (block.size > 0) block.bytes[block.size - 1] = Low8(GetChecksum(block.bytes, block.size));
}

// Block 0 tells how many blocks follow it; every edit of the list keeps that and its checksum true.
void RefreshFirstBlock(EdidHandle& handle) {
  EdidBlock& first = handle.blocks[0];
  if (first.bytes == nullptr) return;
  // NOLINTNEXTLINE(clang-analyzer-unix.Malloc): an entry that was freed has left the list
  SetCountByte(first.bytes, first.size, Low8(handle.blockCount - 1));
  SetChecksum(first);
}

// Copies one block into the entry. Only the bytes can fail; the entry then stays out of the count.
bool FillEntry(EdidBlock& entry, const uint8_t* bytes, uint16_t size, uint16_t capacity) {
  entry = {EDID_BLOCK_UNKNOWN, capacity, size, CopyBytes(bytes, size, capacity)};
  return entry.bytes != nullptr;
}

uint8_t ExtensionType(uint8_t tag) {
  switch (tag) {
    case 0x70:
      return EDID_BLOCK_DISPID_EXT;
    case 0xF0:
      return EDID_BLOCK_MAP;
    case 0x02:
      return EDID_BLOCK_CEA;
    default:
      return EDID_BLOCK_UNKNOWN;
  }
}

EdidHandle* ParseEdid(const uint8_t* data, uint32_t length) {
  if (length < kEdidBlockSize || length % kEdidBlockSize != 0) return REEDID_ERR("invalid edid size");
  Owned<EdidHandle> handle(AllocateZeroed<EdidHandle>());
  if (handle == nullptr) return REEDID_ERR("malloc fail");
  const uint8_t count = Low8(length / kEdidBlockSize);
  handle->blocks = AllocateZeroed<EdidBlock>(count);
  if (handle->blocks == nullptr) return REEDID_ERR("malloc fail");

  for (uint8_t i = 0; i < count; ++i) {
    EdidBlock& entry = handle->blocks[i];
    const uint8_t* bytes = data + static_cast<size_t>(i) * kEdidBlockSize;
    if (!FillEntry(entry, bytes, kEdidBlockSize, kEdidBlockSize)) {
      REEDID_ERR("malloc fail");
      break;
    }
    entry.type = i == 0 ? uint8_t{EDID_BLOCK_VESA} : ExtensionType(bytes[0]);
    if (entry.type == EDID_BLOCK_UNKNOWN) REEDID_WARN("unknown extension block(tag=%02x)", bytes[0]);
    handle->blockCount = Low8(i + 1);
  }
  return handle.release();
}

// Bytes of the section that starts the data, or 0 when it is not there whole or too long to have a checksum.
uint32_t SectionSize(Bytes data) {
  const uint32_t size = data[1] + uint32_t{kSectionOverhead};
  return size <= data.size() && size <= kMaxSectionSize ? size : 0;
}

uint8_t GetSectionCount(Bytes data) {
  const uint8_t expected = Low8(data[kSectionCountByte] + 1);
  uint8_t found = 0;
  // NOLINTNEXTLINE(bugprone-infinite-loop): each round declares its own size
  for (Bytes rest = data; const uint32_t size = SectionSize(rest); rest = rest.From(size)) ++found;
  if (found != expected) REEDID_WARN("invalid section count(%d, %d)", expected, found);
  return found;
}

EdidHandle* ParseDisplayID(const uint8_t* data, uint32_t length) {
  if (length < kSectionOverhead) return REEDID_ERR("invalid displayid size");
  Owned<EdidHandle> handle(AllocateZeroed<EdidHandle>());
  if (handle == nullptr) return REEDID_ERR("malloc fail");
  Bytes rest(data, length);
  const uint8_t count = GetSectionCount(rest);
  if (count == 0) return nullptr;
  handle->blocks = AllocateZeroed<EdidBlock>(count);
  if (handle->blocks == nullptr) return REEDID_ERR("malloc fail");

  for (uint8_t i = 0; i < count; ++i) {
    EdidBlock& entry = handle->blocks[i];
    const auto size = Low16(SectionSize(rest));
    if (!FillEntry(entry, rest.data(), size, kMaxSectionSize)) {
      REEDID_ERR("malloc fail");
      break;
    }
    entry.type = i == 0 ? EDID_BLOCK_DISPID_FIRST : EDID_BLOCK_DISPID_NEXT;
    handle->blockCount = Low8(i + 1);
    rest = rest.From(size);
  }
  return handle.release();
}

}  // namespace

bool HasEdidHeader(const uint8_t* bytes, uint32_t size) {
  return size >= sizeof kEdidHeader && std::memcmp(bytes, kEdidHeader, sizeof kEdidHeader) == 0;
}

bool CheckChecksum(const uint8_t* bytes, uint32_t size, Caller caller) {
  const uint8_t stored = bytes[size - 1];
  const uint32_t computed = GetChecksum(bytes, size);
  if (stored == computed) return true;
  REEDID_WARN_AS(caller, "checksum error(%02x,%02x)", stored, computed);
  return false;
}

}  // namespace reedid

using namespace reedid;

uint32_t GetChecksum(const uint8_t* bytes, uint32_t length) {
  if (bytes == nullptr || length <= 1) return 0;
  const uint32_t last = std::min<uint32_t>(length, kMaxSectionSize) - 1;  // an 8-bit index walks no further
  uint32_t sum = 0;
  for (uint32_t i = 0; i < last; ++i) sum += bytes[i];
  return (0u - sum) & 0xFFu;
}

int32_t isEdidHeader(const uint8_t* bytes) {
  if (bytes == nullptr) return 0;
  // A buffer that does not begin like a header may be shorter than one: nothing is read behind the first mismatch.
  for (size_t i = 0; i < sizeof kEdidHeader; ++i) {
    if (bytes[i] != kEdidHeader[i]) return 0;
  }
  return 1;
}

EdidHandle* EDID_Open(const uint8_t* data, uint32_t length) {
  if (data == nullptr || length == 0) return REEDID_ERR("invalid parameters");
  return HasEdidHeader(data, length) ? ParseEdid(data, length) : ParseDisplayID(data, length);
}

void EDID_Close(EdidHandle* handle) {
  if (handle == nullptr) return;
  List(handle->blocks, handle->blockCount).Clear();
  std::free(handle);
}

int32_t EDID_AddBlock(EdidHandle* handle, const EdidBlock* block, uint32_t index) {
  if (handle == nullptr || block == nullptr || block->bytes == nullptr || block->size == 0) {
    return REEDID_ERR("invalid parameters");
  }
  switch (List(handle->blocks, handle->blockCount).Insert(*block, index)) {
    case ListResult::kFull:
      return REEDID_ERR("invalid parameters");
    case ListResult::kNoMemory:
      return REEDID_ERR("malloc fail");
    case ListResult::kDone:
      break;
  }
  RefreshFirstBlock(*handle);
  return 0;
}

int32_t EDID_DeleteBlock(EdidHandle* handle, const EdidBlock* entry) {
  if (handle == nullptr || entry == nullptr || handle->blocks == nullptr) return REEDID_ERR("invalid parameters");
  List(handle->blocks, handle->blockCount).Erase(entry);
  if (handle->blockCount > 0) RefreshFirstBlock(*handle);
  return 0;
}

int32_t EDID_GenerateEdid(EdidHandle* handle, uint8_t* out, uint32_t capacity) {
  if (handle == nullptr || out == nullptr || handle->blocks == nullptr || handle->blockCount == 0) {
    return REEDID_ERR("invalid parameters");
  }
  const auto blocks = handle->blocks;
  uint32_t total = 0;
  for (uint8_t i = 0; i < handle->blockCount; ++i) total += blocks[i].size;
  if (capacity < total) return REEDID_ERR("not enough space");

  uint8_t* at = out;
  for (uint8_t i = 0; i < handle->blockCount; ++i) {
    if (blocks[i].bytes != nullptr) std::memcpy(at, blocks[i].bytes, blocks[i].size);
    at += blocks[i].size;
  }
  SetCountByte(out, total, Low8(handle->blockCount - 1));
  // Only the handle's block 0 gets a fresh checksum, `out` has the one from before: odd on purpose, docs/oddities.md.
  // After EDID_AddBlock and EDID_DeleteBlock the two agree.
  if (blocks[0].bytes != nullptr) SetChecksum(blocks[0]);
  return static_cast<int32_t>(total);
}
