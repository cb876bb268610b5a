// Is this image valid, does it describe an HDMI sink, and which physical address does it give?

#include "transform/hdmi_identity.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

#include "base/log.h"
#include "base/memory.h"
#include "cea/codec.h"
#include "edid/image.h"
#include "inventory/walk.h"
#include "reedid/transforms.h"
#include "transform/edit.h"
#include "transform/stereo.h"

namespace reedid {
namespace {

constexpr uint16_t kNoPhysAddr = 0xFFFF;

template <class Model>
bool OpensWithChecksum(const EdidBlock& block) {
  const Opened<Model> model = Open<Model>(block);
  return model != nullptr && model->checksumValid;
}

bool IsValidBlock(const EdidBlock& block) {
  switch (block.type) {
    case EDID_BLOCK_VESA:
      return OpensWithChecksum<VesaBlock>(block);
    case EDID_BLOCK_CEA:
      return OpensWithChecksum<CeaBlock>(block);
    case EDID_BLOCK_DISPID_FIRST:
    case EDID_BLOCK_DISPID_NEXT:
    case EDID_BLOCK_DISPID_EXT:
      return OpensWithChecksum<DispIdBlock>(block);
    default:
      return false;
  }
}

struct HdmiVsdb {
  unsigned blockIndex;
  Opened<CeaBlock> model;
  CeaDataBlock* entry;
};

CeaDataBlock* FindHdmi14b(CeaBlock& model) {
  for (unsigned i = 0; i < model.dataBlockCount; ++i) {
    CeaDataBlock& entry = model.dataBlocks[i];
    if (entry.bytes != nullptr && entry.tag == CEA_TAG_VENDOR && CEA_GetVSDBType(&entry) == VSDB_HDMI14B) return &entry;
  }
  return nullptr;
}

// The first HDMI 1.4b VSDB of the image. Blocks and data blocks are counted with one counter, so that a CTA extension
// with n data blocks and no VSDB among them is followed by block n + 1. The search only moves forward. Odd on purpose:
// docs/oddities.md. It ends where memory lacks: behind a block that did not open there could be an HDMI VSDB that is not
// the first.
std::optional<HdmiVsdb> FindHdmiVsdb(const EdidHandle& handle, MemoryWatch& memory) {
  for (unsigned i = 0; i < handle.blockCount;) {
    unsigned next = i + 1;
    if (handle.blocks[i].type == EDID_BLOCK_CEA) {
      Opened<CeaBlock> model = Open<CeaBlock>(handle.blocks[i], memory);
      if (!memory.sufficed()) return std::nullopt;
      if (model != nullptr) {
        if (CeaDataBlock* entry = FindHdmi14b(*model)) return HdmiVsdb{i, std::move(model), entry};
        next = std::max(next, model->dataBlockCount + 1u);
      }
    }
    i = next;
  }
  return std::nullopt;
}

bool HasBlocks(const EdidHandle* handle) {
  return HasBlockArray(handle) && handle->blockCount > 0;
}

// A CTA extension without data blocks or DTDs, as an HDMI sink shows it.
Opened<CeaBlock> NewCeaModel() {
  Opened<CeaBlock> model(AllocateZeroed<CeaBlock>());
  if (model == nullptr) return model;
  model->revision = 3;
  model->underscan = 1;
  model->basicAudio = 1;
  model->nativeDtdCount = 1;
  model->freeSpace = 122;
  return model;
}

// Takes block 1 out of the image and returns its model when it was a CTA extension, else empty.
Opened<CeaBlock> TakeSecondBlock(EdidHandle& handle, MemoryWatch& memory) {
  Opened<CeaBlock> model;
  if (handle.blockCount < 2) return model;
  EdidBlock& second = handle.blocks[1];
  if (second.type == EDID_BLOCK_CEA) model = Open<CeaBlock>(second, memory);
  EDID_DeleteBlock(&handle, &second);
  return model;
}

void PrepareForHdmi(CeaBlock& model, unsigned needed) {
  model.revision = 3;
  model.basicAudio = 1;
  if (model.freeSpace < needed && model.dtds != nullptr && model.dtdCount > 0) {
    CEA_DeleteDTD(&model, &model.dtds[model.dtdCount - 1]);
  }
}

// Right behind the video formats; in front when there are none.
unsigned HdmiBlocksPosition(const CeaBlock& model) {
  const CeaDataBlock* video = CEA_FindDataBlock(&model, CEA_TAG_VIDEO, 0);
  return video == nullptr ? 0 : static_cast<unsigned>(video - model.dataBlocks) + 1;
}

// Stereo, the front speakers, and the HDMI VSDB, as far as there is room.
void AddHdmiBlocks(MemoryWatch& memory, CeaBlock& model, uint16_t physAddr) {
  const unsigned position = HdmiBlocksPosition(model);
  AdbRecord audio = {};
  SetStereo(audio);
  AddDataBlock(memory, model, position, CEA_SetADB, &audio);
  AddDataBlock(memory, model, position + 1, CEA_SetSADB, &kFrontSpeakers);
  H14bRecord hdmi = {};
  hdmi.physAddr = physAddr;
  hdmi.max_TMDS_Clock = 150;
  AddDataBlock(memory, model, position + 2, CEA_SetH14bVSDB, &hdmi);
}

constexpr unsigned kHdmiBlocksSize = 4 + 4 + 9;

int32_t MakeHdmi(EdidHandle& handle, uint16_t physAddr, MemoryWatch& memory) {
  Opened<CeaBlock> model = TakeSecondBlock(handle, memory);
  if (!memory.sufficed()) return -1;
  if (model != nullptr) {
    PrepareForHdmi(*model, kHdmiBlocksSize);
  } else {
    model = NewCeaModel();
  }
  if (model == nullptr) {
    memory.Lack();
    return REEDID_ERR_AS("EDID_DVItoHDMI", "malloc fail");
  }
  AddHdmiBlocks(memory, *model, physAddr);
  if (!memory.sufficed()) return -1;

  uint8_t bytes[kEdidBlockSize];
  EdidBlock block = {EDID_BLOCK_CEA, kEdidBlockSize, kEdidBlockSize, bytes};
  if (CEA_GenerateBlock(model.get(), &block) != 0) return -1;
  const int32_t status = EDID_AddBlock(&handle, &block, handle.blockCount);
  if (status != 0) memory.Lack();  // block 1 left its place
  return status;
}

}  // namespace

bool IsDvi(const EdidHandle& handle, MemoryWatch& memory) {
  return !FindHdmiVsdb(handle, memory).has_value();
}

}  // namespace reedid

