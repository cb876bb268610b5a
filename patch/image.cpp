#include "patch/image.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/list.h"
#include "base/memory.h"
#include "edid/image.h"

namespace reedid {
namespace {

constexpr unsigned kEdidCountByte = 126;
constexpr unsigned kSectionCountByte = 3;
constexpr unsigned kMappedBlocks = 126;
constexpr unsigned kOverrideSize = 3;

EdidHandle* CopyOf(const EdidHandle& handle) {
  EdidHandle* copy = AllocateZeroed<EdidHandle>();
  if (copy == nullptr) return nullptr;
  copy->blocks = AllocateZeroed<EdidBlock>(handle.blockCount);
  bool whole = copy->blocks != nullptr;
  for (unsigned i = 0; whole && i < handle.blockCount && handle.blocks != nullptr; ++i) {
    const EdidBlock& block = handle.blocks[i];
    copy->blocks[i] = block;
    copy->blocks[i].bytes = block.bytes == nullptr ? nullptr : CopyBytes(block.bytes, block.size, block.capacity);
    copy->blockCount = Low8(i + 1);
    whole = block.bytes == nullptr || copy->blocks[i].bytes != nullptr;
  }
  if (!whole) {
    EDID_Close(copy);
    return nullptr;
  }
  return copy;
}

// Where the override states its count; 0 without one.
unsigned OverrideCountAt(EdidHandle& handle) {
  if (handle.blockCount < 2) return 0;
  CtaCursor first(CollectionOf(handle.blocks[1]));
  const bool found = first.Next() && first.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_EXTENSION_OVERRIDE);
  return found && first.bytes().size() >= kOverrideSize ? first.at() + 2 : 0;
}

void Refresh(EdidHandle& handle) {
  // An override of less than two extensions is none: byte 126 tells as much.
  if (handle.blockCount == 2 && OverrideCountAt(handle) != 0) {
    CtaCursor first(CollectionOf(handle.blocks[1]));
    if (first.Next()) first.Erase();
  }
  WriteExtensionCount(handle);
  WriteBlockMaps(handle);
}

}  // namespace

Draft::Draft(const EdidHandle& handle) : copy_(CopyOf(handle)) {}

void Draft::Commit(EdidHandle& handle) {
  bool sameBuffers = handle.blockCount == copy_->blockCount && handle.blocks != nullptr;
  for (unsigned i = 0; sameBuffers && i < handle.blockCount; ++i) {
    sameBuffers = handle.blocks[i].bytes != nullptr && handle.blocks[i].capacity == copy_->blocks[i].capacity &&
                  handle.blocks[i].type == copy_->blocks[i].type;
  }
  if (!sameBuffers) {
    std::swap(handle.blocks, copy_->blocks);
    std::swap(handle.blockCount, copy_->blockCount);
    return;
  }
  for (unsigned i = 0; i < handle.blockCount; ++i) {
    handle.blocks[i].size = copy_->blocks[i].size;
    std::memcpy(handle.blocks[i].bytes, copy_->blocks[i].bytes,
                std::max(copy_->blocks[i].size, copy_->blocks[i].capacity));
  }
}

void EraseBlock(EdidHandle& handle, unsigned index) {
  if (handle.blocks == nullptr || index >= handle.blockCount) return;
  List(handle.blocks, handle.blockCount).Erase(&handle.blocks[index]);
  if (handle.blockCount > 0) Refresh(handle);
}

bool InsertBlock(EdidHandle& handle, const EdidBlock& block, unsigned index) {
  if (List(handle.blocks, handle.blockCount).Insert(block, index) != ListResult::kDone) return false;
  Refresh(handle);
  return true;
}

unsigned CtaPlace(const EdidHandle& handle) {
  return handle.blockCount > 1 && handle.blocks[1].type == EDID_BLOCK_MAP ? 2 : 1;
}

void WriteExtensionCount(EdidHandle& handle) {
  if (handle.blockCount == 0 || handle.blocks[0].bytes == nullptr) return;
  EdidBlock& first = handle.blocks[0];
  const uint8_t count = Low8(handle.blockCount - 1);
  if (!HasEdidHeader(first.bytes, first.size)) {
    Overwrite(first, kSectionCountByte, count);
    return;
  }
  const unsigned overrideAt = OverrideCountAt(handle);
  if (overrideAt != 0) Overwrite(handle.blocks[1], overrideAt, count);
  Overwrite(first, kEdidCountByte, overrideAt != 0 ? uint8_t{1} : count);
}

void WriteBlockMaps(EdidHandle& handle) {
  for (unsigned map = 1; map < handle.blockCount; ++map) {
    if (handle.blocks[map].type != EDID_BLOCK_MAP) continue;
    uint8_t tags[kMappedBlocks] = {};
    for (unsigned i = 0; i < kMappedBlocks && map + 1 + i < handle.blockCount; ++i) {
      tags[i] = BytesOf(handle.blocks[map + 1 + i])[0];
    }
    Overwrite(handle.blocks[map], 1, Bytes(tags, sizeof tags));
  }
}

}  // namespace reedid
