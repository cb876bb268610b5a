// The frame rates of a DisplayID section.

#include "base/log.h"
#include "base/memory.h"
#include "displayid/codec.h"
#include "displayid/timing_forms.h"
#include "inventory/rate_list.h"

namespace reedid {
namespace {

bool NoMemory(RateList& rates) {
  REEDID_ERR_AS("DispID_GetAllFrameRate", "malloc fail");
  return rates.Lack();
}

template <class Record, class AddRecord>
bool AddForm(const DispIdForm<Record>& form, const DispIdDataBlock& entry, unsigned count, RateList& rates,
             AddRecord add) {
  const Owned<Record[]> records(AllocateZeroed<Record>(count));
  if (records == nullptr) return NoMemory(rates);
  return form.get(&entry, records.get(), count) != 0 || AddEach(records.get(), count, add);
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
  const Owned<uint8_t[]> codes(AllocateZeroed<uint8_t>(count));
  if (codes == nullptr) return NoMemory(rates);
  TimingCodeRecord record = {0, 0, 0, 0, codes.get()};
  const auto get = entry.tag == DISPID_TAG_TYPE_IV ? DispID_GetTimingCode : DispID20_GetTimingCode;
  if (get(&entry, &record, count) != 0) return true;
  return AddEach(record.codes, record.codeCount, [&](uint8_t code) { return AddCode(record.codeType, code, rates); });
}

bool AddBitmap(const DispIdDataBlock& entry, unsigned count, RateList& rates) {
  const Owned<uint8_t[]> flags(AllocateZeroed<uint8_t>(count));
  if (flags == nullptr) return NoMemory(rates);
  const bool vesa = entry.tag == DISPID_TAG_VESA_TIMINGS;
  if ((vesa ? DispID_GetVESATiming : DispID_GetCEATiming)(&entry, flags.get(), count) != 0) return true;
  for (unsigned i = 0; i < count; ++i) {
    if (flags[i] != 0 && !(vesa ? rates.AddDmt(i) : rates.AddVic(i))) return false;
  }
  return true;
}

bool AddDataBlock(const DispIdDataBlock& entry, RateList& rates) {
  const auto* detailed = FindForm(kDetailedForms, entry.tag);
  const auto* cvt = FindForm(kCvtForms, entry.tag);
  const bool codes = entry.tag == DISPID_TAG_TYPE_IV || entry.tag == DISPID20_TAG_TYPE_VIII;
  const bool bitmap = entry.tag == DISPID_TAG_VESA_TIMINGS || entry.tag == DISPID_TAG_CTA_TIMINGS;
  if (entry.bytes == nullptr || !(detailed || cvt || codes || bitmap)) return true;
  const int32_t timings = DispID_GetTimingCnt(&entry);
  if (timings < 1) return true;
  const auto count = static_cast<unsigned>(timings);
  if (codes) return AddTimingCodes(entry, count, rates);
  if (bitmap) return AddBitmap(entry, count, rates);
  if (cvt)
    return AddForm(*cvt, entry, count, rates, [&](const CvtTiming& timing) { return rates.Add(timing.frameRate); });
  return AddForm(*detailed, entry, count, rates, [&](const DtdTiming& timing) { return rates.AddFormulaRate(timing); });
}

}  // namespace

bool AddBlock(const DispIdBlock& model, RateList& rates) {
  return AddEach(model.dataBlocks, model.dataBlockCount,
                 [&](const DispIdDataBlock& entry) { return AddDataBlock(entry, rates); });
}

}  // namespace reedid
