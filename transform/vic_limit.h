// A link limit on the VICs of a CTA extension: its Video Data Blocks, what they lost, and the two 4:2:0 blocks.
#pragma once

#include <cstdint>

#include "base/memory.h"
#include "reedid/cea.h"
#include "transform/reclock.h"

namespace reedid {

// VICs in the order in which they came, without repeats.
class VicSet {
 public:
  void Add(uint8_t vic);
  bool empty() const { return count_ == 0; }
  const uint8_t* begin() const { return vics_; }
  const uint8_t* end() const { return vics_ + count_; }

 private:
  uint8_t vics_[256];
  unsigned count_ = 0;
};

// The limit needs three steps over the data blocks: the 4:2:0 blocks, then the video blocks, then Restore.
class VicLimiter {
 public:
  VicLimiter(MemoryWatch& memory, CeaBlock& model, const LinkLimit& limit, Rates rates)
      : memory_(memory), model_(model), limit_(limit), rates_(rates) {}

  // Cuts a 4:2:0 block down. Whether the data block, of whatever kind, stays.
  bool Limit420Block(CeaDataBlock& entry);

  void LimitVideoBlock(CeaDataBlock& entry);

  // Brings formats back that the video blocks lost: at a slower rate, or in 4:2:0 only.
  void Restore();

 private:
  bool Limit420Video(CeaDataBlock& entry);
  bool Limit420Map(CeaDataBlock& entry);
  bool HoldsFormat(const DtdTiming& wanted) const;
  uint8_t SlowerVic(const DtdTiming& fast) const;
  void ReplaceRemovedVics();
  void Write420Map();
  void Write420Video();

  MemoryWatch& memory_;
  CeaBlock& model_;
  const LinkLimit& limit_;
  Rates rates_;
  VdbRecord firstVideo_ = {};   // the first Video Data Block's list as it stands
  VicSet removed_;              // what the Video Data Blocks lost
  Vic420Record video420_ = {};  // the 4:2:0 Video Data Block's list as it stands
  Vic420Record map420_ = {};    // the VICs that the capability map marks
};

}  // namespace reedid
