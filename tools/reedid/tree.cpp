#include "tree.h"

#include <fmt/format.h>

#include "records.h"

namespace reedid::tool {
namespace {

// A name that stands more than once becomes an array of its values.
Json FieldsJson(const std::vector<Field>& fields) {
  Json json = Json::object();
  for (const Field& field : fields) {
    if (!json.contains(field.name)) {
      json[field.name] = field.value;
      continue;
    }
    Json& there = json[field.name];
    if (!there.is_array()) there = Json::array({there});
    there.push_back(field.value);
  }
  return json;
}

void CollectItems(const Node& node, std::vector<TimingItem>& items) {
  items.insert(items.end(), node.timings.begin(), node.timings.end());
  for (const Node& child : node.children) CollectItems(child, items);
}

constexpr const char* kKindNames[] = {"detailed", "vic", "vic420", "formula", "other"};

}  // namespace

Json ItemJson(const TimingItem& item) {
  Json json = {{"kind", kKindNames[static_cast<size_t>(item.kind)]}};
  if (item.id != 0) json["id"] = item.id;
  if (item.ycc420) json["ycc420Only"] = true;
  json["refreshHz"] = RefreshRate(item.timing);
  json["timing"] = item.timing;
  return json;
}

std::vector<TimingItem> ItemsOf(const Node& root) {
  std::vector<TimingItem> items;
  CollectItems(root, items);
  return items;
}

Node& Node::AddTiming(const std::string& name, const TimingItem& item, const std::string& more) {
  Add(name, (IsKnown(item) ? TimingText(item.timing) : "not in the tables") + more);
  if (IsKnown(item)) timings.push_back(item);
  return *this;
}

Json ToJson(const Node& root) {
  Json json = {{"title", root.title}};
  if (!root.fields.empty()) json["text"] = FieldsJson(root.fields);
  if (!root.record.is_null()) json["record"] = root.record;
  for (const TimingItem& item : root.timings) json["timings"].push_back(ItemJson(item));
  for (const Node& child : root.children) json["parts"].push_back(ToJson(child));
  return json;
}

std::string JsonText(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace reedid::tool
