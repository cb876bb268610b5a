#include "document/compare/changes.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <map>

namespace reedid::document {
namespace {

constexpr const char* kChangeNames[] = {"kept", "lowered", "raised", "replaced", "dropped", "added", "changed"};
const char* NameOf(ChangeKind kind) {
  return kChangeNames[static_cast<size_t>(kind)];
}

// ---- pairs of timings, the closest first

using Alike = std::function<bool(const TimingItem&, const TimingItem&)>;

bool IsSameFormat(const TimingItem& a, const TimingItem& b) {
  return a.timing.hactive == b.timing.hactive && a.timing.vactive == b.timing.vactive &&
         a.timing.interlaced == b.timing.interlaced;
}

// Image size and preferred mark are no part of what a link must carry; the codes of a VIC are.
bool IsSameTiming(const TimingItem& a, const TimingItem& b) {
  const DtdTiming &s = a.timing, &t = b.timing;
  return IsSameFormat(a, b) && a.id == b.id && a.ycc420 == b.ycc420 && s.pixelClock == t.pixelClock &&
         s.hblank == t.hblank && s.hfrontPorch == t.hfrontPorch && s.hsyncWidth == t.hsyncWidth &&
         s.vblank == t.vblank && s.vfrontPorch == t.vfrontPorch && s.vsyncWidth == t.vsyncWidth &&
         s.hsyncPositive == t.hsyncPositive && s.vsyncPositive == t.vsyncPositive;
}

// A row of the table: a timing of the first image and what became of it.
struct Row {
  TimingItem before;
  std::optional<TimingItem> after;
};

// Gives rows without a partner the first item of `left` that is alike, which leaves `left`.
void Pair(std::vector<Row>& rows, std::vector<TimingItem>& left, const Alike& alike) {
  for (Row& row : rows) {
    if (row.after) continue;
    const auto found = std::find_if(left.begin(), left.end(), [&](const TimingItem& item) {
      return item.kind == row.before.kind && alike(row.before, item);
    });
    if (found == left.end()) continue;
    row.after = *found;
    left.erase(found);
  }
}

// A VIC that is left in YCbCr 4:2:0 only, for its clock.
void PairMovedTo420(std::vector<Row>& rows, std::vector<TimingItem>& left) {
  for (Row& row : rows) {
    if (row.after || row.before.kind != TimingKind::kVic) continue;
    const auto found = std::find_if(left.begin(), left.end(), [&](const TimingItem& item) {
      return item.kind == TimingKind::kVic420 && item.id == row.before.id;
    });
    if (found == left.end()) continue;
    row.after = *found;
    left.erase(found);
  }
}

Change TimingChange(const Row& row) {
  Change change = {ChangeKind::kDropped, KindName(row.before.kind), ItemText(row.before), ""};
  if (!row.after) return change;
  change.after = ItemText(*row.after);
  if (row.after->kind != row.before.kind) {
    change.kind = ChangeKind::kReplaced;
    change.after = fmt::format("{} {}", KindName(row.after->kind), change.after);
  } else if (IsSameTiming(row.before, *row.after)) {
    change.kind = ChangeKind::kKept;
  } else if (row.before.id != row.after->id || row.before.timing.pixelClock == row.after->timing.pixelClock) {
    change.kind = ChangeKind::kReplaced;
  } else {
    const bool lower = row.after->timing.pixelClock < row.before.timing.pixelClock;
    change.kind = lower ? ChangeKind::kLowered : ChangeKind::kRaised;
  }
  return change;
}

void AddTimingChanges(const Node& before, const Node& after, std::vector<Change>& changes) {
  std::vector<Row> rows;
  for (const TimingItem& item : ItemsOf(before)) rows.push_back({item, std::nullopt});
  std::vector<TimingItem> left = ItemsOf(after);
  Pair(rows, left, IsSameTiming);
  Pair(rows, left, IsSameFormat);
  PairMovedTo420(rows, left);
  for (const Row& row : rows) changes.push_back(TimingChange(row));
  for (const TimingItem& item : left) {
    changes.push_back({ChangeKind::kAdded, KindName(item.kind), "", ItemText(item)});
  }
}

// ---- every other field

struct Named {
  std::string where;
  std::string value;
};

// Follows from the rest, or is told apart from it, so a line of its own says nothing new.
bool IsDerived(const Field& field) {
  static constexpr const char* kNames[] = {"Checksum",     "Section checksum", "Free bytes",
                                           "Section size", "Timing offset",    "Bytes"};
  return std::any_of(std::begin(kNames), std::end(kNames), [&](const char* name) { return field.name == name; });
}

bool HasText(const Node& node) {
  return std::any_of(node.fields.begin(), node.fields.end(), [](const Field& f) { return !f.value.empty(); });
}

bool HasReadableField(const Node& node) {
  return std::any_of(node.fields.begin(), node.fields.end(),
                     [](const Field& f) { return !f.value.empty() && f.name != "Bytes"; });
}

// A path names a part by its title; parts of the same title are numbered. Parts that stand for timings are rows above.
void CollectFields(const Node& node, const std::string& path, std::vector<Named>& fields) {
  if (node.timings.empty()) {
    if (!HasText(node) && node.children.empty()) fields.push_back({path, "there"});
    for (const Field& field : node.fields) {
      if (field.value.empty()) continue;
      const bool onlyBytes = field.name == "Bytes" && !HasReadableField(node);
      if (!IsDerived(field) || onlyBytes) fields.push_back({fmt::format("{} / {}", path, field.name), field.value});
    }
  }
  std::map<std::string, unsigned> seen;
  for (const Node& child : node.children) {
    const unsigned number = ++seen[child.title];
    const std::string title = number == 1 ? child.title : fmt::format("{} #{}", child.title, number);
    CollectFields(child, path.empty() ? title : fmt::format("{} / {}", path, title), fields);
  }
}

std::vector<Named> FieldsOf(const Node& root) {
  std::vector<Named> fields;
  for (const Node& block : root.children) CollectFields(block, block.title, fields);
  return fields;
}

void AddFieldChanges(const Node& before, const Node& after, std::vector<Change>& changes) {
  std::vector<Named> left = FieldsOf(after);
  for (const Named& field : FieldsOf(before)) {
    const auto found =
        std::find_if(left.begin(), left.end(), [&](const Named& other) { return other.where == field.where; });
    if (found == left.end()) {
      changes.push_back({ChangeKind::kDropped, field.where, field.value, ""});
      continue;
    }
    if (found->value != field.value) changes.push_back({ChangeKind::kChanged, field.where, field.value, found->value});
    left.erase(found);
  }
  for (const Named& field : left) changes.push_back({ChangeKind::kAdded, field.where, "", field.value});
}

}  // namespace

std::vector<Change> FindChanges(const Node& before, const Node& after) {
  std::vector<Change> changes;
  AddTimingChanges(before, after, changes);
  AddFieldChanges(before, after, changes);
  return changes;
}

bool AreSame(const std::vector<Change>& changes) {
  return std::all_of(changes.begin(), changes.end(), [](const Change& c) { return c.kind == ChangeKind::kKept; });
}

std::string ChangesText(const std::vector<Change>& changes) {
  std::string text;
  size_t counts[std::size(kChangeNames)] = {};
  for (const Change& change : changes) {
    ++counts[static_cast<size_t>(change.kind)];
    text += fmt::format("{:<8}  {:<15}  ", NameOf(change.kind), change.where);
    if (change.kind == ChangeKind::kKept || change.after.empty()) {
      text += change.before;
    } else {
      text += change.before.empty() ? change.after : fmt::format("{} -> {}", change.before, change.after);
    }
    text += '\n';
  }
  for (size_t i = 0; i < std::size(counts); ++i)
    text += fmt::format("{}{} {}", i == 0 ? "" : ", ", counts[i], kChangeNames[i]);
  return text + "\n";
}

Json ChangesJson(const std::vector<Change>& changes) {
  Json json = Json::array();
  for (const Change& change : changes) {
    Json one = {{"change", NameOf(change.kind)}, {"where", change.where}};
    if (!change.before.empty()) one["before"] = change.before;
    if (!change.after.empty()) one["after"] = change.after;
    json.push_back(one);
  }
  return {{"changes", json}};
}

}  // namespace reedid::document
