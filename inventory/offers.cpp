// Which timings does an image offer, and at which rates?

#include "inventory/offers.h"

#include <algorithm>
#include <functional>

#include "base/log.h"
#include "base/pinned.h"
#include "edid/image.h"
#include "reedid/tags.h"
#include "timing/dtd.h"

namespace reedid {
namespace {

PIN_FIELDS(OfferedTiming, 0, 36, timing);
PIN_FIELDS(OfferedTiming, 36, 4, rate, vTotalHalfLines);
PIN_FIELDS(OfferedTiming, 44, 2, offset, index);
PIN_FIELDS(OfferedTiming, 48, 1, block, container, dataBlock, variant, source, vic, dmt, hdmiVic, hBorder, vBorder,
           ycc420, native);
PIN_SIZE(OfferedTiming, 60);

constexpr uint8_t kErased = 0xFF;
constexpr uint32_t kFirstEst3Code = 128;

// HDMI 1.4b, table 8-13: HDMI_VIC 1..4 as VICs.
constexpr uint8_t kVicOfHdmiVic[] = {0, 95, 94, 93, 98};

Part PartOf(const EdidBlock& block) {
  return {Bytes(block.bytes, block.size), 0};
}

// What CTA-861 tells about the detailed timings of all blocks: how many of the first ones are native.
unsigned NativeDtds(const EdidHandle& handle) {
  for (unsigned i = 0; i < handle.blockCount; ++i) {
    const Part block = PartOf(handle.blocks[i]);
    if (handle.blocks[i].type == EDID_BLOCK_CEA) return block[1] >= 2 ? block[3] & 0x0F : 0;
  }
  return 0;
}

// A block of memory that was erased and never written.
bool IsErased(Part slot) {
  for (unsigned i = 0; i < kDtdSize; ++i) {
    if (slot[i] != kErased) return false;
  }
  return true;
}

// The highest rates below a bound, highest first without repeats. More than these are found by walking again.
class RateWindow {
 public:
  explicit RateWindow(uint64_t bound) : bound_(bound) {}

  void Add(uint32_t rate) {
    uint32_t* const end = rates_ + count_;
    uint32_t* const place = std::lower_bound(rates_, end, rate, std::greater<>());
    if (rate >= bound_ || (place != end && *place == rate) || place == rates_ + kRoom) return;
    if (count_ < kRoom) ++count_;
    std::copy_backward(place, rates_ + count_ - 1, rates_ + count_);
    *place = rate;
  }

  const uint32_t* rates() const { return rates_; }
  unsigned count() const { return count_; }
  bool full() const { return count_ == kRoom; }

 private:
  static constexpr unsigned kRoom = 128;
  uint64_t bound_;
  uint32_t rates_[kRoom];
  unsigned count_ = 0;
};

// One mode without a place.
template <class Add>
int32_t Alone(OfferedTiming* mode, uint8_t source, Add add) {
  if (mode == nullptr) return -1;
  OfferedTiming told = {};
  Offers offers([](void* context, const OfferedTiming& offer) { *static_cast<OfferedTiming*>(context) = offer; },
                &told);
  offers.place.source = source;
  offers.place.container = offers.place.dataBlock = TIMING_NO_BLOCK;
  add(offers);
  if (told.rate == 0) return -1;
  *mode = told;
  return 0;
}

bool HasBlocks(const EdidHandle* handle) {
  return handle != nullptr && handle->blocks != nullptr;
}

}  // namespace

void Offers::Add(const Mode& mode) {
  OfferedTiming offer = place;
  offer.timing = mode.timing;
  offer.rate = RateOf(mode);
  if (offer.rate == 0 || mode.timing.hactive == 0 || mode.timing.vactive == 0) return;
  const uint32_t hertz = (offer.rate + 500) / 1000;
  offer.timing.frameRate = Low8(hertz > UINT8_MAX ? 0 : hertz);
  offer.timing.preferred = place.timing.preferred;
  offer.timing.aspectRatio = std::min<uint16_t>(mode.timing.aspectRatio, ASPECT_UNKNOWN);
  offer.vTotalHalfLines = mode.vTotalHalfLines;
  offer.hBorder = mode.hBorder;
  offer.vBorder = mode.vBorder;
  take_(context_, offer);
}

void Offers::AddDmt(unsigned id) {
  Mode mode;
  if (!DmtMode(id, mode)) return;
  place.dmt = Low8(id);
  Add(mode);
  place.dmt = 0;
}

void Offers::AddVic(unsigned tableIndex) {
  Mode mode;
  if (!VicMode(tableIndex, mode)) return;
  place.vic = Low8(tableIndex > 128 ? tableIndex + 64 : tableIndex);
  Add(mode);
  place.vic = 0;
}

void Offers::AddHdmiVic(unsigned vic) {
  Mode mode;
  if (vic >= sizeof kVicOfHdmiVic || !VicMode(kVicOfHdmiVic[vic], mode)) return;
  place.hdmiVic = Low8(vic);
  Add(mode);
  place.hdmiVic = 0;
}

void Offers::AddCvt(const CvtTiming& request) {
  CvtTiming whole = request;
  whole.flagA = 0;
  DtdTiming timing;
  if (ExpandCvt(whole, timing) == nullptr) Add(ModeOf(timing));
  if (request.flagA == 0 || ExpandCvt(request, timing) != nullptr) return;
  place.variant = 1;
  Add(ModeOf(timing));
  place.variant = 0;
}

void Offers::AddDtd(Part slot) {
  if (slot.bytes.Le16(0) == 0 || slot.size() < kDtdSize || IsErased(slot)) return;
  DtdSlot raw = {kDtdSlotFlag, {}};
  slot.bytes.First(kDtdSize).CopyTo(raw.bytes);
  DtdTiming timing;
  if (VESA_GetDTD(&raw, &timing) != 0) return;
  Mode mode = ModeOf(timing);
  AddBorders(mode, slot[15], slot[16]);
  const OfferedTiming before = place;
  place.source = TIMING_DETAILED;
  place.offset = Low16(slot.offset);
  if (dtds++ < nativeDtds) place.native = 1;
  Add(mode);
  place = before;
}

void WalkOffers(const EdidHandle& handle, Offers& offers) {
  offers.nativeDtds = NativeDtds(handle);
  StandardFormula formula;
  for (unsigned i = 0; i < handle.blockCount; ++i) {
    EdidBlock& block = handle.blocks[i];
    const Part part = PartOf(block);
    offers.place = {};
    offers.place.block = Low8(i);
    offers.place.container = offers.place.dataBlock = TIMING_NO_BLOCK;
    const bool whole = part.size() >= kEdidBlockSize;
    if (block.type == EDID_BLOCK_VESA && HasEdidHeader(part.bytes.data(), part.size()) && whole) {
      formula = OfferBaseBlock(part, offers);
    } else if (block.type == EDID_BLOCK_UNKNOWN && whole && part[0] == EDID_EXTENSION_VIDEO_TIMING) {
      OfferVideoTimingExtension(part, formula, offers);
    } else if (block.type == EDID_BLOCK_CEA) {
      OfferCtaExtension(block, offers);
    } else if (IsSection(block.type)) {
      OfferSection(block, offers);
    }
  }
}

}  // namespace reedid

