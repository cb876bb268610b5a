#include "document/compare/changes.h"

#include <fmt/format.h>

#include <algorithm>
#include <list>
#include <set>
#include <utility>

#include "document/compare/byte_changes.h"
#include "document/compare/timing_pairs.h"
#include "document/printable.h"

namespace reedid::document {
namespace {

constexpr int kJsonVersion = 1;  // docs/json.md

constexpr const char* kChangeNames[] = {"kept",    "lowered", "raised",  "replaced",
                                        "dropped", "added",   "changed", "moved"};
const char* NameOf(ChangeKind kind) {
  return kChangeNames[static_cast<size_t>(kind)];
}

// The value is the bytes themselves, so that single bytes say more than the whole of it.
bool IsBytes(const Field& field) {
  return field.value == Hex(field.bytes);
}

// The bytes stand in the same way, perhaps somewhere else.
bool HaveSameShape(const SourceBytes& a, const SourceBytes& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 1; i < a.size(); ++i) {
    if (a.OffsetOf(i) - a.OffsetOf(0) != b.OffsetOf(i) - b.OffsetOf(0)) return false;
  }
  return true;
}

Place FirstPlace(size_t block, const SourceBytes& bytes) {
  return {block, bytes.empty() ? 0 : bytes.OffsetOf(0)};
}

class Comparison {
 public:
  Comparison(const Node& before, const Node& after) : before_(before), after_(after) {}

  std::vector<Change> Run() {
    PairParts(before_.parts(), after_.parts());
    for (const TimingPair& pair : PairTimings(before_.parts(), after_.parts())) CompareTimings(pair);
    for (const Part& part : before_.parts()) {
      if (part.node->isTiming) continue;
      if (part.partner) {
        CompareParts(part, after_.parts()[*part.partner]);
      } else {
        AddPart(part, before_, ChangeKind::kDropped);
      }
    }
    for (const Part& part : after_.parts()) {
      if (!part.partner && !part.node->isTiming) AddPart(part, after_, ChangeKind::kAdded);
    }
    for (PlacedChange& change : FindByteChanges(same_, before_, after_)) placed_.push_back(std::move(change));
    std::stable_sort(placed_.begin(), placed_.end(), [](const PlacedChange& a, const PlacedChange& b) {
      return std::pair(a.change.kind == ChangeKind::kAdded, a.place) <
             std::pair(b.change.kind == ChangeKind::kAdded, b.place);
    });
    for (PlacedChange& change : placed_) changes_.push_back(std::move(change.change));
    return std::move(changes_);
  }

 private:
  void CompareTimings(const TimingPair& pair) {
    Change change = TimingChange(pair);
    if (!pair.before || !pair.after) {
      const bool isDropped = pair.before.has_value();
      Side& side = isDropped ? before_ : after_;
      const PlacedTiming& timing = isDropped ? *pair.before : *pair.after;
      const Part& part = side.parts()[timing.part];
      side.Tell(part.block, timing.Bytes(side.parts()));
      // What else belongs to a timing goes and comes with it.
      for (const Field& field : part.node->fields) {
        if (timing.field == nullptr) side.Tell(part.block, field.bytes);
      }
      changes_.push_back(std::move(change));
      return;
    }
    const Part &b = before_.parts()[pair.before->part], &a = after_.parts()[pair.after->part];
    const SourceBytes bytesBefore = pair.before->Bytes(before_.parts()), bytesAfter = pair.after->Bytes(after_.parts());
    const Field *had = pair.before->field, *has = pair.after->field;
    if (change.kind == ChangeKind::kKept && had != nullptr && has != nullptr && had->value != has->value) {
      change = {ChangeKind::kChanged, change.where, fmt::format("{}: {}", had->name, had->value),
                fmt::format("{}: {}", has->name, has->value)};
    }
    if (change.kind == ChangeKind::kKept) {
      same_.push_back({had == nullptr ? b.path : fmt::format("{} / {}", b.path, had->name), b.block, a.block,
                       bytesBefore, bytesAfter});
    } else {
      before_.Tell(b.block, bytesBefore);
      after_.Tell(a.block, bytesAfter);
    }
    changes_.push_back(std::move(change));
    if (had == nullptr && has == nullptr) CompareFields(b, a);
  }

  void CompareParts(const Part& before, const Part& after) {
    same_.push_back({before.path, before.block, after.block, before.node->bytes, after.node->bytes});
    CompareFields(before, after);
  }

