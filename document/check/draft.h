// A copy of the image to try a repair on, which tells at the end what the repair writes.
#pragma once

#include <vector>

#include "document/check/check.h"
#include "document/check/image_view.h"

namespace reedid::document::check {

class Draft {
 public:
  explicit Draft(const ImageView& view) : view_(view), bytes_(view.image.begin(), view.image.end()) {}

  uint8_t& operator[](size_t at) { return bytes_[at]; }
  void Write(size_t at, std::initializer_list<int> bytes);
  void Fill(size_t at, size_t count, uint8_t byte);

  // Takes bytes out of a CTA extension's data blocks: what follows moves up, zeros come in at the end. What stands
  // behind the cut must not be written to afterwards.
  void Cut(const CtaBlock& cta, size_t at, size_t count);
  void CutDataBlock(const DataBlock& block) { Cut(view_.ctas[block.cta], block.at, block.bytes.size()); }
  // Takes one byte out of a data block, and the block with it when `payloadAt` (the first byte of its list) was its
  // only one.
  void CutListByte(const DataBlock& block, size_t payloadAt, size_t at);

  // The runs of bytes that differ now.
  std::vector<Patch> Changes() const;

 private:
  const ImageView& view_;
  std::vector<uint8_t> bytes_;
};

}  // namespace reedid::document::check
