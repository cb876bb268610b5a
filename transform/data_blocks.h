// Removing data blocks of a CTA extension by what they are.
#pragma once

#include "reedid/cea.h"

namespace reedid {

// Whether any went. After a deletion the entry that moved up is asked next.
template <class IsUnwanted>
bool DeleteDataBlocksIf(CeaBlock& model, IsUnwanted isUnwanted) {
  const unsigned before = model.dataBlockCount;
  for (unsigned i = 0; model.dataBlocks != nullptr && i < model.dataBlockCount;) {
    if (isUnwanted(model.dataBlocks[i])) {
      CEA_DeleteDataBlock(&model, &model.dataBlocks[i]);
    } else {
      ++i;
    }
  }
  return model.dataBlockCount != before;
}

}  // namespace reedid
