// The DisplayID section (DisplayID 1.3 and 2.0, table 2-1).
//
//  0   version 7..4, revision 3..0       4 ..  data blocks: tag; flags 7..3 and revision 2..0; payload count; payload
//  1   number of payload bytes                 then zero padding
//  2   product type / primary use case   last  checksum
//  3   number of further sections
//
// Inside an EDID the extension block is 0x70, a section of 126 bytes, and the block's own checksum.

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/bytes.h"
#include "base/list.h"
#include "base/log.h"
#include "base/memory.h"
#include "base/pinned.h"
#include "displayid/codec.h"
#include "edid/image.h"

namespace reedid {
namespace {

PIN_FIELDS(DispIdDataBlock, 0, 1, tag, revision, headerFlags, size);
PIN_FIELDS(DispIdDataBlock, kPointer, kPointer, bytes);
PIN_SIZE(DispIdDataBlock, 2 * kPointer);
PIN_FIELDS(DispIdBlock, 0, 1, type, version, revision, productType, extensionCount, dataBlockCount);
PIN_FIELDS(DispIdBlock, 8, kPointer, dataBlocks);
PIN_FIELDS(DispIdBlock, 8 + kPointer, 1, checksum, checksumValid, payloadUsed);
PIN_FIELDS(DispIdBlock, 12 + kPointer, 2, sectionSize);
PIN_SIZE(DispIdBlock, 16 + kPointer);

constexpr uint8_t kExtensionTag = 0x70;
constexpr uint16_t kExtensionSectionSize = 126;
constexpr unsigned kPayloadStart = 4;

constexpr bool IsSectionType(uint8_t type) {
  return type >= EDID_BLOCK_DISPID_FIRST && type <= EDID_BLOCK_DISPID_EXT;
}

// 2.0 use cases share the byte with the product types of 1.x; 0 and 1 mean the same in both.
constexpr uint8_t ProductType(uint8_t version, uint8_t code) {
  return version > 1 && code > 1 ? Low8(code | 0x10) : code;
}

// The size that the section tells, capped at what its kind may have.
uint16_t SectionSize(uint8_t type, uint8_t payload, Caller caller) {
  const unsigned size = payload + unsigned{kSectionOverhead};
  const unsigned limit = type == EDID_BLOCK_DISPID_EXT ? kExtensionSectionSize : kMaxSectionSize;
  if (size <= limit) return Low16(size);
  REEDID_WARN_AS(caller, "invalid bytes in section: %d, force to %d", size, limit - kSectionOverhead);
  return Low16(limit);
}

// Number of data blocks that the section holds whole. `block` reaches to the end of the EdidBlock, behind the section.
uint8_t CountDataBlocks(Bytes block, uint16_t sectionSize, Caller caller) {
  int remaining = sectionSize - kSectionOverhead;
  unsigned at = kPayloadStart;
  uint8_t count = 0;
  while (remaining > 0) {
    unsigned payload = block[at + 2];
    if (payload > kMaxDispIdPayload) {
      REEDID_WARN_AS(caller, "invalid number of payload bytes: %d", payload);
      payload = kMaxDispIdPayload;
    }
    const unsigned size = payload + kDispIdHeaderSize;
    remaining -= static_cast<int>(size);
    const bool padding = payload == 0 && block[at] == 0;
    if (padding || remaining < 0) break;
    ++count;
    at += size;
  }
  return count;
}

bool ReadDataBlocks(Bytes section, uint8_t count, DispIdBlock& model, Caller caller) {
  if (count == 0) return true;
  model.dataBlocks = AllocateZeroed<DispIdDataBlock>(count);
  if (model.dataBlocks == nullptr) return false;
  model.dataBlockCount = count;
  unsigned at = kPayloadStart;
  for (unsigned i = 0; i < count; ++i) {
    DispIdDataBlock& entry = model.dataBlocks[i];
    entry.tag = section[at];
    entry.revision = section[at + 1] & 7;
    entry.headerFlags = section[at + 1] >> 3;
    entry.size = Low8(section[at + 2] + kDispIdHeaderSize);
    const Bytes part = section.From(at).First(entry.size);
    entry.bytes = CopyBytes(part.data(), part.size(), entry.size);
    if (entry.bytes == nullptr) REEDID_ERR_AS(caller, "malloc fail");  // the entry stays, without bytes
    model.payloadUsed = Low8(at - kPayloadStart + entry.size);
    at += entry.size;
  }
  return true;
}

void WriteDataBlocks(const DispIdBlock& model, uint8_t* section, unsigned sectionSize, Caller caller = {}) {
  unsigned at = kPayloadStart;
  for (unsigned i = 0; i < model.dataBlockCount; ++i) {
    const DispIdDataBlock& entry = model.dataBlocks[i];
    if (entry.bytes == nullptr) continue;
    if (at + entry.size >= sectionSize) {
      REEDID_ERR_AS(caller, "datablock[%d] outof range, offset=%u, length=%u", i, at, entry.size);
      return;
    }
    std::memcpy(section + at, entry.bytes, entry.size);
    at += entry.size;
  }
}

}  // namespace

DispIdBlock* OpenDispId(const EdidBlock* block, MemoryWatch& memory) {
  constexpr const char* kName = "DispID_Open";
  if (block == nullptr || block->bytes == nullptr || block->size < kSectionOverhead) {
    return REEDID_ERR_AS(kName, "invalid parameters");
  }
  if (!IsSectionType(block->type)) return REEDID_ERR_AS(kName, "invalid block type: %d", block->type);
  const bool extension = block->type == EDID_BLOCK_DISPID_EXT;
  if (extension && (block->size != kEdidBlockSize || block->bytes[0] != kExtensionTag)) {
    return REEDID_ERR_AS(kName, "invalid parameters");
  }
  const Bytes bytes = Bytes(block->bytes, block->size).From(extension ? 1 : 0);
  Owned<DispIdBlock> model(AllocateZeroed<DispIdBlock>());
  if (model == nullptr) {
    memory.Lack();
    return REEDID_ERR_AS(kName, "malloc fail");
  }

  model->type = block->type;
  model->version = bytes[0] >> 4;
  model->revision = bytes[0] & 0x0F;
  if (model->version == 0) return REEDID_ERR_AS(kName, "error version: %d.%d", model->version, model->revision);
  model->sectionSize = SectionSize(block->type, bytes[1], kName);
  if (model->sectionSize > bytes.size()) return REEDID_ERR_AS(kName, "invalid parameters");
  const Bytes section = bytes.First(model->sectionSize);
  model->productType = ProductType(model->version, section[2] & 0x0F);
  model->extensionCount = section[3];
  model->checksum = section[model->sectionSize - 1u];
  model->checksumValid = CheckChecksum(section.data(), model->sectionSize, kName) &&
                         (!extension || CheckChecksum(block->bytes, block->size, kName));
  if (!ReadDataBlocks(section, CountDataBlocks(bytes, model->sectionSize, kName), *model, kName)) {
    memory.Lack();
    return REEDID_ERR_AS(kName, "malloc fail");
  }
  if (!DispID_IsComplete(model.get())) memory.Lack();
  return model.release();
}

}  // namespace reedid

