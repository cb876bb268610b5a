#include "tests/support/operations.h"

#include <algorithm>
#include <vector>

#include "inventory/walk.h"
#include "tests/support/data_block.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"

namespace reedid::test {
namespace {

// Edits the model of every CTA extension, or of every section, and writes it back.
template <auto Edit>
void EditCta(EdidHandle& handle) {
  EditBlocks(handle, [](CeaBlock& model) { Edit(&model); });
}
template <auto Edit>
void EditSections(EdidHandle& handle) {
  EditBlocks(handle, [](DispIdBlock& model) { Edit(&model); });
}

const DataBlock kVideo(Hex("43 10 04 61"));
const DtdSlot kSlot = SlotOf(k720p60);
const Held<DispIdDataBlock> kTimingCodes(Hex("06 01 01 52"));

EdidBlock* Last(EdidHandle& handle) {
  return handle.blockCount > 0 ? &handle.blocks[handle.blockCount - 1] : nullptr;
}

void Regenerate(EdidHandle& handle) {
  EditBlocks(handle, Overloaded{[](VesaBlock&) {}, [](CeaBlock&) {}, [](DispIdBlock&) {}});
}

template <class Record, auto Ask>
void Get(EdidHandle& handle) {
  Record record = {};
  Ask(&handle, &record);
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

// Exactly as much room as was told.
void GetOffers(EdidHandle& handle) {
  std::vector<OfferedTiming> timings(EDID_GetTimings(&handle, nullptr, 0));
  EDID_GetTimings(&handle, timings.data(), static_cast<uint32_t>(timings.size()));
  std::vector<uint32_t> rates(EDID_GetRates(&handle, nullptr, 0));
  EDID_GetRates(&handle, rates.data(), static_cast<uint32_t>(rates.size()));
}

constexpr Operation kOperations[] = {
    {"EDID_Open", [](EdidHandle& handle) { OpenImage(Generate(&handle)); }, true},
    {"EDID_AddBlock", [](EdidHandle& handle) { EDID_AddBlock(&handle, Last(handle), 1); }, true},
    {"EDID_DeleteBlock", [](EdidHandle& handle) { EDID_DeleteBlock(&handle, Last(handle)); }, true},
    {"open and generate each block", Regenerate},
    {"CEA_AddDataBlock", EditCta<[](CeaBlock* cea) { CEA_AddDataBlock(cea, &kVideo, 1); }>},
    {"CEA_DeleteDataBlock", EditCta<[](CeaBlock* cea) { CEA_DeleteDataBlock(cea, cea->dataBlocks); }>},
    {"CEA_ReplaceDataBlock", EditCta<[](CeaBlock* cea) { CEA_ReplaceDataBlock(cea, cea->dataBlocks, &kVideo); }>},
    {"CEA_AddDTD", EditCta<[](CeaBlock* cea) { CEA_AddDTD(cea, &kSlot, 0); }>},
    {"CEA_DeleteDTD", EditCta<[](CeaBlock* cea) { CEA_DeleteDTD(cea, cea->dtds); }>},
    {"DispID_AddDB", EditSections<[](DispIdBlock* id) { DispID_AddDB(id, &kTimingCodes, 1); }>},
    {"DispID_DeleteDB", EditSections<[](DispIdBlock* id) { DispID_DeleteDB(id, id->dataBlocks); }>},
    {"DispID_ReplaceDB", EditSections<[](DispIdBlock* id) { DispID_ReplaceDB(id, id->dataBlocks, &kTimingCodes); }>},
    {"isValidEdid", [](EdidHandle& handle) { isValidEdid(&handle); }, true},
    {"isDVIEdid", [](EdidHandle& handle) { isDVIEdid(&handle); }, true},
    {"EDID_DVItoHDMI", [](EdidHandle& handle) { EDID_DVItoHDMI(&handle, 0x1000); }},
    {"EDID_GetPhyAddr", [](EdidHandle& handle) { EDID_GetPhyAddr(&handle); }, true},
    {"EDID_SetPhyAddr", [](EdidHandle& handle) { EDID_SetPhyAddr(&handle, 0x2100); }, true},
    {"EDID_GetAllFrameRate", LimitTo<[](EdidHandle*, const uint16_t*, uint32_t) {}>, true},
    {"EDID_GetTimings", GetOffers, true},
    {"EDID_LimitToHDMI20", LimitTo<EDID_LimitToHDMI20>},
    {"EDID_LimitToHDMI14", LimitTo<EDID_LimitToHDMI14>},
    {"EDID_FindOutAllDTD", FindDtds, true},
    {"EDID_GetPreferredTiming", Get<DtdTiming, EDID_GetPreferredTiming>, true},
    {"EDID_GetAudioFmtCap", Get<AudioFmtCap, EDID_GetAudioFmtCap>, true},
    {"EDID_HighRefreshRate", [](EdidHandle& handle) { EDID_HighRefreshRate(&handle); }},
    {"DeleteEODB", [](EdidHandle& handle) { DeleteEODB(&handle); }},
    {"EDID_LimitToPCM2CH", [](EdidHandle& handle) { EDID_LimitToPCM2CH(&handle); }},
    {"EDID_LimitToFrl40G", [](EdidHandle& handle) { EDID_LimitToFrl40G(&handle); }},
    {"EDID_GenerateImage", [](EdidHandle& handle) { GenerateImage(&handle); }, true},
    {"EDID_PatchPhyAddr", [](EdidHandle& handle) { EDID_PatchPhyAddr(&handle, 0x2100); }, true},
    {"EDID_LimitToLink, HDMI 2.0", [](EdidHandle& handle) { EDID_LimitToLink(&handle, &EDID_LINK_HDMI20); }, true},
    {"EDID_LimitToLink, HDMI 1.4", [](EdidHandle& handle) { EDID_LimitToLink(&handle, &EDID_LINK_HDMI14); }, true},
    {"EDID_LimitToLink, DVI", [](EdidHandle& handle) { EDID_LimitToLink(&handle, &EDID_LINK_DVI); }, true},
    {"EDID_MakeHdmi", [](EdidHandle& handle) { EDID_MakeHdmi(&handle, 0x2100); }, true},
    {"EDID_StripHdr", [](EdidHandle& handle) { EDID_StripHdr(&handle); }, true},
    {"EDID_LimitToSDR", [](EdidHandle& handle) { EDID_LimitToSDR(&handle); }},
};

}  // namespace

std::span<const Operation> Operations() {
  return kOperations;
}

}  // namespace reedid::test
