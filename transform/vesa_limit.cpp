// A link limit on the base block: its detailed timings, CVT codes and range limits.

#include <cmath>

#include "timing/dtd.h"
#include "timing/tables.h"
#include "transform/edit.h"
#include "transform/link_limit.h"
#include "vesa/descriptor.h"
#include "vesa/model.h"

namespace reedid {
namespace {

// In single precision: 768 lines at 15:9 are 1280 pixels.
uint16_t CvtCodeWidth(const VesaCvtCode& code) {
  const float width = static_cast<float>(code.lines) * kAspectRatios[code.aspectRatio & 7];
  return static_cast<uint16_t>(std::floor(width / 8.0f) * 8.0f);
}

// Clears the rate flags whose timing is above the limit, and the code when none is left. A rate without
// a timing stays: it may be slow enough.
void LimitCvtCode(VesaCvtCode& code, const LinkLimit& limit) {
  struct RateFlag {
    uint8_t VesaCvtCode::*flag;
    uint16_t rate;
    uint8_t formula;
  };
  static constexpr RateFlag kFlags[] = {{&VesaCvtCode::rate50, 50, 0},
                                        {&VesaCvtCode::rate60, 60, 0},
                                        {&VesaCvtCode::rate75, 75, 0},
                                        {&VesaCvtCode::rate85, 85, 0},
                                        {&VesaCvtCode::rate60rb, 60, 1}};
  bool anyLeft = false;
  for (const RateFlag& f : kFlags) {
    if (code.*f.flag == 0) continue;
    CvtTiming request = {};
    request.formula = f.formula;
    request.aspectRatio = code.aspectRatio;
    request.hactive = CvtCodeWidth(code);
    request.vactive = code.lines;
    request.frameRate = f.rate;
    DtdTiming timing;
    if (Cvt2ToDtd(&request, &timing) == 0 && timing.pixelClock > limit.clock) {
      code.*f.flag = 0;
    } else {
      anyLeft = true;
    }
  }
  if (!anyLeft) code = {};
}

int32_t LimitCvtCodes(DtdSlot& slot, const LinkLimit& limit) {
  VesaCvtRecord record;
  int32_t status = VESA_GetCvtTiming(&slot, &record);
  if (status != 0) return status;
  for (VesaCvtCode& code : record.codes) {
    if (code.lines == 0) continue;
    LimitCvtCode(code, limit);
    status = Rewrite(slot, VESA_SetCvtTiming, &record);
  }
  return status;
}

int32_t LimitRange(const VesaBlock& model, DtdSlot& slot, const LinkLimit& limit) {
  RangeLimits range;
  const int32_t status = VESA_GetRangeLimits(&model, &slot, &range);
  if (status != 0 || range.maxPixelClock <= limit.clock) return status;
  range.maxPixelClock = limit.clock;
  return Rewrite(slot, VESA_SetRangeLimits, &model, &range);
}

}  // namespace

int32_t LimitVesa(VesaBlock& model, const LinkLimit& limit, Rates rates) {
  int32_t status = 0;  // of the last descriptor call
  KeepDescriptors(model, [&](DtdSlot& slot) {
    if (slot.flag == kDtdSlotFlag) {
      const SlotFate result = LimitSlot(slot, limit, rates);
      status = result.status;
      return result.fate != Fate::kDropped;
    }
    if (slot.flag == EDID_DESCRIPTOR_CVT_CODES) status = LimitCvtCodes(slot, limit);
    if (slot.flag == EDID_DESCRIPTOR_RANGE_LIMITS) status = LimitRange(model, slot, limit);
    return true;
  });
  return status;
}

}  // namespace reedid
