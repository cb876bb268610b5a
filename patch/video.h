// Edits of an image's lists of timings by number. A short video descriptor is referred to by its place (YCbCr 4:2:0
// capability map, HDMI 3D formats), a detailed timing by its number (native count), both by short video references
// (CTA-861, 7.5.11 and 7.5.12; HDMI 1.4b, 8.3.2): all of them stay true.
#pragma once

#include <cstdint>

#include "patch/image.h"

namespace reedid {

// A byte of a block.
struct BytePlace {
  unsigned block;
  unsigned at;
};

constexpr uint8_t VicOfSvd(uint8_t svd) {
  return svd > 128 && svd <= 192 ? Low8(svd & 0x7F) : svd;
}

// How many short video descriptors of a VIC the video blocks of the image hold, and 4:2:0 video blocks.
unsigned CountSvds(const EdidHandle& handle, uint8_t vic);
unsigned CountVics420(const EdidHandle& handle, uint8_t vic);

// The first short video descriptor of a VIC in the video blocks of a block; `at` is 0 without one.
BytePlace FindSvdOf(const EdidHandle& handle, unsigned block, uint8_t vic);

// Removes the short video descriptor at a place; a video block that has no other goes with it.
void EraseSvd(EdidHandle& handle, BytePlace place);

// Gives a place another VIC; a native mark stays where the VIC can carry one.
void ReplaceSvd(EdidHandle& handle, BytePlace place, uint8_t vic);

// Clears the bit of a short video descriptor in the 4:2:0 capability map. A map without bits says that all have it: it
// is left alone.
void ClearFromMap420(EdidHandle& handle, BytePlace svd);

// Removes a VIC from a 4:2:0 video block, and an empty one.
void EraseVic420(EdidHandle& handle, BytePlace place);

// Adds a VIC to the 4:2:0 video block of the extension, or makes one. False, nothing changed, when there is no room.
bool AddVic420(EdidHandle& handle, unsigned block, uint8_t vic);

// Adds a VIC to the last video block of the extension, so that all others keep their places. False, nothing changed,
// when there is none or no room, or when what the extension tells of all its VICs (4:2:0, 3D) would be told of it too.
bool AddVic(EdidHandle& handle, unsigned block, uint8_t vic);

// Removes a detailed timing of the base block or of a CTA extension.
void EraseDetailedTiming(EdidHandle& handle, BytePlace place);

// Adds a detailed timing that is not native: behind all others of a CTA extension that is the last, else in the base block
// behind its first ones. False, nothing changed, when there is no room.
bool AddDetailedTiming(EdidHandle& handle, unsigned block, Bytes slot);

// The short video reference of the type VII, VIII or X timing at a place of a CTA extension; 0 where it has none. Ask
// before the timing is removed, and drop the reference afterwards: those to later timings of its kind follow.
uint8_t ReferenceTo(const EdidHandle& handle, BytePlace place);
void DropReference(EdidHandle& handle, uint8_t reference);

// Follows references to a VIC that the image no longer has to another one, or drops them (0).
void RedirectVic(EdidHandle& handle, uint8_t vic, uint8_t to);

// No detailed timing is native any more: neither the first (EDID 1.4, 3.6.4) nor those that the CTA extensions count, and
// DisplayID display parameters tell no native size.
void ClearNativeTimings(EdidHandle& handle);

// Number of timings in base block and CTA extensions.
unsigned CountDetailedTimings(const EdidHandle& handle);

}  // namespace reedid
