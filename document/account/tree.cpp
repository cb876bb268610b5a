#include "document/account/tree.h"

#include <algorithm>

namespace reedid::document {
namespace {

void CollectItems(const Node& node, std::vector<TimingItem>& items) {
  items.insert(items.end(), node.timings.begin(), node.timings.end());
  for (const Node& child : node.children) CollectItems(child, items);
}

// Zeros, or a line feed and blanks behind it, as the standards fill up.
bool IsFilling(const SourceBytes& bytes) {
  const auto are = [](auto first, auto last, uint8_t value) {
    return std::all_of(first, last, [value](uint8_t byte) { return byte == value; });
  };
  return are(bytes.begin(), bytes.end(), 0) || (bytes[0] == '\n' && are(bytes.begin() + 1, bytes.end(), uint8_t{' '}));
}

void HideTexts(std::vector<Remark>& remarks) {
  for (Remark& remark : remarks) remark.text = kHidden;
}

}  // namespace

std::vector<TimingItem> ItemsOf(const Node& root) {
  std::vector<TimingItem> items;
  CollectItems(root, items);
  return items;
}

void Node::AddTiming(const std::string& name, const TimingItem& item, const std::string& more, SourceBytes from) {
  Field& field = Add(name, (IsKnown(item) ? TimingText(item.timing) : "not in the tables") + more, std::move(from));
  if (!IsKnown(item)) return;
  field.isTiming = true;
  timings.push_back(item);
}

Field& Node::AddBytes(const std::string& name, SourceBytes from) {
  std::string text = Hex(from);
  return Add(name, std::move(text), std::move(from));
}

void Node::AddRest(const ByteSource& at, const std::string& name) {
  SourceBytes rest = at.Rest();
  if (rest.empty()) return;
  if (IsFilling(rest)) {
    Add("Unused", "", std::move(rest));
  } else {
    AddBytes(name, std::move(rest));
  }
}

void HidePrivate(Node& root) {
  root.block.clear();
  for (Field& field : root.fields) {
    if (!root.isPrivate && !field.publicValue) continue;
    field.value = field.publicValue.value_or(kHidden);
    field.bytes.Clear();
    HideTexts(field.remarks);
  }
  for (const std::string& key : root.privateKeys) {
    if (root.record.contains(key)) root.record[key] = nullptr;
  }
  if (root.isPrivate) {
    root.record = nullptr;
    root.summary.clear();
    HideTexts(root.remarks);
  }
  for (Node& child : root.children) {
    child.isPrivate = child.isPrivate || root.isPrivate;
    HidePrivate(child);
  }
}

}  // namespace reedid::document
