// Detailed timings: type I (DisplayID 1.3, table 4-8), II (table 4-9) and VI (table 4-11), VII (DisplayID 2.0, table
// 4-10). Counts are stored less 1, low byte first; "+ sign" is bit 15, positive sync polarity.
//
// Type I (10 kHz) and VII (1 kHz), 20 bytes   Type II, 11 bytes                  Type VI, 14 or 17 bytes
//  0-2    pixel clock                          0-2  pixel clock, 10 kHz           0-2   pixel clock 21..0, kHz;
//  3      preferred 7, interlaced 4,           3    preferred 7, interlaced 4,          long form 22, preferred 23
//         aspect code 3..0                          hsync + 3, vsync + 2          3-4   hactive 13..0 + sign
//  4-5    hactive                              4-5  hactive / 8 8..0,             5-6   vactive 13..0 + sign
//  6-7    hblank                                    hblank / 8 15..9              7     hblank 7..0
//  8-9    hfrontPorch + sign                   6    hfrontPorch / 8 7..4,         8     hfrontPorch 7..0
//  10-11  hsyncWidth                                hsyncWidth / 8 3..0           9     their bits 11..8: 3..0, 7..4
//  12-13  vactive                              7-8  vactive 11..0                 10-12 hsyncWidth, vblank, vfrontPorch
//  14-15  vblank                               9    vblank                        13    interlaced 7, vsyncWidth 3..0
//  16-17  vfrontPorch + sign                   10   vfrontPorch 7..4,             14    aspect ratio
//  18-19  vsyncWidth                                vsyncWidth 3..0               15-16 image size 11..0, 15..12

#include "base/bytes.h"
#include "base/log.h"
#include "displayid/codec.h"
#include "displayid/descriptors.h"

namespace reedid {
namespace {

constexpr uint32_t kClocks24 = 0x1000000;  // that 24 bits can tell
constexpr uint32_t kClocks22 = 0x400000;
constexpr unsigned kMaxTypeI = 12;
constexpr unsigned kMaxTypeIi = 22;

constexpr DtdTiming WithoutAspect() {
  DtdTiming timing = {};
  timing.aspectRatio = ASPECT_UNKNOWN;
  return timing;
}

constexpr bool Within(uint32_t value, uint32_t max) {
  return value >= 1 && value <= max;
}

struct TypeI : FixedSize<kTypeISize> {
  static constexpr DtdTiming kBlank = {};
  uint32_t clockUnit;  // kHz

  explicit constexpr TypeI(uint8_t tag) : clockUnit(tag == DISPID_TAG_TYPE_I ? 10 : 1) {}

  template <class Io, class Timing>
  constexpr void Layout(const Io& io, Timing& t) const {
    ScaledLessOne(io, t.pixelClock, clockUnit, Place{0}, Place{1}, Place{2});
    io(t.preferred, Place{3, 7, 1});
    io(t.interlaced, Place{3, 4, 1});
    io(t.aspectRatio, Place{3, 0, 4});
    LessOne(io, t.hactive, Place{4}, Place{5});
    LessOne(io, t.hblank, Place{6}, Place{7});
    LessOne(io, t.hfrontPorch, Place{8}, Place{9, 0, 7});
    io(t.hsyncPositive, Place{9, 7, 1});
    LessOne(io, t.hsyncWidth, Place{10}, Place{11});
    LessOne(io, t.vactive, Place{12}, Place{13});
    LessOne(io, t.vblank, Place{14}, Place{15});
    LessOne(io, t.vfrontPorch, Place{16}, Place{17, 0, 7});
    io(t.vsyncPositive, Place{17, 7, 1});
    LessOne(io, t.vsyncWidth, Place{18}, Place{19});
  }

  constexpr Fit FitOf(const DtdTiming& t) const {
    const bool fits = Within(t.pixelClock / clockUnit, kClocks24) && t.hactive != 0 && t.hblank != 0 &&
                      t.hsyncWidth != 0 && t.vactive != 0 && t.vblank != 0 && t.vsyncWidth != 0 &&
                      Within(t.hfrontPorch, 0x8000) && Within(t.vfrontPorch, 0x8000);
    return GoodIf(fits);
  }
};

struct TypeIi : FixedSize<kTypeIiSize> {
  static constexpr DtdTiming kBlank = WithoutAspect();

