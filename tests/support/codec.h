// One description for the codecs of all blocks, and the checks that a row of a table asks for. A getter gives its
// record as JSON and a setter takes it; a null record stands for a null pointer.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <sstream>

#include "tests/support/data_block.h"
#include "tests/support/log_capture.h"
#include "tests/support/record_text.h"

namespace reedid::test {

template <class Entry>
struct Codec {
  const char* getter;  // as they call themselves in the log
  const char* setter;
  const char* head;  // bytes that tell the kind of block; of a CTA block its OUI too
  int32_t (*get)(const Entry*, Json*);
  int32_t (*set)(const Json*, Entry*);
  unsigned minSize = 0, maxSize = 0;  // that the getter takes
};

constexpr int32_t kTouched = -2;  // no result of the library: a refused record, or what is behind one, was written

template <class Record, auto Get, class Entry>
int32_t GetRecord(const Entry* entry, Json* json) {
  struct {
    Record record;
    uint8_t behind[64];
  } room;
  std::memset(static_cast<void*>(&room), 0xEE, sizeof room);
  const int32_t result = Get(entry, json == nullptr ? nullptr : &room.record);
  const auto* bytes = reinterpret_cast<const uint8_t*>(&room);
  const auto isUntouched = [](uint8_t byte) { return byte == 0xEE; };
  const auto* from = result != 0 ? bytes : room.behind;
  if (!std::all_of(from, bytes + sizeof room, isUntouched)) return kTouched;
  if (result == 0 && json != nullptr) *json = room.record;
  return result;
}

template <class Record, auto Set, class Entry>
int32_t SetRecord(const Json* json, Entry* entry) {
  Record record;
  std::memset(static_cast<void*>(&record), 0, sizeof record);
  if (json != nullptr) Assign(*json, record);
  return Set(json == nullptr ? nullptr : &record, entry);
}

// Several records, as an array; a single one without it.
template <class Record>
std::vector<Record> RecordsOf(const Json& json) {
  std::vector<Record> records;
  records.reserve(1);  // not even an empty list is a null pointer
  records.resize(json.is_array() ? json.size() : 1);
  for (size_t i = 0; i < records.size(); ++i) Assign(json.is_array() ? json[i] : json, records[i]);
  return records;
}

// Into an array of exactly `count` records.
template <class Record, class Get>
int32_t GetRecords(size_t count, Json* json, Get get) {
  const ExactBytes room(ByteVector(std::max<size_t>(count, 1) * sizeof(Record), 0xEE));
  auto* records = reinterpret_cast<Record*>(room.data());
  const int32_t result = get(json == nullptr ? nullptr : records);
  if (result != 0 || json == nullptr) return result;
  *json = Json::array();
  for (size_t i = 0; i < count; ++i) json->push_back(records[i]);
  if (count == 1) *json = Json((*json)[0]);
  return result;
}

template <class Record, auto Set, class Entry>
int32_t SetRecords(const Json* json, Entry* entry) {
  if (json == nullptr) return Set(nullptr, 1, entry);
  const auto records = RecordsOf<Record>(*json);
  return Set(records.data(), static_cast<uint32_t>(records.size()), entry);
}

// Timing codes, with a buffer for as many as a count can tell.
template <auto Get, class Entry>
int32_t GetCodes(const Entry* entry, Json* json) {
  const ExactBytes codes(ByteVector(entry == nullptr ? 0 : std::max(entry->size, uint8_t{3}) - 3u));
  TimingCodeRecord record = {7, 0xA5, 7, 7, codes.data()};
  const int32_t result = Get(entry, json == nullptr ? nullptr : &record, 1000);
  if (result == 0 && json != nullptr) *json = record;
  return result;
}

template <auto Set, class Entry>
int32_t SetCodes(const Json* json, Entry* entry) {
  ByteVector codes(255);
  TimingCodeRecord record = {0, 0, 0, 0, codes.data()};
  if (json != nullptr) {
    const ByteVector given = json->value("codes", ByteVector());
    std::copy(given.begin(), given.end(), codes.begin());
    record.codeType = json->value("codeType", uint8_t{0});
    record.reserved = json->value("reserved", uint8_t{0});
    record.twoByteCodes = json->value("twoByteCodes", uint8_t{0});
    record.codeCount = json->value("codeCount", uint8_t{0});
  }
  return Set(json == nullptr ? nullptr : &record, entry);
}

// Text, into exactly the room that it and its end need.
template <auto Get, class Entry>
int32_t GetText(const Entry* entry, Json* json) {
  uint32_t room = 14;
  if constexpr (requires { entry->size; }) room = entry == nullptr ? 1 : std::max(entry->size, uint8_t{3}) - 2u;
  const ExactBytes text(ByteVector(room, 0xEE));
  auto* chars = reinterpret_cast<char*>(text.data());
  const int32_t result = Get(entry, json == nullptr ? nullptr : chars, room);
  if (result == 0 && json != nullptr) *json = {{"text", std::string(chars)}};
  return result;
}

template <auto Set, class Entry>
int32_t SetText(const Json* json, Entry* entry) {
  return Set(json == nullptr ? nullptr : json->value("text", std::string()).c_str(), entry);
}

// The whole block: the codec's head, the length in its place, and `payload`.
inline ByteVector BlockOf(const Codec<CeaDataBlock>& codec, const ByteVector& payload) {
  ByteVector block = Concat({Hex(codec.head), payload});
  block[0] = static_cast<uint8_t>(block[0] | (block.size() - 1));
  return block;
}

inline ByteVector BlockOf(const Codec<DispIdDataBlock>& codec, const ByteVector& payload) {  // revision and flags first
  const ByteVector rest(payload.begin() + 1, payload.end());
  return Concat({Hex(codec.head), {payload[0], static_cast<uint8_t>(rest.size())}, rest});
}

inline ByteVector BlockOf(const Codec<DtdSlot>& codec, const ByteVector& payload) {
  ByteVector block = Concat({Hex(codec.head), payload});
  block.resize(18);
  return block;
}

template <class Entry>
uint8_t FirstByte(const Codec<Entry>& codec) {
  return Hex(codec.head + std::string(" 00"))[0];  // a timing's head is empty
}

// What the lines of `messages`, parted by '|', are when `name` prints them; a '?' marks a warning.
inline std::string Lines(const char* name, const std::string& messages) {
  std::string log;
  for (size_t at = 0; at < messages.size();) {
    const size_t end = std::min(messages.find('|', at), messages.size());
    const bool warning = messages[at] == '?';
    log += warning ? Warn(name, messages.substr(at + 1, end - at - 1)) : Err(name, messages.substr(at, end - at));
    at = end + 1;
  }
  return log;
}

template <class Entry>
struct ReadRow {
  const Codec<Entry>& codec;
  std::string payload;
  std::string record;
  std::optional<std::string> again = std::nullopt;  // the payload written back, when it differs
};

// Reads a block of exactly these bytes and writes the record back.
template <class Entry>
void CheckRead(const ReadRow<Entry>& row) {
  SCOPED_TRACE(std::string(row.codec.getter) + " " + row.payload);
  const ByteVector block = BlockOf(row.codec, Hex(row.payload));
  const Held<Entry> entry(block);
  Json record;
  ASSERT_EQ(row.codec.get(&entry, &record), 0);
  EXPECT_EQ(ToText(record), ToText(FromText(row.record)));
  Blank<Entry> target(block.size());
  target.KeepHeader(entry);
  Quietly([&] { ASSERT_EQ(row.codec.set(&record, &target), 0); });
  EXPECT_EQ(target.Written(), row.again ? BlockOf(row.codec, Hex(*row.again)) : block);
  EXPECT_TRUE(target.IsKind(entry)) << "the entry's own fields";
}

template <class Entry>
struct WriteRow {
  const Codec<Entry>& codec;
  std::string record;
  std::optional<std::string> payload;  // none: refused, and nothing is written
  std::string messages = "";           // a '!' in front: refused half way
};
constexpr std::nullopt_t kRefused = std::nullopt;

template <class Entry>
void CheckWrite(const WriteRow<Entry>& row) {
  SCOPED_TRACE(std::string(row.codec.setter) + " " + row.record);
  const bool half = row.messages.rfind('!', 0) == 0;
  const ByteVector block = row.payload ? BlockOf(row.codec, Hex(*row.payload)) : ByteVector(251);
  Blank<Entry> target(block.size(), FirstByte(row.codec));
  const Json record = FromText(row.record);
  int32_t result = 0;
  EXPECT_EQ(LogOf([&] { result = row.codec.set(&record, &target); }),
            Lines(row.codec.setter, row.messages.substr(half)));
  EXPECT_EQ(result, half || !row.payload ? -1 : 0);
  if (row.payload) {
    EXPECT_EQ(target.Written(), block);
  } else {
    EXPECT_TRUE(target.Untouched());
  }
}

// What each bit of a block means. `meanings` names a field for each bit from byte `from` of the payload on, lowest bit
// first: "name", "name:4" for its four lowest bits, "name:2@8" for two bits from 256 on, "name:7*10" in units of 10,
// "name/#:3" for three flags of an array; "-" for a bit that is neither read nor written, "?" for one that is left out
// here. `prefix` stands in front of each name.
template <class Entry>
struct BitsRow {
  const Codec<Entry>& codec;
  const char* payload;
  unsigned from;
  const char* prefix;
  std::string meanings;
};

struct Meaning {
  std::string name;
  int64_t weight;
};
std::vector<Meaning> MeaningsOf(const std::string& prefix, const std::string& text);
// How a record differs from another, as one meaning; its name is "?" when that is not just one number.
Meaning Difference(const Json& from, const Json& to);

template <class Entry>
void CheckBits(const BitsRow<Entry>& row) {
  const ByteVector base = Hex(row.payload);
  const Held<Entry> baseEntry(BlockOf(row.codec, base));
  Json baseRecord;
  ASSERT_EQ(row.codec.get(&baseEntry, &baseRecord), 0) << row.codec.getter;
  const std::vector<Meaning> meanings = MeaningsOf(row.prefix, row.meanings);
  EXPECT_EQ(meanings.size(), 8 * (base.size() - row.from)) << row.codec.getter << ": bits without a meaning";
  for (size_t bit = 0; bit < meanings.size(); ++bit) {
    if (meanings[bit].name == "?") continue;
    SCOPED_TRACE(std::string(row.codec.getter) + " bit " + std::to_string(bit) + " " + meanings[bit].name);
    ByteVector payload = base;
    uint8_t& byte = payload.at(row.from + bit / 8);
    byte = static_cast<uint8_t>(byte ^ 1u << bit % 8);
    const ByteVector block = BlockOf(row.codec, payload);
    const Held<Entry> entry(block);
    Json record;
    ASSERT_EQ(row.codec.get(&entry, &record), 0);
    const Meaning difference = Difference(baseRecord, record);
    EXPECT_EQ(difference.name, meanings[bit].name);
    EXPECT_EQ(difference.weight, meanings[bit].weight);
    Blank<Entry> target(block.size());
    target.KeepHeader(entry);
    Quietly([&] { EXPECT_EQ(row.codec.set(&record, &target), 0); });
    EXPECT_EQ(target.Written() == block, meanings[bit].name != "-");
  }
}

// The numbers that a setter takes: "name min max, ..." of a record that it takes otherwise.
template <class Entry>
struct LimitsRow {
  const Codec<Entry>& codec;
  const char* record;
  const char* limits;
};

template <class Entry>
void CheckLimits(const LimitsRow<Entry>& row) {
  std::istringstream words(row.limits);
  std::string name;
  for (int64_t min = 0, max = 0; words >> name >> min >> max;) {
    for (const int64_t value : {min - 1, min, max, max + 1}) {
      if (value == 0x10000) continue;  // no record can hold it
      SCOPED_TRACE(std::string(row.codec.setter) + " " + name + " " + std::to_string(value));
      Json record = FromText(row.record);
      record[name] = value;
      Blank<Entry> target(64, FirstByte(row.codec));
      const bool fits = value >= min && value <= max;
      const std::string log = LogOf([&] { EXPECT_EQ(row.codec.set(&record, &target), fits ? 0 : -1); });
      EXPECT_EQ(log.rfind("[ERR:" + std::string(row.codec.setter) + "]: invalid timing", 0), fits ? log.npos : 0);
    }
  }
}

// Blocks of every size and of several contents, then wrong arguments: a refusal is one line and changes nothing.
template <class Entry>
void CheckSizes(const Codec<Entry>& codec, const ByteVector& fills) {
  const ByteVector head = Hex(codec.head);
  for (const uint8_t fill : fills) {
    for (unsigned size = 0; size <= 255; ++size) {
      SCOPED_TRACE(testing::Message() << codec.getter << " size " << size << " fill " << int{fill});
      ByteVector block = head;
      block.resize(size, fill);
      Held<Entry> entry(block);
      entry.SetKind(head, fill);
      const bool fits = size >= codec.minSize && size <= codec.maxSize;
      int32_t result = 0;
      Json record;
      const std::string log = LogOf([&] { result = codec.get(&entry, &record); });
      EXPECT_EQ(result, fits ? 0 : -1);
      EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), fits ? 0 : 1) << log;
    }
  }
}

