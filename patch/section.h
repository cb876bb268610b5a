// Data blocks of a DisplayID section, by their bytes: standalone or inside an EDID.
#pragma once

#include <cstdint>

#include "displayid/codec.h"
#include "patch/block.h"

namespace reedid {

// Walks the data blocks of a section and edits the one at which it stands:
// `for (SectionCursor cursor(block); cursor.Next();)`. A data block that passes the end of the section, and zeros for a
// header, end the walk. A block that is no section has none.
class SectionCursor {
 public:
  explicit SectionCursor(EdidBlock& block);

  bool Next();
  Bytes bytes() const { return BytesOf(*block_).From(at_).First(size_); }
  uint8_t tag() const { return bytes()[0]; }
  unsigned at() const { return at_; }  // in the block
  EdidBlock& block() const { return *block_; }
  uint8_t version() const { return BytesOf(*block_)[SectionStart(block_->type)]; }  // 0x12, 0x20, ...

  void Set(unsigned at, uint8_t value) { Overwrite(*block_, at_ + at, value); }
  // After an edit inside the data block that changed its length.
  void Reload() { size_ = kDispIdHeaderSize + BytesOf(*block_)[at_ + 2]; }
  // False, nothing changed, when the section cannot grow so far.
  bool Replace(Bytes fresh);
  // The next data block stands here then.
  void Erase() { Replace({}); }

 private:
  unsigned End() const;

  EdidBlock* block_;
  unsigned at_;
  unsigned size_ = 0;
};

// Puts `fresh` in the place of bytes among a section's data blocks; later ones move along. The section keeps its length
// while they fit, and grows into the rest of its block when they do not. False, nothing changed, when that is full.
bool SpliceSection(EdidBlock& block, unsigned at, unsigned size, Bytes fresh);

}  // namespace reedid
