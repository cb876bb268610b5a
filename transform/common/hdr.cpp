// High dynamic range that two displays both show.
//
// HDR static metadata (CTA-861, 7.5.13): 2 EOTFs (SDR 0, HDR gamma 1, ST 2084 2, hybrid log 3), 3 descriptor types, 4
// maximum, 5 maximum of a frame's average, 6 minimum luminance, as far as they are told; 0 is not told. A maximum code c
// is 50 * 2^(c / 32) cd/m2, a minimum code its maximum * (c / 255)^2 / 100.

#include <cmath>

#include "patch/hdmi_video.h"
#include "transform/common/mixes.h"
#include "transform/common/records.h"

namespace reedid {
namespace {

constexpr unsigned kEotfs = 2, kMax = 4, kAverage = 5, kMin = 6, kEnd = 7;
constexpr unsigned kHdrCurves = 0x0E, kWideCurves = 0x0C;  // all but SDR; those that BT.2020 goes with

bool IsStaticHdr(const CtaCursor& cursor) {
  return cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_STATIC_HDR) && cursor.bytes().size() > 3;
}

// Luminances of a block, 0 where none is told.
struct Range {
  explicit Range(Bytes block) : max(block[kMax]), average(block[kAverage]), min(block[kMin]) {}
  double darkest() const { return Brightest(max) * min * min / (255.0 * 255.0 * 100.0); }
  static double Brightest(unsigned code) { return 50.0 * std::pow(2.0, code / 32.0); }
  unsigned max, average, min;
};

unsigned LowerTold(unsigned a, unsigned b) {
  return a == 0 || (b != 0 && b < a) ? b : a;
}

// The minimum code of what is no darker than either display, below another maximum.
unsigned CommonMin(const Range& a, const Range& b, unsigned max) {
  const bool fromB = a.min == 0 || (b.min != 0 && b.darkest() > a.darkest());
  const Range& brighter = fromB ? b : a;
  if (brighter.min == 0 || brighter.max == max) return brighter.min;
  const double code = 255.0 * std::sqrt(100.0 * brighter.darkest() / Range::Brightest(max));
  return Higher(1u, static_cast<unsigned>(Lower(std::ceil(code), 255.0)));
}

void MixHdr(CtaCursor& cursor, Bytes theirs) {
  const Bytes block = cursor.bytes();
  uint8_t fresh[REEDID_CEA_DATA_BLOCK_SIZE] = {};
  block.CopyTo(fresh);
  for (unsigned i = kEotfs; i < kMax; ++i) fresh[i] &= theirs[i];
  const Range ours(block), others(theirs);
  const unsigned max = LowerTold(ours.max, others.max);
  fresh[kMax] = Low8(max);
  fresh[kAverage] = Low8(LowerTold(ours.average, others.average));
  if (max != 0 && fresh[kAverage] > max && fresh[kAverage] != ours.average) fresh[kAverage] = Low8(max);
  fresh[kMin] = Low8(CommonMin(ours, others, max));
  const auto size = static_cast<unsigned>(block.size());
  const unsigned grown = Higher(size, UsedEnd(Bytes(fresh, sizeof fresh), size, kEnd));
  if (std::memcmp(fresh, block.data(), size) == 0 && grown == size) return;
  if ((fresh[kEotfs] & kHdrCurves) == 0) return cursor.Erase();
  fresh[0] = Low8((fresh[0] & 0xE0) | (grown - 1));
  if (cursor.Replace(Bytes(fresh, grown))) return;
  fresh[0] = block[0];
  cursor.Replace(Bytes(fresh, size));
}

}  // namespace

void MixStaticHdr(EdidHandle& image, const EdidHandle& other) {
  const Bytes theirs = FirstDataBlock(other, IsStaticHdr);
  VisitDataBlocks(image, [&](CtaCursor& cursor) {
    if (!IsStaticHdr(cursor)) return;
    if (theirs.size() == 0) return cursor.Erase();
    MixHdr(cursor, theirs);
  });
}

bool CanSendHdr(const EdidHandle& image) {
  const Bytes hdr = FirstDataBlock(image, IsStaticHdr);
  if ((hdr[kEotfs] & kWideCurves) == 0) return true;
  const auto isColorimetry = [](const CtaCursor& c) { return c.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_COLORIMETRY); };
  const Bytes hdmi = FirstDataBlock(image, IsHdmi14b), forum = FirstDataBlock(image, IsHdmiForum);
  const bool wide = (FirstDataBlock(image, isColorimetry)[2] & 0xE0) != 0;
  const bool deep = (hdmi[6] & 0x70) != 0 || HasCtaFlag(image, kCtaYcc422) || (forum[7] & 0xF7) != 0;
  return wide && (hdmi.size() == 0 || deep);
}

void DropStaticHdr(EdidHandle& image) {
  VisitDataBlocks(image, [](CtaCursor& cursor) {
    if (IsStaticHdr(cursor)) cursor.Erase();
  });
}

}  // namespace reedid
