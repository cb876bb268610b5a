// The view's part of DisplayID sections, in extensions and standing alone.
#include <algorithm>

#include "document/check/image_view.h"

namespace reedid::document::check {
namespace {

constexpr size_t kInExtension = 126;  // from the version to the byte before the block's checksum
constexpr size_t kAlone = 256;

// Type I and VII, one descriptor (DisplayID 1.3, 4.4.1; 2.1, 4.3): every value is stored less one.
Timing ReadDescriptor(const Bytes& b, unsigned unit) {
  const auto count = [&](size_t at) { return b.Little(at, 2) + 1; };
  const auto porch = [&](size_t at) { return (b.Little(at, 2) & 0x7FFF) + 1; };
  Timing timing;
  timing.clock = (b.Little(0, 3) + 1) * unit;
  timing.interlaced = (b[3] & 0x10) != 0;
  timing.hActive = count(4);
  timing.hBlank = count(6);
  timing.hFront = porch(8);
  timing.hSync = count(10);
  timing.vActive = count(12);
  timing.vBlank = count(14);
  timing.vFront = porch(16);
  timing.vSync = count(18);
  return timing;
}

}  // namespace

void ImageView::ReadSection(size_t at, unsigned block, bool isExtension) {
  Section section;
  section.at = at;
  section.block = block;
  section.isExtension = isExtension;
  const Bytes room = image.From(at, isExtension ? kInExtension : kAlone);
  section.length = room[1];
  section.isWhole = section.length + 5 <= room.size();
  section.bytes = room.From(0, section.length + 5);
  const size_t end = std::min<size_t>(section.length + 4, room.size() - 1);
  size_t next = 4;
  while (next + 3 <= end && !room.From(next, 3).AllZero()) {
    const size_t size = room[next + 2] + 3;
    if (next + size > end) {
      section.overlongAt = at + next;
      break;
    }
    const unsigned index = static_cast<unsigned>(section.dataBlocks.size());
    section.dataBlocks.push_back({at + next, index, room[next], room.From(next, size)});
    next += size;
  }
  section.used = next;
  sections.push_back(section);
}

void ImageView::ReadSectionTimings(const Section& section) {
  for (const SectionBlock& block : section.dataBlocks) {
    if (block.tag != DISPID_TAG_TYPE_I && block.tag != DISPID20_TAG_TYPE_VII) continue;
    const size_t size = block.tag == DISPID_TAG_TYPE_I ? 20 : 20 + (block.bytes[1] >> 4 & 7);
    for (size_t at = 3; at + size <= block.bytes.size(); at += size) {
      SectionTiming timing;
      static_cast<Timing&>(timing) = ReadDescriptor(block.bytes.From(at, 20), block.tag == DISPID_TAG_TYPE_I ? 10 : 1);
      timing.place = PlaceAt(block.at + at);
      timing.place.dataBlock = block.index;
      sectionTimings.push_back(timing);
    }
  }
}

}  // namespace reedid::document::check
