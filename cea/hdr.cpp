// HDR Static Metadata Data Block (CTA-861, 7.5.13) and Vendor-Specific Video Data Block (7.5.7).
//
// HDR static metadata:    1 extended tag 6, 2 transfer functions 3..0, 3 metadata type 1 0, then as far as the block
//                         goes: 4 max, 5 max frame-average, 6 min luminance
// Vendor-specific video:  1 extended tag 1, 2-4 OUI, least significant byte first

#include "base/layout.h"
#include "base/log.h"
#include "base/pinned.h"
#include "cea/codec.h"

namespace reedid {
namespace {

PIN_FIELDS(StaticHdrRecord, 0, 1, eotfSdr, eotfHdr, eotfPq, eotfHlg, staticMetadataType1, maxLuminance,
           maxFrameAvgLuminance, minLuminance);
PIN_SIZE(StaticHdrRecord, 8);

constexpr CeaForm kStaticHdr = {CEA_TAG_EXTENDED, CEA_EXT_TAG_STATIC_HDR, 4, 31};
constexpr CeaForm kVendorVideo = {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO, 5, 31};

// Luminances beyond `size` are neither read nor written.
template <class Io, class Record>
constexpr void StaticHdrLayout(const Io& io, Record& r, unsigned size) {
  io(r.eotfSdr, Place{2, 0, 1});
  io(r.eotfHdr, Place{2, 1, 1});
  io(r.eotfPq, Place{2, 2, 1});
  io(r.eotfHlg, Place{2, 3, 1});
  io(r.staticMetadataType1, Place{3, 0, 1});
  if (size > 4) io(r.maxLuminance, Place{4});
  if (size > 5) io(r.maxFrameAvgLuminance, Place{5});
  if (size > 6) io(r.minLuminance, Place{6});
}

// As far as the last luminance that is stated; one before it that is not stays a 0.
constexpr unsigned StaticHdrSize(const StaticHdrRecord& r) {
  if (r.minLuminance != 0) return 7;
  if (r.maxFrameAvgLuminance != 0) return 6;
  return r.maxLuminance != 0 ? 5 : 4;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetStaticHDR(const CeaDataBlock* entry, StaticHdrRecord* record) {
  if (!Matches(entry, kStaticHdr) || record == nullptr) return REEDID_ERR("invalid parameters");
  StaticHdrLayout(LayoutReader(BytesOf(*entry)), *record, entry->size);
  return 0;
}

int32_t CEA_SetStaticHDR(const StaticHdrRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  const unsigned size = StaticHdrSize(*record);
  StaticHdrLayout(BeginDataBlock(*entry, kStaticHdr, size), *record, size);
  return 0;
}

int32_t CEA_GetVSVDBType(const CeaDataBlock* entry) {
  if (!Matches(entry, kVendorVideo)) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  return HasOui(*entry, REEDID_OUI_DOLBY);
}
