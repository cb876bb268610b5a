#include "document/read/sample_parts.h"

#include <cstring>

#include "document/error.h"

namespace reedid::document {

void Must(int32_t result) {
  if (result < 0) throw Error(ErrorKind::kInternal, "a built-in EDID could not be built");
}

DtdSlot TimingSlot(DtdTiming timing, uint16_t widthMm, uint16_t heightMm) {
  timing.hImageSize = widthMm;
  timing.vImageSize = heightMm;
  DtdSlot slot;
  Must(VESA_SetDTD(&timing, &slot));
  return slot;
}

DtdSlot TextSlot(int32_t (*set)(const char*, DtdSlot*), const char* text) {
  DtdSlot slot;
  Must(set(text, &slot));
  return slot;
}

DtdSlot RangeSlot(const VesaBlock& base, const RangeLimits& limits) {
  static constexpr char kFilling[] = "\n      ";  // EDID 1.4, table 3.26: behind a kind that has no more to say
  DtdSlot slot;
  Must(VESA_SetRangeLimits(&base, &limits, &slot));
  std::memcpy(slot.bytes + 11, kFilling, sizeof kFilling - 1);
  return slot;
}

VesaBlock BaseModel(uint16_t product, uint8_t revision) {
  VesaBlock base = {};
  const uint8_t header[] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
  std::memcpy(base.header, header, sizeof header);
  std::memcpy(base.manufacturer, "RED", 4);
  base.productCode = product;
  base.serialNumber = 1;
  base.week = 47;
  base.year = 2026;
  base.version = 1;
  base.revision = revision;
  base.digitalInput = 1;
  base.gammaX100 = 220;
  base.preferredNative = 1;
  base.redX = 655, base.redY = 338, base.greenX = 307, base.greenY = 614;
  base.blueX = 154, base.blueY = 61, base.whiteX = 320, base.whiteY = 337;
  base.established[5] = 1;  // 640x480 60 Hz
  return base;
}

ImageBuilder::ImageBuilder(const VesaBlock& base) {
  uint8_t bytes[REEDID_BLOCK_SIZE];
  EdidBlock block = {EDID_BLOCK_VESA, sizeof bytes, sizeof bytes, bytes};
  Must(VESA_GenerateBlock(&base, &block));
  image_ = reedid::Image(bytes);
  Must(image_ ? 0 : -1);
}

void ImageBuilder::AddBlock(const EdidBlock& block) {
  Must(EDID_AddBlock(image_.get(), &block, image_->blockCount));
}

ByteVector ImageBuilder::Build() const {
  ByteVector bytes = image_.Bytes();
  Must(bytes.empty() ? -1 : 0);
  return bytes;
}

CtaBuilder::CtaBuilder() {
  uint8_t empty[REEDID_BLOCK_SIZE] = {EDID_EXTENSION_CTA, 0x03, 0x04};
  empty[sizeof empty - 1] = static_cast<uint8_t>(GetChecksum(empty, sizeof empty));
  model_ = CtaExtension(EdidBlock{EDID_BLOCK_CEA, sizeof empty, sizeof empty, empty});
  Must(model_ ? 0 : -1);
}

CtaBuilder& CtaBuilder::Add420Map(const Vic420Record& record) {
  CeaDataBlock block = {0, 0, 0, bytes_};
  Must(CEA_Set420CMDB(&record, CEA_FindDataBlock(model_.get(), CEA_TAG_VIDEO, 0), &block));
  return AddBlock(block);
}

CtaBuilder& CtaBuilder::AddTiming(const DtdSlot& slot) {
  Must(CEA_AddDTD(model_.get(), &slot, model_->dtdCount));
  return *this;
}

CtaBuilder& CtaBuilder::AddBlock(const CeaDataBlock& block) {
  Must(CEA_AddDataBlock(model_.get(), &block, model_->dataBlockCount));
  return *this;
}

}  // namespace reedid::document
