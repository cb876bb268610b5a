#include "transform/common/records.h"

namespace reedid {
namespace {

constexpr unsigned kFlagsByte = 3;

template <class Edit>
void EditCtaFlags(const EdidHandle& image, Edit edit) {
  for (unsigned i = 0; i < image.blockCount; ++i) {
    EdidBlock& block = image.blocks[i];
    // Version 1 has no flags.
    if (block.type == EDID_BLOCK_CEA && IsWhole(block) && block.bytes[1] >= 2) edit(block, block.bytes[kFlagsByte]);
  }
}

}  // namespace

bool HasCtaExtension(const EdidHandle& image) {
  bool found = false;
  EditCtaFlags(image, [&](const EdidBlock&, uint8_t) { found = true; });
  return found;
}

bool HasCtaFlag(const EdidHandle& image, uint8_t flag) {
  bool set = false;
  EditCtaFlags(image, [&](const EdidBlock&, uint8_t flags) { set = set || (flags & flag) != 0; });
  return set;
}

void ClearCtaFlags(EdidHandle& image, unsigned flags) {
  EditCtaFlags(image, [&](EdidBlock& block, uint8_t before) { Overwrite(block, kFlagsByte, Low8(before & ~flags)); });
}

void SetCtaFlags(EdidHandle& image, unsigned flags) {
  EditCtaFlags(image, [&](EdidBlock& block, uint8_t before) { Overwrite(block, kFlagsByte, Low8(before | flags)); });
}

}  // namespace reedid
