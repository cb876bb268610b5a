#include "document/check/image_view.h"

#include <algorithm>

#include "reedid/image.h"
#include "reedid/timing.h"

namespace reedid::document::check {
namespace {

constexpr size_t kFirstSlot = 0x36;

// The rate of fields: an interlaced field ends in the middle of a line, but for one format of CTA-861 (VIC 39) whose
// 1250 lines are two equal fields.
double FieldLines(const Timing& timing) {
  const unsigned lines = timing.vActive + timing.vBlank;
  const bool equalFields = timing.hActive == 1920 && timing.hBlank == 384 && lines == 625;
  return timing.interlaced && !equalFields ? lines + 0.5 : lines;
}

// A panel's EDID keeps the maker's private data in its last two text descriptors.
bool IsPanel(const std::vector<Slot>& slots, const Bytes& image) {
  return slots[0].isDtd && slots[1].isDtd && slots[2].tag == EDID_DESCRIPTOR_DATA_STRING &&
         slots[3].tag == EDID_DESCRIPTOR_DATA_STRING && (image[0x79] == 1 || image[0x79] == 2) && image[0x7A] <= 1;
}

std::optional<RangeLimits> ReadRange(const std::vector<Slot>& slots, unsigned minor) {
  const auto found = std::ranges::find_if(
      slots, [](const Slot& slot) { return !slot.isDtd && slot.tag == EDID_DESCRIPTOR_RANGE_LIMITS; });
  if (found == slots.end()) return std::nullopt;
  const Bytes& bytes = found->bytes;
  const unsigned offsets = minor >= 4 ? bytes[4] : 0;
  const auto maxOffset = [&](unsigned shift) { return (offsets >> shift & 2) != 0 ? 255u : 0u; };
  const auto minOffset = [&](unsigned shift) { return (offsets >> shift & 3) == 3 ? 255u : 0u; };
  RangeLimits range;
  range.slot = *found;
  range.formula = bytes[10];
  range.vMin = bytes[5] + minOffset(0);
  range.vMax = bytes[6] + maxOffset(0);
  range.hMin = bytes[7] + minOffset(2);
  range.hMax = bytes[8] + maxOffset(2);
  range.maxClock = bytes[9] * 10;
  range.vOpen = minor < 4 && bytes[6] == 0xFF;
  range.hOpen = minor < 4 && bytes[8] == 0xFF;
  return range;
}

}  // namespace

Bytes Bytes::From(size_t at, size_t count) const {
  if (at >= bytes_.size()) return Bytes();
  return Bytes(bytes_.subspan(at, std::min(count, bytes_.size() - at)));
}

unsigned Bytes::Little(size_t at, size_t count) const {
  unsigned value = 0;
  for (size_t i = count; i-- > 0;) value = value << 8 | (*this)[at + i];
  return value;
}

bool Bytes::AllZero() const {
  return std::ranges::all_of(bytes_, [](uint8_t byte) { return byte == 0; });
}

double Timing::LineRate() const {
  const unsigned total = hActive + hBlank;
  return total == 0 ? 0 : static_cast<double>(clock) / total;
}

double Timing::Rate() const {
  const double lines = FieldLines(*this);
  return lines == 0 ? 0 : LineRate() * 1000 / lines;
}

bool RangeLimits::Misses(const Timing& timing) const {
  return RateAbove(timing) || RateBelow(timing) || LineRateAbove(timing) || LineRateBelow(timing) || ClockAbove(timing);
}

std::optional<Timing> TimingOfVic(unsigned vic) {
  const bool high = vic >= 193 && vic <= 219;
  DtdTiming row = {};
  if (!high && (vic < 1 || vic > 127)) return std::nullopt;
  if (VicToDtd(high ? vic - 64 : vic, &row) != 0) return std::nullopt;
  return Timing{row.pixelClock, row.hactive, row.hblank,      row.hfrontPorch, row.hsyncWidth,
                row.vactive,    row.vblank,  row.vfrontPorch, row.vsyncWidth,  row.interlaced != 0};
}

ImageView::ImageView(std::span<const uint8_t> bytes, int year) : image(bytes), thisYear(year) {
  isEdid = bytes.size() >= kBlockSize && isEdidHeader(bytes.data()) != 0;
  if (isEdid) {
    blockCount = static_cast<unsigned>(bytes.size() / kBlockSize);
    ReadBase();
    for (unsigned i = 1; i < blockCount; ++i) {
      if (Block(i)[0] == EDID_EXTENSION_CTA) ReadCta(i);
      if (Block(i)[0] == EDID_EXTENSION_DISPLAYID) ReadSection(i * kBlockSize + 1, i, true);
    }
    ReadCodes();
  } else {
    for (size_t at = 0; at + 5 <= bytes.size(); at += sections.back().length + 5) {
      ReadSection(at, static_cast<unsigned>(sections.size()), false);
    }
  }
  for (const Section& section : sections) ReadSectionTimings(section);
  if (isEdid) ReadSizes();
}

void ImageView::ReadBase() {
  minor = image[0x13];
  digital = (image[0x14] & 0x80) != 0;
  for (unsigned i = 0; i < 4; ++i) {
    const size_t at = kFirstSlot + i * kSlotSize;
    const Bytes bytes = image.From(at, kSlotSize);
    const bool isDtd = bytes[0] != 0 || bytes[1] != 0;
    slots.push_back({i, at, bytes, isDtd, isDtd ? 0 : bytes[3]});
    if (isDtd) ReadDtd(at, i);
  }
  const bool isPanel = IsPanel(slots, image);
  for (Slot& slot : slots) {
    slot.isText = (slot.tag == EDID_DESCRIPTOR_PRODUCT_NAME || slot.tag == EDID_DESCRIPTOR_DATA_STRING ||
                   slot.tag == EDID_DESCRIPTOR_SERIAL_NUMBER) &&
                  !(isPanel && slot.index >= 2);
  }
  range = ReadRange(slots, minor);
}

// EDID 1.4, table 3.21.
void ImageView::ReadDtd(size_t at, std::optional<unsigned> slot) {
  const Bytes b = image.From(at, kSlotSize);
  DetailedTiming dtd;
  dtd.clock = b.Little(0, 2) * 10;
  dtd.hActive = b[2] | (b[4] & 0xF0) << 4;
  dtd.hBlank = b[3] | (b[4] & 0x0F) << 8;
  dtd.vActive = b[5] | (b[7] & 0xF0) << 4;
  dtd.vBlank = b[6] | (b[7] & 0x0F) << 8;
  dtd.hFront = b[8] | (b[11] & 0xC0) << 2;
  dtd.hSync = b[9] | (b[11] & 0x30) << 4;
  dtd.vFront = b[10] >> 4 | (b[11] & 0x0C) << 2;
  dtd.vSync = (b[10] & 0x0F) | (b[11] & 0x03) << 4;
  dtd.width = b[12] | (b[14] & 0xF0) << 4;
  dtd.height = b[13] | (b[14] & 0x0F) << 8;
  dtd.interlaced = (b[17] & 0x80) != 0;
  dtd.number = static_cast<unsigned>(dtds.size()) + 1;
  dtd.isFirst = slot == 0u;
  dtd.place = PlaceAt(at);
  dtd.place.slot = slot;
  dtd.place.timing = dtd.number;
  dtds.push_back(dtd);
}

// Sizes in mm: of the base block, and the largest that anything tells.
void ImageView::ReadSizes() {
  sizeIsRatio = hdmi && hdmi->imageSize == 1;
  if (image[0x15] != 0 && image[0x16] != 0) {
    const unsigned unit = hdmi && hdmi->imageSize == 3 ? 50 : 10;
    largestWidth = width = image[0x15] * unit;
    largestHeight = height = image[0x16] * unit;
  }
  const auto tell = [&](unsigned mm10Width, unsigned mm10Height) {
    if (mm10Width == 0 && mm10Height == 0) return;
    otherSize = true;
    largestWidth = std::max(largestWidth, (mm10Width + 5) / 10);
    largestHeight = std::max(largestHeight, (mm10Height + 5) / 10);
  };
  for (const Section& section : sections) {
    for (const SectionBlock& block : section.dataBlocks) {
      if (block.tag != DISPID_TAG_DISPLAY_PARAMS && block.tag != DISPID20_TAG_DISPLAY_PARAMS) continue;
      const unsigned unit = block.tag == DISPID20_TAG_DISPLAY_PARAMS && (block.bytes[1] & 0x80) != 0 ? 10 : 1;
      tell(block.bytes.Little(3, 2) * unit, block.bytes.Little(5, 2) * unit);
    }
  }
  if (const DataBlock* native = First(kNativeResolution); native != nullptr && (native->bytes[3] & 1) != 0) {
    const unsigned unit = (native->bytes[3] & 0x80) != 0 ? 10 : 1;
    tell(native->bytes.Little(4, 2) * unit, native->bytes.Little(6, 2) * unit);
  }
}

const DataBlock* ImageView::First(unsigned kind) const {
  const auto found = std::ranges::find(dataBlocks, kind, &DataBlock::kind);
  return found == dataBlocks.end() ? nullptr : &*found;
}

bool ImageView::ListsVic(unsigned vic) const {
  return std::ranges::find(svds, vic, &Svd::vic) != svds.end();
}

bool ImageView::VideoCodesAreCounted() const {
  const auto isMap = [](const DataBlock& block) { return block.kind == kY420Map && block.L() > 1; };
  return std::ranges::any_of(dataBlocks, isMap) || (hdmi && (hdmi->multi3d != 0 || hdmi->part3d.size() != 0));
}

Place ImageView::PlaceAt(size_t at) const {
  Place place;
  place.at = at;
  if (isEdid) {
    place.block = static_cast<unsigned>(at / kBlockSize);
    place.byte = static_cast<unsigned>(at % kBlockSize);
    return place;
  }
  const auto next = std::ranges::find_if(sections, [&](const Section& section) { return section.at > at; });
  if (next == sections.begin()) return place;
  place.block = static_cast<unsigned>(next - sections.begin() - 1);
  place.byte = static_cast<unsigned>(at - (next - 1)->at);
  return place;
}

Place PlaceOf(const ImageView& view, const Slot& slot) {
  Place place = view.PlaceAt(slot.at);
  place.slot = slot.index;
  return place;
}

Place PlaceOf(const ImageView& view, const SectionBlock& block) {
  Place place = view.PlaceAt(block.at);
  place.dataBlock = block.index;
  return place;
}

}  // namespace reedid::document::check
