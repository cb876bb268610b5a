// Edits of an image's list of blocks: the extension count, the HDMI Forum override of it and the block map go along.
// And a copy to work on, so that an edit is done whole or not at all.
#pragma once

#include <cstdint>

#include "patch/cta.h"

namespace reedid {

// A deep copy of an image. Edits work on `image()`; the handle gets the outcome by Commit, which cannot fail, or stays
// as it was.
class Draft {
 public:
  explicit Draft(const EdidHandle& handle);
  ~Draft() { EDID_Close(copy_); }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  bool ok() const { return copy_ != nullptr; }  // false without memory
  EdidHandle& image() { return *copy_; }
  // Blocks keep their addresses when their number is the same.
  void Commit(EdidHandle& handle);

 private:
  EdidHandle* copy_;
};

// Removes a block, or inserts a copy of one (false without memory, or for a 256th block).
void EraseBlock(EdidHandle& handle, unsigned index);
bool InsertBlock(EdidHandle& handle, const EdidBlock& block, unsigned index);

// Where a new CTA extension belongs: behind the base block and a block map, before all others, as HDMI asks for.
unsigned CtaPlace(const EdidHandle& handle);

// Number of blocks, or of sections, behind the first. An HDMI Forum EDID Extension Override Data Block, the first data
// block of block 1, states it in place of byte 126, which is 1 then for older sources (HDMI 2.1, 10.3.6).
void WriteExtensionCount(EdidHandle& handle);

// Block maps tell the tags of the blocks behind them (EDID 1.4, 2.2; E-EDID A.1).
void WriteBlockMaps(EdidHandle& handle);

}  // namespace reedid
