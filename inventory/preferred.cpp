// Which single timing should a source use for this sink?
//
// CTA-861 7.5.12: a Video Format Preference Data Block lists short video references (SVR), the most wanted first:
//   1..127 VIC; 129..144 the (SVR - 128)-th DTD of the EDID; 145..160 the (SVR - 144)-th type VII or X timing;
//   193..253 VIC (table index SVR - 64); 254 the first timing code; all others reserved

#include "base/log.h"
#include "cea/codec.h"
#include "cea/type_x.h"
#include "inventory/dtds.h"
#include "inventory/walk.h"
#include "reedid/transforms.h"

namespace reedid {
namespace {

constexpr const char* kName = "EDID_GetPreferredTiming";
constexpr uint16_t kWide = 1920;  // a first timing narrower than this gives way to a larger one that is as wide

// Each of the functions that answer returns whether it did, and writes `out` only then.

bool FromDtdNumber(const EdidHandle& handle, unsigned index, DtdTiming& out) {
  MemoryWatch unwatched;
  DtdList list;
  if (!list.Collect(handle, unwatched)) {
    REEDID_ERR_AS(kName, "malloc fail");
    return false;
  }
  if (index >= list.count()) return false;
  out = list[index];
  return true;
}

// Type X record number n - count + 3, where count takes in the block's own: the wanted one when the block holds four
// (odd on purpose: docs/oddities.md).
bool FromTypeX(const CeaDataBlock& entry, unsigned index, DtdTiming& out) {
  const TypeXRecords read = ReadTypeX(entry);
  DtdTiming timing;
  if (index >= kMaxTypeX || Cvt2ToDtd(&read.records[index], &timing) != 0) return false;
  out = timing;
  return true;
}

bool FromTimingNumber(const CeaBlock& model, unsigned n, DtdTiming& out) {
  unsigned count = 0;
  for (unsigned i = 0; i < model.dataBlockCount; ++i) {
    const CeaDataBlock& entry = model.dataBlocks[i];
    if (entry.bytes == nullptr) continue;
    if (IsKind(entry, CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VII) && ++count == n) {
      Cea20ByteDtdRecord record;
      if (CEA_Get20ByteDTD(&entry, &record) != 0) return false;
      out = record.timing;
      return true;
    }
    if (IsKind(entry, CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_X)) {
      count += TypeXSlots(entry);
      if (n <= count) return FromTypeX(entry, n + 3 - count, out);
    }
  }
  return false;
}

// Looks among the type X blocks, whose extended tag the timing code reader refuses: this reference has no answer
// (odd on purpose: docs/oddities.md).
bool FromTimingCode(const CeaBlock& model, DtdTiming& out) {
  const CeaDataBlock* entry = CEA_FindDataBlock(&model, CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_X);
  uint8_t codes[REEDID_CEA_DATA_BLOCK_SIZE];
  TimingCodeRecord record = {0, 0, 0, 0, codes};
  if (entry == nullptr || CEA_GetTimingCode(entry, &record) != 0 || record.codeType != 0) return false;
  return DmtToDtd(codes[0], &out) == 0;
}

bool FromReference(const EdidHandle& handle, const CeaBlock& model, uint8_t svr, DtdTiming& out) {
  if (svr >= 1 && svr <= 127) return VicToDtd(svr, &out) == 0;
  if (svr >= 129 && svr <= 144) return FromDtdNumber(handle, svr - 129u, out);
  if (svr >= 145 && svr <= 160) return FromTimingNumber(model, svr - 144u, out);
  if (svr >= 193 && svr <= 253) return VicToDtd(svr - 64u, &out) == 0;
  return svr == 254 && FromTimingCode(model, out);
}

bool FromPreferenceBlock(const EdidHandle& handle, const CeaBlock& model, DtdTiming& out) {
  const CeaDataBlock* entry = CEA_FindDataBlock(&model, CEA_TAG_EXTENDED, CEA_EXT_TAG_FORMAT_PREFERENCE);
  if (entry == nullptr || entry->bytes == nullptr || entry->size < 3) return false;
  return FromReference(handle, model, entry->bytes[2], out);
}

void FromNativeVic(const CeaBlock& model, DtdTiming& out) {
  const CeaDataBlock* entry = CEA_FindDataBlock(&model, CEA_TAG_VIDEO, 0);
  VdbRecord record;
  if (entry != nullptr && CEA_GetVDB(entry, &record) == 0) VicToDtd(record.nativeVic, &out);
}

// The first timing, unless it is narrow and the largest is not.
void FromDtds(const DtdList& list, DtdTiming& out) {
  if (list.count() == 0) return;
  const DtdTiming first = list[0];
  SortDTDbyResolution(list.data(), list.count());
  const DtdTiming& largest = list[0];
  out = largest.hactive >= kWide && first.hactive < kWide ? largest : first;
}

Opened<CeaBlock> OpenFirstCea(const EdidHandle& handle) {
  for (unsigned i = 0; handle.blocks != nullptr && i < handle.blockCount; ++i) {
    if (handle.blocks[i].type == EDID_BLOCK_CEA) return Open<CeaBlock>(handle.blocks[i]);
  }
  return nullptr;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

void EDID_GetPreferredTiming(const EdidHandle* handle, DtdTiming* out) {
  if (handle == nullptr || out == nullptr) {
    REEDID_ERR("invalid parameters");
    return;
  }
  const Opened<CeaBlock> model = OpenFirstCea(*handle);
  if (model != nullptr && FromPreferenceBlock(*handle, *model, *out)) return;
  MemoryWatch unwatched;
  DtdList list;
  const bool collected = list.Collect(*handle, unwatched);
  if (!collected) REEDID_ERR("malloc fail");
  if (model != nullptr && list.room() == 0) return FromNativeVic(*model, *out);
  if (collected) return FromDtds(list, *out);
  if (model != nullptr) FromNativeVic(*model, *out);
}
