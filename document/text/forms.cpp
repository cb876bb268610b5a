// The two forms that nearly every kind has: the fields of one record, and a list of records.

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "document/printable.h"
#include "document/text/kinds.h"
#include "document/text/mode.h"

namespace reedid::document::text {
namespace {

constexpr size_t kMostRecords = 256;

size_t SizeOf(const Kind& kind) {
  return kind.record == nullptr ? 0 : kind.record->size;
}

// Any byte is a character of its own, so that each text comes back as it was.
std::string Utf8(const char* text) {
  std::string utf8;
  for (; *text != 0; ++text) {
    const auto byte = static_cast<uint8_t>(*text);
    if (byte < 0x80) {
      utf8 += *text;
    } else {
      utf8 += static_cast<char>(0xC0 | byte >> 6);
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

void TextFromJson(const Json& json, char* text, const Place& place) {
  const std::string utf8 = json.is_string() ? json.get<std::string>() : "";
  if (!json.is_string()) place.Fail(fmt::format("{} is no text", Shown(json)));
  size_t length = 0;
  for (std::string_view rest = utf8; !rest.empty() && length + 1 < kTailRoom;) {
    const auto [code, size] = FirstCharacter(rest);
    if (code == 0 || code > 0xFF)
      return place.Fail(fmt::format("{}: only ASCII is sure to be shown by a source", Shown(json)));
    text[length++] = static_cast<char>(code);
    rest.remove_prefix(size);
  }
}

Json TailToJson(const Kind& kind, const char* tail, const FieldInfo* count, const void* record) {
  if (kind.tail == Tail::kText) return Utf8(tail);
  Json codes = Json::array();
  for (int64_t i = 0; i < NumberAt(*count, record); ++i) codes.push_back(static_cast<uint8_t>(tail[i]));
  return codes;
}

void TailFromJson(const Kind& kind, const Json& json, char* tail, void* record, const Place& place) {
  if (kind.tail == Tail::kText) return TextFromJson(json, tail, place);
  if (!json.is_array() || json.size() >= kTailRoom)
    return place.Fail(fmt::format("{} is no list of codes", Shown(json)));
  for (size_t i = 0; i < json.size(); ++i) {
    const auto number = NumberOf(json[i]);
    if (!number || *number < 0 || *number > 255)
      place.At(i).Fail(fmt::format("{} is no code (0..255)", Shown(json[i])));
    tail[i] = static_cast<char>(number.value_or(0));
  }
  SetNumber(*kind.record->Find("codeCount"), record, 0, static_cast<int64_t>(json.size()));
}

// A length that follows from the tail.
std::string_view TailLength(const Kind& kind) {
  return kind.tail == Tail::kCodes ? "codeCount" : kind.tail == Tail::kText ? "nameLength" : "";
}

std::string LeftOf(const Kind& kind) {
  return fmt::format("{} {}", kind.left, TailLength(kind));
}

// Fills a box from the keys; the defaults stand for those that are left out.
void Fill(const Kind& kind, const Json& json, void* box, const Place& place) {
  Json keys = json;
  const bool hasTail = kind.tail != Tail::kNone && json.contains(kind.list);
  char* tail = static_cast<char*>(box) + SizeOf(kind);
  if (hasTail) keys.erase(kind.list);
  if (kind.record != nullptr) {
    const std::vector<std::string> known =
        kind.tail == Tail::kNone ? std::vector<std::string>() : std::vector<std::string>{kind.list};
    Problems none;
    FieldsFromJson(kind.defaults, *kind.record, box, "", {}, place.Quiet(none));
    FieldsFromJson(kind.record == &kRecordInfo<DtdTiming> ? WithMode(keys, place) : keys, *kind.record, box,
                   LeftOf(kind), known, place);
  } else {
    CheckKeys(keys, {kind.list}, place);
  }
  if (hasTail) TailFromJson(kind, json.at(kind.list), tail, box, place.Key(kind.list));
  const FieldInfo* length =
      kind.record != nullptr && kind.tail == Tail::kText ? kind.record->Find("nameLength") : nullptr;
  if (length != nullptr) SetNumber(*length, box, 0, static_cast<int64_t>(std::strlen(tail)));
}

size_t BoxSize(const Kind& kind) {
  return SizeOf(kind) + kTailRoom;
}

bool ReadRecord(const Kind& kind, Bytes bytes, const Context& context, Json& json) {
  Box box(BoxSize(kind));
  size_t count = 1;
  if (!kind.get(bytes, context, box.get(), count)) return false;
  json = kind.record == nullptr ? Json::object()
                                : FieldsToJson(*kind.record, box.get(), LeftOf(kind), context.all, kind.defaults);
  if (kind.tail == Tail::kNone) return true;
  const FieldInfo* length = kind.record == nullptr ? nullptr : kind.record->Find("codeCount");
  Json tail = TailToJson(kind, static_cast<const char*>(box.get()) + SizeOf(kind), length, box.get());
  if (context.all || !(tail.empty() || tail == "")) json[kind.list] = std::move(tail);
  return true;
}

// Names the key without which the codec would not refuse.
void Explain(const Json& json, const Place& place, const std::function<bool(const Json&)>& taken) {
  for (const auto& [key, value] : json.items()) {
    Json rest = json;
    rest.erase(key);
    if (taken(rest)) return place.Key(key).Fail(fmt::format("{} cannot stand here", Shown(value)));
  }
  if (json.contains("mode")) return place.Key("mode").Fail(fmt::format("{} cannot stand here", Shown(json["mode"])));
  place.Fail("these values cannot be written together");
}

void WriteRecord(const Kind& kind, const Json& json, const Context& context, const Place& place, ByteVector& bytes) {
  const size_t errors = place.problems().errors().size();
  Box box(BoxSize(kind)), again(BoxSize(kind));
  Fill(kind, json, box.get(), place);
  if (place.problems().errors().size() != errors) return;
  const ByteVector head = bytes.empty() ? kind.head : bytes;
  bytes = head;
  if (!kind.set(box.get(), 1, context, bytes)) {
    return Explain(json, place, [&](const Json& rest) {
      Problems none;
      Box other(BoxSize(kind));
      Fill(kind, rest, other.get(), place.Quiet(none));
      ByteVector trial = head;
      return !none.HasErrors() && kind.set(other.get(), 1, context, trial);
    });
  }
  size_t count = 1;
  if (!kind.get(bytes, context, again.get(), count)) return place.Fail("these values cannot be written together");
  if (kind.record != nullptr) CompareFields(json, *kind.record, box.get(), again.get(), LeftOf(kind), place);
  const char* wanted = static_cast<const char*>(box.get()) + SizeOf(kind);
  const char* got = static_cast<const char*>(again.get()) + SizeOf(kind);
  if (kind.tail != Tail::kNone && json.contains(kind.list) && std::memcmp(wanted, got, kTailRoom) != 0) {
    place.Key(kind.list).Fail(fmt::format("{} does not fit as it is", Shown(json[kind.list])));
  }
}

Json RecordSchema(const Kind& kind) {
  Json properties = kind.record == nullptr ? Json::object() : FieldsSchema(*kind.record, LeftOf(kind));
  if (kind.tail == Tail::kText) properties[kind.list] = {{"type", "string"}};
  if (kind.tail == Tail::kCodes) properties[kind.list] = {{"type", "array"}, {"items", {{"type", "integer"}}}};
  if (kind.record == &kRecordInfo<DtdTiming>) properties["mode"] = {{"type", "string"}};
  return properties;
}

void* ItemAt(const Kind& kind, Box& box, size_t index) {
  return static_cast<char*>(box.get()) + index * SizeOf(kind);
}

Box ListBox(const Kind& kind) {
  return Box(SizeOf(kind) * kMostRecords);
}

bool ReadList(const Kind& kind, Bytes bytes, const Context& context, Json& json) {
  Box box = ListBox(kind);
  size_t count = 0;
  if (!kind.get(bytes, context, box.get(), count)) return false;
  Json& items = json[kind.list] = Json::array();
  for (size_t i = 0; i < count; ++i) {
    items.push_back(FieldsToJson(*kind.record, ItemAt(kind, box, i), kind.left, context.all, kind.defaults));
  }
  return true;
}

void FillItem(const Kind& kind, const Json& json, void* item, const Place& place) {
  Problems none;
  FieldsFromJson(kind.defaults, *kind.record, item, "", {}, place.Quiet(none));
  FieldsFromJson(kind.record == &kRecordInfo<DtdTiming> ? WithMode(json, place) : json, *kind.record, item, kind.left,
                 {}, place);
}

bool SetAlone(const Kind& kind, const Json& json, const Context& context, const ByteVector& head, const Place& place) {
  Problems none;
  Box box(SizeOf(kind));
  FillItem(kind, json, box.get(), place.Quiet(none));
  ByteVector trial = head;
  return !none.HasErrors() && kind.set(box.get(), 1, context, trial);
}

void WriteList(const Kind& kind, const Json& json, const Context& context, const Place& place, ByteVector& bytes) {
  const size_t errors = place.problems().errors().size();
  const Place list = place.Key(kind.list);
  CheckKeys(json, {kind.list}, place);
  const Json items = json.value(kind.list, Json::array());
  if (!items.is_array() || items.size() >= kMostRecords) list.Fail(fmt::format("{} is no list", Shown(items)));
  if (place.problems().errors().size() != errors) return;
  Box box = ListBox(kind), again = ListBox(kind);
  for (size_t i = 0; i < items.size(); ++i) FillItem(kind, items[i], ItemAt(kind, box, i), list.At(i));
  if (place.problems().errors().size() != errors) return;
  const ByteVector head = bytes.empty() ? kind.head : bytes;
  bytes = head;
  if (!kind.set(box.get(), items.size(), context, bytes)) {
    for (size_t i = 0; i < items.size(); ++i) {
      if (SetAlone(kind, items[i], context, head, place)) continue;
      Explain(items[i], list.At(i), [&](const Json& rest) { return SetAlone(kind, rest, context, head, place); });
    }
    if (place.problems().errors().size() == errors) list.Fail(fmt::format("{} entries do not fit", items.size()));
    return;
  }
  size_t count = 0;
  if (!kind.get(bytes, context, again.get(), count) || count < items.size())
    return list.Fail("these values cannot be written together");
  for (size_t i = 0; i < items.size(); ++i) {
    CompareFields(items[i], *kind.record, ItemAt(kind, box, i), ItemAt(kind, again, i), kind.left, list.At(i));
  }
}

Json ListSchema(const Kind& kind) {
  Json properties = FieldsSchema(*kind.record, kind.left);
  if (kind.record == &kRecordInfo<DtdTiming>) properties["mode"] = {{"type", "string"}};
  return {{kind.list,
           {{"type", "array"},
            {"items", {{"type", "object"}, {"properties", std::move(properties)}, {"additionalProperties", false}}}}}};
}

}  // namespace

const Form kRecordForm = {ReadRecord, WriteRecord, RecordSchema};
const Form kListForm = {ReadList, WriteList, ListSchema};

}  // namespace reedid::document::text