using namespace reedid;

DispIdBlock* DispID_Open(const EdidBlock* block) {
  MemoryWatch unwatched;
  return OpenDispId(block, unwatched);
}

int32_t DispID_IsComplete(const DispIdBlock* model) {
  if (model == nullptr) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  if (model->dataBlocks == nullptr) return model->dataBlockCount == 0;
  return std::all_of(model->dataBlocks, model->dataBlocks + model->dataBlockCount,
                     [](const DispIdDataBlock& entry) { return entry.bytes != nullptr; });
}

void DispID_Close(DispIdBlock* model) {
  if (model == nullptr) return;
  List(model->dataBlocks, model->dataBlockCount).Clear();
  std::free(model);
}

int32_t DispID_GenerateBlock(const DispIdBlock* model, EdidBlock* out) {
  if (model == nullptr || model->dataBlocks == nullptr || out == nullptr || out->bytes == nullptr ||
      out->capacity < 6) {
    return REEDID_ERR("invalid parameters");
  }
  if (!IsSectionType(model->type)) return REEDID_ERR("invalid block type: %d", model->type);
  if (model->version == 0) return REEDID_ERR("error version: %d.%d", model->version, model->revision);
  const bool first = model->type == EDID_BLOCK_DISPID_FIRST;
  if (first && model->productType == 0) return REEDID_ERR("invalid product type: %d", model->productType);

  std::memset(out->bytes, 0, out->capacity);
  out->type = model->type;
  const bool extension = model->type == EDID_BLOCK_DISPID_EXT;
  if (extension && out->capacity < kEdidBlockSize) return REEDID_ERR("invalid parameters");
  const uint16_t sectionSize = extension ? kExtensionSectionSize : model->sectionSize;
  if (sectionSize < kSectionOverhead || sectionSize > kMaxSectionSize || sectionSize > out->capacity) {
    return REEDID_ERR("invalid section size: %d", sectionSize);
  }
  out->size = extension ? kEdidBlockSize : sectionSize;
  uint8_t* section = out->bytes + (extension ? 1 : 0);
  section[0] = Low8(model->version << 4 | (model->revision & 0x0F));
  section[1] = Low8(sectionSize - kSectionOverhead);
  // The first section counts the others; further ones carry the product type nibble.
  if (first) {
    section[3] = model->extensionCount;
  } else {
    section[2] = model->productType & 0x0F;
  }
  WriteDataBlocks(*model, section, sectionSize);
  section[sectionSize - 1] = Low8(GetChecksum(section, sectionSize));
  if (extension) {
    out->bytes[0] = kExtensionTag;
    out->bytes[kEdidBlockSize - 1] = Low8(GetChecksum(out->bytes, kEdidBlockSize));
  }
  return 0;
}

