#include "tests/support/record_text.h"

#include <sstream>

namespace reedid::test {
namespace {

bool IsList(const Json& json) {
  return json.is_array() && (json.empty() || json[0].is_primitive());
}

// A value as it stands behind its name; empty when it is 0.
std::string ValueText(const Json& json) {
  if (json.is_string()) return json.get<std::string>();
  if (!json.is_array()) return json == 0 || json.is_null() ? "" : json.dump();
  size_t used = json.size();
  while (used > 0 && json[used - 1] == 0) --used;
  std::string text;
  for (size_t i = 0; i < used; ++i) text += json[i].dump() + ",";
  return text;
}

void Append(const Json& json, const std::string& name, std::string& text) {
  if (json.is_structured() && !IsList(json)) {
    for (const auto& [key, value] : json.items()) Append(value, name.empty() ? key : name + "/" + key, text);
    return;
  }
  const std::string value = ValueText(json);
  if (value.empty()) return;
  if (!text.empty()) text += ' ';
  text += name.empty() ? value : value == "1" ? name : name + "=" + value;
}

Json ParseValue(const std::string& text) {
  if (text.find(',') != std::string::npos) {
    Json list = Json::array();
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ',');) list.push_back(std::stoll(part, nullptr, 0));
    return list;
  }
  if (std::isdigit(static_cast<unsigned char>(text[0]))) return std::stoll(text, nullptr, 0);
  return text;
}

}  // namespace

void FromJson(const Json& json, const document::RecordInfo& info, void* record) {
  if (!json.is_object()) return;
  for (const document::FieldInfo& field : info.fields) {
    const Json value = json.value(field.name, Json());
    const Json items = value.is_array() ? value : value.is_null() ? Json::array() : Json::array({value});
    for (size_t i = 0; i < items.size() && i < std::max<size_t>(field.length, 1); ++i) {
      if (field.record != nullptr) {
        FromJson(items[i], *field.record, static_cast<char*>(record) + field.offset + i * field.record->size);
      } else if (items[i].is_primitive() && !items[i].is_null()) {
        SetNumber(field, record, i, items[i].get<int64_t>());
      }
    }
  }
}

std::string ToText(const Json& record) {
  std::string text;
  Append(record, "", text);
  return text;
}

Json FromText(const std::string& text) {
  Json record;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const size_t equals = word.find('=');
    if (word.find(',') < equals) return ParseValue(word);  // a list without a name
    const Json value = equals == std::string::npos ? Json(1) : ParseValue(word.substr(equals + 1));
    record[Json::json_pointer("/" + word.substr(0, equals))] = value;
  }
  return record.is_null() ? Json::object() : record;
}

}  // namespace reedid::test
