// Display parameters: tag 0x01 (DisplayID 1.3, table 4-6) and tag 0x21 (DisplayID 2.0, table 4-2).
//
// 1.x, 15 bytes                                    2.0, 32 bytes
//  3-6    image size, horizontal and vertical       1     bit 7: the image size is in 1 mm, else 0.1 mm
//  7-10   native pixels, horizontal and vertical    3-6   image size
//  11     features, see the layout                  7-10  native pixels
//  12     gamma: 100 * (gamma - 1), 255 none        11    features, raw
//  13     100 * (aspect ratio - 1)                  12-23 chromaticities: x 11..0, y 11..0 in three bytes each
//  14     colour depth - 1: native 7..4,            24-29 luminances
//         overall 3..0                              30    technology 6..4, colour depth code 2..0
//                                                   31    gamma as in 1.x

#include "base/layout.h"
#include "base/log.h"
#include "base/pinned.h"
#include "displayid/codec.h"
#include "edid/fields.h"

namespace reedid {
namespace {

PIN_FIELDS(DisplayParamsRecord, 0, 2, hImageSize, vImageSize, hPixels, vPixels, gammaX100);
PIN_FIELDS(DisplayParamsRecord, 10, 1, audio, separateAudio, audioOverride, powerManagement, fixedTiming,
           fixedPixelFormat, supportsAI, deinterlacing);
PIN_FIELDS(DisplayParamsRecord, 18, 2, aspectRatioX100);
PIN_FIELDS(DisplayParamsRecord, 20, 1, nativeColorDepth, overallColorDepth);
PIN_SIZE(DisplayParamsRecord, 22);
PIN_FIELDS(DisplayParams20Record, 0, 1, sizeIn1mm);
PIN_FIELDS(DisplayParams20Record, 4, 4, hImageSize, vImageSize);
PIN_FIELDS(DisplayParams20Record, 12, 2, hPixels, vPixels);
PIN_FIELDS(DisplayParams20Record, 16, 1, features);
PIN_FIELDS(DisplayParams20Record, 18, 2, redX, redY, greenX, greenY, blueX, blueY, whiteX, whiteY, maxLuminanceFull,
           maxLuminance10, minLuminance);
PIN_FIELDS(DisplayParams20Record, 40, 1, colorDepth, technology);
PIN_FIELDS(DisplayParams20Record, 42, 2, gammaX100);
PIN_SIZE(DisplayParams20Record, 44);

constexpr unsigned kSize = 15;
constexpr unsigned k20Size = 32;
constexpr uint8_t kSizeIn1mm = 0x10;  // of headerFlags

// Bits per colour - 1; a depth of 0 leaves the code 0.
template <class Io, class Field>
constexpr void Depth(const Io& io, Field& field, Place place) {
  Coded(
      io, field, [](uint32_t code) { return code + 1; }, [](uint32_t value) { return value == 0 ? 0 : value - 1; },
      place);
}

template <class Io, class Record>
constexpr void DisplayParamsLayout(const Io& io, Record& r) {
  io(r.hImageSize, Place{3}, Place{4});
  io(r.vImageSize, Place{5}, Place{6});
  io(r.hPixels, Place{7}, Place{8});
  io(r.vPixels, Place{9}, Place{10});
  io(r.audio, Place{11, 7, 1});
  io(r.separateAudio, Place{11, 6, 1});
  io(r.audioOverride, Place{11, 5, 1});
  io(r.powerManagement, Place{11, 4, 1});
  io(r.fixedTiming, Place{11, 3, 1});
  io(r.fixedPixelFormat, Place{11, 2, 1});
  io(r.supportsAI, Place{11, 1, 1});
  io(r.deinterlacing, Place{11, 0, 1});
  Gamma(io, r.gammaX100, Place{12});
  Depth(io, r.nativeColorDepth, Place{14, 4, 4});
  Depth(io, r.overallColorDepth, Place{14, 0, 4});
}

template <class Io, class Record>
constexpr void DisplayParams20Layout(const Io& io, Record& r) {
  const uint32_t unit = r.sizeIn1mm != 0 ? 10 : 1;
  Scaled(io, r.hImageSize, unit, Place{3}, Place{4});
  Scaled(io, r.vImageSize, unit, Place{5}, Place{6});
  io(r.hPixels, Place{7}, Place{8});
  io(r.vPixels, Place{9}, Place{10});
  io(r.features, Place{11});
  const auto chromaticity = [&io](auto& x, auto& y, uint8_t at) {
    io(x, Place{at}, Place{Low8(at + 1), 0, 4});
    io(y, Place{Low8(at + 1), 4, 4}, Place{Low8(at + 2)});
  };
  chromaticity(r.redX, r.redY, 12);
  chromaticity(r.greenX, r.greenY, 15);
  chromaticity(r.blueX, r.blueY, 18);
  chromaticity(r.whiteX, r.whiteY, 21);
  io(r.maxLuminanceFull, Place{24}, Place{25});
  io(r.maxLuminance10, Place{26}, Place{27});
  io(r.minLuminance, Place{28}, Place{29});
  BitsPerColor(io, r.colorDepth, Place{30, 0, 3});
  io(r.technology, Place{30, 4, 3});
  Gamma(io, r.gammaX100, Place{31});
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID_GetDPDB(const DispIdDataBlock* entry, DisplayParamsRecord* record) {
  if (!Matches(entry, DISPID_TAG_DISPLAY_PARAMS, kSize) || entry->size != kSize || record == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  *record = {};
  DisplayParamsLayout(LayoutReader(BytesOf(*entry)), *record);
  record->aspectRatioX100 = Low16(entry->bytes[13] + 100);
  return 0;
}

int32_t DispID_SetDPDB(const DisplayParamsRecord* record, DispIdDataBlock* entry) {
  if (record == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  DisplayParamsLayout(BeginDataBlock(*entry, {DISPID_TAG_DISPLAY_PARAMS, 0, 0}, kSize - kDispIdHeaderSize), *record);
  // To byte 0, over the tag, while byte 13 stays 0: odd on purpose, docs/oddities.md.
  if (record->aspectRatioX100 > 100) entry->bytes[0] = Low8(record->aspectRatioX100 - 100);
  return 0;
}

int32_t DispID20_GetDPDB(const DispIdDataBlock* entry, DisplayParams20Record* record) {
  if (!Matches(entry, DISPID20_TAG_DISPLAY_PARAMS, k20Size) || entry->size != k20Size || record == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  *record = {};
  record->sizeIn1mm = (entry->headerFlags & kSizeIn1mm) != 0;
  DisplayParams20Layout(LayoutReader(BytesOf(*entry)), *record);
  return 0;
}

int32_t DispID20_SetDPDB(const DisplayParams20Record* record, DispIdDataBlock* entry) {
  if (record == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  const uint8_t flags = record->sizeIn1mm ? kSizeIn1mm : uint8_t{0};
  DisplayParams20Layout(BeginDataBlock(*entry, {DISPID20_TAG_DISPLAY_PARAMS, 0, flags}, k20Size - kDispIdHeaderSize),
                        *record);
  return 0;
}