int32_t DispID_AddDB(DispIdBlock* model, const DispIdDataBlock* entry, uint32_t index) {
  if (model == nullptr || entry == nullptr || entry->bytes == nullptr || entry->size < kDispIdHeaderSize) {
    return REEDID_ERR("invalid parameters");
  }
  const uint8_t free = FreeSpace(*model);
  const uint8_t size = entry->size;
  if (size > free) return REEDID_ERR("not enough space, free %d, need %d", free, size);
  switch (List(model->dataBlocks, model->dataBlockCount).Insert(*entry, index)) {
    case ListResult::kFull:
      return REEDID_ERR("invalid parameters");
    case ListResult::kNoMemory:
      return REEDID_ERR("malloc fail");
    case ListResult::kDone:
      break;
  }
  model->payloadUsed = Low8(model->payloadUsed + size);
  return 0;
}

int32_t DispID_DeleteDB(DispIdBlock* model, const DispIdDataBlock* entry) {
  if (model == nullptr || entry == nullptr || model->dataBlocks == nullptr) return REEDID_ERR("invalid parameters");
  List list(model->dataBlocks, model->dataBlockCount);
  if (!list.Contains(entry)) return 0;
  model->payloadUsed = Low8(model->payloadUsed - entry->size);
  list.Erase(entry);
  return 0;
}

int32_t DispID_ReplaceDB(DispIdBlock* model, DispIdDataBlock* oldEntry, const DispIdDataBlock* newEntry) {
  if (model == nullptr || model->dataBlocks == nullptr || oldEntry == nullptr || oldEntry->bytes == nullptr ||
      newEntry == nullptr || newEntry->bytes == nullptr || newEntry->size < kDispIdHeaderSize) {
    return REEDID_ERR("invalid parameters");
  }
  const unsigned free = RoomInPlaceOf(*model, *oldEntry);
  if (newEntry->size > free) return REEDID_ERR("not enough space, free %d, need %d", free, newEntry->size);
  const int used = model->payloadUsed + newEntry->size - oldEntry->size;
  if (!List(model->dataBlocks, model->dataBlockCount).Assign(*oldEntry, *newEntry)) return REEDID_ERR("malloc fail");
  model->payloadUsed = Low8(used);
  return 0;
}

DispIdDataBlock* DispID_FindDB(const DispIdBlock* model, uint32_t tag) {
  if (model == nullptr || model->dataBlocks == nullptr) return nullptr;
  for (unsigned i = 0; i < model->dataBlockCount; ++i) {
    if (model->dataBlocks[i].bytes != nullptr && model->dataBlocks[i].tag == tag) return &model->dataBlocks[i];
  }
  return nullptr;
}
