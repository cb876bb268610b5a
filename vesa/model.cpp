// The base block (EDID 1.4, table 3.1).
//
//   0-7    header                          25-34   chromaticity: low bits in 25 and 26, high bits in 27..34
//   8-9    manufacturer, three letters     35-37   established timings
//  10-11   product code                    38-53   8 standard timings
//  12-15   serial number                   54-125  4 descriptors of 18 bytes
//  16, 17  week, year - 1990               126     number of extensions
//  18, 19  version, revision               127     checksum
//  20      input definition                21, 22  screen size in cm, or in 1.4 an aspect ratio
//  23      gamma * 100 - 100               24      feature support

#include "vesa/model.h"

#include <cstdlib>
#include <cstring>

#include "base/bytes.h"
#include "base/layout.h"
#include "base/log.h"
#include "base/memory.h"
#include "base/pinned.h"
#include "edid/fields.h"
#include "edid/image.h"
#include "timing/dtd.h"
#include "vesa/std_timing.h"

namespace reedid {
namespace {

PIN_FIELDS(VesaBlock, 0, 8, header);
PIN_FIELDS(VesaBlock, 8, 4, manufacturer);
PIN_FIELDS(VesaBlock, 12, 2, productCode);
PIN_FIELDS(VesaBlock, 16, 4, serialNumber);
PIN_FIELDS(VesaBlock, 20, 1, week);
PIN_FIELDS(VesaBlock, 22, 2, year);
PIN_FIELDS(VesaBlock, 24, 1, version, revision, digitalInput, bitDepth, interfaceType, hScreenSize, vScreenSize);
PIN_FIELDS(VesaBlock, 32, 2, aspectRatioX100, gammaX100);
PIN_FIELDS(VesaBlock, 36, 1, standby, suspend, activeOff, colorType, sRgbDefault, preferredNative, continuousFreq);
PIN_FIELDS(VesaBlock, 44, 2, redX, redY, greenX, greenY, blueX, blueY, whiteX, whiteY);
PIN_FIELDS(VesaBlock, 60, 17, established);
PIN_FIELDS(VesaBlock, 78, 48, standardTimings);
PIN_FIELDS(VesaBlock, 126, 76, descriptors);
PIN_FIELDS(VesaBlock, 202, 1, extensionCount, checksum, checksumValid);
PIN_SIZE(VesaBlock, 208);

constexpr unsigned kInputByte = 20;
constexpr unsigned kScreenSizeByte = 21;
constexpr unsigned kEstablishedByte = 35;
constexpr unsigned kStdTimingsByte = 38;
constexpr unsigned kDescriptorsByte = 54;
constexpr uint8_t kColorTypeBefore14 = 1;  // bits 4..3 of byte 24 written for any other version: RGB colour

// The fields that every version reads and writes alike.
template <class Io, class Model>
constexpr void PlainLayout(const Io& io, Model& model) {
  io(model.productCode, Place{10}, Place{11});
  io(model.serialNumber, Place{12}, Place{13}, Place{14}, Place{15});
  io(model.week, Place{16});
  Above(io, model.year, 1990, Place{17});
  io(model.version, Place{18});
  io(model.revision, Place{19});
  io(model.digitalInput, Place{kInputByte, 7, 1});
  Gamma(io, model.gammaX100, Place{23});
  io(model.standby, Place{24, 7, 1});
  io(model.suspend, Place{24, 6, 1});
  io(model.activeOff, Place{24, 5, 1});
  io(model.sRgbDefault, Place{24, 2, 1});
  io(model.preferredNative, Place{24, 1, 1});
  io(model.continuousFreq, Place{24, 0, 1});
  io(model.redX, Place{25, 6, 2}, Place{27});
  io(model.redY, Place{25, 4, 2}, Place{28});
  io(model.greenX, Place{25, 2, 2}, Place{29});
  io(model.greenY, Place{25, 0, 2}, Place{30});
  io(model.blueX, Place{26, 6, 2}, Place{31});
  io(model.blueY, Place{26, 4, 2}, Place{32});
  io(model.whiteX, Place{26, 2, 2}, Place{33});
  io(model.whiteY, Place{26, 0, 2}, Place{34});
  io(model.extensionCount, Place{126});
  for (uint8_t i = 0; i < 16; ++i) {
    io(model.established[i], Place{Low8(kEstablishedByte + i / 8u), Low8(i % 8u), 1});
  }
}

// What the input byte tells since EDID 1.4.
template <class Io, class Model>
constexpr void Input14Layout(const Io& io, Model& model) {
  BitsPerColor(io, model.bitDepth, Place{kInputByte, 4, 3});
  io(model.interfaceType, Place{kInputByte, 0, 4});
}

// Feature support bits that are fixed before EDID 1.4.
template <class Io, class Field>
constexpr void ColorTypeLayout(const Io& io, Field& colorType) {
  io(colorType, Place{24, 3, 2});
}

void DecodeManufacturer(Bytes bytes, char* letters) {
  const unsigned code = static_cast<unsigned>(bytes[8]) << 8 | bytes[9];
  for (unsigned i = 0; i < 3; ++i) letters[i] = static_cast<char>(Bits(code, 10 - 5 * i, 5) + 0x40);
  letters[3] = '\0';
}

bool EncodeManufacturer(const char* letters, uint8_t* bytes) {
  unsigned code = 0;
  for (unsigned i = 0; i < 3; ++i) {
    if (letters[i] < 'A' || letters[i] > 'Z') return false;
    code = code << 5 | (static_cast<unsigned>(letters[i]) - 0x40u);
  }
  bytes[8] = Low8(code >> 8);
  bytes[9] = Low8(code);
  return true;
}

// In 1.4, one zero byte makes the other an aspect ratio: landscape in the first, portrait in the second.
void DecodeScreenSize(Bytes bytes, VesaBlock& model) {
  const uint8_t h = bytes[kScreenSizeByte];
  const uint8_t v = bytes[kScreenSizeByte + 1];
  if (IsEdid14(model) && (h == 0 || v == 0)) {
    if (h != v) model.aspectRatioX100 = Low16((h | v) + 99);
    return;
  }
  model.hScreenSize = h;
  model.vScreenSize = v;
}

void EncodeScreenSize(const VesaBlock& model, uint8_t* bytes) {
  if (!IsEdid14(model) || model.hScreenSize != 0 || model.vScreenSize != 0) {
    bytes[kScreenSizeByte] = model.hScreenSize;
    bytes[kScreenSizeByte + 1] = model.vScreenSize;
  } else if (model.aspectRatioX100 >= 101) {
    bytes[kScreenSizeByte] = Low8(model.aspectRatioX100 - 99);
  }
}

// A detailed timing has a clock; without one, byte 3 is the tag of a display descriptor.
uint8_t SlotFlag(const uint8_t* bytes) {
  return bytes[0] != 0 || bytes[1] != 0 ? kDtdSlotFlag : bytes[3];
}

}  // namespace

VesaBlock* OpenVesa(const EdidBlock* block, MemoryWatch& memory) {
  constexpr const char* kName = "VESA_Open";
  if (block == nullptr || block->bytes == nullptr || block->size != kEdidBlockSize || block->type != EDID_BLOCK_VESA) {
    return REEDID_ERR_AS(kName, "invalid parameters");
  }
  if (!isEdidHeader(block->bytes)) return REEDID_ERR_AS(kName, "error edid header");
  auto* model = AllocateZeroed<VesaBlock>();
  if (model == nullptr) {
    memory.Lack();
    return REEDID_ERR_AS(kName, "malloc fail");
  }

  const Bytes bytes(block->bytes, kEdidBlockSize);
  const LayoutReader reader(bytes);
  model->checksum = bytes[127];
  model->checksumValid = CheckChecksum(block->bytes, kEdidBlockSize, kName);
  std::memcpy(model->header, bytes.data(), sizeof model->header);
  DecodeManufacturer(bytes, model->manufacturer);
  PlainLayout(reader, *model);
  model->established[16] = Bit(bytes[37], 7);
  DecodeScreenSize(bytes, *model);
  if (IsEdid14(*model)) {
    Input14Layout(reader, *model);
    ColorTypeLayout(reader, model->colorType);
  }
  for (unsigned i = 0; i < 8; ++i) DecodeStdTiming(bytes.From(kStdTimingsByte + 2 * i), model->standardTimings[i]);
  for (unsigned i = 0; i < kDescriptorSlots; ++i) {
    DtdSlot& slot = model->descriptors[i];
    std::memcpy(slot.bytes, bytes.data() + kDescriptorsByte + kDtdSize * i, kDtdSize);
    slot.flag = SlotFlag(slot.bytes);
  }
  return model;
}

}  // namespace reedid

