#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/data_block.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

ByteVector VideoBytes(const ByteVector& svds) {
  return Concat({{static_cast<uint8_t>(0x40 | svds.size())}, svds});
}

ByteVector VicsOf(const Vic420Record& record) {
  return ByteVector(record.vics, record.vics + record.vicCount);
}

template <class Record>
Record RecordOf(const ByteVector& vics) {
  Record record = {};
  record.vicCount = static_cast<uint8_t>(vics.size());
  std::copy(vics.begin(), vics.end(), record.vics);
  return record;
}

TEST(VideoBlock, DecodesDescriptors) {
  struct Case {
    const char* name;
    ByteVector svds;
    ByteVector vics;
    int native;
  };
  const Case cases[] = {
      {"no native: the first", {16, 31}, {16, 31}, 16},
      {"the last native wins", {16, 0x80 | 4, 0x80 | 3, 5}, {16, 4, 3, 5}, 3},
      {"edges of the native mark", {128, 129, 192}, {128, 1, 64}, 64},
      {"above the native marks", {127, 193, 255}, {127, 129, 191}, 127},
      {"31 descriptors", ByteVector(31, 97), ByteVector(31, 97), 97},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const DataBlock block(VideoBytes(c.svds));
    VdbRecord record;
    ASSERT_EQ(CEA_GetVDB(&block, &record), 0);
    EXPECT_EQ(ByteVector(record.vics, record.vics + record.vicCount), c.vics);
    EXPECT_EQ(record.nativeVic, c.native);
  }
}

TEST(VideoBlock, EncodesDescriptors) {
  struct Case {
    const char* name;
    ByteVector vics;
    uint8_t native;
    ByteVector svds;
  };
  const Case cases[] = {
      {"each equal VIC is marked", {16, 4, 16}, 16, {0x90, 4, 0x90}},
      {"VIC 64 can be native", {64, 65}, 64, {0xC0, 65}},
      {"VIC 65 cannot", {64, 65}, 65, {64, 65}},
      {"VIC 97 cannot", {97}, 97, {97}},
      {"128 is itself", {127, 128}, 0, {127, 128}},
      {"129 and up", {129, 155, 191, 192}, 0, {193, 219, 255, 0}},
      {"native by default", {0}, 0, {0x80}},
      {"none", {}, 16, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    VdbRecord record = RecordOf<VdbRecord>(c.vics);
    record.nativeVic = c.native;
    BlankDataBlock entry;
    ASSERT_EQ(CEA_SetVDB(&record, &entry), 0);
    EXPECT_EQ(entry.Written(), VideoBytes(c.svds));
  }
}

TEST(Video420, CodesDescriptorsWithoutNativeMark) {
  const DataBlock block({0xE4, 14, 96, 0x80 | 16, 218});
  Vic420Record record;
  ASSERT_EQ(CEA_Get420VDB(&block, &record), 0);
  EXPECT_EQ(VicsOf(record), ByteVector({96, 16, 154}));
  BlankDataBlock entry;
  ASSERT_EQ(CEA_Set420VDB(&record, &entry), 0);
  EXPECT_EQ(entry.Written(), ByteVector({0xE4, 14, 96, 16, 218}));
}

TEST(VideoBlocks, RefuseTooManyVics) {
  BlankDataBlock entry;
  for (int count = 29; count <= 33; ++count) {
    SCOPED_TRACE(count);
    VdbRecord video = {};
    Vic420Record video420 = {};
    video.vicCount = video420.vicCount = static_cast<uint8_t>(count);
    EXPECT_EQ(CEA_SetVDB(&video, &entry), count < 32 ? 0 : -1);
    EXPECT_EQ(CEA_Set420VDB(&video420, &entry), count < 31 ? 0 : -1);
  }
}

TEST(Map420, MarksDescriptors) {
  struct Case {
    const char* name;
    ByteVector svds;
    ByteVector vics;  // of the record
    ByteVector map;
    ByteVector read;
  };
  ByteVector many;
  for (uint8_t i = 1; i <= 31; ++i) many.push_back(i);
  const Case cases[] = {
      {"first and third", {96, 16, 97}, {97, 96}, {0x05}, {96, 97}},
      {"native and repeated", {0x90, 31, 16}, {16}, {0x05}, {16, 16}},
      {"none matches", {1, 2, 3, 4, 5, 6, 7, 8, 9}, {99}, {0x00, 0x00}, {}},
      {"ninth", {1, 2, 3, 4, 5, 6, 7, 8, 218}, {154}, {0x00, 0x01}, {154}},
      {"all 31", many, many, {0xFF, 0xFF, 0xFF, 0x7F}, many},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const DataBlock video(VideoBytes(c.svds));
    Vic420Record record = RecordOf<Vic420Record>(c.vics);
    BlankDataBlock map;
    ASSERT_EQ(CEA_Set420CMDB(&record, &video, &map), 0);
    EXPECT_EQ(map.Written(), Concat({{static_cast<uint8_t>(0xE1 + c.map.size()), 15}, c.map}));
    ASSERT_EQ(CEA_Get420CMDB(&video, &map, &record), 0);
    EXPECT_EQ(VicsOf(record), c.read);
  }
}

TEST(Map420, EndsWhereItsBytesEnd) {
  const DataBlock video({0x49, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  Vic420Record record;
  const DataBlock shorter({0xE2, 15, 0xFF});
  ASSERT_EQ(CEA_Get420CMDB(&video, &shorter, &record), 0);
  EXPECT_EQ(record.vicCount, 8) << "the ninth descriptor has no bit";
  const DataBlock longer({0xE5, 15, 0, 0xFF, 0xFF, 0xFF});
  ASSERT_EQ(CEA_Get420CMDB(&video, &longer, &record), 0);
  EXPECT_EQ(VicsOf(record), ByteVector({9})) << "bits without a descriptor";
}

TEST(Map420, RefusesMoreVicsThanDescriptors) {
  const DataBlock video({0x42, 1, 2});
  const DataBlock noVideo({0x22, 1, 2});
  BlankDataBlock out;
  Vic420Record record = RecordOf<Vic420Record>({1, 2, 3});
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_Set420CMDB(&record, &video, &out), -1); }),
            Err("CEA_Set420CMDB", "420 also vic exceeds 444 vic, please check"));
  record.vicCount = 32;
  for (const CeaDataBlock* block :
       {static_cast<const CeaDataBlock*>(&video), static_cast<const CeaDataBlock*>(&noVideo)}) {
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(CEA_Set420CMDB(&record, block, &out), -1); }),
              Err("CEA_Set420CMDB", "invalid parameters"));
    record.vicCount = 1;
  }
  EXPECT_EQ(out.tag, 0xEE);
  BlankDataBlock shared;
  const VdbRecord twoVics = RecordOf<VdbRecord>({4, 16});
  ASSERT_EQ(CEA_SetVDB(&twoVics, &shared), 0);
  record = RecordOf<Vic420Record>({16});
  ASSERT_EQ(CEA_Set420CMDB(&record, &shared, &shared), 0) << "in place of the video block itself";
  EXPECT_EQ(shared.Written(), ByteVector({0xE2, 15, 0x02}));
}

}  // namespace
}  // namespace reedid::test
