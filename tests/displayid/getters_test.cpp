// What all getters have in common: which sizes they take, that they stay inside the block and the array, and under
// which name they refuse.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/displayid/entry.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

// Gets into an array of exactly as many records as are counted.
template <auto kGet, class Record>
int32_t GetAll(const DispIdDataBlock* entry, bool withOutput) {
  const size_t count = 255;
  uint32_t requested = 0;
  if (entry != nullptr && entry->bytes != nullptr && entry->size >= 3 && entry->size <= 251) {
    requested = static_cast<uint32_t>(DispID_GetTimingCnt(entry));
  }
  const ExactBytes records(ByteVector(std::max<size_t>(requested, 1) * sizeof(Record)));
  return kGet(entry, withOutput ? reinterpret_cast<Record*>(records.data()) : nullptr,
              requested == 0 ? 0 : static_cast<uint32_t>(count));
}

template <auto kGet>
int32_t GetCodes(const DispIdDataBlock* entry, bool withOutput) {
  const ExactBytes codes(ByteVector(248));
  TimingCodeRecord record = {};
  record.codes = codes.data();
  return kGet(entry, withOutput ? &record : nullptr, 1000);
}

template <auto kGet, class Record>
int32_t GetRecord(const DispIdDataBlock* entry, bool withOutput) {
  Record record = {};
  return kGet(entry, withOutput ? &record : nullptr);
}

template <auto kGet>
int32_t GetProduct(const DispIdDataBlock* entry, bool withOutput) {
  const ExactBytes name(ByteVector(234));
  ProductIdRecord record = {};
  record.name = reinterpret_cast<char*>(name.data());
  return kGet(entry, withOutput ? &record : nullptr);
}

template <auto kGet>
int32_t GetText(const DispIdDataBlock* entry, bool withOutput) {
  const size_t room = entry == nullptr ? 1 : std::max(entry->size, uint8_t{3}) - 2u;
  const ExactBytes text{ByteVector(room)};
  return kGet(entry, withOutput ? reinterpret_cast<char*>(text.data()) : nullptr, text.size());
}

struct Getter {
  const char* name;  // exported
  const char* body;  // in the log, for all but a null entry and a wrong tag
  uint8_t tag;
  unsigned minSize;
  unsigned maxSize;
  int32_t (*get)(const DispIdDataBlock*, bool withOutput);
};

const Getter kGetters[] = {
    {"DispID_GetPIDB", "DispID_GetPIDB", 0x00, 15, 255, GetProduct<DispID_GetPIDB>},
    {"DispID20_GetPIDB", "DispID20_GetPIDB", 0x20, 15, 255, GetProduct<DispID20_GetPIDB>},
    {"DispID_GetDPDB", "DispID_GetDPDB", 0x01, 15, 15, GetRecord<DispID_GetDPDB, DisplayParamsRecord>},
    {"DispID20_GetDPDB", "DispID20_GetDPDB", 0x21, 32, 32, GetRecord<DispID20_GetDPDB, DisplayParams20Record>},
    {"DispID_Get20ByteDTD", "Get20ByteDTD", 0x03, 23, 251, GetAll<DispID_Get20ByteDTD, DtdTiming>},
    {"DispID20_Get20ByteDTD", "Get20ByteDTD", 0x22, 23, 251, GetAll<DispID20_Get20ByteDTD, DtdTiming>},
    {"DispID_Get11ByteDTD", "DispID_Get11ByteDTD", 0x04, 14, 251, GetAll<DispID_Get11ByteDTD, DtdTiming>},
    {"DispID_Get17ByteDTD", "DispID_Get17ByteDTD", 0x13, 3, 251, GetAll<DispID_Get17ByteDTD, DtdTiming>},
    {"DispID_Get3ByteCVT", "DispID_Get3ByteCVT", 0x05, 6, 251, GetAll<DispID_Get3ByteCVT, CvtTiming>},
    {"DispID_Get7ByteCVT", "DispID_Get7ByteCVT", 0x11, 10, 251, GetAll<DispID_Get7ByteCVT, CvtTiming>},
    {"DispID20_Get6ByteCVT", "DispID20_Get6ByteCVT", 0x24, 3, 251, GetAll<DispID20_Get6ByteCVT, CvtTiming>},
    {"DispID20_Get6ByteCVT", "DispID20_Get6ByteCVT", 0x2A, 3, 251, GetAll<DispID20_Get6ByteCVT, CvtTiming>},
    {"DispID_GetTimingCode", "GetTimingCode", 0x06, 3, 251, GetCodes<DispID_GetTimingCode>},
    {"DispID20_GetTimingCode", "GetTimingCode", 0x23, 3, 251, GetCodes<DispID20_GetTimingCode>},
    {"DispID_GetVESATiming", "DispID_GetVESATiming", 0x07, 13, 251, GetAll<DispID_GetVESATiming, uint8_t>},
    {"DispID_GetCEATiming", "DispID_GetCEATiming", 0x08, 11, 251, GetAll<DispID_GetCEATiming, uint8_t>},
    {"DispID_GetRangeLimits", "DispID_GetRangeLimits", 0x09, 18, 18,
     GetRecord<DispID_GetRangeLimits, DispIdRangeLimits>},
    {"DispID20_GetRangeLimits", "DispID20_GetRangeLimits", 0x25, 12, 12,
     GetRecord<DispID20_GetRangeLimits, DispIdRangeLimits>},
    {"DispID_GetSerialNumber", "DispID_GetSerialNumber", 0x0A, 4, 255, GetText<DispID_GetSerialNumber>},
    {"DispID_GetDataString", "DispID_GetDataString", 0x0B, 4, 255, GetText<DispID_GetDataString>},
};

