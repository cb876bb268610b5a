// Timings by formula: type III (DisplayID 1.3, table 4-10), type V (table 4-12), type IX (DisplayID 2.0, table 4-12)
// and type X (CTA-861, 7.5.19). Counts are stored less 1, low byte first.
//
// Type III, 3 bytes                Type V, 7 bytes                 Type IX and X, 6 bytes and more
//  0  preferred 7, formula 6..4,    0    preferred 7, flag 4,       0    4:2:0 7, flag 4, formula 2..0
//     aspect code 3..0                   formula - 2 1..0           1-2  hactive
//  1  hactive / 8                   2-3  hactive                    3-4  vactive
//  2  interlaced 7, rate 6..0       4-5  vactive                    5    rate 7..0
//                                   6    rate                       6    rate 9..8 1..0, two fields 4..2 and 7..5

#include "base/bytes.h"
#include "base/log.h"
#include "displayid/codec.h"
#include "displayid/descriptors.h"

namespace reedid {
namespace {

constexpr uint8_t kFirstTypeVFormula = 2;
constexpr uint8_t kLastFormula = 3;
constexpr unsigned kMaxTypeV = 35;

constexpr CvtTiming WithoutAspect() {
  CvtTiming timing = {};
  timing.aspectRatio = ASPECT_UNKNOWN;
  return timing;
}

constexpr bool HasRateUpTo(const CvtTiming& t, unsigned max) {
  return t.frameRate >= 1 && t.frameRate <= max;
}

struct TypeIii : FixedSize<kTypeIiiSize> {
  static constexpr CvtTiming kBlank = {};

  template <class Io, class Timing>
  constexpr void Layout(const Io& io, Timing& t) const {
    io(t.preferred, Place{0, 7, 1});
    io(t.formula, Place{0, 4, 3});
    io(t.aspectRatio, Place{0, 0, 4});
    ScaledLessOne(io, t.hactive, 8, Place{1});
    io(t.interlaced, Place{2, 7, 1});
    LessOne(io, t.frameRate, Place{2, 0, 7});
  }

  static constexpr Fit FitOf(const CvtTiming& t) {
    return GoodIf(t.hactive / 8 >= 1 && t.hactive / 8 <= 256 && HasRateUpTo(t, 128));
  }
};

struct TypeV : FixedSize<kTypeVSize> {
  static constexpr CvtTiming kBlank = WithoutAspect();

  template <class Io, class Timing>
  constexpr void Layout(const Io& io, Timing& t) const {
    io(t.preferred, Place{0, 7, 1});
    io(t.flagA, Place{0, 4, 1});
    Above(io, t.formula, kFirstTypeVFormula, Place{0, 0, 2});
    LessOne(io, t.hactive, Place{2}, Place{3});
    LessOne(io, t.vactive, Place{4}, Place{5});
    LessOne(io, t.frameRate, Place{6});
  }

  static constexpr Fit FitOf(const CvtTiming& t) {
    if (t.formula < kFirstTypeVFormula) return Fit::kBadFormula;
    return GoodIf(t.hactive != 0 && t.vactive != 0 && HasRateUpTo(t, 256));
  }
};

// Type IX, and type X with the extra bytes that its header tells. Only the first one has a meaning; without it the rate
// is stored modulo 256.
struct TypeIx {
  static constexpr CvtTiming kBlank = {};
  unsigned size;

  template <class Io, class Timing>
  constexpr void Layout(const Io& io, Timing& t) const {
    io(t.formula, Place{0, 0, 3});
    // Formula 3 gives the flag another meaning.
    io(t.formula == kLastFormula ? t.flagB : t.flagA, Place{0, 4, 1});
    io(t.ycc420, Place{0, 7, 1});
    LessOne(io, t.hactive, Place{1}, Place{2});
    LessOne(io, t.vactive, Place{3}, Place{4});
    if (size == kTypeIxSize) {
      LessOne(io, t.frameRate, Place{5});
      return;
    }
    LessOne(io, t.frameRate, Place{5}, Place{6, 0, 2});
    io(t.extraBits42, Place{6, 2, 3});
    io(t.extraBits75, Place{6, 5, 3});
  }

  constexpr unsigned SizeOf(const CvtTiming&) const { return size; }
  constexpr unsigned SizeAt(Bytes) const { return size; }

  static constexpr Fit FitOf(const CvtTiming& t) {
    if (t.formula > kLastFormula) return Fit::kBadFormula;
    return GoodIf(t.hactive != 0 && t.vactive != 0 && HasRateUpTo(t, 1024));
  }
};

bool IsFormulaTiming(const DispIdDataBlock* entry) {
  return HasTag(entry, DISPID20_TAG_TYPE_IX) || HasTag(entry, DISPID20_TAG_TYPE_X);
}

}  // namespace

Failure RefuseTiming(const CvtTiming&, Caller caller) {
  return REEDID_ERR_AS(caller, "invalid timing");
}

}  // namespace reedid

using namespace reedid;

int32_t DispID_Get3ByteCVT(const DispIdDataBlock* entry, CvtTiming* timings, uint32_t requested) {
  if (!Matches(entry, DISPID_TAG_TYPE_III, kDispIdHeaderSize + kTypeIiiSize) || timings == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  return ReadDescriptors(TypeIii(), *entry, timings, requested);
}

int32_t DispID_Set3ByteCVT(const CvtTiming* timings, uint32_t count, DispIdDataBlock* entry) {
  if (timings == nullptr || !CanHold(entry) || count > kMaxDispIdPayload / kTypeIiiSize) {
    return REEDID_ERR("invalid parameters");
  }
  BeginDataBlock(*entry, {DISPID_TAG_TYPE_III, 1, 0}, count * kTypeIiiSize);
  return WriteDescriptors(TypeIii(), timings, count, *entry);
}

int32_t DispID_Get7ByteCVT(const DispIdDataBlock* entry, CvtTiming* timings, uint32_t requested) {
  if (!Matches(entry, DISPID_TAG_TYPE_V, kDispIdHeaderSize + kTypeVSize) || timings == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  return ReadDescriptors(TypeV(), *entry, timings, requested);
}

int32_t DispID_Set7ByteCVT(const CvtTiming* timings, uint32_t count, DispIdDataBlock* entry) {
  if (timings == nullptr || !CanHold(entry) || count == 0 || count > kMaxTypeV) {
    return REEDID_ERR("invalid parameters");
  }
  BeginDataBlock(*entry, {DISPID_TAG_TYPE_V, 0, 0}, count * kTypeVSize);
  return WriteDescriptors(TypeV(), timings, count, *entry);
}

int32_t DispID20_Get6ByteCVT(const DispIdDataBlock* entry, CvtTiming* timings, uint32_t requested) {
  if (!IsFormulaTiming(entry) || !CanHold(entry) || timings == nullptr) return REEDID_ERR("invalid parameters");
  return ReadDescriptors(TypeIx{FormulaTimingSize(*entry)}, *entry, timings, requested);
}

int32_t DispID20_Set6ByteCVT(const CvtTiming* timings, uint32_t count, DispIdDataBlock* entry) {
  if (timings == nullptr || !IsFormulaTiming(entry) || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  const unsigned size = FormulaTimingSize(*entry);
  if (count > kMaxDispIdPayload / size) return REEDID_ERR("invalid parameters");
  BeginDataBlock(*entry, {entry->tag}, count * size);
  return WriteDescriptors(TypeIx{size}, timings, count, *entry);
}
