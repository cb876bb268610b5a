// Colorimetry and video capability, and the arguments of all data block codecs.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/data_block.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

const DataBlock kVideoBlock({0x43, 16, 31, 97});

int32_t Get420Map(const CeaDataBlock* entry, Vic420Record* record) {
  return CEA_Get420CMDB(&kVideoBlock, entry, record);
}

int32_t Set420Map(const Vic420Record* record, CeaDataBlock* entry) {
  return CEA_Set420CMDB(record, &kVideoBlock, entry);
}

enum class Outcome { kDone, kRefused, kTouched };

// Calls a getter on a record full of 0xEE.
template <class Record, int32_t (*kGet)(const CeaDataBlock*, Record*)>
Outcome TryGet(const CeaDataBlock* entry, bool withRecord) {
  uint8_t untouched[sizeof(Record)];
  std::memset(untouched, 0xEE, sizeof untouched);
  Record record;
  std::memcpy(&record, untouched, sizeof record);
  if (kGet(entry, withRecord ? &record : nullptr) == 0) return Outcome::kDone;
  return std::memcmp(&record, untouched, sizeof record) == 0 ? Outcome::kRefused : Outcome::kTouched;
}

template <class Record, int32_t (*kSet)(const Record*, CeaDataBlock*)>
Outcome TrySet(CeaDataBlock* entry, bool withRecord) {
  Record record;
  std::memset(&record, 0, sizeof record);
  return kSet(withRecord ? &record : nullptr, entry) == 0 ? Outcome::kDone : Outcome::kRefused;
}

struct Codec {
  const char* getter;
  ByteVector head;  // header's tag bits and what has to follow
  unsigned minSize, maxSize;
  Outcome (*get)(const CeaDataBlock*, bool);
  const char* setter;
  Outcome (*set)(CeaDataBlock*, bool);
};

#define CODEC(name, Record) TryGet<Record, CEA_Get##name>, "CEA_Set" #name, TrySet<Record, CEA_Set##name>
const Codec kCodecs[] = {
    {"CEA_GetVDB", {0x40}, 2, 32, CODEC(VDB, VdbRecord)},
    {"CEA_GetADB", {0x20}, 4, 31, CODEC(ADB, AdbRecord)},
    {"CEA_GetSADB", {0x80}, 4, 31, CODEC(SADB, SpeakerRecord)},
    {"CEA_GetCDB", {0xE0, 5}, 4, 31, CODEC(CDB, ColorimetryRecord)},
    {"CEA_GetVCDB", {0xE0, 0}, 3, 31, CODEC(VCDB, VideoCapRecord)},
    {"CEA_Get420VDB", {0xE0, 14}, 3, 32, CODEC(420VDB, Vic420Record)},
    {"CEA_Get420CMDB",
     {0xE0, 15},
     3,
     6,
     TryGet<Vic420Record, Get420Map>,
     "CEA_Set420CMDB",
     TrySet<Vic420Record, Set420Map>},
    {"CEA_GetH14bVSDB", {0x60, 0x03, 0x0C, 0x00}, 6, 31, CODEC(H14bVSDB, H14bRecord)},
    {"CEA_GetHFVSDB", {0x60, 0xD8, 0x5D, 0xC4}, 8, 31, CODEC(HFVSDB, HfVsdbRecord)},
};
#undef CODEC

TEST(DataBlockCodecs, GetFromTheirTagsAndSizesOnly) {
  for (const Codec& codec : kCodecs) {
    const std::string refusal = Err(codec.getter, "invalid parameters");
    const auto refuses = [&](const CeaDataBlock* entry, bool withRecord, const std::string& why) {
      EXPECT_EQ(LogOf([&] { EXPECT_EQ(codec.get(entry, withRecord), Outcome::kRefused) << codec.getter << why; }),
                refusal)
          << codec.getter << why;
    };
    for (unsigned size = 1; size <= 40; ++size) {
      ByteVector content = codec.head;
      content.resize(size);
      DataBlock entry(content);
      entry.tag = codec.head[0] >> 5;
      entry.extTag = entry.tag == 7 ? codec.head[1] : uint8_t{0};
      if (size < codec.minSize || size > codec.maxSize) {
        refuses(&entry, true, " of size " + std::to_string(size));
        continue;
      }
      EXPECT_EQ(codec.get(&entry, true), Outcome::kDone) << codec.getter << " of size " << size;
      entry.extTag ^= 0x20;
      if (entry.tag == 7) refuses(&entry, true, " with another extended tag");
      entry.extTag ^= 0x20;
      refuses(&entry, false, " without a record");
      entry.tag ^= 4;
      refuses(&entry, true, " with another tag");
      entry.tag ^= 4;
      entry.bytes = nullptr;
      refuses(&entry, true, " without bytes");
    }
    refuses(nullptr, true, " without an entry");
  }
}

