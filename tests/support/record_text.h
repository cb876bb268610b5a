// The library's records as text, so that a test's expectation is one string: the fields that are not 0, in the order of
// their names, a 1 without its value. "BT2020RGB metadataProfiles=5", "nativeVic=16 vics=16,31", "timing/hactive=1920".
#pragma once

#include <string>
#include <type_traits>

#include "document/account/records.h"
#include "document/json.h"

namespace reedid::test {

using Json = nlohmann::json;

// The way back from the JSON that the list of records gives. A field that is not named stays.
void FromJson(const Json& json, const document::RecordInfo& info, void* record);

template <document::Listed Record>
void FromJson(const Json& json, Record& record) {
  FromJson(json, document::kRecordInfo<Record>, &record);
}

template <class T>
void Assign(const Json& json, T& field) {
  if (json.is_null()) return;
  if constexpr (std::is_array_v<T>) {
    for (size_t i = 0; i < json.size() && i < std::size(field); ++i) Assign(json[i], field[i]);
  } else if constexpr (std::is_class_v<T>) {
    FromJson(json, field);
  } else {
    if (json.is_primitive()) field = static_cast<T>(json.get<int64_t>());
  }
}

std::string ToText(const Json& record);
Json FromText(const std::string& text);

}  // namespace reedid::test