// Under `getter` for what is found before the kind of block is known to be right, under the codec's name behind that.
template <class Entry>
void CheckRefusals(const Codec<Entry>& codec, const char* getter, const char* setter) {
  SCOPED_TRACE(getter);
  const ByteVector head = Hex(codec.head);
  ByteVector block = head;
  block.resize(codec.minSize);
  Held<Entry> good(block), noBytes(block), otherTag(block), otherExtTag(block);
  good.SetKind(head, 0);
  noBytes.SetKind(head, 0);
  noBytes.bytes = nullptr;
  otherTag.SetKind(head, 0);
  otherTag.tag ^= 0x50;
  Json record;
  const auto refuses = [](const char* name, const std::function<int32_t()>& call) {
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(call(), -1); }), Err(name, "invalid parameters"));
  };
  refuses(getter, [&] { return codec.get(nullptr, &record); });
  refuses(getter, [&] { return codec.get(&otherTag, &record); });
  refuses(codec.getter, [&] { return codec.get(&good, nullptr); });
  refuses(codec.getter, [&] { return codec.get(&noBytes, &record); });
  if constexpr (requires { otherExtTag.extTag; }) {
    otherExtTag.SetKind(head, 0);
    otherExtTag.extTag ^= 0x50;
    if (otherExtTag.tag == 7) refuses(getter, [&] { return codec.get(&otherExtTag, &record); });
  }
  record = Json::object();
  Blank<Entry> target(40, head[0]);
  Entry noRoom = target;
  noRoom.bytes = nullptr;
  refuses(setter, [&] { return codec.set(nullptr, &target); });
  refuses(setter, [&] { return codec.set(&record, nullptr); });
  refuses(setter, [&] { return codec.set(&record, &noRoom); });
  EXPECT_TRUE(target.Untouched());
}

}  // namespace reedid::test
