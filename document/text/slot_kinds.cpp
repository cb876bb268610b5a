// Descriptors of 18 bytes: those of the base block (EDID 1.4, table 3.23), and the timings of a CTA extension.

#include <algorithm>
#include <cstring>

#include "document/text/shims.h"

namespace reedid::document::text {
namespace {

constexpr size_t kSize = REEDID_DTD_SIZE;
constexpr char kFollowing[] = "frameRate aspectRatio preferred";

bool GetRange(Bytes bytes, const Context& context, void* box, size_t&) {
  const auto slot = EntryOf<DtdSlot>(bytes);
  return VESA_GetRangeLimits(&context.base, &slot, static_cast<RangeLimits*>(box)) == 0;
}

bool SetRange(const void* box, size_t, const Context& context, ByteVector& bytes) {
  constexpr uint8_t kNoFormula[] = {0x0A, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20};  // EDID 1.4, table 3.26
  const auto* limits = static_cast<const RangeLimits*>(box);
  DtdSlot slot = {};
  if (VESA_SetRangeLimits(&context.base, limits, &slot) != 0) return false;
  if (limits->timingFormula == 0 || limits->timingFormula == 3) std::ranges::copy(kNoFormula, slot.bytes + 11);
  bytes.assign(std::begin(slot.bytes), std::end(slot.bytes));
  return true;
}

constexpr size_t kStandardTimings = 6;

bool GetStandard(Bytes bytes, const Context&, void* box, size_t& count) {
  const auto slot = EntryOf<DtdSlot>(bytes);
  auto* timings = static_cast<StdTiming*>(box);
  if (VESA_GetStandardTimings(&slot, timings) != 0) return false;
  for (count = kStandardTimings; count > 0 && timings[count - 1].valid == 0; --count) continue;
  return true;
}

bool SetStandard(const void* box, size_t count, const Context&, ByteVector& bytes) {
  StdTiming timings[kStandardTimings] = {};
  DtdSlot slot = {};
  if (count > kStandardTimings) return false;
  std::copy_n(static_cast<const StdTiming*>(box), count, timings);
  if (VESA_SetStandardTimings(timings, &slot) != 0) return false;
  bytes.assign(std::begin(slot.bytes), std::end(slot.bytes));
  return true;
}

// Nothing but what tells the kind.
bool ReadEmpty(const Kind&, Bytes bytes, const Context&, Json& json) {
  json = Json::object();
  return std::ranges::all_of(bytes.subspan(4), [](uint8_t byte) { return byte == 0; });
}

void WriteEmpty(const Kind& kind, const Json& json, const Context&, const Place& place, ByteVector& bytes) {
  for (const auto& [key, value] : json.items()) place.Key(key).Fail("says nothing of an empty descriptor");
  bytes = kind.head;
  bytes.resize(kSize);
}

Json EmptySchema(const Kind&) {
  return Json::object();
}

constexpr Form kEmptyForm = {ReadEmpty, WriteEmpty, EmptySchema};

ByteVector Head(uint8_t tag) {
  return {0, 0, 0, tag};
}

Kind Timing() {
  return RecordKind<DtdTiming, VESA_GetDTD, VESA_SetDTD>("timing", {}, kFollowing,
                                                         R"({"hsyncPositive": true, "vsyncPositive": true})");
}

const std::vector<Kind>& Slots() {
  static const std::vector<Kind> kinds = {
      Timing(),
      TextKind<VESA_GetProductName, VESA_SetProductName>("productName", Head(EDID_DESCRIPTOR_PRODUCT_NAME)),
      TextKind<VESA_GetSerialNumber, VESA_SetSerialNumber>("serialNumber", Head(EDID_DESCRIPTOR_SERIAL_NUMBER)),
      TextKind<VESA_GetDataString, VESA_SetDataString>("dataString", Head(EDID_DESCRIPTOR_DATA_STRING)),
      {"rangeLimits", Head(EDID_DESCRIPTOR_RANGE_LIMITS), &kRecordForm, &kRecordInfo<RangeLimits>, "", GetRange,
       SetRange, "", Tail::kNone, Json::parse(R"({"timingFormula": 3})")},
      {"standardTimings", Head(EDID_DESCRIPTOR_STD_TIMINGS), &kListForm, &kRecordInfo<StdTiming>, "", GetStandard,
       SetStandard, "timings"},
      RecordKind<VesaCvtRecord, VESA_GetCvtTiming, VESA_SetCvtTiming>("cvtCodes", Head(EDID_DESCRIPTOR_CVT_CODES), "",
                                                                      R"({"version": 1})"),
      RecordKind<Est3Record, VESA_GetEst3Timing, VESA_SetEst3Timing>("establishedTimings3", Head(EDID_DESCRIPTOR_EST3),
                                                                     "", R"({"version": 10})"),
      {"colorPoint", Head(EDID_DESCRIPTOR_COLOR_POINT)},
      {"colorManagement", Head(EDID_DESCRIPTOR_COLOR_MANAGEMENT)},
      {"dummy", Head(EDID_DESCRIPTOR_DUMMY), &kEmptyForm},
      {"empty", Head(0), &kEmptyForm},
  };
  return kinds;
}

const std::vector<Kind>& Timings() {
  static const std::vector<Kind> kinds = {Timing()};
  return kinds;
}

bool Matches(const Kind& kind, Bytes bytes) {
  if (bytes.size() != kSize) return false;
  const bool isTiming = bytes[0] != 0 || bytes[1] != 0;
  if (kind.head.empty() || isTiming) return kind.head.empty() && isTiming;
  return std::ranges::equal(kind.head, bytes.first(kind.head.size()));
}

}  // namespace

const Family kSlots = {"descriptor", Slots, Matches};
const Family kDetailedTimings = {"timing", Timings, Matches};

}  // namespace reedid::document::text