using namespace reedid;

uint32_t EDID_GetTimings(const EdidHandle* handle, OfferedTiming* list, uint32_t capacity) {
  if (!HasBlocks(handle)) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  uint32_t count = 0;
  VisitOffers(*handle, [&](const OfferedTiming& offer) {
    if (list != nullptr && count < capacity) list[count] = offer;
    ++count;
  });
  return count;
}

uint32_t EDID_GetRates(const EdidHandle* handle, uint32_t* millihertz, uint32_t capacity) {
  if (!HasBlocks(handle)) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  uint32_t count = 0;
  uint64_t bound = uint64_t{UINT32_MAX} + 1;
  for (bool more = true; more;) {
    RateWindow window(bound);
    VisitOffers(*handle, [&](const OfferedTiming& offer) { window.Add(offer.rate); });
    for (unsigned i = 0; i < window.count(); ++i, ++count) {
      if (millihertz != nullptr && count < capacity) millihertz[count] = window.rates()[i];
      bound = window.rates()[i];
    }
    more = window.full();
  }
  return count;
}

int32_t VicToMode(uint32_t vic, OfferedTiming* mode) {
  return Alone(mode, TIMING_VIC, [vic](Offers& offers) { offers.AddVic(VicTableIndex(vic)); });
}

int32_t DmtToMode(uint32_t id, OfferedTiming* mode) {
  return Alone(mode, 0, [id](Offers& offers) { offers.AddDmt(id); });
}

int32_t EstToMode(uint32_t code, OfferedTiming* mode) {
  if (code >= kFirstEst3Code) {
    return Alone(mode, TIMING_ESTABLISHED_III,
                 [code](Offers& offers) { offers.AddDmt(Established3Dmt(code - kFirstEst3Code)); });
  }
  return Alone(mode, TIMING_ESTABLISHED, [code](Offers& offers) {
    Mode found;
    if (EstablishedMode(code, found, offers.place.dmt)) offers.Add(found);
  });
}

int32_t StdToMode(const VesaBlock* model, const StdTiming* std, OfferedTiming* mode) {
  if (std == nullptr || std->valid == 0) return -1;
  StandardFormula formula;
  if (model != nullptr) {
    const auto slot = [model](unsigned i) { return Bytes(model->descriptors[i].bytes, kDtdSize); };
    formula = FormulaOf(model->version, model->revision, {slot(0), slot(1), slot(2), slot(3)});
  }
  return Alone(mode, TIMING_STANDARD, [&](Offers& offers) {
    Mode found;
    if (StandardMode(*std, formula, found, offers.place.dmt)) offers.Add(found);
  });
}
