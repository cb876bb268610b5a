// What edits are made of: an image is edited whole or not at all; in a model, a record takes the place of an entry, and
// entries go.
#pragma once

#include <algorithm>
#include <cstdint>

#include "base/bytes.h"
#include "base/log.h"
#include "base/memory.h"
#include "cea/codec.h"
#include "displayid/codec.h"
#include "patch/image.h"
#include "reedid/image.h"
#include "timing/dtd.h"
#include "vesa/model.h"

namespace reedid {

// ---- EditWhole: runs `edit(memory)` on the image in place, so that on success its blocks are where they were. When
// memory lacked on the way, the image becomes what it was (in other buffers, if the edit removed blocks). Each failed
// allocation has told so. 0, or -1.
template <class Edit>
int32_t EditWhole(EdidHandle& handle, Edit edit, Caller caller = {}) {
  Draft before(handle);
  if (!before.ok()) return REEDID_ERR_AS(caller, "malloc fail");
  MemoryWatch memory;
  edit(memory);
  if (memory.sufficed()) return 0;
  before.Commit(handle);
  return -1;
}

// ---- Rewrite: sets a record into a block of its own, by `set(arguments..., &block)`, and puts that in the entry's
// place. The entry stays as it was when the setter refuses the record, or when space or memory are short. The result is
// that of the call that failed, or 0; `memory` learns when it was memory.

template <class Set, class... Arguments>
int32_t Rewrite(MemoryWatch& memory, CeaBlock& model, CeaDataBlock& entry, Set set, const Arguments&... arguments) {
  ScratchDataBlock block;
  int32_t status = set(arguments..., &block);
  if (status != 0) return status;
  status = CEA_ReplaceDataBlock(&model, &entry, &block);
  if (status != 0 && block.size <= RoomInPlaceOf(model, entry)) memory.Lack();
  return status;
}

// The new block starts with the header of the one that it replaces.
template <class Set, class... Arguments>
int32_t Rewrite(MemoryWatch& memory, DispIdBlock& model, DispIdDataBlock& entry, Set set,
                const Arguments&... arguments) {
  uint8_t buffer[REEDID_DISPID_DATA_BLOCK_SIZE] = {};
  DispIdDataBlock block = {entry.tag, entry.revision, entry.headerFlags, 0, buffer};
  int32_t status = set(arguments..., &block);
  if (status != 0) return status;
  status = DispID_ReplaceDB(&model, &entry, &block);
  if (status != 0 && block.size <= RoomInPlaceOf(model, entry)) memory.Lack();
  return status;
}

template <class Set, class... Arguments>
int32_t Rewrite(DtdSlot& slot, Set set, const Arguments&... arguments) {
  DtdSlot encoded;
  const int32_t status = set(arguments..., &encoded);
  if (status == 0) slot = encoded;
  return status;
}

// The same for a data block that is new, in front of the entry at `index`.
template <class Set, class... Arguments>
int32_t AddDataBlock(MemoryWatch& memory, CeaBlock& model, unsigned index, Set set, const Arguments&... arguments) {
  ScratchDataBlock block;
  int32_t status = set(arguments..., &block);
  if (status != 0) return status;
  status = CEA_AddDataBlock(&model, &block, index);
  if (status != 0 && block.size <= model.freeSpace) memory.Lack();
  return status;
}

// ---- Keep: removes the entries that `isKept` refuses, which may change those that it keeps; the order of the others
// stays. Entries that were opened without memory for their bytes are kept unseen.

// `erase` takes one entry out of the array, whose later ones move up, and out of the count.
template <class Entry, class Count, class IsKept, class Erase>
void KeepEntries(Entry* const& entries, const Count& count, IsKept isKept, Erase erase) {
  for (unsigned i = 0; entries != nullptr && i < count;) {
    if (isKept(entries[i])) {
      ++i;
    } else {
      erase(entries + i);
    }
  }
}

// Of a plain array; returns how many are left.
template <class Record, class IsKept>
unsigned KeepIf(Record* records, unsigned count, IsKept isKept) {
  KeepEntries(records, count, isKept, [&](Record* record) { std::copy(record + 1, records + count--, record); });
  return count;
}

template <class IsKept>
void KeepBlocks(EdidHandle& handle, IsKept isKept) {
  KeepEntries(handle.blocks, handle.blockCount, isKept, [&](EdidBlock* block) { EDID_DeleteBlock(&handle, block); });
}

// A slot that moved up from behind the last is empty and is not asked for.
template <class IsKept>
void KeepDescriptors(VesaBlock& model, IsKept isKept) {
  DtdSlot* const slots = model.descriptors;
  unsigned count = kDescriptorSlots;
  KeepEntries(slots, count, isKept, [&](DtdSlot* slot) {
    VESA_DeleteDescriptor(&model, static_cast<uint32_t>(slot - slots));
    --count;
  });
}

template <class IsKept>
void KeepDtds(CeaBlock& model, IsKept isKept) {
  KeepEntries(model.dtds, model.dtdCount, isKept, [&](DtdSlot* slot) { CEA_DeleteDTD(&model, slot); });
}

template <class IsKept>
void KeepDataBlocks(CeaBlock& model, IsKept isKept) {
  KeepEntries(
      model.dataBlocks, model.dataBlockCount,
      [&](CeaDataBlock& entry) { return entry.bytes == nullptr || isKept(entry); },
      [&](CeaDataBlock* entry) { CEA_DeleteDataBlock(&model, entry); });
}

template <class IsKept>
void KeepDataBlocks(DispIdBlock& model, IsKept isKept) {
  KeepEntries(
      model.dataBlocks, model.dataBlockCount,
      [&](DispIdDataBlock& entry) { return entry.bytes == nullptr || isKept(entry); },
      [&](DispIdDataBlock* entry) { DispID_DeleteDB(&model, entry); });
}

}  // namespace reedid
