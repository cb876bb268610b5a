// Descriptors that follow one another in the payload of a timing data block. A form describes one kind: `kBlank` is a
// record before it is read, Layout() the places of its fields (for a reader and a writer), SizeOf() the bytes of a
// record, SizeAt() those of the descriptor that `payload` begins with, and FitOf() whether it can hold a record.
#pragma once

#include <algorithm>
#include <cstdint>

#include "base/log.h"
#include "displayid/codec.h"
#include "timing/dtd.h"

namespace reedid {

inline constexpr unsigned kTypeISize = 20;  // and type VII
inline constexpr unsigned kTypeIiSize = 11;
inline constexpr unsigned kTypeIiiSize = 3;
inline constexpr unsigned kTypeVSize = 7;
inline constexpr unsigned kTypeViSize = 14;
inline constexpr unsigned kTypeViLongSize = 17;  // with aspect ratio and image size
inline constexpr unsigned kTypeIxSize = 6;       // and type X, before its extra bytes

// Bytes of the type VI descriptor that `payload` begins with.
constexpr unsigned TypeViSizeAt(Bytes payload) {
  return Bit(payload[2], 6) ? kTypeViLongSize : kTypeViSize;
}

// Bytes of a type IX or X descriptor; only type X has extra ones.
constexpr unsigned FormulaTimingSize(const DispIdDataBlock& entry) {
  return kTypeIxSize + (entry.tag == DISPID20_TAG_TYPE_X ? Bits(entry.headerFlags, 1, 3) : 0);
}

// Only a bad image size is written all the same.
enum class Fit { kGood, kBadImageSize, kBadFormula, kBadTiming };

constexpr Fit GoodIf(bool fits) {
  return fits ? Fit::kGood : Fit::kBadTiming;
}

// Reports a timing that a descriptor cannot hold; for a DtdTiming there is one in timing/dtd.h.
Failure RefuseTiming(const CvtTiming& timing, Caller caller);

template <class Form, class Record>
int32_t ReadDescriptors(const Form& form, const DispIdDataBlock& entry, Record* records, uint32_t requested) {
  const int32_t count = DispID_GetTimingCnt(&entry);
  if (count < 0) return -1;
  const uint32_t delivered = std::min(requested, static_cast<uint32_t>(count));
  Bytes payload = PayloadOf(entry);
  for (uint32_t i = 0; i < delivered; ++i) {
    records[i] = Form::kBlank;
    form.Layout(LayoutReader(payload), records[i]);
    payload = payload.From(form.SizeAt(payload));
  }
  return 0;
}

// Ends at the first record that does not fit; the header and the descriptors before it stay.
template <class Form, class Record>
int32_t WriteDescriptors(const Form& form, const Record* records, uint32_t count, DispIdDataBlock& entry,
                         Caller caller = {}) {
  uint8_t* at = entry.bytes + kDispIdHeaderSize;
  for (uint32_t i = 0; i < count; ++i) {
    const Fit fit = form.FitOf(records[i]);
    if (fit == Fit::kBadTiming) return RefuseTiming(records[i], caller);
    if (fit != Fit::kGood) REEDID_ERR_AS(caller, "invalid parameters");
    if (fit == Fit::kBadFormula) return -1;
    form.Layout(LayoutWriter(at), records[i]);
    at += form.SizeOf(records[i]);
  }
  return 0;
}

// A form whose descriptors all have the same size.
template <unsigned kSize>
struct FixedSize {
  template <class Record>
  constexpr unsigned SizeOf(const Record&) const {
    return kSize;
  }
  constexpr unsigned SizeAt(Bytes) const { return kSize; }
};

}  // namespace reedid
