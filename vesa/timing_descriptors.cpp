// Descriptors that list timings: standard timings (EDID 1.4, 3.10.3.6), CVT 3-byte codes (3.10.3.8) and established
// timings III (3.10.3.9).
//
// Standard timings: 5-16 six of two bytes
// CVT codes:        5 version, 6-17 four of three bytes:
//                   0 lines 7..0    1 lines 11..8 7..4, aspect 3..2    2 preferred rate 6..5, 50 Hz 4, 60 3, 75 2, 85
//                   1,
//                                                                        60 with reduced blanking 0
//                   where lines is half their number less 1
// Established III:  5 version, 6-11 a flag for each code, bit 0 of byte 6 first

#include "base/log.h"
#include "vesa/descriptor.h"
#include "vesa/model.h"
#include "vesa/std_timing.h"

namespace reedid {
namespace {

constexpr unsigned kStdTimings = 6;
constexpr unsigned kCvtCodes = 4;
constexpr unsigned kEst3Flags = 48;
constexpr unsigned kVersionByte = 5;
constexpr unsigned kListByte = 6;  // of CVT codes and established timings III

constexpr uint8_t kAspectOfCode[] = {ASPECT_4_3, ASPECT_16_9, ASPECT_16_10, ASPECT_5_3};
constexpr unsigned kCodeOf16To9 = 1;
constexpr uint8_t kRateOfCode[] = {50, 60, 75, 85};

// The index of a value in one of the lists above, their size when it is not there.
unsigned CodeOf(const uint8_t (&list)[4], uint8_t value) {
  unsigned code = 0;
  while (code < 4 && list[code] != value) ++code;
  return code;
}

template <class Io, class Code>
constexpr void RatesLayout(const Io& io, Code& code) {
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
  RatesLayout(LayoutReader(bytes), code);
  code.lines = Low16((Bits(bytes[1], 4, 4) << 8 | bytes[0]) * 2 + 2);
  code.aspectRatio = kAspectOfCode[Bits(bytes[1], 2, 2)];
  code.preferredRate = kRateOfCode[Bits(bytes[2], 5, 2)];
  return code;
}

int32_t EncodeCvtCode(const VesaCvtCode& code, uint8_t* bytes, const char* name) {
  if (code.lines == 0) return 0;
  const LayoutWriter writer(bytes);
  unsigned aspect = CodeOf(kAspectOfCode, code.aspectRatio);
  if (aspect == 4) {
    REEDID_ERR_AS(name, "invalid aspect ratio: %d", code.aspectRatio);
    aspect = kCodeOf16To9;
  }
  writer(code.lines / 2u - 1u, Place{0}, Place{1, 4, 4});
  writer(aspect, Place{1, 2, 2});
  const unsigned preferred = CodeOf(kRateOfCode, code.preferredRate);
  if (preferred == 4) return REEDID_ERR_AS(name, "invalid preferred frame rate: %d", code.preferredRate);
  writer(preferred, Place{2, 5, 2});
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
  if (slot == nullptr || slot->flag != kStandardTimingsDescriptor || timings == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  if (!HasPlainHeader(*slot, kStandardTimingsDescriptor)) {
    return REEDID_ERR("invalid standard timings indentifier descriptor");
  }
  const Bytes list = BytesOf(*slot).From(kDescriptorPayload);
  for (unsigned i = 0; i < kStdTimings; ++i) timings[i] = DecodeStdTiming(list.From(2 * i));
  return 0;
}

int32_t VESA_SetStandardTimings(const StdTiming* timings, DtdSlot* slot) {
  if (timings == nullptr || slot == nullptr) return REEDID_ERR("invalid parameters");
  BeginDescriptor(*slot, kStandardTimingsDescriptor);
  for (unsigned i = 0; i < kStdTimings; ++i) {
    EncodeStdTiming(timings[i], kStdDescriptorRateMask, __func__, slot->bytes + kDescriptorPayload + 2 * i);
  }
  return 0;
}

int32_t VESA_GetCvtTiming(const DtdSlot* slot, VesaCvtRecord* record) {
  if (slot == nullptr || slot->flag != kCvtCodesDescriptor || record == nullptr)
    return REEDID_ERR("invalid parameters");
  if (!HasPlainHeader(*slot, kCvtCodesDescriptor)) return REEDID_ERR("invalid CVT 3 byte code descriptor");
  const Bytes bytes = BytesOf(*slot);
  record->version = bytes[kVersionByte];
  for (unsigned i = 0; i < kCvtCodes; ++i) record->codes[i] = DecodeCvtCode(bytes.From(kListByte + 3 * i));
  return 0;
}

int32_t VESA_SetCvtTiming(const VesaCvtRecord* record, DtdSlot* slot) {
  if (record == nullptr || slot == nullptr) return REEDID_ERR("invalid parameters");
  BeginDescriptor(*slot, kCvtCodesDescriptor);
  slot->bytes[kVersionByte] = record->version;
  for (unsigned i = 0; i < kCvtCodes; ++i) {
    const int32_t result = EncodeCvtCode(record->codes[i], slot->bytes + kListByte + 3 * i, __func__);
    if (result != 0) return result;
  }
  return 0;
}

int32_t VESA_GetEst3Timing(const DtdSlot* slot, Est3Record* record) {
  if (slot == nullptr || slot->flag != kEst3Descriptor || record == nullptr) return REEDID_ERR("invalid parameters");
  if (!HasPlainHeader(*slot, kEst3Descriptor)) return REEDID_ERR("invalid established Timing 3 descriptor");
  Est3Layout(LayoutReader(BytesOf(*slot)), *record);
  return 0;
}

int32_t VESA_SetEst3Timing(const Est3Record* record, DtdSlot* slot) {
  if (record == nullptr || slot == nullptr) return REEDID_ERR("invalid parameters");
  Est3Layout(BeginDescriptor(*slot, kEst3Descriptor), *record);
  return 0;
}