using namespace reedid;

VesaBlock* VESA_Open(const EdidBlock* block) {
  MemoryWatch unwatched;
  return OpenVesa(block, unwatched);
}

void VESA_Close(VesaBlock* model) {
  std::free(model);
}

int32_t VESA_GenerateBlock(const VesaBlock* model, EdidBlock* out) {
  if (model == nullptr || out == nullptr || out->bytes == nullptr || out->capacity < kEdidBlockSize) {
    return REEDID_ERR("invalid parameters");
  }
  uint8_t* bytes = out->bytes;
  out->type = EDID_BLOCK_VESA;
  out->size = kEdidBlockSize;
  std::memset(bytes, 0, out->capacity);  // before the checks, so that nothing of a former block stays behind a refusal

  if (!isEdidHeader(model->header)) return REEDID_ERR("invalid edid header");
  std::memcpy(bytes, model->header, sizeof model->header);
  const char* letters = model->manufacturer;
  if (!EncodeManufacturer(letters, bytes)) {
    return REEDID_ERR("invalid manufacturer name %c%c%c", letters[0], letters[1], letters[2]);
  }
  if (model->week >= 55 && model->week <= 254) REEDID_ERR("invalid week:%d", model->week);
  if (model->year < 1990) REEDID_ERR("invalid year:%d", model->year);

  const LayoutWriter writer(bytes);
  PlainLayout(writer, *model);
  bytes[37] = model->established[16] != 0 ? 0x80 : 0;
  EncodeScreenSize(*model, bytes);
  if (IsEdid14(*model)) Input14Layout(writer, *model);
  ColorTypeLayout(writer, IsEdid14(*model) ? model->colorType : kColorTypeBefore14);
  for (unsigned i = 0; i < 8; ++i) {
    EncodeStdTiming(model->standardTimings[i], kStdRateBits, bytes + kStdTimingsByte + 2 * i);
  }
  for (unsigned i = 0; i < kDescriptorSlots; ++i) {
    std::memcpy(bytes + kDescriptorsByte + kDtdSize * i, model->descriptors[i].bytes, kDtdSize);
  }
  bytes[127] = Low8(GetChecksum(bytes, kEdidBlockSize));
  return 0;
}

int32_t VESA_DeleteDescriptor(VesaBlock* model, uint32_t index) {
  if (model == nullptr || index >= kDescriptorSlots) return REEDID_ERR("invalid parameters");
  for (; index + 1 < kDescriptorSlots; ++index) model->descriptors[index] = model->descriptors[index + 1];
  model->descriptors[kDescriptorSlots - 1] = {};
  return 0;
}
