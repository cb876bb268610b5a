#include "document/read/data_blocks.h"

#include <algorithm>

namespace reedid::document {
namespace {

using Visit = std::function<void(const CeaDataBlock& entry)>;

// Blocks whose bytes the library could not keep have none.
void VisitAll(std::span<const CeaDataBlock> entries, const Visit& visit) {
  for (const CeaDataBlock& entry : entries) {
    if (entry.bytes != nullptr) visit(entry);
  }
}

void VisitInside(const DispIdDataBlock& outer, const Visit& visit) {
  std::vector<CeaDataBlock> inside(static_cast<size_t>(std::max(DispID20_GetCtaCnt(&outer), 0)));
  if (inside.empty()) return;
  DispID20_GetCtaBlocks(&outer, inside.data(), static_cast<uint32_t>(inside.size()));
  VisitAll(inside, visit);
}

}  // namespace

bool IsSection(const EdidBlock& block) {
  return block.type == EDID_BLOCK_DISPID_FIRST || block.type == EDID_BLOCK_DISPID_NEXT ||
         block.type == EDID_BLOCK_DISPID_EXT;
}

void ForEachCtaDataBlock(const Image& image, const Visit& visit) {
  for (const EdidBlock& block : image.blocks()) {
    if (block.type == EDID_BLOCK_CEA) {
      if (const CtaExtension model(block); model) VisitAll(model.DataBlocks(), visit);
    } else if (IsSection(block)) {
      const DisplayIdSection model(block);
      if (!model) continue;
      for (const DispIdDataBlock& outer : model.DataBlocks()) {
        if (outer.tag == DISPID20_TAG_CTA && outer.bytes != nullptr) VisitInside(outer, visit);
      }
    }
  }
}

}  // namespace reedid::document