using namespace reedid;

int32_t isValidEdid(const EdidHandle* handle) {
  if (!HasBlockArray(handle)) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  return std::all_of(handle->blocks, handle->blocks + handle->blockCount, IsValidBlock);
}

int32_t isDVIEdid(const EdidHandle* handle) {
  if (!HasBlockArray(handle)) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  MemoryWatch memory;
  const bool dvi = IsDvi(*handle, memory);
  return memory.sufficed() && dvi;
}

int32_t EDID_DVItoHDMI(EdidHandle* handle, uint16_t physAddr) {
  if (!HasBlockArray(handle)) return REEDID_ERR("invalid parameters");
  MemoryWatch asking;
  const bool dvi = IsDvi(*handle, asking);
  if (!asking.sufficed()) return -1;
  if (!dvi) return 0;
  int32_t status = -1;
  EditWhole(*handle, [&](MemoryWatch& memory) { status = MakeHdmi(*handle, physAddr, memory); });
  return status;
}

uint16_t EDID_GetPhyAddr(const EdidHandle* handle) {
  if (!HasBlocks(handle)) return kNoPhysAddr;
  MemoryWatch unwatched;
  const std::optional<HdmiVsdb> found = FindHdmiVsdb(*handle, unwatched);
  H14bRecord record;
  if (!found || CEA_GetH14bVSDB(found->entry, &record) != 0) return kNoPhysAddr;
  return record.physAddr;
}

int32_t EDID_SetPhyAddr(EdidHandle* handle, uint16_t physAddr) {
  if (!HasBlocks(handle)) return -1;
  MemoryWatch unwatched;
  const std::optional<HdmiVsdb> found = FindHdmiVsdb(*handle, unwatched);
  if (!found) return -1;
  H14bRecord record;
  if (CEA_GetH14bVSDB(found->entry, &record) != 0) return -1;
  record.physAddr = physAddr;
  if (Rewrite(unwatched, *found->model, *found->entry, CEA_SetH14bVSDB, &record) != 0) return -1;
  return Regenerate(*found->model, handle->blocks[found->blockIndex]);
}
