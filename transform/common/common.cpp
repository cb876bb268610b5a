// What two displays have in common, on a copy of the first: the handle gets all of it or nothing.

#include "base/log.h"
#include "patch/base_block.h"
#include "patch/hdmi_video.h"
#include "patch/image.h"
#include "reedid/two_displays.h"
#include "transform/common/mixes.h"
#include "transform/common/records.h"

namespace reedid {
namespace {

constexpr unsigned kVgaByte = 35;  // established timings I
constexpr uint8_t kVgaBit = 0x20;
constexpr unsigned kForumFlags = 7;
constexpr unsigned kDeep420 = 7, kUhdVic = 8;

// 640x480 at 60 Hz is what a source falls back to: it is told where nothing else is.
void EnsureVga(EdidHandle& image) {
  bool offers = false;
  VisitOffers(image, [&](const OfferedTiming&) { offers = true; });
  if (offers || image.blockCount == 0 || !HasBaseSlots(image.blocks[0])) return;
  Overwrite(image.blocks[0], kVgaByte, Low8(image.blocks[0].bytes[kVgaByte] | kVgaBit));
}

// Flags about timings that are no longer told.
void ClearForumFlags(EdidHandle& image, const HdmiRates& before) {
  const HdmiRates now = HdmiRatesOf(image);
  const unsigned lost =
      (before.ycc420 && !now.ycc420 ? kDeep420 : 0u) | (before.uhdVics && !now.uhdVics ? kUhdVic : 0u);
  VisitDataBlocks(image, [&](CtaCursor& cursor) {
    if (!IsHdmiForum(cursor) || cursor.bytes().size() <= kForumFlags) return;
    cursor.Set(kForumFlags, Low8(cursor.bytes()[kForumFlags] & ~lost));
  });
}

void MixCapabilities(EdidHandle& image, const EdidHandle& other) {
  const bool canSend = CanSendHdr(image) && CanSendHdr(other);
  EDID_MIX_H14bVSDB(&image, &other);
  EDID_MIX_HFVSDB(&image, &other);
  EDID_MIX_DolbyVision(&image, &other);
  MixAudio(image, other);
  MixColour(image, other);
  MixStaticHdr(image, other);
  MixOtherBlocks(image, other);
  // Both can be sent high dynamic range, but in no colours or depth that both have.
  if (canSend && !CanSendHdr(image)) DropStaticHdr(image);
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t EDID_LimitToCommon(EdidHandle* handle, const EdidHandle* other) {
  if (handle == nullptr || handle->blocks == nullptr || other == nullptr || other->blocks == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  const OfferList theirs(*other);
  Draft draft(*handle);
  if (!theirs.ok() || !draft.ok()) return REEDID_ERR("malloc fail");
  EdidHandle& image = draft.image();
  const uint32_t clock = CommonClock(image, *other);
  const HdmiRates before = HdmiRatesOf(image);
  const bool hadNative = HasNative(image, false);
  MixCapabilities(image, *other);
  MixTimings(image, *other, theirs, clock);
  MixCapabilities(image, *other);  // what found no room before the timings went
  MixPreferred(image, theirs, clock);
  if (hadNative && !HasNative(image, false)) ClearInterlacedNatives(image);
  MixRanges(image, *other);
  EnsureVga(image);
  ClearForumFlags(image, before);
  draft.Commit(*handle);
  return 0;
}
