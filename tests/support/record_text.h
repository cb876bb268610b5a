// The library's records as text, so that a test's expectation is one string: the fields that are not 0, in the order of
// their names, a 1 without its value. "BT2020RGB metadataProfiles=5", "nativeVic=16 vics=16,31", "timing/hactive=1920".
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>

#include "reedid/reedid.h"

// Next to the way into JSON that the list of records gives, the way back. A field that is not named stays.
#define REEDID_FROM_JSON(field) \
  if (json.contains(#field)) reedid::test::Assign(json.at(#field), record.field);
#define REEDID_FIELDS_FROM_JSON(Type, ...)                                   \
  inline void FromJson(const nlohmann::json& json, Type& record) {           \
    NLOHMANN_JSON_EXPAND(NLOHMANN_JSON_PASTE(REEDID_FROM_JSON, __VA_ARGS__)) \
  }
#define REEDID_TO_JSON(Type, ...)                                            \
  REEDID_FIELDS_FROM_JSON(Type, __VA_ARGS__)                                 \
  template <class JsonObject>                                                \
  void to_json(JsonObject& nlohmann_json_j, const Type& nlohmann_json_t) {   \
    NLOHMANN_JSON_EXPAND(NLOHMANN_JSON_PASTE(NLOHMANN_JSON_TO, __VA_ARGS__)) \
  }

namespace reedid::test {

using Json = nlohmann::json;

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

#include "document/account/records.h"

REEDID_FIELDS_FROM_JSON(VdbRecord, nativeVic, vicCount, vics)
REEDID_FIELDS_FROM_JSON(Vic420Record, vicCount, vics)
// But for what their pointers point to.
REEDID_FIELDS_FROM_JSON(TimingCodeRecord, codeType, reserved, twoByteCodes, codeCount)
REEDID_FIELDS_FROM_JSON(ProductIdRecord, manufacturerId, productCode, serialNumber, week, year, nameLength)
