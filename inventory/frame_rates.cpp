// Which whole-number frame rates does an image offer, anywhere?

#include "base/log.h"
#include "cea/codec.h"
#include "cea/type_x.h"
#include "inventory/rate_list.h"
#include "inventory/walk.h"
#include "reedid/transforms.h"
#include "vesa/descriptor.h"

namespace reedid {
namespace {

constexpr unsigned kMaxCeaCodes = 32;

bool AddCvtCode(const VesaCvtCode& code, RateList& rates) {
  if (code.lines == 0) return true;
  return (!code.rate50 || rates.Add(50)) && (!(code.rate60 || code.rate60rb) || rates.Add(60)) &&
         (!code.rate75 || rates.Add(75)) && (!code.rate85 || rates.Add(85));
}

bool AddDtd(const DtdSlot& slot, RateList& rates) {
  DtdTiming timing;
  return VESA_GetDTD(&slot, &timing) != 0 || rates.AddFormulaRate(timing);
}

bool AddStdTimings(const StdTiming* timings, unsigned count, RateList& rates) {
  return AddEach(timings, count, [&](const StdTiming& std) { return std.valid == 0 || rates.Add(std.frameRate); });
}

bool AddDescriptor(const DtdSlot& slot, RateList& rates) {
  switch (slot.flag) {
    case kDtdSlotFlag:
      return AddDtd(slot, rates);
    case EDID_DESCRIPTOR_STD_TIMINGS: {
      StdTiming timings[6];
      return VESA_GetStandardTimings(&slot, timings) != 0 || AddStdTimings(timings, 6, rates);
    }
    case EDID_DESCRIPTOR_CVT_CODES: {
      VesaCvtRecord record;
      return VESA_GetCvtTiming(&slot, &record) != 0 ||
             AddEach(record.codes, 4, [&](const VesaCvtCode& code) { return AddCvtCode(code, rates); });
    }
    default:
      return true;
  }
}

bool AddEstablished(const VesaBlock& model, RateList& rates) {
  for (unsigned i = 0; i < sizeof model.established; ++i) {
    DtdTiming timing = {};
    if (!model.established[i] || DmtToDtd(Est12ToDmt(i), &timing) != 0) continue;
    if (!rates.AddFormulaRate(timing)) return false;
  }
  return true;
}

bool AddBlock(const VesaBlock& model, RateList& rates) {
  return AddEstablished(model, rates) && AddStdTimings(model.standardTimings, 8, rates) &&
         AddEach(model.descriptors, 4, [&](const DtdSlot& slot) { return AddDescriptor(slot, rates); });
}

bool AddVics(const uint8_t* vics, unsigned count, RateList& rates) {
  return AddEach(vics, count, [&](uint8_t vic) { return rates.AddVic(vic); });
}

bool AddHdmiVics(const CeaDataBlock& entry, RateList& rates) {
  H14bRecord record;
  if (CEA_GetVSDBType(&entry) != VSDB_HDMI14B || CEA_GetH14bVSDB(&entry, &record) != 0) return true;
  return AddEach(record.hdmiVics, record.hdmiVicLen, [&](uint8_t vic) { return rates.AddHdmiVic(vic); });
}

bool AddCeaTimingCodes(const CeaDataBlock& entry, RateList& rates) {
  uint8_t codes[kMaxCeaCodes];
  TimingCodeRecord record = {0, 0, 0, 0, codes};
  if (CEA_GetTimingCode(&entry, &record) != 0 || record.codeType != 0) return true;
  return AddEach(codes, record.codeCount, [&](uint8_t id) { return rates.AddDmt(id); });
}

bool AddExtended(const CeaDataBlock& entry, RateList& rates) {
  switch (entry.extTag) {
    case CEA_EXT_TAG_420_VIDEO: {
      Vic420Record record;
      return CEA_Get420VDB(&entry, &record) != 0 || AddVics(record.vics, record.vicCount, rates);
    }
    case CEA_EXT_TAG_TYPE_VII: {
      Cea20ByteDtdRecord record;
      return CEA_Get20ByteDTD(&entry, &record) != 0 || rates.AddFormulaRate(record.timing);
    }
    case CEA_EXT_TAG_TYPE_VIII:
      return AddCeaTimingCodes(entry, rates);
    case CEA_EXT_TAG_TYPE_X: {
      if (TypeXSlots(entry) == 0) return true;  // nothing to read is nothing to complain about
      const TypeXRecords read = ReadTypeX(entry);
      return AddEach(read.records, read.count, [&](const CvtTiming& timing) { return rates.Add(timing.frameRate); });
    }
    default:
      return true;
  }
}

bool AddDataBlock(const CeaDataBlock& entry, RateList& rates) {
  if (entry.bytes == nullptr) return true;
  switch (entry.tag) {
    case CEA_TAG_VIDEO: {
      VdbRecord record;
      return CEA_GetVDB(&entry, &record) != 0 || AddVics(record.vics, record.vicCount, rates);
    }
    case CEA_TAG_VENDOR:
      return AddHdmiVics(entry, rates);
    case CEA_TAG_EXTENDED:
      return AddExtended(entry, rates);
    default:
      return true;
  }
}

bool AddBlock(const CeaBlock& model, RateList& rates) {
  const unsigned dtdCount = model.dtds == nullptr ? 0 : model.dtdCount;
  return AddEach(model.dtds, dtdCount, [&](const DtdSlot& slot) { return AddDtd(slot, rates); }) &&
         AddEach(model.dataBlocks, model.dataBlockCount,
                 [&](const CeaDataBlock& entry) { return AddDataBlock(entry, rates); });
}

}  // namespace

uint32_t CollectFrameRates(const EdidHandle& handle, uint16_t* rates, uint32_t maxCount, MemoryWatch& memory) {
  RateList list(rates, maxCount, memory);
  VisitBlocks(handle, memory, [&](const auto& model) { AddBlock(model, list); });
  return list.count();
}

}  // namespace reedid

using namespace reedid;

uint32_t EDID_GetAllFrameRate(const EdidHandle* handle, uint16_t* frameRates, uint32_t maxCount) {
  if (!HasBlockArray(handle) || frameRates == nullptr) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  MemoryWatch unwatched;
  return CollectFrameRates(*handle, frameRates, maxCount, unwatched);
}