TEST(DataBlockCodecs, SetOverClearedBytes) {
  for (const Codec& codec : kCodecs) {
    SCOPED_TRACE(codec.setter);
    BlankDataBlock entry;
    LogOf([&] { EXPECT_EQ(codec.set(&entry, true), Outcome::kDone); });  // zeroes are reported by the HDMI setters
    EXPECT_EQ(entry.tag, codec.head[0] >> 5);
    EXPECT_EQ(entry.extTag, entry.tag == 7 ? codec.head[1] : 0);
    EXPECT_EQ(entry.bytes[0], entry.tag << 5 | (entry.size - 1));
    for (size_t i = 1; i < codec.head.size(); ++i) EXPECT_EQ(entry.bytes[i], codec.head[i]);
    EXPECT_EQ(ByteVector(entry.bytes + entry.size, entry.bytes + 32), ByteVector(32u - entry.size));

    CeaDataBlock noBytes = {9, 9, 9, nullptr};
    const std::string refusal = Err(codec.setter, "invalid parameters");
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(codec.set(nullptr, true), Outcome::kRefused); }), refusal);
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(codec.set(&noBytes, true), Outcome::kRefused); }), refusal);
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(codec.set(&entry, false), Outcome::kRefused); }), refusal);
    EXPECT_EQ(noBytes.tag, 9);
  }
}

TEST(Colorimetry, PlacesEachField) {
  struct Case {
    uint8_t ColorimetryRecord::*field;
    uint8_t value;
    uint8_t byte2, byte3;
  };
  const Case cases[] = {
      {&ColorimetryRecord::xvYCC601, 1, 0x01, 0},
      {&ColorimetryRecord::xvYCC709, 1, 0x02, 0},
      {&ColorimetryRecord::sYCC601, 1, 0x04, 0},
      {&ColorimetryRecord::opYCC601, 1, 0x08, 0},
      {&ColorimetryRecord::opRGB, 1, 0x10, 0},
      {&ColorimetryRecord::BT2020cYCC, 1, 0x20, 0},
      {&ColorimetryRecord::BT2020YCC, 1, 0x40, 0},
      {&ColorimetryRecord::BT2020RGB, 1, 0x80, 0},
      {&ColorimetryRecord::metadataProfiles, 15, 0, 0x0F},
      {&ColorimetryRecord::ICtCp, 1, 0, 0x40},
      {&ColorimetryRecord::DCI_P3, 1, 0, 0x80},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(int{c.byte2} << 8 | c.byte3);
    ColorimetryRecord record = {};
    record.*c.field = static_cast<uint8_t>(c.value | 0x20);  // more than the field's width
    BlankDataBlock entry;
    ASSERT_EQ(CEA_SetCDB(&record, &entry), 0);
    EXPECT_EQ(entry.Written(), ByteVector({0xE3, 5, c.byte2, c.byte3}));
    ASSERT_EQ(CEA_GetCDB(&entry, &record), 0);
    EXPECT_EQ(record.*c.field, c.value);
  }
}

TEST(VideoCapability, PlacesEachField) {
  struct Case {
    VideoCapRecord record;
    uint8_t byte;
    VideoCapRecord read;
  };
  const Case cases[] = {
      {{1, 0, 0, 0, 0}, 0x80, {1, 0, 0, 0, 0}}, {{0, 1, 0, 0, 0}, 0x40, {0, 1, 0, 0, 0}},
      {{0, 0, 7, 0, 0}, 0x30, {0, 0, 3, 0, 0}}, {{0, 0, 0, 7, 0}, 0x0C, {0, 0, 0, 3, 0}},
      {{0, 0, 0, 0, 7}, 0x03, {0, 0, 0, 0, 3}}, {{2, 2, 4, 4, 4}, 0x00, {0, 0, 0, 0, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(int{c.byte});
    BlankDataBlock entry;
    ASSERT_EQ(CEA_SetVCDB(&c.record, &entry), 0);
    EXPECT_EQ(entry.Written(), ByteVector({0xE2, 0, c.byte}));
    VideoCapRecord read;
    ASSERT_EQ(CEA_GetVCDB(&entry, &read), 0);
    EXPECT_EQ(std::memcmp(&read, &c.read, sizeof read), 0);
  }
}

}  // namespace
}  // namespace reedid::test
