// The timings that two displays both offer, in any of the lists that tell timings.

#include "transform/link/timings.h"

#include <algorithm>

#include "patch/base_block.h"
#include "patch/hdmi_video.h"
#include "patch/video.h"
#include "transform/common/mixes.h"
#include "transform/common/records.h"

namespace reedid {
namespace {

constexpr unsigned kMaxSteps = 100000;  // each changes or removes a timing; there are never so many
constexpr uint8_t kVgaVic = 1;
constexpr uint8_t kMark420 = 0x80;  // of a type VII timing, byte 3
constexpr unsigned kMapHeader = 2;

uint64_t Total(const OfferedTiming& offer) {
  return offer.timing.hactive + uint64_t{offer.timing.hblank};
}

// What becomes of an offer: `whole` and `in420` as the other display and both links have them.
OfferList::Shared CommonForms(const OfferList& theirs, const OfferedTiming& offer, uint32_t clock) {
  OfferList::Shared forms = theirs.FormsOf(offer);
  if (IsVga(offer)) forms.whole = true;
  forms.whole = forms.whole && offer.ycc420 != YCC420_ONLY && offer.timing.pixelClock <= clock;
  forms.in420 = forms.in420 && offer.ycc420 != YCC420_NO && offer.timing.pixelClock / 2 <= clock;
  return forms;
}

bool IsCommon(const OfferedTiming& offer, const OfferList::Shared& forms) {
  if (offer.ycc420 == YCC420_ONLY) return forms.in420;
  return forms.whole && (forms.in420 || offer.ycc420 == YCC420_NO);
}

// A map without bits holds for every descriptor; to take one out of it, it has to name the others. Without room it goes.
// Whether there was one.
bool SpellOutMaps(EdidHandle& image) {
  bool found = false;
  VisitDataBlocks(image, [&](CtaCursor& map) {
    if (!map.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_420_MAP) || map.bytes().size() != kMapHeader) return;
    found = true;
    unsigned svds = 0;
    for (CtaCursor video(map.run().holder == 0 ? CollectionOf(*map.run().block) : map.run()); video.Next();) {
      if (video.Is(CEA_TAG_VIDEO)) svds += static_cast<unsigned>(video.bytes().size()) - 1;
    }
    uint8_t fresh[REEDID_CEA_DATA_BLOCK_SIZE] = {};
    const unsigned size = std::min<unsigned>(kMapHeader + (svds + 7) / 8, sizeof fresh);
    fresh[0] = Low8(CEA_TAG_EXTENDED << 5 | (size - 1));
    fresh[1] = CEA_EXT_TAG_420_MAP;
    for (unsigned i = 0; i < svds && kMapHeader + i / 8 < size; ++i) {
      fresh[kMapHeader + i / 8] = Low8(fresh[kMapHeader + i / 8] | 1u << i % 8);
    }
    if (size == kMapHeader || !map.Replace(Bytes(fresh, size))) map.Erase();
  });
  return found;
}

// A video format that only its 4:2:0 form is left of.
Outcome LeaveIn420(EdidHandle& image, const OfferedTiming& offer) {
  const bool listed = CountVics420(image, offer.vic) != 0 || AddVic420(image, offer.block, offer.vic);
  const Outcome outcome = DropSvd(image, FindSvdOf(image, offer.block, offer.vic));  // it may have moved
  if (!listed) AddVic420(image, offer.block, offer.vic);                             // in the room that it left
  return outcome;
}

Outcome Lose420(EdidHandle& image, const OfferedTiming& offer) {
  if (offer.source == TIMING_VIC) {
    if (SpellOutMaps(image)) return Outcome::kGone;  // it stands elsewhere: look again
    ClearFromMap420(image, PlaceOf(offer));
    return Outcome::kChanged;
  }
  if (offer.source != TIMING_TYPE_VII) return EraseOffer(image, offer) ? Outcome::kGone : Outcome::kKept;
  EdidBlock& block = image.blocks[offer.block];
  Overwrite(block, offer.offset + 3u, Low8(BytesOf(block)[offer.offset + 3] & ~kMark420));
  return Outcome::kChanged;
}

Outcome Drop(EdidHandle& image, const OfferedTiming& offer) {
  switch (offer.source) {
    case TIMING_VIC:
      return DropSvd(image, PlaceOf(offer));
    case TIMING_VIC_420:
      EraseVic420(image, PlaceOf(offer));
      return Outcome::kGone;
    case TIMING_DETAILED:
      if (IsPreferredSlot(offer)) return Outcome::kKept;
      break;
    default:
      break;
  }
  if (image.blocks[offer.block].type == EDID_BLOCK_UNKNOWN) {  // a list without free places
    EraseBlock(image, offer.block);
    return Outcome::kGone;
  }
  if (offer.source != TIMING_DETAILED) return EraseOffer(image, offer) ? Outcome::kGone : Outcome::kKept;
  EraseDetailedTiming(image, PlaceOf(offer));
  return Outcome::kGone;
}

Outcome Mix(EdidHandle& image, const OfferedTiming& offer, const OfferList::Shared& forms) {
  if (forms.whole) return Lose420(image, offer);
  if (forms.in420 && offer.source == TIMING_VIC) return LeaveIn420(image, offer);
  return Drop(image, offer);
}

// Video codes that no table has: only the same code of the other display means the same.
void DropUnknownSvds(EdidHandle& image, const EdidHandle& other) {
  for (unsigned block = 0; block < image.blockCount; ++block) {
    for (unsigned vic = 0; vic < 256; ++vic) {
      OfferedTiming known;
      const auto code = Low8(vic);
      if (VicToMode(vic, &known) == 0 || CountSvds(other, code) != 0) continue;
      for (BytePlace place; (place = FindSvdOf(image, block, code)).at != 0;) DropSvd(image, place);
    }
  }
}

bool IsNative(const EdidHandle& image, const OfferedTiming& offer, bool interlaced) {
  const bool counted = offer.source == TIMING_VIC || (offer.source == TIMING_DETAILED && HasCtaFlag(image, kCtaNative));
  return offer.native != 0 && counted && (offer.timing.interlaced != 0) == interlaced;
}

}  // namespace

