#include "document/read/data_blocks.h"

namespace reedid::document {
namespace {

using Visit = std::function<void(const CeaDataBlock& entry)>;

// Blocks whose bytes the library could not keep have none.
void VisitAll(std::span<const CeaDataBlock> entries, const Visit& visit) {
  for (const CeaDataBlock& entry : entries) {
    if (entry.bytes != nullptr) visit(entry);
  }
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
    }
  }
}

}  // namespace reedid::document
