// The timings of a DisplayID section (DisplayID 1.3 and 2.0, section 4), and those data blocks that CTA-861 takes over
// from it.

#include "displayid/codec.h"
#include "displayid/descriptors.h"
#include "displayid/timing_forms.h"
#include "inventory/offers.h"

namespace reedid {
namespace {

constexpr unsigned kMaxDescriptor = kTypeISize + 7;  // with its extra bytes

// One descriptor of a data block as a data block of its own, for the getter of its kind.
struct OneDescriptor : DispIdDataBlock {
  OneDescriptor(uint8_t blockTag, uint8_t flags, Part descriptor) : DispIdDataBlock{blockTag, 0, 0, 0, buffer} {
    revision = flags & 7;
    headerFlags = flags >> 3;
    BeginDataBlock(*this, {blockTag}, descriptor.size());
    descriptor.bytes.CopyTo(buffer + kDispIdHeaderSize);
  }
  OneDescriptor(const OneDescriptor&) = delete;
  OneDescriptor& operator=(const OneDescriptor&) = delete;

  uint8_t buffer[kDispIdHeaderSize + kMaxDescriptor] = {};
};

// Calls visit(descriptor) for each that the payload holds whole, at its place.
template <class SizeAt, class Visit>
void WalkDescriptors(Part payload, SizeAt sizeAt, Offers& offers, Visit visit) {
  for (unsigned i = 0; payload.size() > 0; ++i) {
    const unsigned size = sizeAt(payload);
    if (size > payload.size()) return;
    offers.place.offset = Low16(payload.offset);
    offers.place.index = Low16(i);
    visit(payload.First(size));
    payload = payload.From(size);
  }
}

constexpr unsigned ExtraBytes(uint8_t flags) {
  return Bits(flags, 4, 3);
}

// Types I, II, VI and VII. `mark` is what the descriptor's mark means.
enum class Mark { kPreferred, kYcc420 };

void OfferDetailed(uint8_t tag, uint8_t source, Part payload, uint8_t flags, Mark mark, Offers& offers) {
  const auto* form = FindForm(kDetailedForms, tag);
  const unsigned size =
      tag == DISPID_TAG_TYPE_II ? kTypeIiSize : kTypeISize + (tag == DISPID20_TAG_TYPE_VII ? ExtraBytes(flags) : 0);
  const auto sizeAt = [&](Part at) { return tag == DISPID_TAG_TYPE_VI ? TypeViSizeAt(at.bytes) : size; };
  const OfferedTiming before = offers.place;
  offers.place.source = source;
  WalkDescriptors(payload, sizeAt, offers, [&](Part descriptor) {
    const OneDescriptor one(tag, flags, descriptor);
    DtdTiming timing;
    if (form->get(&one, &timing, 1) != 0) return;
    timing.hImageSize = timing.vImageSize = 0;  // type VI tells them in units of its own
    offers.place.timing.preferred = mark == Mark::kPreferred ? timing.preferred : 0;
    offers.place.ycc420 = mark == Mark::kYcc420 && timing.preferred != 0 ? YCC420_ALSO : YCC420_NO;
    offers.Add(ModeOf(timing));
  });
  offers.place = before;
}

void OfferBitmap(Part payload, bool vesa, Offers& offers) {
  offers.place.source = vesa ? TIMING_DISPLAYID_VESA : TIMING_DISPLAYID_CTA;
  for (unsigned i = 0; i < payload.size() * 8; ++i) {
    if (!Bit(payload[i / 8], i % 8)) continue;
    offers.place.offset = Low16(payload.offset + i / 8);
    offers.place.index = Low16(i + 1);
    if (vesa) {
      offers.AddDmt(i + 1);
    } else {
      offers.AddVic(VicTableIndex(i + 1));
    }
  }
}

void OfferDataBlock(Part block, Offers& offers) {
  const uint8_t tag = block[0], flags = block[1];
  const Part payload = block.From(kDispIdHeaderSize);
  switch (tag) {
    case DISPID_TAG_TYPE_I:
      return OfferDetailed(tag, TIMING_TYPE_I, payload, flags, Mark::kPreferred, offers);
    case DISPID_TAG_TYPE_II:
      return OfferDetailed(tag, TIMING_TYPE_II, payload, flags, Mark::kPreferred, offers);
    case DISPID_TAG_TYPE_VI:
      return OfferDetailed(tag, TIMING_TYPE_VI, payload, flags, Mark::kPreferred, offers);
    case DISPID20_TAG_TYPE_VII:
      return OfferTypeVii(payload, flags, false, offers);
    case DISPID_TAG_TYPE_IV:
    case DISPID20_TAG_TYPE_VIII:
      return OfferTimingCodes(tag, payload, flags, offers);
    case DISPID_TAG_TYPE_III:
    case DISPID_TAG_TYPE_V:
    case DISPID20_TAG_TYPE_IX:
    case DISPID20_TAG_TYPE_X:
      return OfferFormulaTimings(tag, payload, flags, offers);
    case DISPID_TAG_VESA_TIMINGS:
    case DISPID_TAG_CTA_TIMINGS:
      return OfferBitmap(payload, tag == DISPID_TAG_VESA_TIMINGS, offers);
    default:
      return;
  }
}

}  // namespace

// From revision 2 on the mark means YCbCr 4:2:0; CTA-861 has no older one.
void OfferTypeVii(Part payload, uint8_t flags, bool cta, Offers& offers) {
  const Mark mark = cta || Bits(flags, 0, 3) >= 2 ? Mark::kYcc420 : Mark::kPreferred;
  OfferDetailed(DISPID20_TAG_TYPE_VII, TIMING_TYPE_VII, payload, flags, mark, offers);
}

// Types IV and VIII. Header byte 1: 7-6 kind of code, 5 YCbCr 4:2:0 (type VIII), 3 two bytes per code.
void OfferTimingCodes(uint8_t tag, Part payload, uint8_t flags, Offers& offers) {
  const unsigned size = Bit(flags, 3) ? 2 : 1;
  offers.place.source = tag == DISPID_TAG_TYPE_IV ? TIMING_TYPE_IV : TIMING_TYPE_VIII;
  offers.place.ycc420 = tag == DISPID20_TAG_TYPE_VIII && Bit(flags, 5) ? YCC420_ALSO : YCC420_NO;
  WalkDescriptors(
      payload, [&](Part) { return size; }, offers,
      [&](Part code) {
        const unsigned id = code.bytes.Le16(0);  // a byte that is not there is 0
        switch (Bits(flags, 6, 2)) {
          case 0:
            return offers.AddDmt(id);
          case 1:
            return offers.AddVic(VicTableIndex(id));
          case 2:
            return offers.AddHdmiVic(id);
          default:
            return;
        }
      });
  offers.place.ycc420 = 0;
}

// Types III, V, IX and X.
void OfferFormulaTimings(uint8_t tag, Part payload, uint8_t flags, Offers& offers) {
  const OneDescriptor empty(tag, flags, {});
  const unsigned size = tag == DISPID_TAG_TYPE_III ? kTypeIiiSize
                        : tag == DISPID_TAG_TYPE_V ? kTypeVSize
                                                   : FormulaTimingSize(empty);
  const auto* form = FindForm(kCvtForms, tag);
  const auto get = form != nullptr ? form->get : DispID20_Get6ByteCVT;
  const OfferedTiming before = offers.place;
  offers.place.source = tag == DISPID_TAG_TYPE_III    ? TIMING_TYPE_III
                        : tag == DISPID_TAG_TYPE_V    ? TIMING_TYPE_V
                        : tag == DISPID20_TAG_TYPE_IX ? TIMING_TYPE_IX
                                                      : TIMING_TYPE_X;
  WalkDescriptors(
      payload, [&](Part) { return size; }, offers,
      [&](Part descriptor) {
        const OneDescriptor one(tag, flags, descriptor);
        CvtTiming request;
        if (get(&one, &request, 1) != 0) return;
        if (request.vactive != 0) request.aspectRatio = ASPECT_UNKNOWN;
        offers.place.timing.preferred = request.preferred;
        offers.place.ycc420 = request.ycc420 != 0 ? YCC420_ALSO : YCC420_NO;
        offers.AddCvt(request);
      });
  offers.place = before;
}

void OfferSection(EdidBlock& block, Offers& offers) {
  SectionCursor cursor(block);
  if (cursor.version() >> 4 == 0) return;
  for (unsigned i = 0; cursor.Next(); ++i) {
    offers.place.dataBlock = Low8(i);
    const Part part = {cursor.bytes(), cursor.at()};
    if (cursor.tag() != DISPID20_TAG_CTA) {
      OfferDataBlock(part, offers);
      continue;
    }
    offers.place.container = Low8(i);
    const unsigned begin = part.offset + kDispIdHeaderSize;
    OfferCtaDataBlocks({&block, begin, part.offset + part.size(), part.offset}, offers);
    offers.place.container = TIMING_NO_BLOCK;
  }
}

}  // namespace reedid
