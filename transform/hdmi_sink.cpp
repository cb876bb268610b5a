// Making a digital display one of HDMI: what a source looks for before it sends pictures with sound (HDMI 1.4b, 8.3).

#include <algorithm>
#include <cstring>

#include "base/log.h"
#include "patch/base_block.h"
#include "patch/hdmi_video.h"
#include "timing/tables.h"
#include "transform/link/hdmi.h"
#include "transform/link/timings.h"
#include "transform/phys_addr.h"

namespace reedid {
namespace {

constexpr uint32_t kStep = 5000;         // kHz, of a TMDS clock in HDMI blocks
constexpr uint32_t kLeastTold = 165000;  // what every source assumes
constexpr uint32_t kMost14b = 340000;    // above it the HDMI Forum block tells
constexpr unsigned kDtdClockStep = 10;   // kHz
constexpr unsigned kFlagsByte = 3;       // of a CTA extension
constexpr uint8_t kUnderscans = 0x80, kBasicAudio = 0x40;
constexpr uint8_t kPcm[] = {CEA_TAG_AUDIO << 5 | 3, 0x09, 0x07, 0x07};         // 2 channels, 32..48 kHz, 16..24 bits
constexpr uint8_t kFrontSpeakers[] = {CEA_TAG_SPEAKERS << 5 | 3, 0x01, 0, 0};  // left and right
// Byte 2 of the video capability data block: YCbCr and RGB range selectable; all formats shown to their edges, as by a
// display that knows no overscan.
constexpr uint8_t kSelectableYcc = 0x80, kSelectableRgb = 0x40, kNoOverscan = 0x0A;
constexpr uint8_t kYccFlags = 0x30;  // of a CTA extension

bool Has(const EdidHandle& image, uint8_t tag, uint8_t extTag = 0) {
  bool found = false;
  VisitCtaDataBlocks(image, [&](const CtaCursor& cursor) { found = found || cursor.Is(tag, extTag); });
  return found;
}

// Whether the display takes more than 8 bits a colour: it says so, or shows high dynamic range.
bool IsDeep(const EdidHandle& image) {
  const uint8_t input = image.blocks[0].bytes[20];
  const bool told = image.blocks[0].bytes[19] >= 4 && Bits(input, 4, 3) >= 3 && Bits(input, 4, 3) <= 6;
  return told || Has(image, CEA_TAG_EXTENDED, CEA_EXT_TAG_STATIC_HDR);
}

// The VIC that an offered timing is; the 16:9 one of two that differ in shape only.
uint8_t VicOf(const OfferedTiming& offer) {
  uint8_t vic = 0;
  for (unsigned row = 1; row < kVicRows; ++row) {
    Mode mode;
    if (row == kEmptyVicRow || !VicMode(row, mode)) continue;
    const DtdTiming &a = mode.timing, &b = offer.timing;
    const bool same = a.hactive == b.hactive && a.vactive == b.vactive && a.hblank == b.hblank &&
                      a.vblank == b.vblank && a.interlaced == b.interlaced && SameRate(offer.rate, RateOf(mode));
    if (same && (vic == 0 || a.aspectRatio == ASPECT_16_9)) vic = Low8(row > kEmptyVicRow ? row + 64 : row);
  }
  return vic;
}

// A video block of the display's own timings.
struct VideoBlock {
  void Add(uint8_t vic) {
    if (vic == 0 || size == sizeof bytes || std::find(bytes + 1, bytes + size, vic) != bytes + size) return;
    bytes[size++] = vic;
    bytes[0] = Low8(CEA_TAG_VIDEO << 5 | (size - 1));
  }
  uint8_t bytes[REEDID_CEA_DATA_BLOCK_SIZE] = {CEA_TAG_VIDEO << 5};
  unsigned size = 1;
};

VideoBlock OwnTimings(EdidHandle& image, const LinkBudget& budget) {
  VideoBlock video;
  VisitOffers(image, [&](const OfferedTiming& offer) {
    if (budget.Takes(offer, offer.timing.pixelClock)) video.Add(VicOf(offer));
  });
  // Every HDMI display shows 640x480 at 60 Hz and lists a VIC. Where the range limits leave it out it is told as an
  // established timing, if there is another VIC; if there is none, the range limits hold it.
  OfferedTiming vga = {};
  Mode mode;
  if (VicMode(1, mode)) vga.timing = mode.timing;
  vga.rate = RateOf(mode);
  if (video.size == 1 || budget.Takes(vga, vga.timing.pixelClock)) {
    if (video.size == 1) WidenRange(image, vga);
    video.Add(1);
  } else {
    EdidBlock& base = image.blocks[0];
    Overwrite(base, 35, Low8(base.bytes[35] | 0x20));
  }
  return video;
}

// The first CTA extension, which HDMI wants in front of all others. Null without memory.
EdidBlock* FirstCta(EdidHandle& image, bool fresh) {
  const unsigned place = CtaPlace(image);
  unsigned found = 0;
  for (unsigned i = 1; i < image.blockCount && found == 0; ++i) {
    if (image.blocks[i].type == EDID_BLOCK_CEA && IsWhole(image.blocks[i])) found = i;
  }
  uint8_t bytes[REEDID_BLOCK_SIZE] = {EDID_EXTENSION_CTA, 3, 4};
  if (found != 0) std::memcpy(bytes, image.blocks[found].bytes, sizeof bytes);
  if (fresh) {
    const uint8_t flags = bytes[kFlagsByte];
    std::memset(bytes + 4, 0, sizeof bytes - 4);
    bytes[2] = 4;
    bytes[kFlagsByte] = flags;
  }
  if (found == place && !fresh) return &image.blocks[place];
  const EdidBlock block = {EDID_BLOCK_CEA, REEDID_BLOCK_SIZE, REEDID_BLOCK_SIZE, bytes};
  if (!InsertBlock(image, block, place)) return nullptr;
  if (found != 0 && !fresh) EraseBlock(image, found + 1);
  RefreshChecksums(image.blocks[place]);
  return &image.blocks[place];
}

bool Append(EdidBlock& cta, const uint8_t* bytes, size_t size, bool beforeForum = false) {
  CtaCursor cursor(CollectionOf(cta));
  while (cursor.Next() && !(beforeForum && IsHdmiForum(cursor))) continue;
  return cursor.Insert(Bytes(bytes, size));
}

bool AppendCapability(EdidBlock& cta) {
  const bool ycc = (cta.bytes[kFlagsByte] & kYccFlags) != 0;
  const uint8_t bytes[] = {CEA_TAG_EXTENDED << 5 | 2, CEA_EXT_TAG_VIDEO_CAPABILITY,
                           Low8((ycc ? kSelectableYcc : 0) | kSelectableRgb | kNoOverscan)};
  return Append(cta, bytes, sizeof bytes);
}

bool AppendHdmi(EdidBlock& cta, EdidHandle& image, uint16_t physAddr) {
  const uint32_t fastest = std::max(FastestTmds(image), kLeastTold);
  const uint32_t steps = (fastest + kStep - 1) / kStep;
  const uint8_t colours = IsDeep(image) ? 0x30 : 0;  // 30 bit; without 36 bit none is allowed
  const uint8_t hdmi[] = {CEA_TAG_VENDOR << 5 | 7, 0x03,           0x0C,    0x00,
                          Low8(physAddr >> 8),     Low8(physAddr), colours, Low8(std::min(steps, kMost14b / kStep))};
  if (!Append(cta, hdmi, sizeof hdmi, true)) return false;  // the HDMI Forum block stands right behind
  if (fastest <= kMost14b || HdmiRatesOf(image).forum) return true;
  const uint8_t forum[] = {CEA_TAG_VENDOR << 5 | 7, 0xD8, 0x5D, 0xC4, 1, Low8(steps), 0x80, 0};  // with SCDC
  return Append(cta, forum, sizeof forum);
}

void SetFlags(EdidHandle& image, uint8_t flags) {
  for (unsigned i = 0; i < image.blockCount; ++i) {
    EdidBlock& block = image.blocks[i];
    if (block.type != EDID_BLOCK_CEA || !IsWhole(block)) continue;
    if (block.bytes[1] < 3) {
      Overwrite(block, 1, 3);
    }
    Overwrite(block, kFlagsByte, Low8(block.bytes[kFlagsByte] | flags));
  }
}

// What is told as a detailed timing but is none that could be limited, and needs more than HDMI carries without FRL: the
// block of it, 0 for none. Extensions that end in the middle of a data block have such.
unsigned FindUnlimited(const EdidHandle& image) {
  for (unsigned i = 1; i < image.blockCount; ++i) {
    const CtaSlots slots = SlotsOf(image.blocks[i]);
    for (unsigned slot = 0; slot < slots.count; ++slot) {
      const Bytes bytes = BytesOf(image.blocks[i]).From(slots.begin + slot * kSlotSize);
      if (bytes.Le16(0) * kDtdClockStep > EDID_LINK_HDMI20.maxTmdsClock) return i;
    }
  }
  return 0;
}

// A map of the extensions, which stands in front of them from two on; with EDID 1.4 it need not (E-EDID A.1).
bool AddBlockMap(EdidHandle& image) {
  constexpr uint8_t kWithoutMap = 4;
  constexpr unsigned kMappedFrom = 3;
  if (image.blocks[0].bytes[19] >= kWithoutMap || image.blockCount < kMappedFrom || CtaPlace(image) != 1) return true;
  if (Has(image, CEA_TAG_EXTENDED, CEA_EXT_TAG_EXTENSION_OVERRIDE)) return true;  // which has to stand in block 1
  uint8_t bytes[REEDID_BLOCK_SIZE] = {EDID_EXTENSION_BLOCK_MAP};
  const EdidBlock map = {EDID_BLOCK_MAP, REEDID_BLOCK_SIZE, REEDID_BLOCK_SIZE, bytes};
  return InsertBlock(image, map, 1);
}

enum class Made { kDone, kNoMemory, kNoRoom };

Made Make(EdidHandle& image, const LinkBudget& budget, uint16_t physAddr, bool fresh) {
  const bool hasVideo = Has(image, CEA_TAG_VIDEO), hasAudio = Has(image, CEA_TAG_AUDIO);
  const bool hasSpeakers = Has(image, CEA_TAG_SPEAKERS);
  const bool hasCapability = Has(image, CEA_TAG_EXTENDED, CEA_EXT_TAG_VIDEO_CAPABILITY);
  EdidBlock* cta = FirstCta(image, fresh);
  if (cta == nullptr) return Made::kNoMemory;
  const VideoBlock video = hasVideo ? VideoBlock() : OwnTimings(image, budget);
  bool fits = video.size == 1 || Append(*cta, video.bytes, video.size);
  fits = fits && (hasAudio || Append(*cta, kPcm, sizeof kPcm));
  fits = fits && (hasAudio || hasSpeakers || Append(*cta, kFrontSpeakers, sizeof kFrontSpeakers));
  fits = fits && AppendHdmi(*cta, image, physAddr);
  fits = fits && (hasCapability || AppendCapability(*cta));
  if (!fits) return Made::kNoRoom;
  SetFlags(image, Low8(kBasicAudio | (hasCapability ? 0 : kUnderscans)));
  EdidBlock& base = image.blocks[0];
  if (base.bytes[19] >= 4) Overwrite(base, 20, Low8((base.bytes[20] & 0xF0) | 2));  // the socket is HDMI
  return Made::kDone;
}

bool IsDigital(const EdidHandle& handle) {
  return handle.blockCount > 0 && HasBaseSlots(handle.blocks[0]) && (handle.blocks[0].bytes[20] & 0x80) != 0;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t EDID_MakeHdmi(EdidHandle* handle, uint16_t physAddr) {
  if (handle == nullptr || handle->blocks == nullptr) return REEDID_ERR("invalid parameters");
  if (!IsPort(physAddr)) return REEDID_ERR("no address of a port: %04X", physAddr);
  if (!IsDigital(*handle)) return REEDID_ERR("no digital input");
  if (HdmiRatesOf(*handle).hdmi) return 0;
  const LinkBudget budget(EDID_LINK_HDMI20, *handle);
  for (const bool fresh : {false, true}) {
    Draft draft(*handle);
    if (!draft.ok()) return REEDID_ERR("malloc fail");
    LimitTimings(draft.image(), budget);
    if (!LimitPreferred(draft.image(), budget)) {
      REEDID_ERR("no timing fits the link");
      return EDID_LINK_NO_TIMING;
    }
    if (const unsigned block = FindUnlimited(draft.image())) {
      REEDID_ERR("block %u: timings that cannot be limited", block);
      return EDID_LINK_DAMAGED;
    }
    const Made made = Make(draft.image(), budget, physAddr, fresh);
    if (made == Made::kNoMemory) return REEDID_ERR("malloc fail");
    if (made == Made::kNoRoom) continue;
    const bool grew = draft.image().blockCount > handle->blockCount;
    if (grew && !AddBlockMap(draft.image())) return REEDID_ERR("malloc fail");
    draft.Commit(*handle);
    return 0;
  }
  REEDID_ERR("block 1: no room for the HDMI block");
  return EDID_LINK_NO_ROOM;
}
