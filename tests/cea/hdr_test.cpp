#include <gtest/gtest.h>

#include "tests/cea/entry.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

TEST(CeaHdr, ReadsLuminancesAsFarAsTheBlockGoes) {
  for (unsigned size = 0; size <= 255; ++size) {
    SCOPED_TRACE(size);
    ByteVector bytes(size, 0x40);
    const ByteVector start = {0xE3, 6, 0x05, 0x01};
    std::copy_n(start.begin(), std::min<size_t>(size, 4), bytes.begin());
    CeaEntry entry(bytes);
    entry.extTag = 6;
    StaticHdrRecord r = {9, 9, 9, 9, 9, 9, 9, 9};
    int32_t result = 0;
    const std::string log = LogOf([&] { result = CEA_GetStaticHDR(&entry, &r); });
    if (size < 4 || size > 31) {
      EXPECT_EQ(log, Err("CEA_GetStaticHDR", "invalid parameters"));
      EXPECT_EQ(r.eotfSdr, 9);
      continue;
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ((ByteVector{r.eotfSdr, r.eotfHdr, r.eotfPq, r.eotfHlg, r.staticMetadataType1}),
              (ByteVector{1, 0, 1, 0, 1}));
    EXPECT_EQ(r.maxLuminance, size > 4 ? 0x40 : 9);
    EXPECT_EQ(r.maxFrameAvgLuminance, size > 5 ? 0x40 : 9);
    EXPECT_EQ(r.minLuminance, size > 6 ? 0x40 : 9);
  }
}

TEST(CeaHdr, WritesAsFarAsTheLastLuminance) {
  struct Case {
    StaticHdrRecord record;
    ByteVector block;
  };
  for (const Case& c : {Case{{1, 2, 3, 0, 1, 0, 0, 0}, {0xE3, 6, 0x05, 0x01}},
                        {{0, 0, 0, 1, 0, 0x80, 0, 0}, {0xE4, 6, 0x08, 0x00, 0x80}},
                        {{0, 1, 0, 0, 0, 0, 0x70, 0}, {0xE5, 6, 0x02, 0x00, 0, 0x70}},
                        {{0, 0, 1, 0, 1, 0, 0, 0x40}, {0xE6, 6, 0x04, 0x01, 0, 0, 0x40}}}) {
    CeaTarget target;
    ASSERT_EQ(CEA_SetStaticHDR(&c.record, &target), 0);
    EXPECT_EQ(target.tag, 7);
    EXPECT_EQ(target.extTag, 6);
    EXPECT_EQ(target.Block(), c.block);
    EXPECT_EQ(target.bytes[31], 0);
  }
}

TEST(CeaHdr, TellsDolbyFromOtherVendors) {
  struct Case {
    uint8_t extTag;
    ByteVector rest;
    int32_t type;
    bool refused;
  };
  for (const Case& c : {Case{1, {0x46, 0xD0, 0x00}, 1, false},
                        {1, {0x46, 0xD0, 0x01}, 0, false},
                        {6, {0x46, 0xD0, 0x00}, 0, true},
                        {1, {0x46, 0xD0}, 0, true},
                        {1, Concat({{0x46, 0xD0, 0x00}, ByteVector(27)}), 0, true}}) {
    const CeaEntry entry(ExtendedBlock(c.extTag, c.rest));
    int32_t type = -2;
    EXPECT_EQ(LogOf([&] { type = CEA_GetVSVDBType(&entry); }),
              c.refused ? Err("CEA_GetVSVDBType", "invalid parameters") : "");
    EXPECT_EQ(type, c.type);
  }
}

}  // namespace
}  // namespace reedid::test
