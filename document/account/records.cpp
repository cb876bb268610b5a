#include "document/account/records.h"

#include <algorithm>
#include <cstring>

namespace reedid::document {
namespace {

struct Counted {
  std::string_view array;
  std::string_view count;  // where the record has such a field
};

constexpr Counted kCounted[] = {
    {"vics", "vicCount"},
    {"hdmiVics", "hdmiVicLen"},
    {"sads", "sadCount"},
    {"entries", "entryCount"},
    {"entries", "count"},
    {"formats", "count"},
    {"references", "count"},
    {"header", "headerLength"},
    {"payload", "payloadLength"},
    {"flags", "flagCount"},
    {"ranges", "count"},
    {"additional", "additionalCount"},
    {"primaries", "primaryCount"},
    {"whites", "whiteCount"},
    {"parameters", "parameterCount"},
    {"codes", "codeLength"},
    {"curves", "length"},
    {"data", "length"},
    {"name", "length"},
    {"samples", "count"},
    {"points", "pointCount"},
};

size_t SizeOf(const FieldInfo& field) {
  if (field.record != nullptr) return field.record->size;
  if (field.type == NumberType::kU32) return 4;
  return field.type == NumberType::kU16 || field.type == NumberType::kI16 ? 2 : 1;
}

template <class Number>
int64_t Read(const uint8_t* at) {
  Number number;
  std::memcpy(&number, at, sizeof number);
  return number;
}

template <class Number>
void Write(int64_t value, uint8_t* at) {
  const auto number = static_cast<Number>(value);
  std::memcpy(at, &number, sizeof number);
}

template <class JsonObject>
void WriteFields(const RecordInfo& info, const void* record, JsonObject& json) {
  json = JsonObject::object();
  for (const FieldInfo& field : info.fields) {
    const auto* at = static_cast<const char*>(record) + field.offset;
    JsonObject& value = json[field.name];
    if (field.type == NumberType::kChar) {
      value = std::string(at, strnlen(at, field.length));
      continue;
    }
    if (field.length != 0) value = JsonObject::array();
    for (size_t i = 0; i < UsedLength(info, field, record); ++i) {
      JsonObject item;
      if (field.record != nullptr) {
        WriteFields(*field.record, at + i * SizeOf(field), item);
      } else {
        item = NumberAt(field, record, i);
      }
      field.length == 0 ? value = std::move(item) : value.emplace_back(std::move(item));
    }
  }
}

}  // namespace

const FieldInfo* RecordInfo::Find(std::string_view field) const {
  const auto it = std::ranges::find_if(fields, [&](const FieldInfo& info) { return info.name == field; });
  return it == fields.end() ? nullptr : &*it;
}

const FieldInfo* RecordInfo::CountOf(const FieldInfo& array) const {
  for (const Counted& counted : kCounted) {
    const FieldInfo* count = counted.array == array.name ? Find(counted.count) : nullptr;
    if (count != nullptr) return count;
  }
  return nullptr;
}

int64_t NumberAt(const FieldInfo& field, const void* record, size_t index) {
  const uint8_t* at = static_cast<const uint8_t*>(record) + field.offset + index * SizeOf(field);
  switch (field.type) {
    case NumberType::kU16:
      return Read<uint16_t>(at);
    case NumberType::kU32:
      return Read<uint32_t>(at);
    case NumberType::kI8:
      return Read<int8_t>(at);
    case NumberType::kI16:
      return Read<int16_t>(at);
    default:
      return Read<uint8_t>(at);
  }
}

void SetNumber(const FieldInfo& field, void* record, size_t index, int64_t value) {
  uint8_t* at = static_cast<uint8_t*>(record) + field.offset + index * SizeOf(field);
  switch (field.type) {
    case NumberType::kU16:
    case NumberType::kI16:
      return Write<uint16_t>(value, at);
    case NumberType::kU32:
      return Write<uint32_t>(value, at);
    default:
      return Write<uint8_t>(value, at);
  }
}

size_t UsedLength(const RecordInfo& info, const FieldInfo& field, const void* record) {
  if (field.length == 0) return 1;
  const FieldInfo* count = info.CountOf(field);
  return count == nullptr ? field.length : std::min(field.length, static_cast<size_t>(NumberAt(*count, record)));
}

void WriteJson(const RecordInfo& info, const void* record, nlohmann::json& json) {
  WriteFields(info, record, json);
}

void WriteJson(const RecordInfo& info, const void* record, nlohmann::ordered_json& json) {
  WriteFields(info, record, json);
}

}  // namespace reedid::document
