// The CTA-861 extension block (CTA-861, table 34).
//
//  0       tag 0x02
//  1       revision
//  2       d, offset of the first DTD; 0 = no DTDs
//  3       underscan 7, basic audio 6, YCbCr 4:4:4 5, YCbCr 4:2:2 4, number of native DTDs 3..0
//  4..d-1  data blocks: header (tag 7..5, payload length 4..0), then the payload; tag 7 has its extended tag first
//  d..126  DTDs of 18 bytes, then padding
//  127     checksum

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/layout.h"
#include "base/list.h"
#include "base/log.h"
#include "base/memory.h"
#include "base/pinned.h"
#include "cea/codec.h"
#include "edid/image.h"
#include "reedid/cea.h"
#include "timing/dtd.h"

namespace reedid {
namespace {

PIN_FIELDS(CeaDataBlock, 0, 1, tag, extTag, size);
PIN_FIELDS(CeaDataBlock, kPointer, kPointer, bytes);
PIN_SIZE(CeaDataBlock, 2 * kPointer);
PIN_FIELDS(CeaBlock, 0, 1, revision, dtdOffset, underscan, basicAudio, ycbcr444, ycbcr422, nativeDtdCount,
           dataBlockCount);
PIN_FIELDS(CeaBlock, 8, kPointer, dataBlocks);
PIN_FIELDS(CeaBlock, 8 + kPointer, 1, dtdCount);
PIN_FIELDS(CeaBlock, 8 + 2 * kPointer, kPointer, dtds);
PIN_FIELDS(CeaBlock, 8 + 3 * kPointer, 1, checksum, freeSpace, checksumValid);
PIN_SIZE(CeaBlock, 8 + 4 * kPointer);

constexpr uint8_t kExtensionTag = 0x02;
constexpr unsigned kCollectionStart = 4;
constexpr unsigned kDataEnd = 127;       // the checksum stands here
constexpr unsigned kLastBlockEnd = 125;  // data blocks are generated up to here
constexpr uint8_t kBudgetWithoutDtds = 122;

constexpr bool HasDtdOffset(uint8_t offset) {
  return offset >= kCollectionStart && offset <= 125;
}

template <class Io, class Model>
constexpr void FlagsLayout(const Io& io, Model& model) {
  io(model.underscan, Place{3, 7, 1});
  io(model.basicAudio, Place{3, 6, 1});
  io(model.ycbcr444, Place{3, 5, 1});
  io(model.ycbcr422, Place{3, 4, 1});
}

// Calls visit(offset, size) for each data block and returns their number.
template <class Visit>
uint8_t WalkCollection(Bytes bytes, uint8_t dtdOffset, Visit visit) {
  int budget = HasDtdOffset(dtdOffset) ? dtdOffset - static_cast<int>(kCollectionStart) : kBudgetWithoutDtds;
  unsigned at = kCollectionStart;
  uint8_t count = 0;
  while (budget > 0 && CeaHeader(bytes[at]).tag != 0) {
    const uint8_t size = CeaHeader(bytes[at]).size;
    budget -= size;
    if (budget < 0) break;
    visit(at, size);
    ++count;
    at += size;
  }
  return count;
}

DtdSlot SlotAt(Bytes bytes, unsigned at) {
  DtdSlot slot = {kDtdSlotFlag, {}};
  std::memcpy(slot.bytes, bytes.data() + at, kDtdSize);
  return slot;
}

// Padding, display descriptors and broken timings end the list of DTDs.
bool IsCompleteDtd(const DtdSlot& slot) {
  DtdTiming t;
  return VESA_GetDTD(&slot, &t) == 0 && t.pixelClock != 0 && t.hactive != 0 && t.hblank != 0 && t.hfrontPorch != 0 &&
         t.hsyncWidth != 0 && t.vactive != 0 && t.vblank != 0 && t.vfrontPorch != 0 && t.vsyncWidth != 0;
}

uint8_t CountDtds(Bytes bytes, uint8_t dtdOffset) {
  if (!HasDtdOffset(dtdOffset)) return 0;
  const unsigned candidates = (kDataEnd - dtdOffset) / kDtdSize;
  uint8_t count = 0;
  while (count < candidates && IsCompleteDtd(SlotAt(bytes, dtdOffset + kDtdSize * count))) ++count;
  return count;
}

bool ReadCollection(Bytes bytes, CeaBlock& model, Caller caller) {
  const uint8_t count = WalkCollection(bytes, model.dtdOffset, [](unsigned, uint8_t) {});
  if (count == 0) return true;
  model.dataBlocks = AllocateZeroed<CeaDataBlock>(count);
  if (model.dataBlocks == nullptr) return false;
  model.dataBlockCount = count;
  CeaDataBlock* entry = model.dataBlocks;
  WalkCollection(bytes, model.dtdOffset, [&](unsigned at, uint8_t size) {
    entry->tag = CeaHeader(bytes[at]).tag;
    entry->extTag = entry->tag == CEA_TAG_EXTENDED ? bytes[at + 1] : uint8_t{0};
    entry->size = size;
    entry->bytes = CopyBytes(bytes.data() + at, size);
    if (entry->bytes == nullptr) REEDID_ERR_AS(caller, "malloc fail");  // the entry stays, without bytes
    ++entry;
  });
  return true;
}

void ReadDtds(Bytes bytes, CeaBlock& model, Caller caller) {
  model.dtdCount = CountDtds(bytes, model.dtdOffset);
  if (model.dtdCount == 0) return;
  model.dtds = AllocateZeroed<DtdSlot>(model.dtdCount);
  if (model.dtds == nullptr) {
    REEDID_ERR_AS(caller, "malloc fail");  // the count stays; every walk over dtds asks for the array first
    return;
  }
  for (unsigned i = 0; i < model.dtdCount; ++i) model.dtds[i] = SlotAt(bytes, model.dtdOffset + kDtdSize * i);
}

// Writes the collection and returns where the DTDs begin.
uint8_t WriteCollection(const CeaBlock& model, uint8_t* bytes, Caller caller = {}) {
  unsigned offset = kCollectionStart;  // where the block at hand begins
  unsigned last = kCollectionStart;    // where the last written, or the refused, block began
  uint8_t lastSize = 0;                // of the last entry that has bytes, written or not
  bool full = false;
  for (unsigned i = 0; i < model.dataBlockCount; ++i) {
    const CeaDataBlock& entry = model.dataBlocks[i];
    if (entry.bytes == nullptr) continue;
    lastSize = entry.size;
    if (full) continue;
    last = offset;
    if (offset + entry.size > kLastBlockEnd) {
      REEDID_ERR_AS(caller, "datablock[%d] outof range, offset=%u, length=%u", i, offset, entry.size);
      full = true;
      continue;
    }
    std::memcpy(bytes + offset, entry.bytes, entry.size);
    offset += entry.size;
  }
  return Low8(last + lastSize);
}

void WriteDtds(const CeaBlock& model, unsigned at, uint8_t* bytes, Caller caller = {}) {
  if (model.dtds == nullptr) return;
  for (unsigned i = 0; i < model.dtdCount; ++i, at += kDtdSize) {
    if (at + kDtdSize > kDataEnd) {
      REEDID_ERR_AS(caller, "DTD[%d] outof range", i);
      return;
    }
    std::memcpy(bytes + at, model.dtds[i].bytes, kDtdSize);
  }
}

// Inserts into one of the model's two lists and pays for it from the free space.
template <class T>
int32_t Insert(CeaBlock& model, List<T> list, const T& entry, uint8_t size, uint32_t index, Caller caller = {}) {
  ListResult result = list.Insert(entry, index);
  // A count that wraps to 0 starts the list anew.
  if (result == ListResult::kFull && !list.StartOver()) result = ListResult::kNoMemory;
  if (result == ListResult::kNoMemory) return REEDID_ERR_AS(caller, "malloc fail");
  model.freeSpace = Low8(model.freeSpace - size);
  return 0;
}

}  // namespace

CeaBlock* OpenCea(const EdidBlock* block, MemoryWatch& memory) {
  constexpr const char* kName = "CEA_Open";
  if (block == nullptr || block->bytes == nullptr || block->size != kEdidBlockSize || block->type != EDID_BLOCK_CEA) {
    return REEDID_ERR_AS(kName, "invalid parameters");
  }
  const Bytes bytes(block->bytes, kEdidBlockSize);
  if (bytes[0] != kExtensionTag) return REEDID_ERR_AS(kName, "error extension tag: %02x", bytes[0]);
  auto* model = AllocateZeroed<CeaBlock>();
  if (model == nullptr) {
    memory.Lack();
    return REEDID_ERR_AS(kName, "malloc fail");
  }

  model->checksum = bytes[127];
  model->checksumValid = CheckChecksum(bytes.data(), kEdidBlockSize, kName);
  model->revision = bytes[1];
  model->dtdOffset = bytes[2];
  FlagsLayout(LayoutReader(bytes), *model);
  model->nativeDtdCount = bytes[3] & 0x0F;
  if (!ReadCollection(bytes, *model, kName)) {
    CEA_Close(model);
    memory.Lack();
    return REEDID_ERR_AS(kName, "malloc fail");
  }
  ReadDtds(bytes, *model, kName);
  if (!CEA_IsComplete(model)) memory.Lack();
  // Bytes between the last data block and the first DTD are padding of the block's author, not free space.
  if (HasDtdOffset(model->dtdOffset)) model->freeSpace = Low8(kDataEnd - model->dtdOffset - kDtdSize * model->dtdCount);
  return model;
}

}  // namespace reedid

