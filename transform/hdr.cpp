// Everything by which a display says that it shows high dynamic range.
//
// Colorimetry data block: byte 3 bit 6 ICtCp (CTA-861, table 79).
// DisplayID interface features (DisplayID 2.0, table 4-25): byte 9 bit 6 BT.2020 with ST 2084, byte 11.2..0 number of further
// pairs of two bytes, colour space 7..4 and EOTF 3..0 in the first.

#include <cstring>

#include "base/log.h"
#include "patch/hdmi_video.h"
#include "patch/section.h"
#include "reedid/transforms.h"

namespace reedid {
namespace {

constexpr unsigned kIctcpByte = 3, kIctcpBit = 6;
constexpr unsigned kCombinationsByte = 9, kSt2084Bit = 6;
constexpr unsigned kPairCountByte = 11, kPairs = 12;
constexpr unsigned kSt2084 = 8, kHybridLog = 9;

bool IsHdr(const CtaCursor& cursor) {
  const uint32_t oui = cursor.bytes().Le24(2);
  return cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_STATIC_HDR) || cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_DYNAMIC_HDR) ||
         cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_TONE_MAPPING) ||
         (cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO) &&
          (oui == REEDID_OUI_DOLBY || oui == REEDID_OUI_HDR10_PLUS));
}

void StripHdr(CtaCursor& cursor) {
  if (IsHdr(cursor)) return cursor.Erase();
  // BT.2100 has ICtCp for high dynamic range alone; its other colours are BT.2020's.
  if (!cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_COLORIMETRY) || cursor.bytes().size() <= kIctcpByte) return;
  cursor.Set(kIctcpByte, Low8(cursor.bytes()[kIctcpByte] & ~(1u << kIctcpBit)));
}

void StripHdr(SectionCursor& features) {
  const Bytes bytes = features.bytes();
  const unsigned count = Bits(bytes[kPairCountByte], 0, 3);
  if (bytes.size() < kPairs + 2 * count) return;
  uint8_t fresh[REEDID_DISPID_DATA_BLOCK_SIZE];
  bytes.CopyTo(fresh);
  fresh[kCombinationsByte] = Low8(fresh[kCombinationsByte] & ~(1u << kSt2084Bit));
  unsigned kept = 0;
  for (unsigned i = 0; i < count; ++i) {
    const uint8_t* pair = fresh + kPairs + 2 * i;
    const unsigned eotf = Bits(pair[0], 0, 4);
    if (eotf == kSt2084 || eotf == kHybridLog) continue;
    std::memmove(fresh + kPairs + 2 * kept++, pair, 2);
  }
  const unsigned gone = 2 * (count - kept), end = kPairs + 2 * count;
  std::memmove(fresh + end - gone, fresh + end, bytes.size() - end);
  fresh[2] = Low8(fresh[2] - gone);
  fresh[kPairCountByte] = Low8(fresh[kPairCountByte] - (count - kept));
  features.Replace(Bytes(fresh, bytes.size() - gone));
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t EDID_StripHdr(EdidHandle* handle) {
  if (handle == nullptr || handle->blocks == nullptr) return REEDID_ERR("invalid parameters");
  VisitCtaDataBlocks(*handle, [](CtaCursor& cursor) { StripHdr(cursor); });
  for (unsigned i = 0; i < handle->blockCount; ++i) {
    for (SectionCursor cursor(handle->blocks[i]); cursor.Next();) {
      if (cursor.tag() == DISPID20_TAG_INTERFACE_FEATURES) StripHdr(cursor);
    }
  }
  return 0;
}
