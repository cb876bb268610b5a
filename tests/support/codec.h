// The checks that a row of a codec's test asks for. Records are JSON; a null one stands for a null pointer.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <sstream>

#include "tests/support/codecs.h"
#include "tests/support/log_capture.h"
#include "tests/support/record_text.h"

namespace reedid::test {

constexpr int32_t kTouched = -2;  // no result of the library: a refused record, or what is behind one, was written

template <class Entry>
int32_t Get(const Codec<Entry>& codec, const Entry* entry, Json* json) {
  if (json == nullptr) return codec.get(entry, nullptr);
  const ByteVector before(codec.boxSize, 0xEE);
  ByteVector box = before;
  const int32_t result = codec.get(entry, box.data());
  const size_t used = result == 0 ? codec.used(box.data()) : 0;
  if (!std::equal(box.begin() + static_cast<std::ptrdiff_t>(used), box.end(), before.begin())) return kTouched;
  if (result == 0) codec.toJson(box.data(), *json);
  return result;
}

template <class Entry>
int32_t Set(const Codec<Entry>& codec, const Json* json, Entry* entry) {
  if (json == nullptr) return codec.set(nullptr, entry);
  ByteVector box(codec.boxSize);
  codec.fromJson(*json, box.data());
  return codec.set(box.data(), entry);
}

// What a codec calls itself in the log: a form that both versions of DisplayID share leaves out their prefix.
template <class Entry>
std::string LogName(const Codec<Entry>& codec, const std::string& exported) {
  return codec.shared ? exported.substr(exported.find('_') + 1) : exported;
}

// What the lines of `messages`, parted by '|', are when `name` prints them; a '?' marks a warning.
inline std::string Lines(const std::string& name, const std::string& messages) {
  std::string log;
  for (size_t at = 0; at < messages.size();) {
    const size_t end = std::min(messages.find('|', at), messages.size());
    const bool warning = messages[at] == '?';
    log += warning ? Warn(name, messages.substr(at + 1, end - at - 1)) : Err(name, messages.substr(at, end - at));
    at = end + 1;
  }
  return log;
}

struct ReadRow {
  std::string codec;
  std::string payload;
  std::string record;
  std::optional<std::string> again = std::nullopt;  // the payload written back, when it differs
};

// Reads a block of exactly these bytes and writes the record back.
template <class Entry>
void CheckReadBlock(const Codec<Entry>& codec, const ByteVector& block, const std::string& text,
                    const ByteVector& again) {
  const Held<Entry> entry(block);
  Json record;
  ASSERT_EQ(Get<Entry>(codec, &entry, &record), 0);
  EXPECT_EQ(ToText(record), ToText(FromText(text)));
  Blank<Entry> target(block.size());
  target.KeepHeader(entry);
  Quietly([&] { ASSERT_EQ(Set<Entry>(codec, &record, &target), 0); });
  EXPECT_EQ(target.Written(), again);
  EXPECT_TRUE(target.IsKind(entry)) << "the entry's own fields";
}

template <class Entry>
void CheckRead(const ReadRow& row) {
  const Codec<Entry>& codec = CodecOf<Entry>(row.codec);
  SCOPED_TRACE(row.codec + " " + row.payload);
  const ByteVector block = BlockOf(codec, Hex(row.payload));
  CheckReadBlock(codec, block, row.record, row.again ? BlockOf(codec, Hex(*row.again)) : block);
}

struct WriteRow {
  std::string codec;
  std::string record;
  std::optional<std::string> payload;  // none: refused, and nothing is written
  std::string messages = "";           // a '!' in front: refused half way
};
constexpr std::nullopt_t kRefused = std::nullopt;

template <class Entry>
void CheckWrite(const WriteRow& row) {
  const Codec<Entry>& codec = CodecOf<Entry>(row.codec);
  SCOPED_TRACE(row.codec + " " + row.record);
  const bool half = row.messages.rfind('!', 0) == 0;
  const ByteVector block = row.payload ? BlockOf(codec, Hex(*row.payload)) : ByteVector(251);
  Blank<Entry> target(block.size(), codec.head.empty() ? uint8_t{0} : codec.head[0]);
  const Json record = FromText(row.record);
  int32_t result = 0;
  EXPECT_EQ(LogOf([&] { result = Set<Entry>(codec, &record, &target); }),
            Lines(LogName(codec, codec.setter), row.messages.substr(half)));
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
struct BitsRow {
  std::string codec;
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
void CheckBits(const BitsRow& row) {
  const Codec<Entry>& codec = CodecOf<Entry>(row.codec);
  const ByteVector base = Hex(row.payload);
  const Held<Entry> baseEntry(BlockOf(codec, base));
  Json baseRecord;
  ASSERT_EQ(Get<Entry>(codec, &baseEntry, &baseRecord), 0) << row.codec;
  const std::vector<Meaning> meanings = MeaningsOf(row.prefix, row.meanings);
  EXPECT_EQ(meanings.size(), 8 * (base.size() - row.from)) << row.codec << ": bits without a meaning";
  for (size_t bit = 0; bit < meanings.size(); ++bit) {
    if (meanings[bit].name == "?") continue;
    SCOPED_TRACE(row.codec + " bit " + std::to_string(bit) + " " + meanings[bit].name);
    ByteVector payload = base;
    uint8_t& byte = payload.at(row.from + bit / 8);
    byte = static_cast<uint8_t>(byte ^ 1u << bit % 8);
    const ByteVector block = BlockOf(codec, payload);
    const Held<Entry> entry(block);
    Json record;
    ASSERT_EQ(Get<Entry>(codec, &entry, &record), 0);
    const Meaning difference = Difference(baseRecord, record);
    EXPECT_EQ(difference.name, meanings[bit].name);
    EXPECT_EQ(difference.weight, meanings[bit].weight);
    Blank<Entry> target(block.size());
    target.KeepHeader(entry);
    Quietly([&] { EXPECT_EQ(Set<Entry>(codec, &record, &target), 0); });
    EXPECT_EQ(target.Written() == block, meanings[bit].name != "-");
  }
}

// The numbers that a setter takes: "name min max, ..." of a record that it takes otherwise.
struct LimitsRow {
  std::string codec;
  const char* record;
  const char* limits;
};

template <class Entry>
void CheckLimits(const LimitsRow& row) {
  const Codec<Entry>& codec = CodecOf<Entry>(row.codec);
  std::istringstream words(row.limits);
  std::string name;
  for (int64_t min = 0, max = 0; words >> name >> min >> max;) {
    for (const int64_t value : {min - 1, min, max, max + 1}) {
      if (value == 0x10000) continue;  // no record can hold it
      SCOPED_TRACE(row.codec + " " + name + " " + std::to_string(value));
      Json record = FromText(row.record);
      record[name] = value;
      Blank<Entry> target(64, codec.head.empty() ? uint8_t{0} : codec.head[0]);
      const bool fits = value >= min && value <= max;
      const std::string log = LogOf([&] { EXPECT_EQ(Set<Entry>(codec, &record, &target), fits ? 0 : -1); });
      EXPECT_EQ(log.rfind("[ERR:" + LogName(codec, codec.setter) + "]: invalid timing", 0), fits ? log.npos : 0);
    }
  }
}

// Blocks of every size and of several contents: a refusal is one line and changes nothing.
template <class Entry>
void CheckSizes(const Codec<Entry>& codec, const ByteVector& fills) {
  for (const uint8_t fill : fills) {
    std::vector<int32_t> results, expected;
    const std::string log = LogOf([&] {
      for (unsigned size = 0; size <= 255; ++size) {
        ByteVector block = codec.head;
        block.resize(size, fill);
        Held<Entry> entry(block);
        entry.SetKind(codec.head, fill);
        Json record;
        results.push_back(Get<Entry>(codec, &entry, &record));
        expected.push_back(Takes(codec, size) ? 0 : -1);
      }
    });
    EXPECT_EQ(results, expected) << codec.name << " fill " << int{fill};
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), std::count(expected.begin(), expected.end(), -1)) << log;
  }
}

// Under the exported name for what is found before the kind of block is known to be right.
template <class Entry>
void CheckRefusals(const Codec<Entry>& codec) {
  SCOPED_TRACE(codec.name);
  ByteVector block = codec.head;
  block.resize(codec.minSize);
  Held<Entry> good(block), noBytes(block), otherTag(block), otherExtTag(block);
  for (Held<Entry>* entry : {&good, &noBytes, &otherTag, &otherExtTag}) entry->SetKind(codec.head, 0);
  noBytes.bytes = nullptr;
  otherTag.tag ^= 0x50;
  Json record = Json::object();
  const auto refuses = [](const std::string& name, const std::function<int32_t()>& call) {
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(call(), -1); }), Err(name, "invalid parameters"));
  };
  const std::string getter = LogName(codec, codec.getter), setter = LogName(codec, codec.setter);
  refuses(codec.getter, [&] { return Get<Entry>(codec, nullptr, &record); });
  refuses(codec.getter, [&] { return Get<Entry>(codec, &otherTag, &record); });
  refuses(getter, [&] { return Get<Entry>(codec, &good, nullptr); });
  refuses(getter, [&] { return Get<Entry>(codec, &noBytes, &record); });
  if constexpr (requires { otherExtTag.extTag; }) {
    otherExtTag.extTag ^= 0x50;
    if (otherExtTag.tag == 7) refuses(codec.getter, [&] { return Get<Entry>(codec, &otherExtTag, &record); });
  }
  Blank<Entry> target(40, codec.head[0]);
  Entry noRoom = target;
  noRoom.bytes = nullptr;
  refuses(setter, [&] { return Set<Entry>(codec, nullptr, &target); });
  refuses(setter, [&] { return Set<Entry>(codec, &record, nullptr); });
  refuses(setter, [&] { return Set<Entry>(codec, &record, &noRoom); });
  EXPECT_TRUE(target.Untouched());
}

}  // namespace reedid::test
