#include "tests/support/operations.h"

#include <algorithm>
#include <vector>

#include "inventory/walk.h"
#include "tests/support/data_block.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"

namespace reedid::test {
namespace {

// The operations whose result tells nothing, or that have none.
template <auto Run>
int32_t Void(EdidHandle& handle) {
  if constexpr (requires { Run(handle); }) {
    Run(handle);
  } else {
    Run(&handle);
  }
  return kNoResult;
}

// Edits the model of every CTA extension, or of every section, and writes it back when the edit was done.
template <class Model, int32_t (*Edit)(Model*)>
int32_t EditModels(EdidHandle& handle) {
  MemoryWatch memory;
  EditBlocks(handle, memory, [](Model& model) { return Edit(&model) == 0; });
  return kNoResult;
}
template <int32_t (*Edit)(CeaBlock*)>
constexpr auto EditCta = EditModels<CeaBlock, Edit>;
template <int32_t (*Edit)(DispIdBlock*)>
constexpr auto EditSections = EditModels<DispIdBlock, Edit>;

const DataBlock kVideo(Hex("43 10 04 61"));
const DtdSlot kSlot = SlotOf(k720p60);
const Held<DispIdDataBlock> kTimingCodes(Hex("06 01 01 52"));

EdidBlock* Last(EdidHandle& handle) {
  return handle.blockCount > 0 ? &handle.blocks[handle.blockCount - 1] : nullptr;
}

void Regenerate(EdidHandle& handle) {
  MemoryWatch memory;
  EditBlocks(handle, memory, Overloaded{[](VesaBlock&) {}, [](CeaBlock&) {}, [](DispIdBlock&) {}});
}

template <class Record, auto Ask>
void Get(EdidHandle& handle) {
  Record record = {};
  Ask(&handle, &record);
}

// To all rates that the image offers. Rates taken while memory was short may lack some: asked twice, they are right once.
template <void (*Limit)(EdidHandle*, const uint16_t*, uint32_t)>
void LimitTo(EdidHandle& handle) {
  uint16_t first[255], second[255];
  const uint32_t count = EDID_GetAllFrameRate(&handle, first, 255);
  const uint32_t again = EDID_GetAllFrameRate(&handle, second, 255);
  Limit(&handle, count > again ? first : second, std::max(count, again));
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

// Another display, for edits of two: some of everything that a mix looks at.
const Image kOther(Edid()
                       .Dtd(k1080p60)
                       .Descriptor(0xFD, {0, 48, 75, 30, 90, 20, 1, 0x0A, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20})
                       .Extension(Cta()
                                      .Flags(0x70)
                                      .Vdb({16, 4, 31, 97, 1})
                                      .Block(1, Hex("09 07 07 15 07 50"))
                                      .Block(4, {1, 0, 0})
                                      .Hdmi(0x1000, Hex("B8 3C 20 80 22 01 00"))
                                      .HdmiForum(Hex("01 78 80 33 00 30 78 8B 37 0F"))
                                      .Extended(1, Hex("46 D0 00 44 57 53 68 65 87 5F"))
                                      .Extended(5, {0xE0, 0})
                                      .Extended(6, Hex("05 01 60 58 40"))
                                      .Extended(15, {8}))
                       .Build());

template <void (*Mix)(EdidHandle*, const EdidHandle*)>
constexpr auto WithOther = Void<[](EdidHandle& handle) { Mix(&handle, kOther.get()); }>;

constexpr Operation kOperations[] = {
    {"EDID_Open", Void<[](EdidHandle& handle) { Image(Generate(&handle)); }>},
    {"EDID_AddBlock", [](EdidHandle& handle) { return EDID_AddBlock(&handle, Last(handle), 1); }},
    {"EDID_DeleteBlock", [](EdidHandle& handle) { return EDID_DeleteBlock(&handle, Last(handle)); }},
    {"open and generate each block", Void<Regenerate>, true},
    {"CEA_AddDataBlock", EditCta<[](CeaBlock* cea) { return CEA_AddDataBlock(cea, &kVideo, 1); }>, true},
    {"CEA_DeleteDataBlock", EditCta<[](CeaBlock* cea) { return CEA_DeleteDataBlock(cea, cea->dataBlocks); }>, true},
    {"CEA_ReplaceDataBlock", EditCta<[](CeaBlock* cea) { return CEA_ReplaceDataBlock(cea, cea->dataBlocks, &kVideo); }>,
     true},
    {"CEA_AddDTD", EditCta<[](CeaBlock* cea) { return CEA_AddDTD(cea, &kSlot, 0); }>, true},
    {"CEA_DeleteDTD", EditCta<[](CeaBlock* cea) { return CEA_DeleteDTD(cea, cea->dtds); }>, true},
    {"DispID_AddDB", EditSections<[](DispIdBlock* id) { return DispID_AddDB(id, &kTimingCodes, 1); }>, true},
    {"DispID_DeleteDB", EditSections<[](DispIdBlock* id) { return DispID_DeleteDB(id, id->dataBlocks); }>, true},
    {"DispID_ReplaceDB",
     EditSections<[](DispIdBlock* id) { return DispID_ReplaceDB(id, id->dataBlocks, &kTimingCodes); }>, true},
    {"isValidEdid", Void<isValidEdid>},
    {"isDVIEdid", Void<isDVIEdid>},
    {"EDID_DVItoHDMI", [](EdidHandle& handle) { return EDID_DVItoHDMI(&handle, 0x1000); }},
    {"EDID_GetPhyAddr", Void<EDID_GetPhyAddr>},
    {"EDID_SetPhyAddr", [](EdidHandle& handle) { return EDID_SetPhyAddr(&handle, 0x2100); }},
    {"EDID_GetAllFrameRate", Void<LimitTo<[](EdidHandle*, const uint16_t*, uint32_t) {}>>},
    {"EDID_GetTimings", Void<GetOffers>},
    {"EDID_LimitToHDMI20", Void<LimitTo<EDID_LimitToHDMI20>>},
    {"EDID_LimitToHDMI14", Void<LimitTo<EDID_LimitToHDMI14>>},
    {"EDID_FindOutAllDTD", Void<FindDtds>},
    {"EDID_GetPreferredTiming", Void<Get<DtdTiming, EDID_GetPreferredTiming>>},
    {"EDID_GetAudioFmtCap", Void<Get<AudioFmtCap, EDID_GetAudioFmtCap>>},
    {"EDID_HighRefreshRate", [](EdidHandle& handle) { return EDID_HighRefreshRate(&handle); }},
    {"DeleteEODB", Void<DeleteEODB>},
    {"EDID_LimitToPCM2CH", Void<EDID_LimitToPCM2CH>},
    {"EDID_LimitToFrl40G", Void<EDID_LimitToFrl40G>},
    {"EDID_GenerateImage",
     [](EdidHandle& handle) { return EDID_GenerateImage(&handle, ByteVector(65536).data(), 65536); }},
    {"EDID_LimitToStereo", [](EdidHandle& handle) { return EDID_LimitToStereo(&handle); }},
    {"EDID_PatchPhyAddr", [](EdidHandle& handle) { return EDID_PatchPhyAddr(&handle, 0x2100); }},
    {"EDID_LimitToLink, HDMI 2.0", [](EdidHandle& handle) { return EDID_LimitToLink(&handle, &EDID_LINK_HDMI20); }},
    {"EDID_LimitToLink, HDMI 1.4", [](EdidHandle& handle) { return EDID_LimitToLink(&handle, &EDID_LINK_HDMI14); }},
    {"EDID_LimitToLink, DVI", [](EdidHandle& handle) { return EDID_LimitToLink(&handle, &EDID_LINK_DVI); }},
    {"EDID_LimitToLink, 300 MHz", [](EdidHandle& handle) { return EDID_LimitToLink(&handle, &EDID_LINK_300MHZ_420); }},
    {"EDID_LimitToLink, FRL 3", [](EdidHandle& handle) { return EDID_LimitToLink(&handle, &EDID_LINK_FRL3); }},
    {"EDID_FitTwoBlocks", [](EdidHandle& handle) { return EDID_FitTwoBlocks(&handle); }},
    {"EDID_MakeHdmi", [](EdidHandle& handle) { return EDID_MakeHdmi(&handle, 0x2100); }},
    {"EDID_StripHdr", [](EdidHandle& handle) { return EDID_StripHdr(&handle); }},
    {"EDID_LimitToSDR", Void<EDID_LimitToSDR>},
    {"EDID_LimitToDolbyLowlatency", Void<EDID_LimitToDolbyLowlatency>},
    {"EDID_MIX_DolbyVision", WithOther<EDID_MIX_DolbyVision>},
    {"EDID_MIX_H14bVSDB", WithOther<EDID_MIX_H14bVSDB>},
    {"EDID_MIX_HFVSDB", WithOther<EDID_MIX_HFVSDB>},
    {"EDID_LimitToCommon", [](EdidHandle& handle) { return EDID_LimitToCommon(&handle, kOther.get()); }},
    {"EDID_TakeAudio", [](EdidHandle& handle) { return EDID_TakeAudio(&handle, kOther.get()); }},
};

}  // namespace

std::span<const Operation> Operations() {
  return kOperations;
}

Outcome OutcomeOf(const Operation& operation, const ByteVector& image) {
  const Image handle(image);
  const int32_t result = operation.run(*handle);
  return {result, Generate(handle.get())};
}

}  // namespace reedid::test
