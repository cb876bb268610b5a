// Descriptors that list timings: standard timings (EDID 1.4, 3.10.3.6), CVT 3-byte codes (3.10.3.8) and established
// timings III (3.10.3.9).
//
// Standard timings         CVT codes                          Established timings III
//  5-16  six of two bytes   5     version                      5     version
//                           6-17  four of three bytes          6-11  a flag for each code, bit 0 of byte 6 first
//
// CVT code; lines is half their number less 1
//  0   lines 7..0
//  1   lines 11..8 7..4, aspect 3..2
//  2   preferred rate 6..5, 50 Hz 4, 60 Hz 3, 75 Hz 2, 85 Hz 1, 60 Hz with reduced blanking 0

#include <iterator>

#include "base/layout.h"
#include "base/log.h"
#include "base/pinned.h"
#include "vesa/descriptor.h"
#include "vesa/model.h"
#include "vesa/std_timing.h"

namespace reedid {
namespace {

PIN_FIELDS(VesaCvtCode, 0, 2, lines);
PIN_FIELDS(VesaCvtCode, 2, 1, aspectRatio, preferredRate, rate50, rate60, rate75, rate85, rate60rb);
PIN_SIZE(VesaCvtCode, 10);
PIN_FIELDS(VesaCvtRecord, 0, 1, version);
PIN_FIELDS(VesaCvtRecord, 2, 40, codes);
PIN_SIZE(VesaCvtRecord, 42);
PIN_FIELDS(Est3Record, 0, 1, version);
PIN_FIELDS(Est3Record, 1, 48, flags);
PIN_SIZE(Est3Record, 49);

constexpr unsigned kStdTimings = 6;
constexpr unsigned kCvtCodes = 4;
constexpr unsigned kEst3Flags = 48;
constexpr unsigned kVersionByte = 5;
constexpr unsigned kListByte = 6;  // of CVT codes and established timings III

constexpr uint8_t kAspects[] = {ASPECT_4_3, ASPECT_16_9, ASPECT_16_10, ASPECT_5_3};
constexpr unsigned kCodeOf16To9 = 1;
constexpr uint8_t kRates[] = {50, 60, 75, 85};

template <class Io, class Code>
constexpr void FormatLayout(const Io& io, Code& code) {
  ScaledLessOne(io, code.lines, 2, Place{0}, Place{1, 4, 4});
  Listed(io, code.aspectRatio, kAspects, kCodeOf16To9, Place{1, 2, 2});
}

template <class Io, class Code>
constexpr void RatesLayout(const Io& io, Code& code) {
  Listed(io, code.preferredRate, kRates, 0, Place{2, 5, 2});
  io(code.rate50, Place{2, 4, 1});
  io(code.rate60, Place{2, 3, 1});
  io(code.rate75, Place{2, 2, 1});
  io(code.rate85, Place{2, 1, 1});
  io(code.rate60rb, Place{2, 0, 1});
}

// An unused code is three zero bytes; that two lines at 50 Hz would read the same is no loss.
VesaCvtCode DecodeCvtCode(Bytes bytes) {
  VesaCvtCode code = {};
  if (bytes.Le24(0) == 0) return code;
  const LayoutReader reader(bytes);
  FormatLayout(reader, code);
  RatesLayout(reader, code);
  return code;
}

int32_t EncodeCvtCode(const VesaCvtCode& code, uint8_t* bytes, Caller caller = {}) {
  if (code.lines == 0) return 0;
  const LayoutWriter writer(bytes);
  if (IndexOf(kAspects, code.aspectRatio) == std::size(kAspects)) {
    REEDID_ERR_AS(caller, "invalid aspect ratio: %d", code.aspectRatio);
  }
  FormatLayout(writer, code);
  if (IndexOf(kRates, code.preferredRate) == std::size(kRates)) {
    return REEDID_ERR_AS(caller, "invalid preferred frame rate: %d", code.preferredRate);
  }
  RatesLayout(writer, code);
  return 0;
}

template <class Io, class Record>
constexpr void Est3Layout(const Io& io, Record& record) {
  io(record.version, Place{kVersionByte});
  for (unsigned i = 0; i < kEst3Flags; ++i) io(record.flags[i], Place{Low8(kListByte + i / 8), Low8(i % 8), 1});
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t VESA_GetStandardTimings(const DtdSlot* slot, StdTiming* timings) {
  if (slot == nullptr || slot->flag != EDID_DESCRIPTOR_STD_TIMINGS || timings == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  if (!HasPlainHeader(*slot, EDID_DESCRIPTOR_STD_TIMINGS)) {
    return REEDID_ERR("invalid standard timings indentifier descriptor");
  }
  const Bytes list = BytesOf(*slot).From(kDescriptorPayload);
  for (unsigned i = 0; i < kStdTimings; ++i) DecodeStdTiming(list.From(2 * i), timings[i]);
  return 0;
}

int32_t VESA_SetStandardTimings(const StdTiming* timings, DtdSlot* slot) {
  if (timings == nullptr || slot == nullptr) return REEDID_ERR("invalid parameters");
  BeginDescriptor(*slot, EDID_DESCRIPTOR_STD_TIMINGS);
  for (unsigned i = 0; i < kStdTimings; ++i) {
    EncodeStdTiming(timings[i], kStdDescriptorRateBits, slot->bytes + kDescriptorPayload + 2 * i);
  }
  return 0;
}

int32_t VESA_GetCvtTiming(const DtdSlot* slot, VesaCvtRecord* record) {
  if (slot == nullptr || slot->flag != EDID_DESCRIPTOR_CVT_CODES || record == nullptr)
    return REEDID_ERR("invalid parameters");
  if (!HasPlainHeader(*slot, EDID_DESCRIPTOR_CVT_CODES)) return REEDID_ERR("invalid CVT 3 byte code descriptor");
  const Bytes bytes = BytesOf(*slot);
  record->version = bytes[kVersionByte];
  for (unsigned i = 0; i < kCvtCodes; ++i) record->codes[i] = DecodeCvtCode(bytes.From(kListByte + 3 * i));
  return 0;
}

int32_t VESA_SetCvtTiming(const VesaCvtRecord* record, DtdSlot* slot) {
  if (record == nullptr || slot == nullptr) return REEDID_ERR("invalid parameters");
  BeginDescriptor(*slot, EDID_DESCRIPTOR_CVT_CODES);
  slot->bytes[kVersionByte] = record->version;
  for (unsigned i = 0; i < kCvtCodes; ++i) {
    const int32_t result = EncodeCvtCode(record->codes[i], slot->bytes + kListByte + 3 * i);
    if (result != 0) return result;
  }
  return 0;
}

int32_t VESA_GetEst3Timing(const DtdSlot* slot, Est3Record* record) {
  if (slot == nullptr || slot->flag != EDID_DESCRIPTOR_EST3 || record == nullptr)
    return REEDID_ERR("invalid parameters");
  if (!HasPlainHeader(*slot, EDID_DESCRIPTOR_EST3)) return REEDID_ERR("invalid established Timing 3 descriptor");
  Est3Layout(LayoutReader(BytesOf(*slot)), *record);
  return 0;
}

int32_t VESA_SetEst3Timing(const Est3Record* record, DtdSlot* slot) {
  if (record == nullptr || slot == nullptr) return REEDID_ERR("invalid parameters");
  Est3Layout(BeginDescriptor(*slot, EDID_DESCRIPTOR_EST3), *record);
  return 0;
}
