#include "tree.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "records.h"

namespace reedid::tool {
namespace {

constexpr size_t kLineWidth = 100;
constexpr size_t kIndent = 2;
constexpr size_t kNarrowest = 40;

// Appends `value` in lines of at most `width` characters; a word that is longer stands alone.
void AppendWrapped(std::string_view value, size_t width, size_t indent, std::string& out) {
  while (value.size() > width) {
    size_t cut = value.rfind(' ', width);
    if (cut == value.npos || cut == 0) cut = std::min(value.find(' '), value.size());
    out += fmt::format("{}\n", value.substr(0, cut));
    value.remove_prefix(std::min(cut + 1, value.size()));
    if (value.empty()) return;
    out.append(indent, ' ');
  }
  out += fmt::format("{}\n", value);
}

void AppendNode(const Node& node, size_t indent, std::string& out) {
  out += fmt::format("{:{}}{}\n", "", indent, node.title);
  indent += kIndent;
  size_t names = 0;
  for (const Field& field : node.fields) names = std::max(names, field.name.size());
  const size_t column = indent + names + kIndent;
  const size_t width = std::max(kNarrowest, kLineWidth - std::min(kLineWidth, column));
  for (const Field& field : node.fields) {
    out += fmt::format("{:{}}{:<{}}", "", indent, field.name, names + kIndent);
    AppendWrapped(field.value, width, column, out);
  }
  for (const Node& child : node.children) AppendNode(child, indent, out);
}

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

std::string ToText(const Node& root) {
  std::string out;
  AppendNode(root, 0, out);
  return out;
}

}  // namespace reedid::tool
