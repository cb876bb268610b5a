// The HDMI Forum EDID Extension Override Data Block tells a source how many extensions there are, whatever the base
// block counts. It goes where their number is no longer the one that it tells.

#include "transform/extension_override.h"

#include "base/log.h"
#include "cea/codec.h"
#include "inventory/walk.h"
#include "reedid/transforms.h"
#include "transform/edit.h"

namespace reedid {

void DeleteOverrides(EdidHandle& handle, MemoryWatch& memory) {
  EditBlocks(handle, memory, [](CeaBlock& model) {
    const unsigned before = model.dataBlockCount;
    KeepDataBlocks(model, [](const CeaDataBlock& entry) {
      return !IsKind(entry, CEA_TAG_EXTENDED, CEA_EXT_TAG_EXTENSION_OVERRIDE);
    });
    return model.dataBlockCount != before;
  });
}

}  // namespace reedid

using namespace reedid;

void DeleteEODB(EdidHandle* handle) {
  if (handle == nullptr) {
    REEDID_ERR("invalid parameters");
    return;
  }
  EditWhole(*handle, [&](MemoryWatch& memory) { DeleteOverrides(*handle, memory); });
}
