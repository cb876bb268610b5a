// Which whole-number frame rates does an image offer, anywhere?

#include <algorithm>
#include <cmath>

#include "base/bytes.h"
#include "base/log.h"
#include "base/memory.h"
#include "cea/codec.h"
#include "cea/type_x.h"
#include "displayid/codec.h"
#include "displayid/timing_forms.h"
#include "inventory/walk.h"
#include "reedid/transforms.h"
#include "timing/dtd.h"
#include "vesa/descriptor.h"

namespace reedid {
namespace {

constexpr unsigned kMaxCeaCodes = 32;

// Keeps the rates falling and without repeats. Returns the new count, in 8 bits.
uint8_t InsertFrameRate(uint16_t rate, uint16_t* rates, uint8_t count) {
  uint16_t* const end = rates + count;
  if (std::find(rates, end, rate) != end) return count;
  uint16_t* place = end;
  for (; place != rates && place[-1] < rate; --place) *place = place[-1];
  *place = rate;
  return Low8(count + 1);
}

// The caller's array. Each Add tells whether the walk over the block at hand goes on: a full array ends it.
class RateList {
 public:
  RateList(uint16_t* rates, uint32_t maxCount) : rates_(rates), maxCount_(maxCount) {}

  uint8_t count() const { return count_; }

  bool Add(uint16_t rate) {
    if (count_ >= maxCount_) return false;
    count_ = InsertFrameRate(rate, rates_, count_);
    return true;
  }

  bool AddFormulaRate(const DtdTiming& timing) {
    return !HasRate(timing) || Add(Low16(std::llround(FormulaRate<double>(timing))));
  }

  // The rate of a table row; identifiers without a row add nothing.
  bool AddVic(unsigned index) {
    DtdTiming timing;
    return VicToDtd(index, &timing) != 0 || Add(timing.frameRate);
  }

  bool AddDmt(unsigned id) {
    DtdTiming timing;
    return DmtToDtd(id, &timing) != 0 || Add(timing.frameRate);
  }

  // HDMI 1.4b, table 8-13: 2160p30, 2160p25, 2160p24 and 4096x2160p24.
  bool AddHdmiVic(unsigned vic) {
    static constexpr uint8_t kRates[] = {0, 30, 25, 24, 24};
    return vic == 0 || vic >= sizeof kRates || Add(kRates[vic]);
  }

