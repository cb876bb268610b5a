// Codecs of the library, whatever their record, as functions over bytes and a box.
#pragma once

#include <algorithm>
#include <type_traits>

#include "document/text/kinds.h"

namespace reedid::document::text {

template <class Entry>
Entry EntryOf(Bytes bytes) {
  auto* data = const_cast<uint8_t*>(bytes.data());  // getters only read
  const auto size = static_cast<uint8_t>(bytes.size());
  if constexpr (std::is_same_v<Entry, CeaDataBlock>) {
    const auto tag = static_cast<uint8_t>(bytes[0] >> 5);
    const uint8_t extTag = tag == CEA_TAG_EXTENDED && size > 1 ? bytes[1] : uint8_t{0};
    return {tag, extTag, size, data};
  } else if constexpr (std::is_same_v<Entry, DispIdDataBlock>) {
    return {bytes[0], static_cast<uint8_t>(bytes[1] & 7), static_cast<uint8_t>(bytes[1] >> 3), size, data};
  } else {
    DtdSlot slot = {bytes[0] != 0 || bytes[1] != 0 ? uint8_t{1} : bytes[3], {}};
    std::copy_n(data, sizeof slot.bytes, slot.bytes);
    return slot;
  }
}

// A buffer that every block of the family fits, for a setter to fill; what stands in `head` is there before.
template <class Entry>
class Target {
 public:
  explicit Target(const ByteVector& head) {
    std::ranges::copy(head, buffer_);
    if constexpr (std::is_same_v<Entry, DtdSlot>) {
      entry_ = {};
    } else {
      entry_ = EntryOf<Entry>({buffer_, sizeof buffer_});
    }
  }
  Entry* entry() { return &entry_; }
  void Take(ByteVector& bytes) const {
    if constexpr (std::is_same_v<Entry, DtdSlot>) {
      bytes.assign(std::begin(entry_.bytes), std::end(entry_.bytes));
    } else {
      bytes.assign(buffer_, buffer_ + entry_.size);
    }
  }

 private:
  uint8_t buffer_[256] = {};
  Entry entry_;
};

template <class Call>
struct GetterSignature;
template <class Entry, class Record, class... More>
struct GetterSignature<int32_t (*)(const Entry*, Record*, More...)> {
  using EntryType = Entry;
  using RecordType = Record;
};
template <class Call>
struct SetterSignature;
template <class Record, class Entry>
struct SetterSignature<int32_t (*)(const Record*, Entry*)> {
  using EntryType = Entry;
};
template <class Record, class Entry>
struct SetterSignature<int32_t (*)(const Record*, uint32_t, Entry*)> {
  using EntryType = Entry;
};

// A getter of one record or text.
template <auto kGet>
bool GetOne(Bytes bytes, const Context&, void* box, size_t& count) {
  using Call = GetterSignature<decltype(kGet)>;
  const auto entry = EntryOf<typename Call::EntryType>(bytes);
  auto* record = static_cast<typename Call::RecordType*>(box);
  count = 1;
  if constexpr (std::is_same_v<typename Call::RecordType, char>) {
    return kGet(&entry, record, kTailRoom) == 0;
  } else {
    return kGet(&entry, record) == 0;
  }
}

template <auto kSet>
bool SetOne(const void* box, size_t, const Context&, ByteVector& bytes) {
  Target<typename SetterSignature<decltype(kSet)>::EntryType> target(bytes);
  const auto set = [&]<class Record, class Entry>(int32_t (*call)(const Record*, Entry*)) {
    return call(static_cast<const Record*>(box), target.entry());
  };
  if (set(kSet) != 0) return false;
  target.Take(bytes);
  return true;
}

// A setter of several records.
template <auto kSet>
bool SetSeveral(const void* box, size_t count, const Context&, ByteVector& bytes) {
  Target<typename SetterSignature<decltype(kSet)>::EntryType> target(bytes);
  const auto set = [&]<class Record, class Entry>(int32_t (*call)(const Record*, uint32_t, Entry*)) {
    return call(static_cast<const Record*>(box), static_cast<uint32_t>(count), target.entry());
  };
  if (set(kSet) != 0) return false;
  target.Take(bytes);
  return true;
}

// A codec of one record.
template <class Record, auto kGet, auto kSet>
Kind RecordKind(const char* name, ByteVector head, const char* left = "", const char* defaults = "{}") {
  return {name,         std::move(head), &kRecordForm, &kRecordInfo<Record>, left,
          GetOne<kGet>, SetOne<kSet>,    "",           Tail::kNone,          Json::parse(defaults)};
}

// One of a text.
template <auto kGet, auto kSet>
Kind TextKind(const char* name, ByteVector head) {
  return {name, std::move(head), &kRecordForm, nullptr, "", GetOne<kGet>, SetOne<kSet>, "text", Tail::kText};
}

// A record whose codes stand in a buffer behind it.
template <auto kGet>
bool GetCodes(Bytes bytes, const Context&, void* box, size_t&) {
  const auto entry = EntryOf<typename GetterSignature<decltype(kGet)>::EntryType>(bytes);
  auto* record = static_cast<TimingCodeRecord*>(box);
  record->codes = reinterpret_cast<uint8_t*>(record + 1);
  int32_t result;
  if constexpr (requires { kGet(&entry, record); }) {
    result = kGet(&entry, record);
  } else {
    result = kGet(&entry, record, kTailRoom);
  }
  record->codes = nullptr;
  return result == 0;
}

template <auto kSet>
bool SetCodes(const void* box, size_t, const Context& context, ByteVector& bytes) {
  TimingCodeRecord record = *static_cast<const TimingCodeRecord*>(box);
  record.codes = const_cast<uint8_t*>(static_cast<const uint8_t*>(box) + sizeof record);  // setters only read
  return SetOne<kSet>(&record, 1, context, bytes);
}

template <auto kGet, auto kSet>
Kind CodesKind(const char* name, ByteVector head) {
  return {name,           std::move(head), &kRecordForm, &kRecordInfo<TimingCodeRecord>, "twoByteCodes", GetCodes<kGet>,
          SetCodes<kSet>, "codes",         Tail::kCodes};
}

}  // namespace reedid::document::text
