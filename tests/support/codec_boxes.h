// The boxes of the codec table: what a record is made of beyond its structure, and how its getter and setter take it.
#pragma once

#include <algorithm>
#include <cstring>

#include "tests/support/codecs.h"
#include "tests/support/record_text.h"

namespace reedid::test {

template <class Record>
struct Plain {
  template <auto Get, class Entry>
  static int32_t Read(const Entry* entry, Plain* box) {
    return Get(entry, box == nullptr ? nullptr : &box->record);
  }
  template <auto Set, class Entry>
  static int32_t Write(const Plain* box, Entry* entry) {
    return Set(box == nullptr ? nullptr : &box->record, entry);
  }
  size_t Used() const { return sizeof *this; }
  void To(Json& json) const { json = record; }
  void From(const Json& json) { Assign(json, record); }

  Record record;
};

// Short audio descriptors, each as its numbers in the order of the record: format, extended format, channels, seven
// rates, three depths, bit rate, the format's own.
struct Audio : Plain<AdbRecord> {
  void To(Json& json) const {
    json = Json::array();
    for (unsigned i = 0; i < record.sadCount; ++i) {
      const auto* numbers = reinterpret_cast<const uint8_t*>(&record.sads[i]);
      json.push_back(ByteVector(numbers, numbers + sizeof record.sads[i]));
    }
    if (record.sadCount == 1) json = Json(json[0]);
  }
  void From(const Json& json) {
    if (!json.is_array()) return;
    const bool single = json[0].is_number();
    record.sadCount = single ? uint8_t{1} : static_cast<uint8_t>(json.size());
    for (unsigned i = 0; i < record.sadCount && i < 10; ++i) {
      const ByteVector numbers = single ? json : json[i];
      std::memcpy(&record.sads[i], numbers.data(), numbers.size());
    }
  }
};

// Several items, as an array; a single one without it. `kFixed`: always so many, and the codec takes no number.
template <class Item, uint32_t kFixed = 0>
struct Items {
  template <auto Get, class Entry>
  static int32_t Read(const Entry* entry, Items* box) {
    Item* items = box == nullptr ? nullptr : box->items;
    const uint32_t count = kFixed != 0 ? kFixed : CountOf(entry);
    int32_t result;
    if constexpr (requires { Get(entry, items); }) {
      result = Get(entry, items);
    } else {
      result = Get(entry, items, count == 0 ? 0 : 255);  // as many as there are, however many are asked for
    }
    if (result == 0 && box != nullptr) box->count = count;
    return result;
  }
  template <auto Set, class Entry>
  static int32_t Write(const Items* box, Entry* entry) {
    const Item* items = box == nullptr ? nullptr : box->items;
    if constexpr (kFixed != 0) {
      return Set(items, entry);
    } else {
      return Set(items, box == nullptr ? 1 : box->count, entry);
    }
  }
  size_t Used() const { return offsetof(Items, items) + count * sizeof(Item); }
  void To(Json& json) const {
    json = Json::array();
    for (uint32_t i = 0; i < count; ++i) json.push_back(items[i]);
    if (count == 1) json = Json(json[0]);
  }
  void From(const Json& json) {
    count = json.is_array() ? static_cast<uint32_t>(json.size()) : 1;
    for (uint32_t i = 0; i < count; ++i) Assign(json.is_array() ? json[i] : json, items[i]);
  }

  uint32_t count;
  Item items[kFixed != 0 ? kFixed + 1 : 256];

 private:
  static uint32_t CountOf(const DispIdDataBlock* entry) {
    const bool counted = entry != nullptr && entry->bytes != nullptr && entry->size >= 3 && entry->size <= 251;
    return counted ? static_cast<uint32_t>(std::max(DispID_GetTimingCnt(entry), 0)) : 0;
  }
  static uint32_t CountOf(const CeaDataBlock* entry) {  // type X
    const bool counted = entry != nullptr && entry->bytes != nullptr && entry->size >= 9;
    return counted ? (entry->size - 3u) / (6 + (entry->bytes[2] >> 4 & 7u)) : 0;
  }
  static uint32_t CountOf(const DtdSlot*) { return kFixed; }
};

// A record that points to a buffer of the caller's. The pointer stays what it was in the box. A product without a name
// is set without a pointer.
template <class Record, auto kPointer, size_t kRoom>
struct Buffered {
  template <auto Get, class Entry>
  static int32_t Read(const Entry* entry, Buffered* box) {
    if (box == nullptr) return Call<Get>(entry, nullptr);
    Record copy = box->record;
    copy.*kPointer = box->buffer;
    const int32_t result = Call<Get>(entry, &copy);
    copy.*kPointer = box->record.*kPointer;
    box->record = copy;
    return result;
  }
  template <auto Set, class Entry>
  static int32_t Write(const Buffered* box, Entry* entry) {
    if (box == nullptr) return Set(nullptr, entry);
    Buffered copy = *box;
    const bool empty = std::all_of(copy.buffer, copy.buffer + kRoom, [](auto item) { return item == 0; });
    copy.record.*kPointer = empty && std::is_same_v<Record, ProductIdRecord> ? nullptr : copy.buffer;
    return Set(&copy.record, entry);
  }
  void To(Json& json) const {
    Buffered copy = *this;
    copy.record.*kPointer = copy.buffer;
    json = copy.record;
  }