  template <class Io, class Timing>
  constexpr void Layout(const Io& io, Timing& t) const {
    ScaledLessOne(io, t.pixelClock, 10, Place{0}, Place{1}, Place{2});
    io(t.preferred, Place{3, 7, 1});
    io(t.interlaced, Place{3, 4, 1});
    io(t.hsyncPositive, Place{3, 3, 1});
    io(t.vsyncPositive, Place{3, 2, 1});
    ScaledLessOne(io, t.hactive, 8, Place{4}, Place{5, 0, 1});
    ScaledLessOne(io, t.hblank, 8, Place{5, 1, 7});
    ScaledLessOne(io, t.hfrontPorch, 8, Place{6, 4, 4});
    ScaledLessOne(io, t.hsyncWidth, 8, Place{6, 0, 4});
    LessOne(io, t.vactive, Place{7}, Place{8, 0, 4});
    LessOne(io, t.vblank, Place{9});
    LessOne(io, t.vfrontPorch, Place{10, 4, 4});
    LessOne(io, t.vsyncWidth, Place{10, 0, 4});
  }

  static constexpr Fit FitOf(const DtdTiming& t) {
    const bool fits = Within(t.pixelClock / 10, kClocks24) && Within(t.hactive / 8u, 512) &&
                      Within(t.hblank / 8u, 128) && Within(t.hfrontPorch / 8u, 16) && Within(t.hsyncWidth / 8u, 16) &&
                      Within(t.vactive, 4096) && Within(t.vblank, 256) && Within(t.vfrontPorch, 16) &&
                      Within(t.vsyncWidth, 16);
    return GoodIf(fits);
  }
};

// Aspect ratios are stored in 256ths of a ratio of 3, with some room for rounding. Values outside the table scale to a
// code of their own, and back.
struct AspectValue {
  uint8_t low;   // also low + 1
  uint8_t code;  // an AspectCode
  uint8_t written;
};
constexpr AspectValue kAspectValues[] = {
    {85, ASPECT_1_1, 86},   {106, ASPECT_5_4, 107},  {113, ASPECT_4_3, 113},     {136, ASPECT_16_10, 137},
    {142, ASPECT_5_3, 142}, {151, ASPECT_16_9, 152}, {161, ASPECT_256_135, 162}, {202, ASPECT_64_27, 202},
};

constexpr uint32_t AspectOf(uint32_t value) {
  for (const AspectValue& row : kAspectValues) {
    if (value == row.low || value == row.low + 1u) return row.code;
  }
  return value * 300 >> 8;
}

constexpr uint32_t AspectValueOf(uint32_t code) {
  for (const AspectValue& row : kAspectValues) {
    if (code == row.code) return row.written;
  }
  return (code << 8) / 300;
}

struct TypeVi {
  static constexpr DtdTiming kBlank = WithoutAspect();

  static constexpr bool IsLong(const DtdTiming& t) { return t.aspectRatio != ASPECT_UNKNOWN; }
  constexpr unsigned SizeOf(const DtdTiming& t) const { return IsLong(t) ? kTypeViLongSize : kTypeViSize; }
  constexpr unsigned SizeAt(Bytes payload) const { return TypeViSizeAt(payload); }

  template <class Io, class Timing>
  constexpr void Layout(const Io& io, Timing& t) const {
    LessOne(io, t.pixelClock, Place{0}, Place{1}, Place{2, 0, 6});
    io(t.preferred, Place{2, 7, 1});
    LessOne(io, t.hactive, Place{3}, Place{4, 0, 6});
    io(t.hsyncPositive, Place{4, 7, 1});
    LessOne(io, t.vactive, Place{5}, Place{6, 0, 6});
    io(t.vsyncPositive, Place{6, 7, 1});
    LessOne(io, t.hblank, Place{7}, Place{9, 0, 4});
    LessOne(io, t.hfrontPorch, Place{8}, Place{9, 4, 4});
    LessOne(io, t.hsyncWidth, Place{10});
    LessOne(io, t.vblank, Place{11});
    LessOne(io, t.vfrontPorch, Place{12});
    io(t.interlaced, Place{13, 7, 1});
    LessOne(io, t.vsyncWidth, Place{13, 0, 4});
    bool isLong = IsLong(t);  // a reader takes it from the bytes
    io(isLong, Place{2, 6, 1});
    if (!isLong) return;
    Coded(io, t.aspectRatio, AspectOf, AspectValueOf, Place{14});
    LessOne(io, t.hImageSize, Place{15}, Place{16, 0, 4});
    LessOne(io, t.vImageSize, Place{16, 4, 4});
  }

