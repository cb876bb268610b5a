// Where the fields of an account have their bytes from.
#pragma once

#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

#include "document/bytes.h"

namespace reedid::document {

// Where a part of a block stands in it.
struct Extent {
  size_t offset = 0;
  size_t size = 0;
};

// Bytes, and the offset of each in its block.
class SourceBytes {
 public:
  void Add(uint8_t byte, size_t offset) {
    values_.push_back(byte);
    offsets_.push_back(offset);
  }
  void Add(const SourceBytes& more) {
    for (size_t i = 0; i < more.size(); ++i) Add(more[i], more.OffsetOf(i));
  }
  void Clear() { *this = SourceBytes(); }

  size_t OffsetOf(size_t index) const { return offsets_[index]; }
  uint8_t operator[](size_t index) const { return values_[index]; }
  const uint8_t* data() const { return values_.data(); }
  size_t size() const { return values_.size(); }
  bool empty() const { return values_.empty(); }
  auto begin() const { return values_.begin(); }
  auto end() const { return values_.end(); }

 private:
  ByteVector values_;
  std::vector<size_t> offsets_;
};

/*
 * The bytes of a block, handed out by offset to the fields that are made from them: `node.Add("Gamma", text, at(23))`.
 * It remembers which ones were handed out, so that what no field is made from can be shown too. Offsets beyond the
 * block hand out nothing. Copies, and parts of it, share that memory; the bytes are the caller's.
 */
class ByteSource {
 public:
  explicit ByteSource(std::span<const uint8_t> bytes)
      : bytes_(bytes), given_(std::make_shared<std::vector<bool>>(bytes.size())) {}

  SourceBytes operator()(size_t first, size_t count = 1) const;
  SourceBytes operator()(std::initializer_list<size_t> offsets) const;
  SourceBytes All() const { return (*this)(0, bytes_.size()); }

  // A part of the block with offsets of its own, up to `count` bytes.
  ByteSource Part(size_t first, size_t count = SIZE_MAX) const;

  // The bytes that were not handed out so far.
  SourceBytes Rest() const;

  size_t size() const { return bytes_.size(); }
  Extent extent() const { return {start_, bytes_.size()}; }

 private:
  std::span<const uint8_t> bytes_;
  std::shared_ptr<std::vector<bool>> given_;  // of the whole block
  size_t start_ = 0;                          // of this part in the block
};

}  // namespace reedid::document