TEST(DispIdGetters, TakeTheSizesOfTheirBlockAndReadNothingBehindIt) {
  for (const Getter& getter : kGetters) {
    for (const uint8_t fill : ByteVector{0x00, 0x47, 0xFF}) {
      for (unsigned size = 0; size <= 255; ++size) {
        SCOPED_TRACE(testing::Message() << getter.name << " size " << size << " fill " << int{fill});
        Entry entry(ByteVector(size, fill));
        entry.tag = getter.tag;
        entry.headerFlags = fill & 0x1E;  // never two-byte codes
        const bool fits = size >= getter.minSize && size <= getter.maxSize;
        int32_t result = 0;
        const std::string log = LogOf([&] { result = getter.get(&entry, true); });
        EXPECT_EQ(result, fits ? 0 : -1);
        EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), fits ? 0 : 1) << log;
      }
    }
  }
}

TEST(DispIdGetters, RefuseUnderTheNameOfTheLayerThatChecks) {
  for (const Getter& getter : kGetters) {
    SCOPED_TRACE(getter.name);
    const ByteVector block(getter.maxSize < 251 ? getter.maxSize : 40);
    const auto refused = [&](const DispIdDataBlock* entry, bool withOutput, const char* name) {
      int32_t result = 0;
      EXPECT_EQ(LogOf([&] { result = getter.get(entry, withOutput); }), Err(name, "invalid parameters"));
      EXPECT_EQ(result, -1);
    };
    Entry good(block);
    good.tag = getter.tag;
    refused(nullptr, true, getter.name);
    refused(&good, false, getter.body);
    Entry noBytes(block);
    noBytes.tag = getter.tag;
    noBytes.bytes = nullptr;
    refused(&noBytes, true, getter.body);
    Entry otherTag(block);
    otherTag.tag = 0x77;
    refused(&otherTag, true, getter.name);
  }
}

TEST(DispIdTimingCount, FollowsTagSizeAndFlags) {
  ByteVector typeVi(14 + 17 + 14 + 16);
  typeVi[14 + 2] = 0x40;
  typeVi[14 + 17 + 14 + 2] = 0x40;  // a long descriptor that lacks a byte
  struct Case {
    uint8_t tag, byte1;
    ByteVector payload;
    int32_t count;
  };
  const Case cases[] = {
      {0x03, 0, ByteVector(59), 2},    {0x04, 0, ByteVector(32), 2},    {0x05, 0, ByteVector(248), 82},
      {0x06, 0x08, ByteVector(9), 9},  {0x07, 0, ByteVector(10), 81},   {0x08, 0, ByteVector(32), 1},  // 257
      {0x08, 0, ByteVector(248), 193}, {0x11, 0, ByteVector(20), 2},    {0x13, 0, typeVi, 3},
      {0x13, 0, ByteVector(13), 0},    {0x22, 0, ByteVector(248), 12},  {0x23, 0x00, ByteVector(9), 9},
      {0x23, 0x08, ByteVector(9), 4},  {0x24, 0x70, ByteVector(24), 4}, {0x2A, 0x00, ByteVector(28), 4},
      {0x2A, 0x10, ByteVector(28), 4}, {0x2A, 0x70, ByteVector(27), 2}, {0x09, 0, ByteVector(15), 0},
  };
  for (const Case& c : cases) {
    const Entry entry(BlockOf(c.tag, c.byte1, c.payload));
    EXPECT_EQ(DispID_GetTimingCnt(&entry), c.count) << int{c.tag} << " of " << c.payload.size();
  }
  for (const unsigned size : {0u, 2u, 252u, 255u}) {
    const Entry entry{ByteVector(size)};
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(DispID_GetTimingCnt(&entry), -1); }),
              Err("DispID_GetTimingCnt", "invalid parameters"));
  }
}

}  // namespace
}  // namespace reedid::test
