// The timings of a CTA-861 extension, and of CTA-861 data blocks inside a DisplayID block.

#include "cea/codec.h"
#include "displayid/codec.h"
#include "inventory/offers.h"
#include "timing/dtd.h"

namespace reedid {
namespace {

constexpr uint8_t kFirstWithDataBlocks = 3;  // version of the extension
constexpr unsigned kExtendedPayload = 2;     // behind header and extended tag
constexpr uint32_t kHdmiOui = 0x000C03;

// Short video descriptors (CTA-861, table 58): 129..192 are VIC 1..64 with the native mark; 193..253 are VICs of their
// own, which the timing table has 64 rows below their number.
constexpr bool IsNativeSvd(uint8_t svd) {
  return svd > 128 && svd <= 192;
}
constexpr unsigned TableIndex(uint8_t svd) {
  return IsNativeSvd(svd) ? svd & 0x7Fu : svd > 192 ? svd - 64u : svd;
}

// Which short video descriptors of a collection can be had in 4:2:0 too (CTA-861, 7.5.11).
class CapabilityMap {
 public:
  explicit CapabilityMap(const CtaRun& run) {
    for (CtaCursor cursor(run); cursor.Next();) {
      if (!cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_420_MAP)) continue;
      map_ = cursor.bytes().From(kExtendedPayload);
      all_ = map_.size() == 0;  // a map without bits holds for all
    }
  }

  bool operator[](unsigned svd) const { return all_ || Bit(map_[svd / 8], svd % 8); }

 private:
  Bytes map_;
  bool all_ = false;
};

void OfferSvds(Part svds, uint8_t source, const CapabilityMap* map, unsigned firstSvd, Offers& offers) {
  offers.place.source = source;
  for (unsigned i = 0; i < svds.size(); ++i) {
    offers.place.offset = Low16(svds.offset + i);
    offers.place.index = Low16(i);
    offers.place.native = IsNativeSvd(svds[i]) ? 1 : 0;
    offers.place.ycc420 = map == nullptr ? YCC420_ONLY : (*map)[firstSvd + i] ? YCC420_ALSO : YCC420_NO;
    offers.AddVic(TableIndex(svds[i]));
  }
  offers.place.native = offers.place.ycc420 = 0;
}

// HDMI 1.4b, table 8-16: the video part follows the latencies that byte 8 tells of.
void OfferHdmiVics(Part block, Offers& offers) {
  if (block.bytes.Le24(1) != kHdmiOui || !Bit(block[8], 5)) return;
  const bool latency = Bit(block[8], 7), interlacedLatency = latency && Bit(block[8], 6);
  const unsigned at = 9 + (latency ? 2 : 0) + (interlacedLatency ? 2 : 0);
  const Part vics = block.From(at + 2).First(Bits(block[at + 1], 5, 3));
  offers.place.source = TIMING_HDMI_VIC;
  for (unsigned i = 0; i < vics.size(); ++i) {
    offers.place.offset = Low16(vics.offset + i);
    offers.place.index = Low16(i);
    offers.AddHdmiVic(vics[i]);
  }
}

void OfferExtended(Part block, Offers& offers) {
  const uint8_t flags = block[kExtendedPayload];
  const Part payload = block.From(kExtendedPayload + 1);
  switch (block[1]) {
    case CEA_EXT_TAG_420_VIDEO:
      return OfferSvds(block.From(kExtendedPayload), TIMING_VIC_420, nullptr, 0, offers);
    case CEA_EXT_TAG_TYPE_VII:
      return OfferTypeVii(payload, flags, true, offers);
    case CEA_EXT_TAG_TYPE_VIII:
      return OfferTimingCodes(DISPID20_TAG_TYPE_VIII, payload, flags, offers);
    case CEA_EXT_TAG_TYPE_X:
      return OfferFormulaTimings(DISPID20_TAG_TYPE_X, payload, flags, offers);
    default:
      return;
  }
}

}  // namespace

// A data block with the reserved tag 0 is mostly a stray padding byte: it is passed over and does not count.
void OfferCtaDataBlocks(const CtaRun& run, Offers& offers) {
  const CapabilityMap map(run);
  unsigned svds = 0, index = 0;
  for (CtaCursor cursor(run); cursor.Next();) {
    if (cursor.tag() == 0) continue;
    const Part block = {cursor.bytes(), cursor.at()};
    offers.place.dataBlock = Low8(index++);
    if (cursor.Is(CEA_TAG_VIDEO)) {
      OfferSvds(block.From(1), TIMING_VIC, &map, svds, offers);
      svds += block.size() - 1;
    } else if (cursor.Is(CEA_TAG_VENDOR)) {
      OfferHdmiVics(block, offers);
    } else if (cursor.tag() == CEA_TAG_EXTENDED && block.size() > 1) {
      OfferExtended(block, offers);
    }
  }
  offers.place.dataBlock = TIMING_NO_BLOCK;
}

void OfferCtaExtension(EdidBlock& block, Offers& offers) {
  const Part part = {BytesOf(block), 0};
  if (part[1] >= kFirstWithDataBlocks) OfferCtaDataBlocks(CollectionOf(block), offers);
  const CtaSlots slots = SlotsOf(block);
  for (unsigned i = 0; i < slots.count; ++i) {
    offers.place.index = Low16(i);
    offers.AddDtd(part.From(slots.begin + i * kDtdSize).First(kDtdSize));
  }
}

}  // namespace reedid