 private:
  uint16_t* rates_;
  uint32_t maxCount_;
  uint8_t count_ = 0;
};

// Each function below returns false when the array is full.

template <class Items, class AddItem>
bool AddEach(const Items* items, unsigned count, AddItem add) {
  return std::all_of(items, items + count, add);
}

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
    case kStandardTimingsDescriptor: {
      StdTiming timings[6];
      return VESA_GetStandardTimings(&slot, timings) != 0 || AddStdTimings(timings, 6, rates);
    }
    case kCvtCodesDescriptor: {
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
    case k420VideoExtTag: {
      Vic420Record record;
      return CEA_Get420VDB(&entry, &record) != 0 || AddVics(record.vics, record.vicCount, rates);
    }
    case kTypeViiExtTag: {
      Cea20ByteDtdRecord record;
      return CEA_Get20ByteDTD(&entry, &record) != 0 || rates.AddFormulaRate(record.timing);
    }
    case kTypeViiiExtTag:
      return AddCeaTimingCodes(entry, rates);
    case kTypeXExtTag: {
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
    case kVideoTag: {
      VdbRecord record;
      return CEA_GetVDB(&entry, &record) != 0 || AddVics(record.vics, record.vicCount, rates);
    }
    case kVendorTag:
      return AddHdmiVics(entry, rates);
    case kExtendedTag:
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

// What a DisplayID data block needs while it is read: as many zeroed records as it has timings.
template <class Record>
class Scratch {
 public:
  explicit Scratch(unsigned count) : records_(AllocateZeroed<Record>(count)) {}
  explicit operator bool() const { return records_ != nullptr; }
  Record* data() const { return records_.get(); }

 private:
  MallocPtr<Record[]> records_;
};

// Whether the walk over the section goes on.
Failure NoMemory() {
  return REEDID_ERR_AS("DispID_GetAllFrameRate", "malloc fail");
}

template <class Record, class AddRecord>
bool AddForm(const DispIdForm<Record>& form, const DispIdDataBlock& entry, unsigned count, AddRecord add) {
  const Scratch<Record> scratch(count);
  if (!scratch) return NoMemory(), false;
  return form.get(&entry, scratch.data(), count) != 0 || AddEach(scratch.data(), count, add);
}

bool AddCode(uint8_t codeType, uint8_t code, RateList& rates) {
  switch (codeType) {
    case 0:
      return rates.AddDmt(code);
    case 1:
      return rates.AddVic(code);
    case 2:
      return rates.AddHdmiVic(code);
    default:
      return true;
  }
}

bool AddTimingCodes(const DispIdDataBlock& entry, unsigned count, RateList& rates) {
  const Scratch<uint8_t> codes(count);
  if (!codes) return NoMemory(), false;
  TimingCodeRecord record = {0, 0, 0, 0, codes.data()};
  const auto get = entry.tag == kTypeIvTag ? DispID_GetTimingCode : DispID20_GetTimingCode;
  if (get(&entry, &record, count) != 0) return true;
  return AddEach(record.codes, record.codeCount, [&](uint8_t code) { return AddCode(record.codeType, code, rates); });
}

bool AddBitmap(const DispIdDataBlock& entry, unsigned count, RateList& rates) {
  const Scratch<uint8_t> flags(count);
  if (!flags) return NoMemory(), false;
  const bool vesa = entry.tag == kVesaBitmapTag;
  if ((vesa ? DispID_GetVESATiming : DispID_GetCEATiming)(&entry, flags.data(), count) != 0) return true;
  for (unsigned i = 0; i < count; ++i) {
    if (flags.data()[i] != 0 && !(vesa ? rates.AddDmt(i) : rates.AddVic(i))) return false;
  }
  return true;
}

bool AddDataBlock(const DispIdDataBlock& entry, RateList& rates) {
  const auto* detailed = FindForm(kDetailedForms, entry.tag);
  const auto* cvt = FindForm(kCvtForms, entry.tag);
  const bool codes = entry.tag == kTypeIvTag || entry.tag == kTypeViiiTag;
  const bool bitmap = entry.tag == kVesaBitmapTag || entry.tag == kCtaBitmapTag;
  if (entry.bytes == nullptr || !(detailed || cvt || codes || bitmap)) return true;
  const int32_t timings = DispID_GetTimingCnt(&entry);
  if (timings < 1) return true;
  const auto count = static_cast<unsigned>(timings);
  if (codes) return AddTimingCodes(entry, count, rates);
  if (bitmap) return AddBitmap(entry, count, rates);
  if (cvt) return AddForm(*cvt, entry, count, [&](const CvtTiming& timing) { return rates.Add(timing.frameRate); });
  return AddForm(*detailed, entry, count, [&](const DtdTiming& timing) { return rates.AddFormulaRate(timing); });
}

bool AddBlock(const DispIdBlock& model, RateList& rates) {
  return AddEach(model.dataBlocks, model.dataBlockCount,
                 [&](const DispIdDataBlock& entry) { return AddDataBlock(entry, rates); });
}

}  // namespace
}  // namespace reedid

using namespace reedid;

uint32_t EDID_GetAllFrameRate(const EdidHandle* handle, uint16_t* frameRates, uint32_t maxCount) {
  if (handle == nullptr || handle->blocks == nullptr || frameRates == nullptr) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  RateList rates(frameRates, maxCount);
  VisitBlocks(*handle, Overloaded{[&](const VesaBlock& model) { AddBlock(model, rates); },
                                  [&](const CeaBlock& model) { AddBlock(model, rates); },
                                  [&](const DispIdBlock& model) { AddBlock(model, rates); }});
  return rates.count();
}
