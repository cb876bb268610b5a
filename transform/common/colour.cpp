// The colours that two displays both take: how pixels are coded, how deep, in which colour spaces.
//
// Base block (EDID 1.4, 3.6.1 and 3.6.4): 20 digital 7, depth 6..4 (1 is 6 bits, 2 is 8, ...); 24 YCbCr 4:4:4 3, 4:2:2 4
// Video capability (CTA-861, 7.5.6): 2 range of YCbCr 7 and RGB 6 selectable; scan of preferred, IT, CE formats 5..4,
//   3..2, 1..0: 1 always overscanned, 2 always underscanned, 3 both
// Colorimetry (CTA-861, 7.5.5): 2, 3 flags
// DisplayID interface features (0x26): 3..6 depths of RGB, 4:4:4, 4:2:2, 4:2:0; 7 least rate of 4:2:0; 8 audio; 9, 10
//   colour spaces; 11 number of further pairs. Display interface (0x0F): 5..7 depths. Depth bits: 6, 8, 10, ... bits of
//   RGB and 4:4:4, 8, 10, ... of the others.

#include <algorithm>
#include <cstring>

#include "patch/base_block.h"
#include "patch/hdmi_video.h"
#include "patch/section.h"
#include "transform/common/mixes.h"
#include "transform/common/records.h"