  Record record;
  std::remove_pointer_t<std::remove_reference_t<decltype(record.*kPointer)>> buffer[kRoom];

 private:
  template <auto Get, class Entry>
  static int32_t Call(const Entry* entry, Record* into) {
    if constexpr (requires { Get(entry, into); }) {
      return Get(entry, into);
    } else {
      return Get(entry, into, 1000);  // more than there can be
    }
  }
};

struct Codes : Buffered<TimingCodeRecord, &TimingCodeRecord::codes, 256> {
  size_t Used() const { return offsetof(Codes, buffer) + record.codeCount; }
  void From(const Json& json) {
    Assign(json.value("codes", Json()), buffer);
    FromJson(json, record);
  }
};

struct Product : Buffered<ProductIdRecord, &ProductIdRecord::name, 256> {
  size_t Used() const { return offsetof(Product, buffer) + record.nameLength + 1; }
  void From(const Json& json) {
    json.value("name", std::string()).copy(buffer, sizeof buffer);
    record.year = 2000;
    FromJson(json, record);
  }
};

struct Text {
  template <auto Get, class Entry>
  static int32_t Read(const Entry* entry, Text* box) {
    uint32_t room = 14;  // exactly what the longest text and its end need
    if constexpr (requires { entry->size; }) room = entry == nullptr ? 1 : std::max(entry->size, uint8_t{3}) - 2u;
    const int32_t result = Get(entry, box == nullptr ? nullptr : box->text, room);
    if (result == 0 && box != nullptr) box->room = room;
    return result;
  }
  template <auto Set, class Entry>
  static int32_t Write(const Text* box, Entry* entry) {
    return Set(box == nullptr ? nullptr : box->text, entry);
  }
  size_t Used() const { return offsetof(Text, text) + room; }
  void To(Json& json) const { json = {{"text", std::string(text)}}; }
  void From(const Json& json) { json.value("text", std::string()).copy(text, sizeof text - 1); }

  uint32_t room;
  char text[260];
};

// CTA data blocks, each as its bytes; one that is cut short is filled up when it is written, and must be the last.
struct InnerBlocks {
  template <auto Get>
  static int32_t Read(const DispIdDataBlock* entry, InnerBlocks* box) {
    CeaDataBlock blocks[248];
    const int32_t result = Get(entry, box == nullptr ? nullptr : blocks, 248);
    if (result != 0) return result;
    box->count = static_cast<uint32_t>(DispID20_GetCtaCnt(entry));
    uint8_t* to = std::fill_n(box->bytes, sizeof box->bytes, uint8_t{0}) - sizeof box->bytes;
    for (uint32_t i = 0; i < box->count; to += box->sizes[i++]) {
      box->sizes[i] = blocks[i].size;
      std::copy_n(blocks[i].bytes, blocks[i].size, to);
    }
    return 0;
  }
  template <auto Set>
  static int32_t Write(const InnerBlocks* box, DispIdDataBlock* entry) {
    if (box == nullptr) return Set(nullptr, 0, entry);
    InnerBlocks copy = *box;
    CeaDataBlock blocks[248];
    uint8_t* from = copy.bytes;
    for (uint32_t i = 0; i < copy.count; from += copy.sizes[i++]) {
      blocks[i] = {static_cast<uint8_t>(from[0] >> 5), from[1], copy.sizes[i], from};
    }
    return Set(blocks, copy.count, entry);
  }
  size_t Used() const { return offsetof(InnerBlocks, sizes) + count; }
  void To(Json& json) const {
    json = Json::array();
    const uint8_t* from = bytes;
    for (uint32_t i = 0; i < count; from += sizes[i++]) json.push_back(ByteVector(from, from + sizes[i]));
  }
  void From(const Json& json) {
    uint8_t* to = bytes;
    count = static_cast<uint32_t>(json.size());
    for (uint32_t i = 0; i < count; to += sizes[i++]) {
      const ByteVector block = json[i];
      sizes[i] = static_cast<uint8_t>(block.size());
      std::copy(block.begin(), block.end(), to);
    }
  }

  uint32_t count;
  uint8_t bytes[256];
  uint8_t sizes[248];
};

// A row of the table.
template <class Box, auto Get, auto Set, class Entry>
Codec<Entry> Row(Codec<Entry> codec) {
  codec.boxSize = sizeof(Box);
  codec.get = [](const Entry* entry, void* box) { return Box::template Read<Get>(entry, static_cast<Box*>(box)); };
  codec.set = [](const void* box, Entry* e) { return Box::template Write<Set>(static_cast<const Box*>(box), e); };
  codec.used = [](const void* box) { return static_cast<const Box*>(box)->Used(); };
  codec.toJson = [](const void* box, Json& json) { static_cast<const Box*>(box)->To(json); };
  codec.fromJson = [](const Json& json, void* box) { static_cast<Box*>(box)->From(json); };
  return codec;
}

}  // namespace reedid::test
