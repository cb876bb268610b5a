#include "document/account/tree_json.h"

#include <utility>

#include "document/account/records.h"

namespace reedid::document {
namespace {

constexpr const char* kKindNames[] = {"detailed", "vic", "vic420", "formula", "other"};

// A name that stands more than once becomes an array of its values.
void AddJson(const std::string& name, const std::string& value, Json& json) {
  if (!json.contains(name)) {
    json[name] = value;
    return;
  }
  Json& there = json[name];
  if (!there.is_array()) there = Json::array({there});
  there.push_back(value);
}

Json TextJson(const std::vector<Field>& fields) {
  Json json = Json::object();
  for (const Field& field : fields) {
    if (!field.value.empty()) AddJson(field.name, field.value, json);
  }
  return json;
}

Json BytesJson(const std::vector<Field>& fields) {
  Json json = Json::object();
  for (const Field& field : fields) {
    if (!field.bytes.empty()) AddJson(field.name, Hex(field.bytes), json);
  }
  return json;
}

// Those about the title's bytes have no field.
void AddRemarks(const std::vector<Remark>& remarks, const std::string& field, Json& node) {
  for (const Remark& remark : remarks) {
    Json json = {{"rule", remark.rule}, {"severity", remark.severity}, {"values", remark.text}};
    if (!field.empty()) json["field"] = field;
    node["findings"].push_back(std::move(json));
  }
}

}  // namespace

Json ItemJson(const TimingItem& item) {
  Json json = {{"kind", kKindNames[static_cast<size_t>(item.kind)]}};
  if (item.id != 0) json["id"] = item.id;
  if (item.ycc420) json["ycc420Only"] = true;
  json["refreshHz"] = RefreshRate(item.timing);
  json["timing"] = item.timing;
  return json;
}

Json ToJson(const Node& root, bool hex) {
  Json json = {{"title", root.title}};
  if (hex && !root.bytes.empty()) json["titleBytes"] = Hex(root.bytes);
  if (Json text = TextJson(root.fields); !text.empty()) json["text"] = std::move(text);
  if (Json bytes = BytesJson(root.fields); hex && !bytes.empty()) json["bytes"] = std::move(bytes);
  AddRemarks(root.remarks, "", json);
  for (const Field& field : root.fields) AddRemarks(field.remarks, field.name, json);
  if (!root.record.is_null()) json["record"] = root.record;
  for (const TimingItem& item : root.timings) json["timings"].push_back(ItemJson(item));
  for (const Node& child : root.children) json["parts"].push_back(ToJson(child, hex));
  return json;
}

std::string JsonText(const Json& json) {
  return json.dump(2, ' ', true, Json::error_handler_t::replace) + "\n";
}

}  // namespace reedid::document
