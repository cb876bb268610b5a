// Getter and setter of a tag, for data blocks that are an array of DtdTiming or of CvtTiming.
#pragma once

#include <cstddef>
#include <cstdint>

#include "displayid/codec.h"
#include "reedid/displayid.h"

namespace reedid {

template <class Record>
struct DispIdForm {
  uint8_t tag;
  int32_t (*get)(const DispIdDataBlock* entry, Record* records, uint32_t requested);
  int32_t (*set)(const Record* records, uint32_t count, DispIdDataBlock* entry);
};

// Types I, II, VI and VII.
inline constexpr DispIdForm<DtdTiming> kDetailedForms[] = {
    {DISPID_TAG_TYPE_I, DispID_Get20ByteDTD, DispID_Set20ByteDTD},
    {DISPID_TAG_TYPE_II, DispID_Get11ByteDTD, DispID_Set11ByteDTD},
    {DISPID_TAG_TYPE_VI, DispID_Get17ByteDTD, DispID_Set17ByteDTD},
    {DISPID20_TAG_TYPE_VII, DispID20_Get20ByteDTD, DispID20_Set20ByteDTD},
};

// Types III, V and IX. Type X stands in CTA extensions.
inline constexpr DispIdForm<CvtTiming> kCvtForms[] = {
    {DISPID_TAG_TYPE_III, DispID_Get3ByteCVT, DispID_Set3ByteCVT},
    {DISPID_TAG_TYPE_V, DispID_Get7ByteCVT, DispID_Set7ByteCVT},
    {DISPID20_TAG_TYPE_IX, DispID20_Get6ByteCVT, DispID20_Set6ByteCVT},
};

template <class Record, size_t kCount>
constexpr const DispIdForm<Record>* FindForm(const DispIdForm<Record> (&forms)[kCount], uint8_t tag) {
  for (const DispIdForm<Record>& form : forms) {
    if (form.tag == tag) return &form;
  }
  return nullptr;
}

}  // namespace reedid
