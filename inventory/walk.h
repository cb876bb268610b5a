// Opening a block with its family's parser, working on the model, writing it back and closing it: the one road on which
// every question about an image and every edit of one goes.
#pragma once

#include <cstdint>
#include <cstring>

#include "base/bytes.h"
#include "base/memory.h"
#include "cea/codec.h"
#include "displayid/codec.h"
#include "edid/image.h"
#include "reedid/cea.h"
#include "reedid/displayid.h"
#include "reedid/vesa.h"
#include "vesa/model.h"

namespace reedid {

// Which blocks a model stands for, and its calls.
template <class Model>
struct Family;

template <>
struct Family<VesaBlock> {
  static constexpr auto kOpen = OpenVesa;
  static constexpr auto kGenerate = VESA_GenerateBlock;
  static constexpr auto kClose = VESA_Close;
  static constexpr bool Owns(uint8_t type) { return type == EDID_BLOCK_VESA; }
};

template <>
struct Family<CeaBlock> {
  static constexpr auto kOpen = OpenCea;
  static constexpr auto kGenerate = CEA_GenerateBlock;
  static constexpr auto kClose = CEA_Close;
  static constexpr bool Owns(uint8_t type) { return type == EDID_BLOCK_CEA; }
};

template <>
struct Family<DispIdBlock> {
  static constexpr auto kOpen = OpenDispId;
  static constexpr auto kGenerate = DispID_GenerateBlock;
  static constexpr auto kClose = DispID_Close;
  static constexpr bool Owns(uint8_t type) { return type >= EDID_BLOCK_DISPID_FIRST && type <= EDID_BLOCK_DISPID_EXT; }
};

// A model that closes itself; empty when the block did not open.
template <class Model>
using Opened = Owned<Model, Family<Model>::kClose>;

// `memory` learns when the block, or a part of it, did not open for lack of memory.
template <class Model>
Opened<Model> Open(const EdidBlock& block, MemoryWatch& memory) {
  return Opened<Model>(Family<Model>::kOpen(&block, memory));
}

template <class Model>
Opened<Model> Open(const EdidBlock& block) {
  MemoryWatch unwatched;
  return Open<Model>(block, unwatched);
}

inline bool IsComplete(const VesaBlock&) {
  return true;
}
inline bool IsComplete(const CeaBlock& model) {
  return CEA_IsComplete(&model) != 0;
}
inline bool IsComplete(const DispIdBlock& model) {
  return DispID_IsComplete(&model) != 0;
}

inline bool HasBlockArray(const EdidHandle* handle) {
  return handle != nullptr && handle->blocks != nullptr;
}

// Writes a model over the block that it came from. A refused model leaves the block's bytes as they were, and so does
// one that could not be opened whole: writing it would lose what it lacks.
template <class Model>
int32_t Regenerate(const Model& model, EdidBlock& block) {
  if (!IsComplete(model)) return -1;
  uint8_t buffer[kMaxSectionSize];
  EdidBlock scratch = block;
  scratch.bytes = buffer;
  if (scratch.capacity > sizeof buffer) scratch.capacity = sizeof buffer;
  if (Family<Model>::kGenerate(&model, &scratch) != 0) return -1;
  std::memcpy(block.bytes, buffer, scratch.size);
  std::memset(block.bytes + scratch.size, 0, block.capacity - scratch.size);
  block.type = scratch.type;
  block.size = scratch.size;
  return 0;
}

// Opens the block when the visitor takes the family's model (`visit(model)`).
template <class Model, class Visit>
void VisitAs(const EdidBlock& block, MemoryWatch& memory, Visit& visit) {
  if constexpr (requires(Model & model) { visit(model); }) {
    if (!Family<Model>::Owns(block.type)) return;
    if (const Opened<Model> model = Open<Model>(block, memory)) visit(*model);
  }
}

// Visits the model of every block that the visitor takes, in image order; blocks that do not open are skipped.
template <class Visit>
void VisitBlocks(const EdidHandle& handle, MemoryWatch& memory, Visit&& visit) {
  if (handle.blocks == nullptr) return;
  for (unsigned i = 0; i < handle.blockCount; ++i) {
    VisitAs<VesaBlock>(handle.blocks[i], memory, visit);
    VisitAs<CeaBlock>(handle.blocks[i], memory, visit);
    VisitAs<DispIdBlock>(handle.blocks[i], memory, visit);
  }
}

template <class Visit>
void VisitBlocks(const EdidHandle& handle, Visit&& visit) {
  MemoryWatch unwatched;
  VisitBlocks(handle, unwatched, visit);
}

// The same for an edit, whose model is written back; a refused regeneration keeps the block. An edit that returns bool
// tells whether it changed anything to write. Once memory lacked, nothing is edited or written any more.
template <class Edit>
void EditBlock(EdidBlock& block, MemoryWatch& memory, Edit& edit) {
  auto editAndWrite = [&]<class Model>(Model & model) requires requires {
    edit(model);
  }
  {
    if (!memory.sufficed()) return;
    if constexpr (requires { static_cast<bool>(edit(model)); }) {
      if (!edit(model)) return;
    } else {
      edit(model);
    }
    if (memory.sufficed()) Regenerate(model, block);
  };
  VisitAs<VesaBlock>(block, memory, editAndWrite);
  VisitAs<CeaBlock>(block, memory, editAndWrite);
  VisitAs<DispIdBlock>(block, memory, editAndWrite);
}

template <class Edit>
void EditBlocks(EdidHandle& handle, MemoryWatch& memory, Edit&& edit) {
  if (handle.blocks == nullptr) return;
  for (unsigned i = 0; i < handle.blockCount && memory.sufficed(); ++i) EditBlock(handle.blocks[i], memory, edit);
}

// One visitor out of several lambdas.
template <class... Visits>
struct Overloaded : Visits... {
  using Visits::operator()...;
};
template <class... Visits>
Overloaded(Visits...) -> Overloaded<Visits...>;

}  // namespace reedid
