// The limit of an image to a link, on a copy of it: the handle gets all of it or nothing.

#include "base/log.h"
#include "base/pinned.h"
#include "transform/link/budget.h"
#include "transform/link/hdmi.h"
#include "transform/link/timings.h"

namespace reedid {
namespace {

PIN_FIELDS(EdidLink, 0, 4, maxTmdsClock, maxPixelClock);
PIN_FIELDS(EdidLink, 8, 1, maxFrlRate, ycc420, dsc, dvi, maxBitsPerColour);
PIN_FIELDS(EdidLink, 14, 2, maxWidth, maxHeight);
PIN_FIELDS(EdidLink, 20, 4, maxRate);
PIN_FIELDS(EdidLink, 24, kPointer, rates);
PIN_FIELDS(EdidLink, 24 + kPointer, 4, rateCount);
PIN_SIZE(EdidLink, 24 + 2 * kPointer);

constexpr uint8_t kMostFrl = 6;

bool IsLink(const EdidLink& link) {
  return link.maxFrlRate <= kMostFrl && (link.rates != nullptr || link.rateCount == 0);
}

}  // namespace
}  // namespace reedid

using namespace reedid;

//                                      TMDS,   pixels, FRL, 4:2:0, DSC, DVI, bits
const EdidLink EDID_LINK_HDMI14 = {340000, 0, 0, 0, 0, 0, 0, 0, 0, 0, nullptr, 0};
const EdidLink EDID_LINK_HDMI20 = {600000, 0, 0, 1, 0, 0, 0, 0, 0, 0, nullptr, 0};
const EdidLink EDID_LINK_DVI = {165000, 165000, 0, 0, 0, 1, 8, 0, 0, 0, nullptr, 0};
const EdidLink EDID_LINK_300MHZ_420 = {300000, 0, 0, 1, 0, 0, 0, 0, 0, 0, nullptr, 0};
const EdidLink EDID_LINK_CAPTURE_165MHZ = {165000, 165000, 0, 0, 0, 0, 8, 0, 0, 0, nullptr, 0};
const EdidLink EDID_LINK_FRL3 = {600000, 0, 3, 1, 1, 0, 0, 0, 0, 0, nullptr, 0};
const EdidLink EDID_LINK_FRL4 = {600000, 0, 4, 1, 1, 0, 0, 0, 0, 0, nullptr, 0};
const EdidLink EDID_LINK_FRL5 = {600000, 0, 5, 1, 1, 0, 0, 0, 0, 0, nullptr, 0};
const EdidLink EDID_LINK_FRL6 = {600000, 0, 6, 1, 1, 0, 0, 0, 0, 0, nullptr, 0};

int32_t EDID_LimitToLink(EdidHandle* handle, const EdidLink* link) {
  if (handle == nullptr || handle->blocks == nullptr || link == nullptr || !IsLink(*link)) {
    return REEDID_ERR("invalid parameters");
  }
  Draft draft(*handle);
  if (!draft.ok()) return REEDID_ERR("malloc fail");
  const LinkBudget budget(*link, *handle);
  const HdmiRates before = HdmiRatesOf(*handle);
  LimitTimings(draft.image(), budget);
  if (!LimitPreferred(draft.image(), budget)) {
    REEDID_ERR("no timing fits the link");
    return EDID_LINK_NO_TIMING;
  }
  if (const auto full = LimitHdmi(draft.image(), *link, before)) {
    REEDID_ERR("block %u: no room to tell the TMDS clock", *full);
    return EDID_LINK_NO_ROOM;
  }
  if (link->dvi != 0) MakeDvi(draft.image());
  LimitRanges(draft.image(), *link);
  draft.Commit(*handle);
  return 0;
}
