// Taking a timing out of the lists that tell timings by bits, codes and descriptors.

#include "displayid/descriptors.h"
#include "patch/base_block.h"
#include "patch/hdmi_video.h"
#include "transform/link/timings.h"

namespace reedid {
namespace {

constexpr uint8_t kUnusedStandardTiming[] = {0x01, 0x01};
constexpr unsigned kCvtRates = 5;
constexpr unsigned kCvtRatesByte = 2;

void ClearBit(EdidBlock& block, unsigned at, unsigned bit) {
  Overwrite(block, at, Low8(BytesOf(block)[at] & ~(1u << bit)));
}

// The rates of a CVT code stand from bit 4 down; a code without any is unused.
void EraseCvtRate(EdidBlock& block, unsigned at, unsigned which) {
  const uint8_t rates = BytesOf(block)[at + kCvtRatesByte];
  for (unsigned bit = kCvtRates; bit-- > 0;) {
    if (!Bit(rates, bit) || which-- != 0) continue;
    if (Bits(rates, 0, kCvtRates) != 1u << bit) return ClearBit(block, at + kCvtRatesByte, bit);
    constexpr uint8_t kUnused[3] = {};
    return Overwrite(block, at, Bytes(kUnused, sizeof kUnused));
  }
}

// Bytes of the descriptor with which `descriptor` begins, in a data block with these flags.
unsigned DescriptorSize(uint8_t source, uint8_t flags, Bytes descriptor) {
  switch (source) {
    case TIMING_TYPE_I:
      return kTypeISize;
    case TIMING_TYPE_II:
      return kTypeIiSize;
    case TIMING_TYPE_III:
      return kTypeIiiSize;
    case TIMING_TYPE_IV:
    case TIMING_TYPE_VIII:
      return Bit(flags, 3) ? 2 : 1;
    case TIMING_TYPE_V:
      return kTypeVSize;
    case TIMING_TYPE_VI:
      return TypeViSizeAt(descriptor);
    case TIMING_TYPE_VII:
      return kTypeISize + Bits(flags, 4, 3);
    case TIMING_TYPE_IX:
      return kTypeIxSize;
    case TIMING_TYPE_X:
      return kTypeIxSize + Bits(flags, 4, 3);
    default:
      return 0;
  }
}

// A data block without a part of its payload; `head` bytes stand before that, and byte `lengthAt` counts.
struct Shortened {
  Shortened(Bytes from, unsigned at, unsigned count, unsigned lengthAt) : size(from.size() - count) {
    from.First(at).CopyTo(bytes);
    from.From(at + count).CopyTo(bytes + at);
    bytes[lengthAt] = Low8(bytes[lengthAt] - count);
  }
  Bytes view() const { return {bytes, size}; }
  uint8_t bytes[REEDID_DISPID_DATA_BLOCK_SIZE];
  size_t size;
};

template <class Cursor>
bool EraseFrom(Cursor& cursor, const OfferedTiming& offer, uint8_t flags, unsigned head, unsigned lengthAt) {
  const Bytes bytes = cursor.bytes();
  const unsigned at = offer.offset - cursor.at();
  const unsigned size = DescriptorSize(offer.source, flags, bytes.From(at));
  if (size == 0 || at < head || at + size > bytes.size() || bytes.size() > REEDID_DISPID_DATA_BLOCK_SIZE) return false;
  if (bytes.size() <= head + size) return cursor.Erase(), true;
  const Shortened fresh(bytes, at, size, lengthAt);
  return cursor.Replace(fresh.view());
}

template <class Cursor>
bool Covers(const Cursor& cursor, const OfferedTiming& offer) {
  return offer.offset >= cursor.at() && offer.offset < cursor.at() + cursor.bytes().size();
}

bool EraseDescriptor(EdidHandle& image, const OfferedTiming& offer) {
  EdidBlock& block = image.blocks[offer.block];
  const uint8_t reference = ReferenceTo(image, PlaceOf(offer));
  bool done = false, found = false;
  VisitCtaDataBlocks(block, [&](CtaCursor& cursor) {
    if (found || !Covers(cursor, offer)) return;
    found = true;
    done = EraseFrom(cursor, offer, cursor.bytes()[2], 3, 0);
  });
  for (SectionCursor cursor(block); !found && cursor.Next();) {
    if (!Covers(cursor, offer)) continue;
    found = true;
    done = EraseFrom(cursor, offer, cursor.bytes()[1], kDispIdHeaderSize, 2);
  }
  if (done) DropReference(image, reference);
  return done;
}

}  // namespace

bool EraseOffer(EdidHandle& image, const OfferedTiming& offer) {
  EdidBlock& block = image.blocks[offer.block];
  if (!IsWhole(block)) return false;
  switch (offer.source) {
    case TIMING_ESTABLISHED:
      ClearBit(block, offer.offset, offer.index == 16 ? 7 : offer.index % 8);
      return true;
    case TIMING_ESTABLISHED_III:
      ClearBit(block, offer.offset, offer.index % 8);
      return true;
    case TIMING_STANDARD:
      Overwrite(block, offer.offset, Bytes(kUnusedStandardTiming, sizeof kUnusedStandardTiming));
      return true;
    case TIMING_CVT_CODE:
      EraseCvtRate(block, offer.offset, offer.variant);
      return true;
    case TIMING_DISPLAYID_VESA:
    case TIMING_DISPLAYID_CTA:
      ClearBit(block, offer.offset, (offer.index - 1) % 8);
      return true;
    case TIMING_HDMI_VIC:
      VisitCtaDataBlocks(block, [&](CtaCursor& cursor) {
        if (Covers(cursor, offer)) EraseHdmiVic(cursor, offer.offset);
      });
      return true;
    default:
      return EraseDescriptor(image, offer);
  }
}

}  // namespace reedid
