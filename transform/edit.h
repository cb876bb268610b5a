// The two moves that edits of a model are made of: a record takes the place of an entry, and entries go.
#pragma once

#include <algorithm>
#include <cstdint>

#include "base/bytes.h"
#include "cea/codec.h"
#include "displayid/codec.h"
#include "reedid/image.h"
#include "timing/dtd.h"
#include "vesa/model.h"

namespace reedid {

// ---- Rewrite: sets a record into a block of its own, by `set(arguments..., &block)`, and puts that in the entry's
// place. The entry stays as it was when the setter refuses the record, or when space or memory are short. The result is
// that of the call that failed, or 0.

template <class Set, class... Arguments>
int32_t Rewrite(CeaBlock& model, CeaDataBlock& entry, Set set, const Arguments&... arguments) {
  ScratchDataBlock block;
  const int32_t status = set(arguments..., &block);
  return status != 0 ? status : CEA_ReplaceDataBlock(&model, &entry, &block);
}

// The new block starts with the header of the one that it replaces.
template <class Set, class... Arguments>
int32_t Rewrite(DispIdBlock& model, DispIdDataBlock& entry, Set set, const Arguments&... arguments) {
  uint8_t buffer[REEDID_DISPID_DATA_BLOCK_SIZE] = {};
  DispIdDataBlock block = {entry.tag, entry.revision, entry.headerFlags, 0, buffer};
  const int32_t status = set(arguments..., &block);
  return status != 0 ? status : DispID_ReplaceDB(&model, &entry, &block);
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
int32_t AddDataBlock(CeaBlock& model, unsigned index, Set set, const Arguments&... arguments) {
  ScratchDataBlock block;
  const int32_t status = set(arguments..., &block);
  return status != 0 ? status : CEA_AddDataBlock(&model, &block, index);
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