using namespace reedid;

CeaBlock* CEA_Open(const EdidBlock* block) {
  MemoryWatch unwatched;
  return OpenCea(block, unwatched);
}

int32_t CEA_IsComplete(const CeaBlock* model) {
  if (model == nullptr) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  if (model->dtdCount > 0 && model->dtds == nullptr) return 0;
  if (model->dataBlocks == nullptr) return model->dataBlockCount == 0;
  return std::all_of(model->dataBlocks, model->dataBlocks + model->dataBlockCount,
                     [](const CeaDataBlock& entry) { return entry.bytes != nullptr; });
}

void CEA_Close(CeaBlock* model) {
  if (model == nullptr) return;
  List(model->dataBlocks, model->dataBlockCount).Clear();
  List(model->dtds, model->dtdCount).Clear();
  std::free(model);
}

int32_t CEA_GenerateBlock(const CeaBlock* model, EdidBlock* out) {
  if (model == nullptr || model->dataBlocks == nullptr || out == nullptr || out->bytes == nullptr ||
      out->capacity < kEdidBlockSize) {
    return REEDID_ERR("invalid parameters");
  }
  uint8_t* bytes = out->bytes;
  out->type = EDID_BLOCK_CEA;
  out->size = kEdidBlockSize;
  std::memset(bytes, 0, out->capacity);
  bytes[0] = kExtensionTag;
  bytes[1] = model->revision;
  bytes[3] = model->nativeDtdCount;  // unmasked: a count above 15 spills into the flags
  FlagsLayout(LayoutWriter(bytes), *model);
  const uint8_t dtdStart = WriteCollection(*model, bytes);
  WriteDtds(*model, dtdStart, bytes);
  bytes[2] = std::min<uint8_t>(dtdStart, 126);
  bytes[127] = Low8(GetChecksum(bytes, kEdidBlockSize));
  return 0;
}