namespace reedid {
namespace {

constexpr unsigned kInputByte = 20, kFeaturesByte = 24;
constexpr uint8_t kDigital = 0x80, kBase444 = 0x08, kBase422 = 0x10;
constexpr unsigned kScanBits[] = {4, 2, 0};
constexpr unsigned kOverscans = 1, kUnderscans = 2, kScansBoth = 3, kItScan = 2;

bool IsDigital14(const EdidHandle& image) {
  return image.blockCount > 0 && HasBaseSlots(image.blocks[0]) && image.blocks[0].bytes[19] >= 4 &&
         (image.blocks[0].bytes[kInputByte] & kDigital) != 0;
}

unsigned ToldDepth(const EdidHandle& image) {
  const unsigned code = IsDigital14(image) ? Bits(image.blocks[0].bytes[kInputByte], 4, 3) : 0;
  return code == 0 || code == 7 ? 0 : 4 + 2 * code;
}

// Bits a colour: as the base block tells, else as HDMI does.
unsigned DepthOf(const EdidHandle& image) {
  const unsigned told = ToldDepth(image);
  const uint8_t deep = FirstDataBlock(image, IsHdmi14b)[6];
  return told != 0 ? told : Bit(deep, 6) ? 16 : Bit(deep, 5) ? 12 : Bit(deep, 4) ? 10 : 8;
}

// YCbCr as the base block has it, which may leave it to the CTA extension.
uint8_t EncodingsOf(const EdidHandle& image) {
  const unsigned cta =
      (HasCtaFlag(image, kCtaYcc444) ? kBase444 : 0u) | (HasCtaFlag(image, kCtaYcc422) ? kBase422 : 0u);
  const unsigned base = IsDigital14(image) ? image.blocks[0].bytes[kFeaturesByte] & (kBase444 | kBase422) : 0u;
  return Low8(cta | base);
}

void MixBase(EdidHandle& image, const EdidHandle& other) {
  if (!IsDigital14(image)) return;
  EdidBlock& base = image.blocks[0];
  const unsigned most = DepthOf(other);
  if (ToldDepth(image) > most) {
    Overwrite(base, kInputByte, Low8((base.bytes[kInputByte] & 0x8F) | (most - 4) / 2 << 4));
  }
  const unsigned lost = ~EncodingsOf(other) & (kBase444 | kBase422);
  Overwrite(base, kFeaturesByte, Low8(base.bytes[kFeaturesByte] & ~lost));
}

// A scan that both can do; that of the first display where there is none, or where one does not tell.
unsigned CommonScan(unsigned ours, unsigned theirs) {
  return ours == kScansBoth && theirs != 0 ? theirs : ours;
}

void MixCapability(EdidHandle& image, CtaCursor& cursor, Bytes theirs) {
  const uint8_t before = cursor.bytes()[2];
  unsigned now = before & (theirs[2] | 0x3Fu);
  for (const unsigned bit : kScanBits) {
    now = (now & ~(3u << bit)) | CommonScan(Bits(before, bit, 2), Bits(theirs[2], bit, 2)) << bit;
  }
  cursor.Set(2, Low8(now));
  // The header of the extension tells how IT formats are shown, too.
  if (Bits(now, kItScan, 2) == Bits(before, kItScan, 2)) return;
  if (Bits(now, kItScan, 2) == kUnderscans) SetCtaFlags(image, kCtaUnderscans);
  if (Bits(now, kItScan, 2) == kOverscans) ClearCtaFlags(image, kCtaUnderscans);
}

void MixColorimetry(CtaCursor& cursor, Bytes theirs) {
  const unsigned before = cursor.bytes().Le16(2), both = before & theirs.Le16(2);
  if (both == before) return;
  if (both == 0) return cursor.Erase();
  cursor.Set(2, Low8(both));
  cursor.Set(3, Low8(both >> 8));
}

// What a display's interface features would be, by what it tells elsewhere.
struct Features {
  explicit Features(const EdidHandle& image) {
    const unsigned depth = DepthOf(image);
    const uint8_t rgb = Low8((1u << ((depth - 4) / 2)) - 1), subsampled = Low8(rgb >> 1);
    const uint8_t encodings = EncodingsOf(image);
    const auto is = [](uint8_t tag) { return [tag](const CtaCursor& c) { return c.Is(CEA_TAG_EXTENDED, tag); }; };
    const Bytes colours = FirstDataBlock(image, is(CEA_EXT_TAG_COLORIMETRY));
    const Bytes hdr = FirstDataBlock(image, is(CEA_EXT_TAG_STATIC_HDR));
    bytes[3] = rgb;
    bytes[4] = (encodings & kBase444) != 0 ? rgb : uint8_t{0};
    bytes[5] = (encodings & kBase422) != 0 ? subsampled : uint8_t{0};
    bytes[6] = FirstDataBlock(image, Is420).size() != 0 ? uint8_t{1} : uint8_t{0};
    bytes[8] = HasCtaFlag(image, kCtaBasicAudio) ? uint8_t{0xE0} : uint8_t{0};
    const bool bt2020 = (colours[2] & 0xE0) != 0;
    bytes[9] = Low8(7u | unsigned{Bit(colours[2], 4)} << 3 | unsigned{Bit(colours[3], 7)} << 4 | (bt2020 ? 0x20u : 0u) |
                    (bt2020 && Bit(hdr[2], 2) ? 0x40u : 0u));
  }
  uint8_t bytes[12] = {};
};

template <class Use>
void WithSection(const EdidHandle& image, uint8_t tag, Use use) {
  for (unsigned i = 0; i < image.blockCount; ++i) {
    for (SectionCursor cursor(image.blocks[i]); cursor.Next();) {
      if (cursor.tag() == tag) use(cursor);
    }
  }
}

Bytes FirstSectionBlock(const EdidHandle& image, uint8_t tag) {
  Bytes found;
  WithSection(image, tag, [&](const SectionCursor& cursor) {
    if (found.size() == 0) found = cursor.bytes();
  });
  return found;
}

// Pairs of a colour space and an EOTF beyond those that have bits.
constexpr unsigned kPairCount = 11, kPairs = 12;
void MixPairs(SectionCursor& cursor, Bytes theirs) {
  const Bytes ours = cursor.bytes();
  const unsigned count = Bits(ours[kPairCount], 0, 3), others = Bits(theirs[kPairCount], 0, 3);
  if (ours.size() < kPairs + 2 * count || count == 0) return;
  uint8_t fresh[REEDID_DISPID_DATA_BLOCK_SIZE];
  ours.CopyTo(fresh);
  unsigned kept = 0;
  for (unsigned i = 0; i < count; ++i) {
    const uint16_t pair = Low16(ours.Le16(kPairs + 2 * i));
    bool both = false;
    for (unsigned j = 0; j < others; ++j) both = both || theirs.Le16(kPairs + 2 * j) == pair;
    if (both) std::memcpy(fresh + kPairs + 2 * kept++, ours.data() + kPairs + 2 * i, 2);
  }
  const unsigned gone = 2 * (count - kept), end = kPairs + 2 * count;
  std::memmove(fresh + end - gone, fresh + end, ours.size() - end);
  fresh[2] = Low8(fresh[2] - gone);
  fresh[kPairCount] = Low8(fresh[kPairCount] - (count - kept));
  cursor.Replace(Bytes(fresh, ours.size() - gone));
}

void MixFeatures(EdidHandle& image, const EdidHandle& other) {
  const Features implied(other);
  const Bytes told = FirstSectionBlock(other, DISPID20_TAG_INTERFACE_FEATURES);
  const Bytes theirs = told.size() > kPairCount ? told : Bytes(implied.bytes, sizeof implied.bytes);
  WithSection(image, DISPID20_TAG_INTERFACE_FEATURES, [&](SectionCursor& cursor) {
    if (cursor.bytes().size() <= kPairCount) return;
    for (const unsigned at : {3u, 4u, 5u, 6u, 8u, 9u, 10u}) cursor.Set(at, Low8(cursor.bytes()[at] & theirs[at]));
    cursor.Set(7, Higher(cursor.bytes()[7], theirs[7]));
    MixPairs(cursor, theirs);
  });
  const Bytes interface = FirstSectionBlock(other, DISPID_TAG_DISPLAY_INTERFACE);
  WithSection(image, DISPID_TAG_DISPLAY_INTERFACE, [&](SectionCursor& cursor) {
    if (cursor.bytes().size() < 8) return;
    for (unsigned i = 0; i < 3; ++i) {  // the same depths stand two bytes further down
      const uint8_t depths = interface.size() >= 8 ? interface[5 + i] : theirs[3 + i];
      cursor.Set(5 + i, Low8(cursor.bytes()[5 + i] & depths));
    }
  });
}

}  // namespace

void MixColour(EdidHandle& image, const EdidHandle& other) {
  const auto theirs = [&](uint8_t tag) {
    return FirstDataBlock(other,
                          [tag](const CtaCursor& c) { return c.Is(CEA_TAG_EXTENDED, tag) && c.bytes().size() > 2; });
  };
  const Bytes capability = theirs(CEA_EXT_TAG_VIDEO_CAPABILITY), colorimetry = theirs(CEA_EXT_TAG_COLORIMETRY);
  const bool hasCta = HasCtaExtension(other);
  MixFeatures(image, other);
  MixBase(image, other);
  VisitDataBlocks(image, [&](CtaCursor& cursor) {
    const bool first = cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_VIDEO_CAPABILITY) && cursor.bytes().size() > 2;
    const bool second = cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_COLORIMETRY) && cursor.bytes().size() > 3;
    if (first && capability.size() != 0) return MixCapability(image, cursor, capability);
    if (second && colorimetry.size() != 0) return MixColorimetry(cursor, colorimetry);
    // A display without any CTA extension is sent no InfoFrame that would tell the range.
    if (second || (first && hasCta)) cursor.Erase();
  });
  for (const uint8_t flag : {kCtaYcc444, kCtaYcc422}) {
    if (!HasCtaFlag(other, flag)) ClearCtaFlags(image, flag);
  }
}

}  // namespace reedid
