#include "document/edit/high_refresh.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <vector>

#include "document/check/fix.h"
#include "document/edit/data_blocks.h"

namespace reedid::document {
namespace {

constexpr size_t kSlots = 4, kFirstSlot = 54, kSizeAt = 12, kSizeBytes = 3;
constexpr size_t kForumColourByte = 7;  // of the HDMI Forum block: 4:2:0 deep colour in bits 2..0

using Slot = std::span<uint8_t>;

bool IsTiming(std::span<const uint8_t> slot) {
  return slot[0] != 0 || slot[1] != 0;
}

std::vector<Slot> BaseSlots(const Image& image) {
  std::vector<Slot> slots;
  for (size_t i = 0; i < kSlots; ++i) {
    slots.emplace_back(image.blocks()[0].bytes + kFirstSlot + i * REEDID_DTD_SIZE, REEDID_DTD_SIZE);
  }
  return slots;
}

// The slots of base block and CTA-861 extensions.
std::vector<Slot> AllSlots(const Image& image) {
  std::vector<Slot> slots = BaseSlots(image);
  for (const EdidBlock& block : image.blocks()) {
    if (block.type != EDID_BLOCK_CEA || block.bytes[2] < 4) continue;
    for (size_t at = block.bytes[2]; at + REEDID_DTD_SIZE < REEDID_BLOCK_SIZE; at += REEDID_DTD_SIZE) {
      slots.emplace_back(block.bytes + at, REEDID_DTD_SIZE);
    }
  }
  return slots;
}

std::optional<Slot> FindRangeLimits(const Image& image) {
  for (const Slot slot : BaseSlots(image)) {
    if (!IsTiming(slot) && slot[3] == EDID_DESCRIPTOR_RANGE_LIMITS) return slot;
  }
  return std::nullopt;
}

bool HasSize(Slot slot) {
  return std::any_of(slot.begin() + kSizeAt, slot.begin() + kSizeAt + kSizeBytes, [](uint8_t b) { return b != 0; });
}

// What a picture that fills the screen of the display measures: as the first timing tells, as long as that is no more
// than the screen (base block bytes 21 and 22, cm; one that is 0 makes them a ratio).
std::array<uint8_t, kSizeBytes> ScreenSize(const Image& image) {
  constexpr size_t kWidthAt = 21, kHeightAt = 22;
  const uint8_t* const base = image.blocks()[0].bytes;
  const Slot first = BaseSlots(image)[0];
  const unsigned width = base[kWidthAt] * 10u, height = base[kHeightAt] * 10u;
  const unsigned told = first[kSizeAt] | (first[kSizeAt + 2] & 0xF0u) << 4;
  const unsigned toldLines = first[kSizeAt + 1] | (first[kSizeAt + 2] & 0x0Fu) << 8;
  const bool known = width != 0 && height != 0;
  const bool fits = !known || (told < width + 10 && toldLines < height + 10);
  if (IsTiming(first) && HasSize(first) && fits) return {first[kSizeAt], first[kSizeAt + 1], first[kSizeAt + 2]};
  if (!known) return {};
  return {static_cast<uint8_t>(width), static_cast<uint8_t>(height),
          static_cast<uint8_t>(width >> 8 << 4 | height >> 8)};
}

bool Stood(const std::vector<Slot>& before, Slot slot) {
  return std::any_of(before.begin(), before.end(), [&](Slot other) { return std::ranges::equal(other, slot); });
}

// Timings that are new have no image size: they fill the same screen.
void SetImageSizes(const Image& before, const Image& image) {
  const std::array<uint8_t, kSizeBytes> size = ScreenSize(before);
  const std::vector<Slot> old = AllSlots(before);
  for (const Slot slot : AllSlots(image)) {
    if (IsTiming(slot) && !HasSize(slot) && !Stood(old, slot)) std::ranges::copy(size, slot.begin() + kSizeAt);
  }
}

// The first detailed timings are native as far as they are those that were.
void KeepNativeCount(const Image& before, const Image& image) {
  std::vector<Slot> old = AllSlots(before), now = AllSlots(image);
  const auto isNone = [](Slot slot) { return !IsTiming(slot); };
  std::erase_if(old, isNone);
  std::erase_if(now, isNone);
  size_t same = 0;
  while (same < old.size() && same < now.size() && std::ranges::equal(old[same], now[same])) ++same;
  for (const EdidBlock& block : image.blocks()) {
    if (block.type != EDID_BLOCK_CEA || (block.bytes[3] & 0x0Fu) <= same) continue;
    block.bytes[3] = static_cast<uint8_t>((block.bytes[3] & 0xF0u) | same);
  }
}

// Range limits that made room for a timing come back where a slot is free, or holds a text that tells no name.
void KeepRangeLimits(const Image& before, const Image& image, Notes& notes) {
  const auto limits = FindRangeLimits(before);
  if (!limits || FindRangeLimits(image)) return;
  for (const int tag :
       {0, int{EDID_DESCRIPTOR_DUMMY}, int{EDID_DESCRIPTOR_DATA_STRING}, int{EDID_DESCRIPTOR_SERIAL_NUMBER}}) {
    for (const Slot slot : BaseSlots(image)) {
      if (IsTiming(slot) || slot[3] != tag) continue;
      std::ranges::copy(*limits, slot.begin());
      return;
    }
  }
  notes.push_back(fmt::format("{}: the range limits gave way to a timing", image.name()));
}

// A pair of limits and where their offsets of 255 stand (EDID 1.4, table 3.26): bit 1 for the maximum, both bits for both.
struct Limits {
  uint8_t& least;
  uint8_t& most;
  uint8_t& flags;
  unsigned shift;
};

void Widen(const Limits& limits, bool offsets, uint64_t low, uint64_t high) {
  const unsigned flags = offsets ? limits.flags >> limits.shift & 3u : 0;
  const bool one = limits.least == limits.most && flags != 2;  // a rate that does not vary
  const uint64_t most = std::max<uint64_t>(limits.most + (flags >= 2 ? 255u : 0u), high);
  const uint64_t least = one ? most : std::min<uint64_t>(limits.least + (flags == 3 ? 255u : 0u), low);
  if (most > 510 || (most > 255 && !offsets)) return;
  const unsigned now = least > 255 ? 3 : most > 255 ? 2 : 0;
  limits.least = static_cast<uint8_t>(least - (now == 3 ? 255 : 0));
  limits.most = static_cast<uint8_t>(most - (now != 0 ? 255 : 0));
  if (offsets) limits.flags = static_cast<uint8_t>((limits.flags & ~(3u << limits.shift)) | now << limits.shift);
}

// The range limits hold the timings that came into the two blocks.
void WidenRangeLimits(const Image& before, const Image& image) {
  constexpr size_t kMinorVersion = 19;
  const auto slot = FindRangeLimits(image);
  if (!slot) return;
  const bool offsets = image.blocks()[0].bytes[kMinorVersion] >= 4;
  const std::vector<OfferedTiming> old = before.Timings();
  const auto isListed = [](const OfferedTiming& t) { return t.source == TIMING_DETAILED || t.source == TIMING_VIC; };
  const auto same = [&](const OfferedTiming& a, const OfferedTiming& b) {
    return isListed(b) && a.timing.hactive == b.timing.hactive && a.timing.vactive == b.timing.vactive &&
           a.rate == b.rate;
  };
  uint8_t* const at = slot->data();
  for (const OfferedTiming& now : image.Timings()) {
    if (!isListed(now) || std::ranges::any_of(old, [&](const OfferedTiming& t) { return same(now, t); })) continue;
    const unsigned total = now.timing.hactive + unsigned{now.timing.hblank};
    const uint64_t clock = now.timing.pixelClock, tens = (clock + 9999) / 10000;
    Widen({at[5], at[6], at[4], 0}, offsets, now.rate / 1000, (uint64_t{now.rate} + 999) / 1000);
    Widen({at[7], at[8], at[4], 2}, offsets, clock / total, (clock + total - 1) / total);
    if (at[9] != 0 && tens <= 255) at[9] = std::max(at[9], static_cast<uint8_t>(tens));
  }
}

// No VIC is native that was not.
void KeepNativeMarks(const Image& before, const Image& image) {
  const auto isMarked = [](uint8_t code) { return code > 128 && code <= 192; };
  std::set<uint8_t> marked;
  VisitDataBlocks(before, [&](std::span<uint8_t> bytes) {
    if (IsDataBlock(bytes, CEA_TAG_VIDEO)) marked.insert(bytes.begin() + 1, bytes.end());
  });
  VisitDataBlocks(image, [&](std::span<uint8_t> bytes) {
    if (!IsDataBlock(bytes, CEA_TAG_VIDEO)) return;
    for (uint8_t& code : bytes.subspan(1)) {
      if (isMarked(code) && !marked.contains(code)) code &= 0x7F;
    }
  });
}

// Deep colour in 4:2:0 says nothing without formats in 4:2:0.
void DropIdle420(const Image& image) {
  bool has420 = false;
  VisitDataBlocks(image, [&](std::span<uint8_t> bytes) {
    has420 = has420 || IsDataBlock(bytes, CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO) ||
             IsDataBlock(bytes, CEA_TAG_EXTENDED, CEA_EXT_TAG_420_MAP);
  });
  if (has420) return;
  VisitDataBlocks(image, [](std::span<uint8_t> bytes) {
    const bool forum = IsVendorBlock(bytes, REEDID_OUI_HDMI_FORUM) ||
                       IsDataBlock(bytes, CEA_TAG_EXTENDED, CEA_EXT_TAG_SINK_CAPABILITY);
    if (forum && bytes.size() > kForumColourByte) bytes[kForumColourByte] &= 0xF8;
  });
}

// Writes the repairs of those rules that the edit broke.
ByteVector WithoutNewFindings(const ByteVector& before, const ByteVector& after) {
  constexpr int kAnyYear = 9999;  // dates are not what an edit breaks
  std::multiset<const Rule*> stood;
  for (const Finding& finding : Check(before, kAnyYear)) stood.insert(finding.rule);
  FixSelection broken;
  for (const Finding& finding : Check(after, kAnyYear)) {
    const auto known = stood.find(finding.rule);
    if (known != stood.end()) {
      stood.erase(known);
    } else {
      broken.rules.push_back(finding.rule->id);
    }
  }
  return broken.rules.empty() ? after : Fix(after, kAnyYear, broken).image;
}

}  // namespace

void CheckHighRefresh(const Image& image) {
  if (image.IsEdid() && image.blocks().size() >= 3) return;
  throw Error(ErrorKind::kRefused, fmt::format("{}: has no more than two blocks already", image.name()));
}

Image HighRefresh(Image image, Notes& notes) {
  CheckHighRefresh(image);
  Notes told;  // of the input, which the output's writer tells
  const ByteVector bytes = image.Generate(told);
  const Image before = Image::FromBytes(image.name(), bytes);
  if (EDID_HighRefreshRate(image.handle()) != 0) {
    throw Error(ErrorKind::kRefused, fmt::format("{}: cannot be rewritten", image.name()));
  }
  SetImageSizes(before, image);
  KeepNativeCount(before, image);
  KeepRangeLimits(before, image, notes);
  WidenRangeLimits(before, image);
  KeepNativeMarks(before, image);
  DropIdle420(image);
  return Image::FromBytes(image.name(), WithoutNewFindings(bytes, image.Generate(told)));
}

}  // namespace reedid::document
