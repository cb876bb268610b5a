// The HDMI Forum EDID Extension Override Data Block tells a source how many extensions there are, whatever the base
// block counts. It goes where their number is no longer the one that it tells.

#include "base/log.h"
#include "cea/codec.h"
#include "inventory/walk.h"
#include "reedid/transforms.h"
#include "transform/edit.h"

using namespace reedid;

void DeleteEODB(EdidHandle* handle) {
  if (handle == nullptr) {
    REEDID_ERR("invalid parameters");
    return;
  }
  EditBlocks(*handle, [](CeaBlock& model) {
    const unsigned before = model.dataBlockCount;
    KeepDataBlocks(model, [](const CeaDataBlock& entry) {
      return !IsKind(entry, CEA_TAG_EXTENDED, CEA_EXT_TAG_EXTENSION_OVERRIDE);
    });
    return model.dataBlockCount != before;
  });
}
