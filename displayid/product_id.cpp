// Product identification: tag 0x00 (DisplayID 1.3, table 4-3) and tag 0x20 (DisplayID 2.0, table 4-1). The manufacturer
// is three letters in 1.x and an OUI in 2.0; all else is the same.
//
//  3-5   manufacturer       12   week, 255 = the year is a model year
//  6-7   product code       13   year - 2000
//  8-11  serial number      14   characters of the name, which follows without a terminator

#include <algorithm>
#include <cstring>

#include "base/layout.h"
#include "base/log.h"
#include "base/pinned.h"
#include "displayid/codec.h"

namespace reedid {
namespace {

PIN_FIELDS(ProductIdRecord, 0, 3, manufacturerId);
PIN_FIELDS(ProductIdRecord, 4, 2, productCode);
PIN_FIELDS(ProductIdRecord, 8, 4, serialNumber);
PIN_FIELDS(ProductIdRecord, 12, 1, week);
PIN_FIELDS(ProductIdRecord, 14, 2, year, nameLength);
PIN_FIELDS(ProductIdRecord, 16 + kPointer, kPointer, name);
PIN_SIZE(ProductIdRecord, 16 + 2 * kPointer);

constexpr unsigned kNameStart = 15;
constexpr unsigned kMaxName = 233;
constexpr uint8_t kMaxWeek = 54;
constexpr uint8_t kModelYear = 255;
constexpr uint16_t kFirstYear = 2000;

template <class Io, class Record>
constexpr void ProductIdLayout(const Io& io, Record& r) {
  for (uint8_t i = 0; i < 3; ++i) io(r.manufacturerId[i], Place{Low8(3 + i)});
  io(r.productCode, Place{6}, Place{7});
  io(r.serialNumber, Place{8}, Place{9}, Place{10}, Place{11});
  io(r.week, Place{12});
  Above(io, r.year, kFirstYear, Place{13});
  io(r.nameLength, Place{14});
}

int32_t GetProductId(const DispIdDataBlock* entry, uint8_t tag, ProductIdRecord* record, Caller caller = {}) {
  if (!Matches(entry, tag, kNameStart) || record == nullptr) return REEDID_ERR_AS(caller, "invalid parameters");
  const Bytes bytes = BytesOf(*entry);
  ProductIdLayout(LayoutReader(bytes), *record);
  const unsigned length = std::min({unsigned{record->nameLength}, kMaxName, entry->size - kNameStart});
  record->nameLength = Low16(length);
  if (record->name == nullptr) return 0;
  if (length > 0) std::memcpy(record->name, bytes.data() + kNameStart, length);
  record->name[length] = '\0';
  return 0;
}

// A date that cannot be is the caller's to mend; it is reported and written all the same.
int32_t SetProductId(const ProductIdRecord* record, uint8_t tag, DispIdDataBlock* entry, Caller caller = {}) {
  if (record == nullptr || !CanHold(entry) || record->nameLength > kMaxName) {
    return REEDID_ERR_AS(caller, "invalid parameters");
  }
  const unsigned length = record->nameLength;
  const LayoutWriter writer = BeginDataBlock(*entry, {tag, 0, 0}, kNameStart - kDispIdHeaderSize + length);
  if (record->week > kMaxWeek && record->week != kModelYear) {
    REEDID_ERR_AS(caller, "invalid week:%d", record->week);
  }
  if (record->year < kFirstYear) REEDID_ERR_AS(caller, "invalid year:%d", record->year);
  ProductIdLayout(writer, *record);
  if (record->name != nullptr && length > 0) std::memcpy(entry->bytes + kNameStart, record->name, length);
  return 0;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID_GetPIDB(const DispIdDataBlock* entry, ProductIdRecord* record) {
  return GetProductId(entry, DISPID_TAG_PRODUCT_ID, record);
}

int32_t DispID_SetPIDB(const ProductIdRecord* record, DispIdDataBlock* entry) {
  return SetProductId(record, DISPID_TAG_PRODUCT_ID, entry);
}

int32_t DispID20_GetPIDB(const DispIdDataBlock* entry, ProductIdRecord* record) {
  return GetProductId(entry, DISPID20_TAG_PRODUCT_ID, record);
}

int32_t DispID20_SetPIDB(const ProductIdRecord* record, DispIdDataBlock* entry) {
  return SetProductId(record, DISPID20_TAG_PRODUCT_ID, entry);
}