bool SameMode(const OfferedTiming& a, const OfferedTiming& b) {
  const uint32_t low = Lower(a.timing.pixelClock, b.timing.pixelClock);
  const uint32_t high = Higher(a.timing.pixelClock, b.timing.pixelClock);
  constexpr uint32_t kClockStep = 10;  // kHz, of a descriptor
  return a.timing.hactive == b.timing.hactive && a.timing.vactive == b.timing.vactive &&
         a.timing.interlaced == b.timing.interlaced && Total(a) == Total(b) && a.vTotalHalfLines == b.vTotalHalfLines &&
         high - low <= high / 1000 + kClockStep;
}

bool IsVga(const OfferedTiming& offer) {
  OfferedTiming vga;
  return VicToMode(kVgaVic, &vga) == 0 && SameMode(offer, vga);
}

OfferList::OfferList(const EdidHandle& image)
    : list_(AllocateZeroed<OfferedTiming>(EDID_GetTimings(&image, nullptr, 0))) {
  if (ok()) count_ = EDID_GetTimings(&image, list_.get(), UINT32_MAX);
}

OfferList::Shared OfferList::FormsOf(const OfferedTiming& offer) const {
  Shared forms;
  for (const OfferedTiming* mode = list_.get(); mode != list_.get() + count_; ++mode) {
    if (!SameMode(*mode, offer)) continue;
    forms.whole = forms.whole || mode->ycc420 != YCC420_ONLY;
    forms.in420 = forms.in420 || mode->ycc420 != YCC420_NO;
  }
  return forms;
}

void MixTimings(EdidHandle& image, const EdidHandle& other, const OfferList& theirs, uint32_t clock) {
  unsigned next = 0;
  for (unsigned step = 0; step < kMaxSteps; ++step) {
    OfferedTiming offer;
    OfferList::Shared forms;
    unsigned at = 0;
    bool found = false;
    VisitOffers(image, [&](const OfferedTiming& candidate) {
      if (found || at++ < next) return;
      forms = CommonForms(theirs, candidate, clock);
      found = !IsCommon(candidate, forms);
      offer = candidate;
      next = at - (found ? 1 : 0);
    });
    if (!found) break;
    if (Mix(image, offer, forms) != Outcome::kGone) ++next;
  }
  DropUnknownSvds(image, other);
}

bool HasNative(const EdidHandle& image, bool interlaced) {
  bool found = false;
  VisitOffers(image, [&](const OfferedTiming& offer) { found = found || IsNative(image, offer, interlaced); });
  return found;
}

void ClearInterlacedNatives(EdidHandle& image) {
  constexpr unsigned kNativeMark = 0x80;
  bool counted = false;
  VisitOffers(image, [&](const OfferedTiming& offer) {
    if (!IsNative(image, offer, true)) return;
    counted = counted || offer.source == TIMING_DETAILED;
    if (offer.source != TIMING_VIC) return;
    EdidBlock& block = image.blocks[offer.block];
    Overwrite(block, offer.offset, Low8(BytesOf(block)[offer.offset] & ~kNativeMark));
  });
  if (counted) ClearCtaFlags(image, kCtaNative);
}

void MixPreferred(EdidHandle& image, const OfferList& theirs, uint32_t clock) {
  OfferedTiming preferred, first;
  bool lost = false, left = false;
  VisitOffers(image, [&](const OfferedTiming& offer) {
    if (offer.source != TIMING_DETAILED) return;
    if (IsPreferredSlot(offer)) {
      lost = !IsCommon(offer, CommonForms(theirs, offer, clock));
      preferred = offer;
    } else if (lost && !left) {
      left = true;
      first = offer;
    }
  });
  if (!lost || (left && SetPreferred(image, preferred, first))) return;
  const LinkBudget budget(kAnyLink, image);
  OfferedTiming best;
  if (!LargestOffered(image, budget, false, best) && !LargestOffered(image, budget, true, best)) {
    VicToMode(kVgaVic, &best);
  }
  SetPreferred(image, preferred, best);
}

}  // namespace reedid
