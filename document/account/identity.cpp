#include "document/account/identity.h"

#include "document/account/pnp_ids.h"
#include "document/account/queries.h"
#include "document/printable.h"
#include "reedid/reedid.hpp"

namespace reedid::document {

Identity IdentityOf(const Image& image) {
  Identity identity;
  identity.preferred = PreferredOf(image);
  const BaseBlock base = image.IsEdid() ? BaseBlock(image.blocks()[0]) : BaseBlock();
  if (!base) return identity;
  identity.maker = MakerText(base->manufacturer);
  if (base->aspectRatioX100 == 0) {
    identity.widthCm = base->hScreenSize;
    identity.heightCm = base->vScreenSize;
  }
  for (const DtdSlot& slot : base.Descriptors()) {
    char text[REEDID_TEXT_SIZE] = {};
    if (slot.flag != EDID_DESCRIPTOR_PRODUCT_NAME || VESA_GetProductName(&slot, text, sizeof text) != 0) {
      continue;
    }
    identity.name = PrintableText(text);
    break;
  }
  return identity;
}

}  // namespace reedid::document