  static constexpr Fit FitOf(const DtdTiming& t) {
    const bool fits = Within(t.pixelClock, kClocks22) && Within(t.hactive, 16384) && Within(t.vactive, 16384) &&
                      Within(t.hblank, 4096) && Within(t.hfrontPorch, 4096) && Within(t.hsyncWidth, 256) &&
                      Within(t.vblank, 256) && Within(t.vfrontPorch, 256);
    const bool sizeFits = !IsLong(t) || (Within(t.hImageSize, 4096) && Within(t.vImageSize, 16));
    return fits && !sizeFits ? Fit::kBadImageSize : GoodIf(fits);
  }
};

// Payload of type VI descriptors for these timings; stops once it is more than a data block can hold.
unsigned TypeViPayload(const DtdTiming* timings, uint32_t count) {
  unsigned payload = 0;
  for (uint32_t i = 0; i < count && payload <= kMaxDispIdPayload; ++i) payload += TypeVi().SizeOf(timings[i]);
  return payload;
}

// Types I and VII. The exported getters check the tag.
int32_t Get20ByteDTD(const DispIdDataBlock& entry, DtdTiming* timings, uint32_t requested) {
  if (entry.bytes == nullptr || entry.size < kDispIdHeaderSize + kTypeISize || timings == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  return ReadDescriptors(TypeI(entry.tag), entry, timings, requested);
}

int32_t Set20ByteDTD(const DispIdHeader& header, const DtdTiming* timings, uint32_t count, DispIdDataBlock* entry) {
  if (timings == nullptr || !CanHold(entry) || !Within(count, kMaxTypeI)) return REEDID_ERR("invalid parameters");
  BeginDataBlock(*entry, header, count * kTypeISize);
  return WriteDescriptors(TypeI(header.tag), timings, count, *entry);
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID_Get20ByteDTD(const DispIdDataBlock* entry, DtdTiming* timings, uint32_t requested) {
  if (!HasTag(entry, DISPID_TAG_TYPE_I)) return REEDID_ERR("invalid parameters");
  return Get20ByteDTD(*entry, timings, requested);
}

int32_t DispID_Set20ByteDTD(const DtdTiming* timings, uint32_t count, DispIdDataBlock* entry) {
  return Set20ByteDTD({DISPID_TAG_TYPE_I, 1, 0}, timings, count, entry);
}

int32_t DispID20_Get20ByteDTD(const DispIdDataBlock* entry, DtdTiming* timings, uint32_t requested) {
  if (!HasTag(entry, DISPID20_TAG_TYPE_VII)) return REEDID_ERR("invalid parameters");
  return Get20ByteDTD(*entry, timings, requested);
}

int32_t DispID20_Set20ByteDTD(const DtdTiming* timings, uint32_t count, DispIdDataBlock* entry) {
  return Set20ByteDTD({DISPID20_TAG_TYPE_VII}, timings, count, entry);
}

int32_t DispID_Get11ByteDTD(const DispIdDataBlock* entry, DtdTiming* timings, uint32_t requested) {
  if (!Matches(entry, DISPID_TAG_TYPE_II, kDispIdHeaderSize + kTypeIiSize) || timings == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  return ReadDescriptors(TypeIi(), *entry, timings, requested);
}

int32_t DispID_Set11ByteDTD(const DtdTiming* timings, uint32_t count, DispIdDataBlock* entry) {
  if (timings == nullptr || !CanHold(entry) || !Within(count, kMaxTypeIi)) return REEDID_ERR("invalid parameters");
  BeginDataBlock(*entry, {DISPID_TAG_TYPE_II, 0, 0}, count * kTypeIiSize);
  return WriteDescriptors(TypeIi(), timings, count, *entry);
}

int32_t DispID_Get17ByteDTD(const DispIdDataBlock* entry, DtdTiming* timings, uint32_t requested) {
  if (!Matches(entry, DISPID_TAG_TYPE_VI, 0) || timings == nullptr) return REEDID_ERR("invalid parameters");
  return ReadDescriptors(TypeVi(), *entry, timings, requested);
}

int32_t DispID_Set17ByteDTD(const DtdTiming* timings, uint32_t count, DispIdDataBlock* entry) {
  if (timings == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  const unsigned payload = TypeViPayload(timings, count);
  if (payload > kMaxDispIdPayload) return REEDID_ERR("invalid parameters");
  BeginDataBlock(*entry, {DISPID_TAG_TYPE_VI, 0}, payload);
  return WriteDescriptors(TypeVi(), timings, count, *entry);
}
