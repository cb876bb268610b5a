#include "transform/link/image_size.h"

#include <algorithm>

namespace reedid {
namespace {

constexpr unsigned kSizeBytes = 12;
constexpr unsigned kWidthByte = 21, kHeightByte = 22, kMillimetres = 10;  // of the base block

}  // namespace

DtdTiming SizeOf(Bytes slot) {
  DtdTiming size = {};
  size.hImageSize = Low16(slot[kSizeBytes] | Bits(slot[kSizeBytes + 2], 4, 4) << 8);
  size.vImageSize = Low16(slot[kSizeBytes + 1] | Bits(slot[kSizeBytes + 2], 0, 4) << 8);
  return size;
}

void WriteSize(uint8_t* slot, const DtdTiming& timing) {
  slot[kSizeBytes] = Low8(timing.hImageSize);
  slot[kSizeBytes + 1] = Low8(timing.vImageSize);
  slot[kSizeBytes + 2] = Low8((timing.hImageSize >> 8) << 4 | timing.vImageSize >> 8);
}

DtdTiming ScreenSize(const EdidBlock& base) {
  DtdTiming size = {};
  const Bytes bytes(base.bytes, base.size);
  if (bytes[kWidthByte] == 0 || bytes[kHeightByte] == 0) return size;
  size.hImageSize = Low16(bytes[kWidthByte] * kMillimetres);
  size.vImageSize = Low16(bytes[kHeightByte] * kMillimetres);
  return size;
}

void SetImageSize(const EdidBlock& base, const DtdTiming& told, DtdTiming& timing) {
  uint32_t width = told.hImageSize, height = told.vImageSize;
  const uint32_t lines = timing.vactive * (timing.interlaced != 0 ? 2u : 1u);
  const auto scaled = [](uint32_t size, uint32_t of, uint32_t to) { return to == 0 ? size : size * of / to; };
  const auto less = [](uint32_t a, uint32_t b) { return a * 20 < b * 19; };
  if (less(scaled(height, timing.hactive, lines), width) || less(scaled(width, lines, timing.hactive), height)) {
    const DtdTiming screen = ScreenSize(base);
    width = std::max<uint32_t>(width, screen.hImageSize);
    height = std::max<uint32_t>(height, screen.vImageSize);
    const uint32_t fullWidth = width;
    width = std::min(width, scaled(height, timing.hactive, lines));
    height = std::min(height, scaled(fullWidth, lines, timing.hactive));
  }
  timing.hImageSize = Low16(width);
  timing.vImageSize = Low16(height);
}

bool IsSizeOf(Bytes slot, const DtdTiming& wanted) {
  const DtdTiming told = SizeOf(slot);
  const auto close = [](uint32_t a, uint32_t b) { return a * 20 >= b * 19 && b * 20 >= a * 19; };
  return close(told.hImageSize, wanted.hImageSize) && close(told.vImageSize, wanted.vImageSize);
}

}  // namespace reedid
