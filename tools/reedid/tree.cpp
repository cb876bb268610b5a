#include "tree.h"

#include <fmt/format.h>

#include <algorithm>

#include "hex_text.h"
#include "records.h"

namespace reedid::tool {
namespace {

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

void CollectItems(const Node& node, std::vector<TimingItem>& items) {
  items.insert(items.end(), node.timings.begin(), node.timings.end());
  for (const Node& child : node.children) CollectItems(child, items);
}

Json BytesJson(const std::vector<Field>& fields) {
  Json json = Json::object();
  for (const Field& field : fields) {
    if (!field.bytes.empty()) AddJson(field.name, Hex(field.bytes), json);
  }
  return json;
}

// Zeros, or a line feed and blanks behind it, as the standards fill up.
bool IsFilling(const ByteVector& bytes) {
  const auto are = [](auto first, auto last, uint8_t value) {
    return std::all_of(first, last, [value](uint8_t byte) { return byte == value; });
  };
  return are(bytes.begin(), bytes.end(), 0) ||
         (bytes.front() == '\n' && are(bytes.begin() + 1, bytes.end(), uint8_t{' '}));
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

void Node::AddTiming(const std::string& name, const TimingItem& item, const std::string& more, ByteVector from) {
  Add(name, (IsKnown(item) ? TimingText(item.timing) : "not in the tables") + more, std::move(from));
  if (IsKnown(item)) timings.push_back(item);
}

Field& Node::AddBytes(const std::string& name, ByteVector from) {
  std::string text = Hex(from);
  return Add(name, std::move(text), std::move(from));
}

void Node::AddRest(const ByteSource& at, const std::string& name) {
  ByteVector rest = at.Rest();
  if (rest.empty()) return;
  if (IsFilling(rest)) {
    Add("Unused", "", std::move(rest));
  } else {
    AddBytes(name, std::move(rest));
  }
}

void HidePrivate(Node& root) {
  for (Field& field : root.fields) {
    if (!root.isPrivate && !field.publicValue) continue;
    field.value = field.publicValue.value_or(kHidden);
    field.bytes.clear();
  }
  for (const std::string& key : root.privateKeys) {
    if (root.record.contains(key)) root.record[key] = nullptr;
  }
  if (root.isPrivate) root.record = nullptr;
  for (Node& child : root.children) {
    child.isPrivate = child.isPrivate || root.isPrivate;
    HidePrivate(child);
  }
}

Json ToJson(const Node& root, bool hex) {
  Json json = {{"title", root.title}};
  if (hex && !root.bytes.empty()) json["titleBytes"] = Hex(root.bytes);
  if (Json text = TextJson(root.fields); !text.empty()) json["text"] = std::move(text);
  if (Json bytes = BytesJson(root.fields); hex && !bytes.empty()) json["bytes"] = std::move(bytes);
  if (!root.record.is_null()) json["record"] = root.record;
  for (const TimingItem& item : root.timings) json["timings"].push_back(ItemJson(item));
  for (const Node& child : root.children) json["parts"].push_back(ToJson(child, hex));
  return json;
}

std::string JsonText(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace reedid::tool
