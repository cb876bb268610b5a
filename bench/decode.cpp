#include "bench/decode.h"

#include <benchmark/benchmark.h>

namespace reedid::bench {
namespace {

template <class Record, class Entry>
void Get(int32_t (*codec)(const Entry*, Record*), const Entry& entry) {
  Record record = {};
  benchmark::DoNotOptimize(codec(&entry, &record));
  benchmark::DoNotOptimize(&record);
}

// Codecs that fill an array of the caller's.
template <class Record>
void GetMany(int32_t (*codec)(const DispIdDataBlock*, Record*, uint32_t), const DispIdDataBlock& entry) {
  Record records[256];
  benchmark::DoNotOptimize(codec(&entry, records, 255));
  benchmark::DoNotOptimize(records);
}

void GetText(int32_t (*codec)(const DtdSlot*, char*, uint32_t), const DtdSlot& slot) {
  char text[14];
  benchmark::DoNotOptimize(codec(&slot, text, sizeof text));
  benchmark::DoNotOptimize(text);
}

void DecodeSlot(const VesaBlock& model, const DtdSlot& slot) {
  StdTiming stdTimings[6];
  RangeLimits limits;
  switch (slot.flag) {
    case 0x01:
      return Get(VESA_GetDTD, slot);
    case 0xFF:
      return GetText(VESA_GetSerialNumber, slot);
    case 0xFE:
      return GetText(VESA_GetDataString, slot);
    case 0xFD:
      benchmark::DoNotOptimize(VESA_GetRangeLimits(&model, &slot, &limits));
      return;
    case 0xFC:
      return GetText(VESA_GetProductName, slot);
    case 0xFA:
      benchmark::DoNotOptimize(VESA_GetStandardTimings(&slot, stdTimings));
      return;
    case 0xF8:
      return Get(VESA_GetCvtTiming, slot);
    case 0xF7:
      return Get(VESA_GetEst3Timing, slot);
    default:
      return;
  }
}

void DecodeVendor(const CeaDataBlock& entry) {
  switch (CEA_GetVSDBType(&entry)) {
    case VSDB_HDMI14B:
      return Get(CEA_GetH14bVSDB, entry);
    case VSDB_HDMI_FORUM:
      return Get(CEA_GetHFVSDB, entry);
    default:
      return;
  }
}

void DecodeMap420(const CeaBlock& model, const CeaDataBlock& entry) {
  Vic420Record record;
  const CeaDataBlock* video = CEA_FindDataBlock(&model, 2, 0);
  if (video != nullptr) benchmark::DoNotOptimize(CEA_Get420CMDB(video, &entry, &record));
}

void DecodeExtended(const CeaBlock& model, const CeaDataBlock& entry) {
  uint8_t codes[32];
  TimingCodeRecord timingCodes = {0, 0, 0, 0, codes};
  CvtTiming formulaTimings[4];
  switch (entry.extTag) {
    case 0:
      return Get(CEA_GetVCDB, entry);
    case 1:
      benchmark::DoNotOptimize(CEA_GetVSVDBType(&entry));
      return;
    case 5:
      return Get(CEA_GetCDB, entry);
    case 6:
      return Get(CEA_GetStaticHDR, entry);
    case 14:
      return Get(CEA_Get420VDB, entry);
    case 15:
      return DecodeMap420(model, entry);
    case 0x22:
      return Get(CEA_Get20ByteDTD, entry);
    case 0x23:
      benchmark::DoNotOptimize(CEA_GetTimingCode(&entry, &timingCodes));
      return;
    case 0x2A:
      benchmark::DoNotOptimize(CEA_Get6ByteCVT(&entry, formulaTimings));
      return;
    default:
      return;
  }
}

void DecodeEntry(const CeaBlock& model, const CeaDataBlock& entry) {
  switch (entry.tag) {
    case 1:
      return Get(CEA_GetADB, entry);
    case 2:
      return Get(CEA_GetVDB, entry);
    case 3:
      return DecodeVendor(entry);
    case 4:
      return Get(CEA_GetSADB, entry);
    case 7:
      return DecodeExtended(model, entry);
    default:
      return;
  }
}

void DecodeEntry(const DispIdDataBlock& entry) {
  char text[256];
  uint8_t codes[256];
  ProductIdRecord product = {};
  product.name = text;
  TimingCodeRecord timingCodes = {0, 0, 0, 0, codes};
  switch (entry.tag) {
    case 0x00:
      benchmark::DoNotOptimize(DispID_GetPIDB(&entry, &product));
      return;
    case 0x20:
      benchmark::DoNotOptimize(DispID20_GetPIDB(&entry, &product));
      return;
    case 0x06:
      benchmark::DoNotOptimize(DispID_GetTimingCode(&entry, &timingCodes, 255));
      return;
    case 0x23:
      benchmark::DoNotOptimize(DispID20_GetTimingCode(&entry, &timingCodes, 255));
      return;
    case 0x01:
      return Get(DispID_GetDPDB, entry);
    case 0x21:
      return Get(DispID20_GetDPDB, entry);
    case 0x09:
      return Get(DispID_GetRangeLimits, entry);
    case 0x25:
      return Get(DispID20_GetRangeLimits, entry);
    case 0x03:
      return GetMany(DispID_Get20ByteDTD, entry);
    case 0x22:
      return GetMany(DispID20_Get20ByteDTD, entry);
    case 0x04:
      return GetMany(DispID_Get11ByteDTD, entry);
    case 0x13:
      return GetMany(DispID_Get17ByteDTD, entry);
    case 0x05:
      return GetMany(DispID_Get3ByteCVT, entry);
    case 0x11:
      return GetMany(DispID_Get7ByteCVT, entry);
    case 0x24:
    case 0x2A:
      return GetMany(DispID20_Get6ByteCVT, entry);
    case 0x07:
      return GetMany(DispID_GetVESATiming, entry);
    case 0x08:
      return GetMany(DispID_GetCEATiming, entry);
    case 0x0A:
      return GetMany(DispID_GetSerialNumber, entry);
    case 0x0B:
      return GetMany(DispID_GetDataString, entry);
    default:
      return;
  }
}

}  // namespace

void Decode(const VesaBlock& model) {
  for (const DtdSlot& slot : model.descriptors) DecodeSlot(model, slot);
}

void Decode(const CeaBlock& model) {
  for (unsigned i = 0; i < model.dataBlockCount; ++i) DecodeEntry(model, model.dataBlocks[i]);
  for (unsigned i = 0; i < model.dtdCount; ++i) Get(VESA_GetDTD, model.dtds[i]);
}

void Decode(const DispIdBlock& model) {
  for (unsigned i = 0; i < model.dataBlockCount; ++i) DecodeEntry(model.dataBlocks[i]);
}

}  // namespace reedid::bench