int32_t CEA_AddDataBlock(CeaBlock* model, const CeaDataBlock* block, uint32_t index) {
  if (model == nullptr || block == nullptr || block->bytes == nullptr || block->size == 0) {
    return REEDID_ERR("invalid parameters");
  }
  if (block->size > model->freeSpace) {
    return REEDID_ERR("not enough space, free %d, need %d", model->freeSpace, block->size);
  }
  return Insert(*model, List(model->dataBlocks, model->dataBlockCount), *block, block->size, index);
}

int32_t CEA_DeleteDataBlock(CeaBlock* model, const CeaDataBlock* entry) {
  if (model == nullptr || entry == nullptr || model->dataBlocks == nullptr) return REEDID_ERR("invalid parameters");
  List list(model->dataBlocks, model->dataBlockCount);
  if (!list.Contains(entry)) return 0;
  model->freeSpace = Low8(model->freeSpace + entry->size);
  list.Erase(entry);  // the array stays, even when it is empty now: an empty collection can be generated
  return 0;
}

int32_t CEA_ReplaceDataBlock(CeaBlock* model, CeaDataBlock* entry, const CeaDataBlock* block) {
  if (model == nullptr || entry == nullptr || model->dataBlocks == nullptr || entry->bytes == nullptr ||
      block == nullptr || block->bytes == nullptr || block->size == 0) {
    return REEDID_ERR("invalid parameters");
  }
  const unsigned available = RoomInPlaceOf(*model, *entry);
  if (block->size > available) return REEDID_ERR("not enough space, free %d, need %d", available, block->size);
  const unsigned left = available - block->size;
  if (!List(model->dataBlocks, model->dataBlockCount).Assign(*entry, *block)) return REEDID_ERR("malloc fail");
  model->freeSpace = Low8(left);
  return 0;
}

CeaDataBlock* CEA_FindDataBlock(const CeaBlock* model, uint32_t tag, uint32_t extTag) {
  if (model == nullptr || model->dataBlocks == nullptr) return nullptr;
  for (unsigned i = 0; i < model->dataBlockCount; ++i) {
    CeaDataBlock& entry = model->dataBlocks[i];
    if (entry.bytes == nullptr) continue;
    if (entry.tag == tag && (tag != CEA_TAG_EXTENDED || entry.extTag == extTag)) return &entry;
  }
  return nullptr;
}

int32_t CEA_AddDTD(CeaBlock* model, const DtdSlot* slot, uint32_t index) {
  if (model == nullptr || slot == nullptr || slot->flag != kDtdSlotFlag) return REEDID_ERR("invalid parameters");
  if (model->freeSpace < kDtdSize) return REEDID_ERR("not enough space, free %d, need 18", model->freeSpace);
  return Insert(*model, List(model->dtds, model->dtdCount), *slot, kDtdSize, index);
}

int32_t CEA_DeleteDTD(CeaBlock* model, const DtdSlot* slot) {
  if (model == nullptr || slot == nullptr || model->dtds == nullptr) return REEDID_ERR("invalid parameters");
  List list(model->dtds, model->dtdCount);
  if (!list.Erase(slot)) return 0;
  model->freeSpace = Low8(model->freeSpace + kDtdSize);
  if (model->dtdCount == 0) list.Clear();
  return 0;
}
