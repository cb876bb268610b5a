#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/data_block.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

// The 15 bytes of a descriptor's record, in order.
ByteVector SadBytes(const SadRecord& sad) {
  ByteVector bytes(sizeof sad);
  std::memcpy(bytes.data(), &sad, sizeof sad);
  return bytes;
}

struct Case {
  const char* name;
  ByteVector bytes;  // as read
  ByteVector sad;    // format, ext, channels, seven rates, three depths, bit rate, dependent
  ByteVector again;  // as written back; empty: as read
};
const Case kCases[] = {
    {"L-PCM", {0x0F, 0x7F, 0x07}, {1, 0, 8, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0}, {}},
    {"L-PCM, reserved bits", {0x89, 0x84, 0xF9}, {1, 0, 2, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0}, {0x09, 0x04, 0x01}},
    {"AC-3", {0x15, 0x07, 0x50}, {2, 0, 6, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0x50, 0}, {}},
    {"ATRAC, bit rate looks like depths", {0x41, 0x02, 0xFF}, {8, 0, 2, 0, 1, 0, 0, 0, 0, 0, 1, 1, 1, 0xFF, 0}, {}},
    {"E-AC-3", {0x57, 0x06, 0x03}, {10, 0, 8, 0, 1, 1, 0, 0, 0, 0, 1, 1, 0, 0, 3}, {}},
    {"format 13", {0x68, 0x10, 0xFF}, {13, 0, 1, 0, 0, 0, 0, 1, 0, 0, 1, 1, 1, 0, 0xFF}, {}},
    {"WMA Pro", {0x70, 0x20, 0xFE}, {14, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 1, 0, 6}, {0x70, 0x20, 0x06}},
    {"ext 4", {0x79, 0xFF, 0x27}, {15, 4, 2, 1, 1, 1, 1, 1, 0, 0, 1, 1, 1, 0, 7}, {0x79, 0x1F, 0x27}},
    {"ext 10", {0x79, 0x60, 0x51}, {15, 10, 2, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1}, {0x79, 0x00, 0x51}},
    {"ext 11", {0x7B, 0x7F, 0x5F}, {15, 11, 3, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 3}, {0x7B, 0x7F, 0x5B}},
    {"ext 12", {0x7F, 0x7F, 0x65}, {15, 12, 8, 0, 1, 1, 0, 1, 0, 1, 1, 0, 1, 0, 5}, {0x78, 0x56, 0x65}},
    {"ext 13", {0xFD, 0x84, 0x6B}, {15, 13, 30, 0, 0, 1, 0, 0, 0, 0, 1, 1, 0, 0, 0}, {}},
    {"ext 13, depths", {0x7D, 0x04, 0x6F}, {15, 13, 6, 0, 0, 1, 0, 0, 0, 0, 1, 1, 1, 0, 0}, {}},
    {"ext 3", {0x7A, 0x04, 0x1F}, {15, 3, 3, 0, 0, 1, 0, 0, 0, 0, 1, 1, 1, 0, 0}, {0x7A, 0x04, 0x18}},
    {"format 0", {0x00, 0x01, 0xFF}, {0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0, 0}, {0x00, 0x01, 0x07}},
};

TEST(Audio, CodesEachFormat) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    const DataBlock block(Concat({{0x23}, c.bytes}));
    AdbRecord record;
    ASSERT_EQ(CEA_GetADB(&block, &record), 0);
    ASSERT_EQ(record.sadCount, 1);
    EXPECT_EQ(SadBytes(record.sads[0]), c.sad);
    BlankDataBlock entry;
    ASSERT_EQ(CEA_SetADB(&record, &entry), 0);
    EXPECT_EQ(entry.Written(), Concat({{0x23}, c.again.empty() ? c.bytes : c.again}));
  }
}

TEST(Audio, WrapsWhatIsWiderThanItsField) {
  struct Row {
    const char* name;
    ByteVector sad;
    ByteVector bytes;
  };
  const Row rows[] = {
      {"no channels", {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, {0x0F, 0, 0}},
      {"nine channels", {1, 0, 9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, {0x08, 0, 0}},
      {"flags by bit 0", {1, 0, 1, 2, 3, 2, 3, 2, 3, 2, 3, 2, 3, 0, 0}, {0x08, 0x2A, 0x05}},
      {"format 17 is plain", {17, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 9, 9}, {0x08, 0, 0x01}},
      {"depths only in L-PCM", {9, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0, 0}, {0x48, 0, 0}},
      {"ext 12 with all rates", {15, 12, 8, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0xFF}, {0x78, 0x56, 0x67}},
      {"ext 13, 32 channels", {15, 13, 32, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7}, {0xFF, 0x80, 0x68}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    AdbRecord record = {};
    record.sadCount = 1;
    std::memcpy(&record.sads[0], row.sad.data(), sizeof record.sads[0]);
    BlankDataBlock entry;
    ASSERT_EQ(CEA_SetADB(&record, &entry), 0);
    EXPECT_EQ(entry.Written(), Concat({{0x23}, row.bytes}));
  }
}

TEST(Audio, CountsWholeDescriptors) {
  for (unsigned size = 4; size <= 31; ++size) {
    ByteVector bytes(size, 0x09);
    bytes[0] = static_cast<uint8_t>(0x20 | (size - 1));
    const DataBlock block(bytes);
    AdbRecord record;
    ASSERT_EQ(CEA_GetADB(&block, &record), 0);
    EXPECT_EQ(record.sadCount, (size - 1) / 3);
    EXPECT_EQ(record.sads[record.sadCount - 1].formatCode, 1);
  }
  AdbRecord record = {};
  BlankDataBlock entry;
  record.sadCount = 11;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_SetADB(&record, &entry), -1); }), Err("CEA_SetADB", "invalid parameters"));
  EXPECT_EQ(entry.tag, 0xEE);
  record.sadCount = 10;
  EXPECT_EQ(CEA_SetADB(&record, &entry), 0);
  EXPECT_EQ(entry.size, 31);
}

TEST(Speakers, HaveOneBitEach) {
  for (unsigned i = 0; i < 24; ++i) {
    SCOPED_TRACE(i);
    ByteVector bytes = {0x83, 0, 0, 0};
    bytes[1 + i / 8] = static_cast<uint8_t>(1u << (i % 8));
    const DataBlock block(bytes);
    SpeakerRecord record;
    ASSERT_EQ(CEA_GetSADB(&block, &record), 0);
    ByteVector flags(sizeof record);
    std::memcpy(flags.data(), &record, sizeof record);
    ByteVector expected(20);
    if (i < 20) expected[i] = 1;
    EXPECT_EQ(flags, expected);
    if (i < 20) flags[i] = 0xFF;
    std::memcpy(&record, flags.data(), sizeof record);
    BlankDataBlock entry;
    ASSERT_EQ(CEA_SetSADB(&record, &entry), 0);
    EXPECT_EQ(entry.Written() == bytes, i < 20) << "the last four bits are reserved";
  }
  SpeakerRecord named = {};
  named.LFE1 = named.TpC = named.BtFL_BtFR = 1;
  BlankDataBlock entry;
  ASSERT_EQ(CEA_SetSADB(&named, &entry), 0);
  EXPECT_EQ(entry.Written(), ByteVector({0x83, 0x02, 0x02, 0x04}));
}

}  // namespace
}  // namespace reedid::test
