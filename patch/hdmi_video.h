// The video part of the HDMI 1.4b VSDB (HDMI 1.4b, table 8-16): HDMI VICs and 3D formats, which count the short video
// descriptors of the EDID.
#pragma once

#include <cstdint>

#include "patch/cta.h"
#include "reedid/tags.h"

namespace reedid {

// Whether a data block is vendor-specific with this OUI.
inline bool IsVendor(const CtaCursor& cursor, uint32_t oui) {
  return cursor.Is(CEA_TAG_VENDOR) && cursor.bytes().size() > 3 && cursor.bytes().Le24(1) == oui;
}

inline bool IsHdmi14b(const CtaCursor& cursor) {
  return IsVendor(cursor, REEDID_OUI_HDMI);
}

// The HDMI Forum's VSDB, or its sink capability block, which has the same fields at the same places.
inline bool IsHdmiForum(const CtaCursor& cursor) {
  return IsVendor(cursor, REEDID_OUI_HDMI_FORUM) || cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_SINK_CAPABILITY);
}

// The YCbCr 4:2:0 video block and capability map.
inline bool Is420(const CtaCursor& cursor) {
  return cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO) || cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_420_MAP);
}

// Whether the image sizes of the EDID are shapes only, by the HDMI 1.4b block.
bool HasRatios(const CtaCursor& vsdb);

// Whether 3D formats are told, which may be told of all VICs.
bool Has3d(const CtaCursor& vsdb);

// Removes the HDMI VIC at byte `at` of the block's bytes. The data block shrinks.
void EraseHdmiVic(CtaCursor& vsdb, unsigned at);

// What the 3D formats tell once the short video descriptor `index` is gone. The data block shrinks with the entries
// that were its own.
void EraseFrom3d(CtaCursor& vsdb, unsigned index);

}  // namespace reedid
