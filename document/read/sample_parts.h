// What the built-in EDIDs are put together from: the library's setters, and models that grow by them.
#pragma once

#include <array>
#include <cstdint>

#include "document/bytes.h"
#include "reedid/reedid.hpp"

namespace reedid::document {

// The samples are constants in all but form: a call that fails here is a fault of the program, kInternal.
void Must(int32_t result);

// clock kHz; h: active, blanking, front porch, sync; v: likewise; polarities; then what a descriptor adds.
constexpr DtdTiming Timing(uint32_t clock, std::array<uint16_t, 4> h, std::array<uint16_t, 4> v, bool hPositive,
                           bool vPositive) {
  DtdTiming t = {};
  t.pixelClock = clock;
  t.hactive = h[0], t.hblank = h[1], t.hfrontPorch = h[2], t.hsyncWidth = h[3];
  t.vactive = v[0], t.vblank = v[1], t.vfrontPorch = v[2], t.vsyncWidth = v[3];
  t.hsyncPositive = hPositive;
  t.vsyncPositive = vPositive;
  return t;
}

// CTA-861 formats, DMT 0x23, and CVT reduced blanking for the gaming monitor.
inline constexpr DtdTiming kVic97 = Timing(594000, {3840, 560, 176, 88}, {2160, 90, 8, 10}, true, true);
inline constexpr DtdTiming kVic16 = Timing(148500, {1920, 280, 88, 44}, {1080, 45, 4, 5}, true, true);
inline constexpr DtdTiming kVic4 = Timing(74250, {1280, 370, 110, 40}, {720, 30, 5, 5}, true, true);
inline constexpr DtdTiming k1280x1024 = Timing(108000, {1280, 408, 48, 112}, {1024, 42, 1, 3}, true, true);
inline constexpr DtdTiming k1440p60 = Timing(241500, {2560, 160, 48, 32}, {1440, 41, 3, 5}, true, false);
inline constexpr DtdTiming k1440p144 = Timing(604250, {2560, 160, 48, 32}, {1440, 103, 3, 5}, true, false);
inline constexpr DtdTiming k1440p165 = Timing(699500, {2560, 160, 48, 32}, {1440, 119, 3, 5}, true, false);

DtdSlot TimingSlot(DtdTiming timing, uint16_t widthMm, uint16_t heightMm);

// A descriptor by one of the setters for text: VESA_SetProductName, ...
DtdSlot TextSlot(int32_t (*set)(const char*, DtdSlot*), const char* text);

// Range limits without a secondary formula.
DtdSlot RangeSlot(const VesaBlock& base, const RangeLimits& limits);

// What the samples' base blocks have in common; sRGB primaries.
VesaBlock BaseModel(uint16_t product, uint8_t revision);

class ImageBuilder {
 public:
  explicit ImageBuilder(const VesaBlock& base);
  // Appends a model's block; the library keeps the count of extensions.
  template <class Model>
  ImageBuilder& Add(const Model& model) {
    uint8_t bytes[REEDID_BLOCK_SIZE];
    EdidBlock block = {EDID_BLOCK_UNKNOWN, sizeof bytes, sizeof bytes, bytes};
    Must(model.GenerateInto(block));
    AddBlock(block);
    return *this;
  }
  ByteVector Build() const;

 private:
  void AddBlock(const EdidBlock& block);
  reedid::Image image_;
};

// A CTA-861 extension that grows by data blocks and detailed timings.
class CtaBuilder {
 public:
  CtaBuilder();
  template <class Record>
  CtaBuilder& Add(int32_t (*set)(const Record*, CeaDataBlock*), const Record& record) {
    CeaDataBlock block = {0, 0, 0, bytes_};
    Must(set(&record, &block));
    return AddBlock(block);
  }
  CtaBuilder& Add420Map(const Vic420Record& record);
  CtaBuilder& AddTiming(const DtdSlot& slot);
  const CtaExtension& model() const { return model_; }

 private:
  CtaBuilder& AddBlock(const CeaDataBlock& block);
  CtaExtension model_;
  uint8_t bytes_[REEDID_CEA_DATA_BLOCK_SIZE] = {};
};

}  // namespace reedid::document
