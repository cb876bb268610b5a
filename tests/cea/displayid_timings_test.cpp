#include <gtest/gtest.h>

#include "tests/cea/entry.h"
#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

constexpr CvtTiming kCvt1080p60 = {2, 0, 1920, 60, 0, 0, 0, 0, 0, 1080, 0, 0};

TEST(CeaTimings, TypeViiHoldsOneDescriptor) {
  Cea20ByteDtdRecord record = {1, 5, 1, k2160p60};
  record.timing.aspectRatio = ASPECT_16_9;
  CeaTarget target;
  ASSERT_EQ(CEA_Set20ByteDTD(&record, &target), 0);
  EXPECT_EQ(target.size, 28);
  EXPECT_EQ(ByteVector(target.bytes, target.bytes + 7), (ByteVector{0xFB, 0x22, 0x5A, 0x4F, 0x10, 0x09, 0x84}));
  EXPECT_EQ(ByteVector(target.bytes + 23, target.bytes + 32), ByteVector(9));

  const CeaEntry entry(target.Block());
  Cea20ByteDtdRecord back = {};
  ASSERT_EQ(CEA_Get20ByteDTD(&entry, &back), 0);
  EXPECT_EQ(back.flagBit3, 1);
  EXPECT_EQ(back.extraBytes, 5);
  EXPECT_EQ(back.preferred, 1);
  EXPECT_EQ(back.timing.preferred, 0);
  EXPECT_EQ(back.timing.pixelClock, 594000u);
  EXPECT_EQ(back.timing.vsyncWidth, 10);

  record.preferred = 0;
  record.timing.preferred = 1;  // not this one is written
  ASSERT_EQ(CEA_Set20ByteDTD(&record, &target), 0);
  EXPECT_EQ(target.bytes[6], 0x04);
  CeaTarget untouched;
  record.timing.hactive = 0;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_Set20ByteDTD(&record, &untouched), -1); }),
            Err("Set20ByteDTD", "invalid timing: 0x2160@60 594000KHz"));
  EXPECT_TRUE(untouched.Untouched());
}

TEST(CeaTimings, TypeViiiCarriesThe420Mark) {
  uint8_t codes[30] = {4, 97};
  TimingCodeRecord record = {1, 1, 0, 2, codes};
  CeaTarget target;
  ASSERT_EQ(CEA_SetTimingCode(&record, &target), 0);
  EXPECT_EQ(target.Block(), (ByteVector{0xE4, 0x23, 0x62, 4, 97}));
  const ExactBytes out(ByteVector(2));
  TimingCodeRecord back = {0, 0, 9, 0, out.data()};
  const CeaEntry entry(target.Block());
  ASSERT_EQ(CEA_GetTimingCode(&entry, &back), 0);
  EXPECT_EQ(back.codeType + back.reserved, 2);
  EXPECT_EQ(back.codeCount, 2);
  EXPECT_EQ(out.data()[1], 97);

  const CeaEntry twoBytes(ExtendedBlock(0x23, {0x2A, 4, 97}));
  back.reserved = 0;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_GetTimingCode(&twoBytes, &back), -1); }),
            Err("GetTimingCode", "Not support 2byte code now!!!"));
  EXPECT_EQ(back.reserved, 1);  // told all the same
  EXPECT_EQ(back.codeCount, 2);

  const std::string name = "CEA_SetTimingCode";
  for (const auto& [count, reporter] : {std::pair<int, std::string>(0, name), {29, ""}, {30, name}}) {
    record.codeCount = static_cast<uint8_t>(count);
    CeaTarget limited;
    const std::string log = reporter.empty() ? "" : Err(reporter, "invalid parameters");
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_SetTimingCode(&record, &limited), log.empty() ? 0 : -1); }), log);
    EXPECT_EQ(limited.Untouched(), !log.empty());
  }
}

TEST(CeaTimings, TypeXDescriptorsAreAsLongAsTheFirstRateNeeds) {
  CvtTiming timings[5] = {kCvt1080p60, kCvt1080p60, kCvt1080p60, kCvt1080p60, kCvt1080p60};
  timings[1].frameRate = 300;
  CeaTarget target;
  ASSERT_EQ(CEA_Set6ByteCVT(timings, 2, &target), 0);
  EXPECT_EQ(target.Block(), ExtendedBlock(0x2A, {0x00, 2, 0x7F, 0x07, 0x37, 0x04, 59, 2, 0x7F, 0x07, 0x37, 0x04, 43}));
  ASSERT_EQ(CEA_Set6ByteCVT(timings + 1, 2, &target), 0);
  EXPECT_EQ(target.Block(),
            ExtendedBlock(0x2A, {0x10, 2, 0x7F, 0x07, 0x37, 0x04, 43, 1, 2, 0x7F, 0x07, 0x37, 0x04, 59, 0}));
  CvtTiming back[2];
  const CeaEntry entry(target.Block());
  ASSERT_EQ(CEA_Get6ByteCVT(&entry, back), 0);
  EXPECT_EQ(back[0].frameRate, 300);
  EXPECT_EQ(back[1].frameRate, 60);
  for (const uint32_t count : {0u, 5u}) {
    CeaTarget refused;
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_Set6ByteCVT(timings, count, &refused), -1); }),
              Err("CEA_Set6ByteCVT", "invalid parameters"));
    EXPECT_TRUE(refused.Untouched());
  }
}

TEST(CeaTimings, GettersTakeTheSizesOfTheirBlock) {
  struct Case {
    const char* name;
    uint8_t extTag;
    unsigned minSize;
    int32_t (*get)(const CeaDataBlock*);
  };
  const Case cases[] = {
      {"CEA_Get20ByteDTD", 0x22, 23,
       [](const CeaDataBlock* entry) {
         Cea20ByteDtdRecord record;
         return CEA_Get20ByteDTD(entry, &record);
       }},
      {"CEA_GetTimingCode", 0x23, 4,
       [](const CeaDataBlock* entry) {
         const ExactBytes codes(ByteVector(29));
         TimingCodeRecord record = {0, 0, 0, 0, codes.data()};
         return CEA_GetTimingCode(entry, &record);
       }},
      {"CEA_Get6ByteCVT", 0x2A, 9,
       [](const CeaDataBlock* entry) {
         const ExactBytes timings(ByteVector(4 * sizeof(CvtTiming)));
         return CEA_Get6ByteCVT(entry, reinterpret_cast<CvtTiming*>(timings.data()));
       }},
  };
  for (const Case& c : cases) {
    for (const uint8_t fill : ByteVector{0x00, 0xF7}) {
      for (unsigned size = 0; size <= 255; ++size) {
        SCOPED_TRACE(testing::Message() << c.name << " size " << size);
        CeaEntry entry(ByteVector(size, fill));
        entry.extTag = c.extTag;
        int32_t result = 0;
        const bool fits = size >= c.minSize && size <= 32;
        EXPECT_EQ(LogOf([&] { result = c.get(&entry); }), fits ? "" : Err(c.name, "invalid parameters"));
        EXPECT_EQ(result, fits ? 0 : -1);
      }
    }
  }
}

}  // namespace
}  // namespace reedid::test