  // Fields of one name are paired by their value first.
  void CompareFields(const Part& before, const Part& after) {
    std::list<const Field*> left;
    for (const Field& field : after.node->fields) {
      if (!field.isTiming && !field.bytes.empty()) left.push_back(&field);
    }
    const auto take = [&left](const Field& field, bool sameValue) -> const Field* {
      const auto found = std::find_if(left.begin(), left.end(), [&](const Field* other) {
        return other->name == field.name && (!sameValue || other->value == field.value);
      });
      if (found == left.end()) return nullptr;
      const Field* taken = *found;
      left.erase(found);
      return taken;
    };
    for (const bool sameValue : {true, false}) {
      for (const Field& field : before.node->fields) {
        if (field.isTiming || field.bytes.empty() || paired_.contains(&field)) continue;
        const Field* other = take(field, sameValue);
        if (other != nullptr) {
          paired_.insert(&field);
          CompareField(before, field, after, *other);
        } else if (!sameValue) {
          AddField(before, field, before_, ChangeKind::kDropped);
        }
      }
    }
    for (const Field* field : left) AddField(after, *field, after_, ChangeKind::kAdded);
  }

  void CompareField(const Part& before, const Field& had, const Part& after, const Field& has) {
    const std::string where = fmt::format("{} / {}", before.path, had.name);
    const bool areBytes = had.value.empty() || (IsBytes(had) && IsBytes(has));
    if (areBytes && !HaveSameShape(had.bytes, has.bytes)) {
      // What the other fields leave over: where they are others, it is no longer the same and is told as bytes.
      if (had.value == has.value) return;
    } else if (had.value == has.value || areBytes) {
      same_.push_back({where, before.block, after.block, had.bytes, has.bytes});
      return;
    }
    before_.Tell(before.block, had.bytes);
    after_.Tell(after.block, has.bytes);
    placed_.push_back({FirstPlace(before.block, had.bytes), {ChangeKind::kChanged, where, had.value, has.value}});
  }

  // A field that only names what its bytes are has nothing to say; where they differ, they are told as bytes.
  bool AddField(const Part& part, const Field& field, Side& side, ChangeKind kind) {
    if (field.value.empty()) return false;
    side.Tell(part.block, field.bytes);
    const bool dropped = kind == ChangeKind::kDropped;
    placed_.push_back({FirstPlace(part.block, field.bytes),
                       {kind, fmt::format("{} / {}", part.path, field.name), dropped ? field.value : "",
                        dropped ? "" : field.value}});
    return true;
  }

  // A part that only one image has: its fields, or that it is there.
  void AddPart(const Part& part, Side& side, ChangeKind kind) {
    bool told = false;
    for (const Field& field : part.node->fields) {
      if (!field.isTiming && !field.bytes.empty()) told = AddField(part, field, side, kind) || told;
      side.Tell(part.block, field.bytes);
    }
    side.Tell(part.block, part.node->bytes);
    if (!part.parent) side.TellBlock(part.block);
    if (told) return;
    const bool dropped = kind == ChangeKind::kDropped;
    placed_.push_back(
        {FirstPlace(part.block, part.node->bytes), {kind, part.path, dropped ? "there" : "", dropped ? "" : "there"}});
  }

  Side before_, after_;
  std::vector<Change> changes_;       // of the timings
  std::vector<PlacedChange> placed_;  // all others
  std::vector<SameText> same_;
  std::set<const Field*> paired_;
};

std::string ValuesText(const Change& change) {
  if (change.kind == ChangeKind::kKept || change.after.empty()) return change.before;
  return change.before.empty() ? change.after : fmt::format("{} -> {}", change.before, change.after);
}

bool IsShown(const Change& change, bool all) {
  return all || change.kind != ChangeKind::kKept;
}

}  // namespace

std::vector<Change> FindChanges(const Node& before, const Node& after) {
  return Comparison(before, after).Run();
}

bool AreSame(const std::vector<Change>& changes) {
  return std::all_of(changes.begin(), changes.end(), [](const Change& c) { return c.kind == ChangeKind::kKept; });
}

std::string ChangesText(const std::vector<Change>& changes, bool all) {
  std::string text;
  size_t counts[std::size(kChangeNames)] = {};
  for (const Change& change : changes) {
    ++counts[static_cast<size_t>(change.kind)];
    if (!IsShown(change, all)) continue;
    const std::string line = fmt::format("{:<8}  {:<15}  {}", NameOf(change.kind), change.where, ValuesText(change));
    text += WithoutControls(line) + '\n';
  }
  for (size_t i = 0; i < std::size(counts); ++i)
    text += fmt::format("{}{} {}", i == 0 ? "" : ", ", counts[i], kChangeNames[i]);
  return text + "\n";
}

Json ChangesJson(const std::vector<Change>& changes, bool all) {
  Json json = Json::array();
  for (const Change& change : changes) {
    if (!IsShown(change, all)) continue;
    Json one = {{"change", NameOf(change.kind)}, {"where", change.where}};
    if (!change.before.empty()) one["before"] = change.before;
    if (!change.after.empty()) one["after"] = change.after;
    json.push_back(one);
  }
  return {{"version", kJsonVersion}, {"same", AreSame(changes)}, {"changes", json}};
}

}  // namespace reedid::document
