#include "tests/support/operations.h"

#include <algorithm>
#include <vector>

#include "inventory/walk.h"
#include "tests/support/data_block.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"

namespace reedid::test {
namespace {

const ByteVector kVideoBlock = {0x43, 0x10, 0x04, 0x61};

// Edits the model of every CTA extension, or of every section, and writes it back.
template <void (*Edit)(CeaBlock&)>
void EditCta(EdidHandle& handle) {
  EditBlocks(handle, Edit);
}
template <void (*Edit)(DispIdBlock&)>
void EditSections(EdidHandle& handle) {
  EditBlocks(handle, Edit);
}

void Reopen(EdidHandle& handle) {
  OpenImage(Generate(&handle));
}

void AddBlock(EdidHandle& handle) {
  if (handle.blockCount > 0) EDID_AddBlock(&handle, &handle.blocks[handle.blockCount - 1], 1);
}

void DeleteBlock(EdidHandle& handle) {
  if (handle.blockCount > 0) EDID_DeleteBlock(&handle, &handle.blocks[handle.blockCount - 1]);
}

void Regenerate(EdidHandle& handle) {
  EditBlocks(handle, Overloaded{[](VesaBlock&) {}, [](CeaBlock&) {}, [](DispIdBlock&) {}});
}

void AddDataBlock(CeaBlock& model) {
  const DataBlock block(kVideoBlock);
  CEA_AddDataBlock(&model, &block, 1);
}

void DeleteDataBlock(CeaBlock& model) {
  if (model.dataBlockCount > 0) CEA_DeleteDataBlock(&model, model.dataBlocks);
}

void ReplaceDataBlock(CeaBlock& model) {
  const DataBlock block(kVideoBlock);
  if (model.dataBlockCount > 0) CEA_ReplaceDataBlock(&model, model.dataBlocks, &block);
}

void AddDtd(CeaBlock& model) {
  const DtdSlot slot = SlotOf(k720p60);
  CEA_AddDTD(&model, &slot, 0);
}

void DeleteDtd(CeaBlock& model) {
  if (model.dtdCount > 0) CEA_DeleteDTD(&model, model.dtds);
}

// A type IV block with one timing code.
struct TimingCodes : DispIdDataBlock {
  TimingCodes() : DispIdDataBlock{0x06, 1, 0, 4, storage} {}
  uint8_t storage[4] = {0x06, 1, 1, 0x52};
};

void AddDb(DispIdBlock& model) {
  const TimingCodes block;
  DispID_AddDB(&model, &block, 1);
}

void DeleteDb(DispIdBlock& model) {
  if (model.dataBlockCount > 0) DispID_DeleteDB(&model, model.dataBlocks);
}

void ReplaceDb(DispIdBlock& model) {
  const TimingCodes block;
  if (model.dataBlockCount > 0) DispID_ReplaceDB(&model, model.dataBlocks, &block);
}

void ToHdmi(EdidHandle& handle) {
  EDID_DVItoHDMI(&handle, 0x1000);
}

// Below each limit to all rates that the image offers.
template <void (*Limit)(EdidHandle*, const uint16_t*, uint32_t)>
void LimitTo(EdidHandle& handle) {
  uint16_t rates[255];
  const uint32_t count = EDID_GetAllFrameRate(&handle, rates, 255);
  Limit(&handle, rates, count);
}

// The list gets exactly the room that EDID_GetDTDCnt asks for, so that one record too many shows. A count taken while
// memory was short may be too small for what is found later: asked twice, it is right once.
void FindDtds(EdidHandle& handle) {
  std::vector<DtdTiming> list(std::max(EDID_GetDTDCnt(&handle), EDID_GetDTDCnt(&handle)));
  const uint32_t count = EDID_FindOutAllDTD(&handle, list.data(), static_cast<uint32_t>(list.size()));
  SortDTDbyResolution(list.data(), count);
  SortDTDbyFrameRate(list.data(), static_cast<int32_t>(count));
}

void GetPreferred(EdidHandle& handle) {
  DtdTiming timing = {};
  EDID_GetPreferredTiming(&handle, &timing);
}

void GetAudio(EdidHandle& handle) {
  AudioFmtCap cap;
  EDID_GetAudioFmtCap(&handle, &cap);
}

constexpr Operation kOperations[] = {
    {"EDID_Open", Reopen, true},
    {"EDID_AddBlock", AddBlock, true},
    {"EDID_DeleteBlock", DeleteBlock, true},
    {"open and generate each block", Regenerate},
    {"CEA_AddDataBlock", EditCta<AddDataBlock>},
    {"CEA_DeleteDataBlock", EditCta<DeleteDataBlock>},
    {"CEA_ReplaceDataBlock", EditCta<ReplaceDataBlock>},
    {"CEA_AddDTD", EditCta<AddDtd>},
    {"CEA_DeleteDTD", EditCta<DeleteDtd>},
    {"DispID_AddDB", EditSections<AddDb>},
    {"DispID_DeleteDB", EditSections<DeleteDb>},
    {"DispID_ReplaceDB", EditSections<ReplaceDb>},
    {"isValidEdid", [](EdidHandle& handle) { isValidEdid(&handle); }, true},
    {"isDVIEdid", [](EdidHandle& handle) { isDVIEdid(&handle); }, true},
    {"EDID_DVItoHDMI", ToHdmi},
    {"EDID_GetPhyAddr", [](EdidHandle& handle) { EDID_GetPhyAddr(&handle); }, true},
    {"EDID_SetPhyAddr", [](EdidHandle& handle) { EDID_SetPhyAddr(&handle, 0x2100); }, true},
    {"EDID_GetAllFrameRate", LimitTo<[](EdidHandle*, const uint16_t*, uint32_t) {}>, true},
    {"EDID_LimitToHDMI20", LimitTo<EDID_LimitToHDMI20>},
    {"EDID_LimitToHDMI14", LimitTo<EDID_LimitToHDMI14>},
    {"EDID_FindOutAllDTD", FindDtds, true},
    {"EDID_GetPreferredTiming", GetPreferred, true},
    {"EDID_GetAudioFmtCap", GetAudio, true},
    {"EDID_HighRefreshRate", [](EdidHandle& handle) { EDID_HighRefreshRate(&handle); }},
    {"DeleteEODB", [](EdidHandle& handle) { DeleteEODB(&handle); }},
    {"EDID_LimitToPCM2CH", [](EdidHandle& handle) { EDID_LimitToPCM2CH(&handle); }},
    {"EDID_LimitToFrl40G", [](EdidHandle& handle) { EDID_LimitToFrl40G(&handle); }},
    {"EDID_LimitToSDR", [](EdidHandle& handle) { EDID_LimitToSDR(&handle); }},
};

}  // namespace

std::span<const Operation> Operations() {
  return kOperations;
}

}  // namespace reedid::test
