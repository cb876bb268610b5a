// The bytes of two images: which of them have been told, what moved, and what is left to tell byte by byte.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "document/compare/changes.h"
#include "document/compare/parts.h"

namespace reedid::document {

struct Place {
  size_t block;
  size_t offset;
  auto operator<=>(const Place&) const = default;
};

// A change, and where it stands among the others.
struct PlacedChange {
  Place place;
  Change change;
};

// One image of the two.
class Side {
 public:
  explicit Side(const Node& image);

  const std::vector<Part>& parts() const { return parts_; }
  std::vector<Part>& parts() { return parts_; }
  size_t BlockCount() const { return bytes_.size(); }
  const ByteVector& Block(size_t block) const { return *bytes_[block]; }

  void Tell(Place place) { told_[place.block][place.offset] = true; }
  void Tell(size_t block, const SourceBytes& bytes) {
    for (size_t i = 0; i < bytes.size(); ++i) Tell({block, bytes.OffsetOf(i)});
  }
  void TellBlock(size_t block) { told_[block].assign(told_[block].size(), true); }
  bool IsTold(Place place) const {
    return place.block < told_.size() && place.offset < told_[place.block].size() && told_[place.block][place.offset];
  }

  // The part whose byte stands there; the block itself where no field is made from it.
  const Part& OwnerOf(Place place) const;
  std::string BlockPath(size_t block) const;

 private:
  std::vector<Part> parts_;
  std::vector<const ByteVector*> bytes_;
  std::vector<std::vector<bool>> told_;
  std::map<Place, size_t> owners_;
};

// The same field or heading of both images, whose text is the same.
struct SameText {
  std::string where;
  size_t blockBefore, blockAfter;
  SourceBytes before, after;
};

// What the texts do not tell: bytes of the same fields that differ, what moved, and all other bytes that differ.
std::vector<PlacedChange> FindByteChanges(const std::vector<SameText>& same, Side& before, Side& after);

}  // namespace reedid::document
