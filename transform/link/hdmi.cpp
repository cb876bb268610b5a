// HDMI 1.4b VSDB (table 8-16)               HDMI Forum VSDB, and sink capability block (HDMI 2.1, table 10-6)
//  6  48 6, 36 5, 30 bit 4, 4:4:4 3          5      TMDS character rate, 5 MHz; 0 up to 340 MHz
//  7  Max_TMDS_Clock, 5 MHz                  7      FRL rate 7..4; 4:2:0 in 48 2, 36 1, 30 bit 0
//                                            9-10   VRR maximum 9..8 in 9.7..6, 7..0; minimum 9.5..0
//                                            11     DSC 7, of 4:2:0 6, all bpp 3, 16 2, 12 1, 10 bpc 0
//                                            12-13  FRL rate with DSC 7..4, slices 3..0; chunk size

#include "transform/link/hdmi.h"

#include <algorithm>
#include <cstring>

#include "patch/base_block.h"
#include "patch/hdmi_video.h"
#include "transform/link/image_size.h"

namespace reedid {
namespace {

constexpr uint32_t kStep = 5000;         // kHz
constexpr uint32_t kMost14b = 340000;    // kHz that the HDMI 1.4b block can tell
constexpr uint32_t kUntold14b = 165000;  // kHz that a source takes when it tells none
constexpr uint8_t kDeepColour = 0x78;    // byte 6
constexpr uint8_t kDscBits = 0xCF;       // byte 11
constexpr unsigned kColourByte = 6, kMaxTmdsByte = 7;
constexpr unsigned kForumTmds = 5, kForumFrl = 7, kVrrMin = 9, kVrrMax = 10, kDsc = 11, kDscFrl = 12, kDscChunk = 13;
constexpr uint8_t kUhdVicBit = 8;  // byte 7: HDMI VICs may be sent by their VIC
constexpr unsigned kLeastVrrMax = 100;

template <class IsUnwanted>
void EraseDataBlocksIf(EdidHandle& image, IsUnwanted isUnwanted) {
  VisitCtaDataBlocks(image, [&](CtaCursor& cursor) {
    if (isUnwanted(cursor)) cursor.Erase();
  });
}

// Clears bits of a byte that the data block has.
void Clear(CtaCursor& cursor, unsigned at, unsigned bits) {
  if (at < cursor.bytes().size()) cursor.Set(at, Low8(cursor.bytes()[at] & ~bits));
}

// Bits 0, 1, 2 are 10, 12 and 16 bits a colour.
constexpr unsigned DeepBits(unsigned most) {
  return most == 0 ? 0u : most < 10 ? 7u : most < 12 ? 6u : most < 16 ? 4u : 0u;
}

void LimitDsc(CtaCursor& forum, const EdidLink& link, uint8_t frl) {
  if (forum.bytes().size() <= kDscChunk || (forum.bytes()[kDsc] & 0x80) == 0) return;
  if (link.dsc == 0 || frl == 0) {
    Clear(forum, kDsc, kDscBits);
    Clear(forum, kDscFrl, 0xFF);
    Clear(forum, kDscChunk, 0xFF);
    return;
  }
  const unsigned rate = std::min<unsigned>(forum.bytes()[kDscFrl] >> 4, frl);
  forum.Set(kDscFrl, Low8((forum.bytes()[kDscFrl] & 0x0F) | rate << 4));
  Clear(forum, kDsc, DeepBits(link.maxBitsPerColour));
}

void LimitVrr(CtaCursor& forum, const EdidLink& link) {
  if (link.maxRate == 0 || forum.bytes().size() <= kVrrMax) return;
  const unsigned most = (link.maxRate + 999) / 1000;
  const unsigned told = (forum.bytes()[kVrrMin] & 0xC0u) << 2 | forum.bytes()[kVrrMax];
  if (told <= most) return;
  const unsigned now = most < kLeastVrrMax ? 0 : most;  // without a maximum there is no range either
  forum.Set(kVrrMin, now == 0 ? uint8_t{0} : Low8((forum.bytes()[kVrrMin] & 0x3Fu) | now >> 8 << 6));
  forum.Set(kVrrMax, Low8(now));
}

// What an image no longer has of what it had.
struct Lost {
  bool ycc420;
  bool uhdVics;
};

void LimitForum(CtaCursor& forum, const EdidLink& link, const Lost& lost) {
  const Bytes bytes = forum.bytes();
  const uint32_t most = link.maxTmdsClock == 0 ? UINT32_MAX : link.maxTmdsClock;
  if (bytes[kForumTmds] * kStep > most) {
    forum.Set(kForumTmds, most > kMost14b ? Low8(most / kStep) : uint8_t{0});
  }
  const uint8_t frl = std::min<uint8_t>(bytes[kForumFrl] >> 4, link.maxFrlRate);
  if (bytes.size() > kForumFrl) forum.Set(kForumFrl, Low8((bytes[kForumFrl] & 0x0F) | frl << 4));
  Clear(forum, kForumFrl, lost.ycc420 ? 7u : DeepBits(link.maxBitsPerColour));
  Clear(forum, kForumFrl, lost.uhdVics ? kUhdVicBit : 0);
  LimitDsc(forum, link, frl);
  LimitVrr(forum, link);
}

// The TMDS clock of the HDMI 1.4b block: not above the link, and enough for the timings when no other block tells any
// more how fast the display is.
bool LimitTmds(CtaCursor& hdmi, const EdidLink& link, const HdmiRates& before, uint32_t fastest) {
  const uint32_t told = hdmi.bytes()[kMaxTmdsByte] * kStep;
  uint32_t now = told;
  const bool fast = link.maxTmdsClock == 0 || link.maxTmdsClock > kMost14b;
  const bool forumTells = NeedsForum(link) && (link.maxFrlRate != 0 || fast);
  if (before.forum && !forumTells) {
    const bool mustTell =
        fastest > (told == 0 ? kUntold14b : told) || (told == 0 && hdmi.bytes()[kColourByte] & kDeepColour);
    const uint32_t needed = std::max((fastest + kStep - 1) / kStep * kStep, kUntold14b);
    if (mustTell) now = std::max(told, std::min(kMost14b, std::max(needed, told == 0 ? before.tmds : 0)));
  }
  if (link.maxTmdsClock != 0) now = std::min(now, link.maxTmdsClock);
  if (now == told) return true;
  uint8_t fresh[REEDID_CEA_DATA_BLOCK_SIZE] = {};
  const auto size = static_cast<unsigned>(hdmi.bytes().size());
  hdmi.bytes().CopyTo(fresh);
  fresh[kMaxTmdsByte] = Low8(now / kStep);
  const unsigned needed = std::max(size, kMaxTmdsByte + 1);
  fresh[0] = Low8((fresh[0] & 0xE0) | (needed - 1));
  return hdmi.Replace(Bytes(fresh, needed));
}

}  // namespace

uint32_t FastestTmds(const EdidHandle& image) {
  uint32_t fastest = 0;
  VisitOffers(image, [&](const OfferedTiming& offer) {
    const uint32_t clock = offer.timing.pixelClock / (offer.ycc420 == YCC420_ONLY ? 2 : 1);
    fastest = std::max(fastest, clock);
  });
  return fastest;
}

std::optional<unsigned> LimitHdmi(EdidHandle& image, const EdidLink& link, const HdmiRates& before) {
  if (link.ycc420 == 0) EraseDataBlocksIf(image, Is420);
  if (!NeedsForum(link)) EraseDataBlocksIf(image, IsHdmiForum);
  const uint32_t fastest = FastestTmds(image);
  const HdmiRates now = HdmiRatesOf(image);
  const Lost lost = {before.ycc420 && !now.ycc420, before.uhdVics && !now.uhdVics};
  bool first = true;
  std::optional<unsigned> full;
  VisitCtaDataBlocks(image, [&](CtaCursor& cursor) {
    if (IsHdmiForum(cursor)) return LimitForum(cursor, link, lost);
    if (!IsHdmi14b(cursor)) return;
    if (link.maxBitsPerColour != 0) {
      const unsigned bits = DeepBits(link.maxBitsPerColour);  // 30, 36, 48 bit are bits 4, 5, 6
      Clear(cursor, kColourByte, bits << 4 | (bits == 7 ? 8u : 0u));
    }
    const bool limits = first || link.maxTmdsClock != 0;
    first = false;
    if (limits && !LimitTmds(cursor, link, before, fastest))
      full = static_cast<unsigned>(cursor.run().block - image.blocks);
  });
  return full;
}

namespace {

// The HDMI block says whether image sizes are shapes only (byte 8 of table 8-16, bits 4..3 behind the latencies: 1).
bool SizesAreRatios(const EdidHandle& image) {
  bool ratios = false;
  VisitCtaDataBlocks(image,
                     [&](const CtaCursor& cursor) { ratios = ratios || (IsHdmi14b(cursor) && HasRatios(cursor)); });
  return ratios;
}

// Without the word of the HDMI block, shapes would be read as millimetres: they become what the screen has of that shape.
void WriteTrueSizes(EdidHandle& image) {
  const DtdTiming screen = HasBaseSlots(image.blocks[0]) ? ScreenSize(image.blocks[0]) : DtdTiming{};
  VisitOffers(image, [&](const OfferedTiming& offer) {
    const uint32_t width = offer.timing.hImageSize, height = offer.timing.vImageSize;
    if (offer.source != TIMING_DETAILED || width == 0 || height == 0 || screen.hImageSize == 0) return;
    DtdTiming timing = {};
    timing.hImageSize = Low16(std::min<uint32_t>(screen.hImageSize, screen.vImageSize * width / height));
    timing.vImageSize = Low16(std::min<uint32_t>(screen.vImageSize, screen.hImageSize * height / width));
    uint8_t slot[REEDID_DTD_SIZE];
    BytesOf(image.blocks[offer.block]).From(offer.offset).First(sizeof slot).CopyTo(slot);
    WriteSize(slot, timing);
    Overwrite(image.blocks[offer.block], offer.offset, Bytes(slot, sizeof slot));
  });
}

}  // namespace

void MakeDvi(EdidHandle& image) {
  if (SizesAreRatios(image)) WriteTrueSizes(image);
  constexpr unsigned kHdmiFlags = 0x70;  // basic audio, YCbCr 4:4:4, YCbCr 4:2:2
  EraseDataBlocksIf(image, [](const CtaCursor& cursor) {
    const bool timings = cursor.Is(CEA_TAG_VIDEO) || cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VII) ||
                         cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VIII) ||
                         cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_X) ||
                         cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_FORMAT_PREFERENCE) ||
                         cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_NATIVE_RESOLUTION);
    const bool picture = timings || cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_VIDEO_CAPABILITY);
    return !picture && cursor.tag() != 0 && !cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_EXTENSION_OVERRIDE);
  });
  for (unsigned i = 0; i < image.blockCount; ++i) {
    EdidBlock& block = image.blocks[i];
    if (!IsWhole(block)) continue;
    if (block.type == EDID_BLOCK_CEA) Overwrite(block, 3, Low8(block.bytes[3] & ~kHdmiFlags));
    // The socket of EDID 1.4 (table 3.12): 2 and 3 are HDMI, 1 is DVI.
    const bool socket = HasBaseSlots(block) && block.bytes[19] >= 4 && (block.bytes[20] & 0x80) != 0;
    const unsigned kind = block.bytes[20] & 0x0F;
    if (socket && (kind == 2 || kind == 3)) Overwrite(block, 20, Low8((block.bytes[20] & 0xF0) | 1));
  }
}

}  // namespace reedid
