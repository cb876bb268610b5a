#include "document/compare/byte_changes.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

namespace reedid::document {
namespace {

// "byte 12", "bytes 12-15"
std::string SpanText(size_t first, size_t count) {
  return count == 1 ? fmt::format("byte {}", first) : fmt::format("bytes {}-{}", first, first + count - 1);
}

// Bytes that differ, one behind the other, and whose they are.
struct Run {
  Place place;
  std::string where;
  ByteVector before, after;  // one of them is shorter where the other image has no such bytes
};

void AddTo(std::vector<Run>& runs, Place place, const std::string& where, std::optional<uint8_t> before,
           std::optional<uint8_t> after) {
  const auto continues = [&](const Run& run) {
    return run.where == where && run.place.block == place.block &&
           run.place.offset + std::max(run.before.size(), run.after.size()) == place.offset;
  };
  if (runs.empty() || !continues(runs.back())) runs.push_back({place, where, {}, {}});
  if (before) runs.back().before.push_back(*before);
  if (after) runs.back().after.push_back(*after);
}

PlacedChange ChangeOf(const Run& run) {
  const ChangeKind kind = run.before.empty()  ? ChangeKind::kAdded
                          : run.after.empty() ? ChangeKind::kDropped
                                              : ChangeKind::kChanged;
  const std::string where =
      fmt::format("{}, {}", run.where, SpanText(run.place.offset, std::max(run.before.size(), run.after.size())));
  return {run.place, {kind, where, Hex(run.before), Hex(run.after)}};
}

// Places of the first image whose bytes stand elsewhere in the second one.
using Moves = std::map<Place, Place>;

void CompareSameText(const SameText& same, Side& before, Side& after, std::vector<Run>& runs, Moves& moves) {
  for (size_t i = 0; i < std::min(same.before.size(), same.after.size()); ++i) {
    const Place from = {same.blockBefore, same.before.OffsetOf(i)};
    const Place to = {same.blockAfter, same.after.OffsetOf(i)};
    if (same.before[i] != same.after[i]) {
      if (before.IsTold(from) || after.IsTold(to)) continue;
      AddTo(runs, from, same.where, same.before[i], same.after[i]);
      before.Tell(from);
      after.Tell(to);
    } else if (from != to) {
      moves.emplace(from, to);
    }
  }
}

// From the block on, what a reader looks for: the data block, the descriptor.
std::string ShortPath(const Side& side, Place place) {
  const std::string& path = side.OwnerOf(place).path;
  const std::string block = side.BlockPath(place.block);
  return path.size() > block.size() + 3 ? path.substr(block.size() + 3) : path;
}

std::string MoveText(const Side& side, Place place, size_t count, bool withBlock) {
  const std::string text = SpanText(place.offset, count);
  return withBlock ? fmt::format("{}, {}", side.BlockPath(place.block), text) : text;
}

// One row for all that moved together.
void AddMoves(const Moves& moves, Side& before, Side& after, std::vector<PlacedChange>& changes) {
  for (auto first = moves.begin(); first != moves.end();) {
    auto last = first, next = std::next(first);
    const auto follows = [](Place a, Place b) { return a.block == b.block && a.offset + 1 == b.offset; };
    while (next != moves.end() && follows(last->first, next->first) && follows(last->second, next->second)) {
      last = next++;
    }
    const size_t count = last->first.offset - first->first.offset + 1;
    const std::string from = ShortPath(before, first->first), to = ShortPath(before, last->first);
    const std::string where = fmt::format("{} / {}", before.BlockPath(first->first.block),
                                          from == to ? from : fmt::format("{} to {}", from, to));
    const bool withBlock = first->first.block != first->second.block;
    changes.push_back({first->first,
                       {ChangeKind::kMoved, where, MoveText(before, first->first, count, withBlock),
                        MoveText(after, first->second, count, withBlock)}});
    for (; first != next; ++first) {
      before.Tell(first->first);
      after.Tell(first->second);
    }
  }
}

// Whatever else differs, in blocks that both images have or one alone.
void CompareRest(const Side& before, const Side& after, std::vector<Run>& runs) {
  const auto at = [](const Side& side, Place place) -> std::optional<uint8_t> {
    if (place.block >= side.BlockCount() || place.offset >= side.Block(place.block).size()) return std::nullopt;
    return side.Block(place.block)[place.offset];
  };
  for (Place place = {0, 0}; place.block < std::max(before.BlockCount(), after.BlockCount()); ++place.block) {
    for (place.offset = 0;; ++place.offset) {
      const auto had = at(before, place), has = at(after, place);
      if (!had && !has) break;
      if (had == has || before.IsTold(place) || after.IsTold(place)) continue;
      AddTo(runs, place, (had ? before : after).OwnerOf(place).path, had, has);
    }
  }
}

}  // namespace

Side::Side(const Node& image) : parts_(PartsOf(image)) {
  for (const Node& block : image.children) {
    bytes_.push_back(&block.block);
    told_.emplace_back(block.block.size());
  }
  for (size_t i = 0; i < parts_.size(); ++i) {
    const auto own = [&](const SourceBytes& bytes) {
      for (size_t k = 0; k < bytes.size(); ++k) owners_[{parts_[i].block, bytes.OffsetOf(k)}] = i;
    };
    own(parts_[i].node->bytes);
    for (const Field& field : parts_[i].node->fields) own(field.bytes);
  }
}

const Part& Side::OwnerOf(Place place) const {
  const auto found = owners_.find(place);
  if (found != owners_.end()) return parts_[found->second];
  return *std::find_if(parts_.begin(), parts_.end(), [place](const Part& part) { return part.block == place.block; });
}

std::string Side::BlockPath(size_t block) const {
  return std::find_if(parts_.begin(), parts_.end(), [block](const Part& part) { return part.block == block; })->path;
}

std::vector<PlacedChange> FindByteChanges(const std::vector<SameText>& same, Side& before, Side& after) {
  std::vector<Run> runs;
  std::vector<PlacedChange> changes;
  Moves moves;
  for (const SameText& pair : same) CompareSameText(pair, before, after, runs, moves);
  AddMoves(moves, before, after, changes);
  CompareRest(before, after, runs);
  for (const Run& run : runs) changes.push_back(ChangeOf(run));
  return changes;
}

}  // namespace reedid::document
