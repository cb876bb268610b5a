#include "tests/document/check_cases.h"
#include "tests/document/sound_images.h"

namespace reedid::test {
namespace {

// A timing as slots hold it, with other porches.
DtdTiming Porches(DtdTiming timing, uint16_t hFront, uint16_t vFront, uint8_t interlaced = 0) {
  timing.hfrontPorch = hFront;
  timing.vfrontPorch = vFront;
  timing.interlaced = interlaced;
  return Sized(timing);
}

DtdTiming FullHd(uint32_t clock, uint16_t width = kWidth, uint16_t height = kHeight) {
  return Sized(AtClock(k1080p60, clock), width, height);
}

ByteVector Name(const std::string& text) {
  return Monitor({{kNameAt, TextSlot(0xFC, text)}});
}

// The range limits from byte 4 on: offsets, Hz, kHz, clock, formula.
ByteVector Range(const ByteVector& bytes) {
  return Monitor({{kRangeAt + 4, bytes}});
}

const ByteVector kUnusedSlot = {0, 0, 0, 0x10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};

}  // namespace

std::vector<CheckCase> BaseBlockCases() {
  return {
      // identity
      {"edid-version", Monitor({{0x13, {5}}}), Monitor13({{0x13, {0}}})},
      {"vendor-product-id", Monitor({{0x08, {0x6F, 0x5A}}}), Monitor({{0x08, {0x6B, 0x5A}}})},
      {"vendor-product-id", Monitor({{0x0A, {0, 0}}}), Monitor({{0x0A, {0, 1}}})},
      {"serial-placeholder", Monitor({{0x0C, {1, 1, 1, 1}}}), Monitor({{0x0C, {0, 0, 0, 0}}})},
      {"serial-placeholder", Monitor({{0x0C, {0, 0, 0, 0x80}}}), Monitor({{0x0C, {0x80, 0, 0, 0}}})},
      {"date-implausible", Monitor({{0x10, {55}}}), Monitor({{0x10, {0xFF}}})},
      {"date-implausible", Monitor13({{0x10, {54}}}), Monitor({{0x10, {54}}})},
      {"date-implausible", Monitor({{0x11, {38}}}), Monitor({{0x11, {37}}})},
      {"date-implausible", Monitor({{0x11, {15}}}), Monitor13({{0x11, {15}}})},
      {"name-missing", Monitor13({{kNameAt, kUnusedSlot}}), Monitor({{kNameAt, kUnusedSlot}})},
      {"text-format", Name("Sound"), Name("Thirteen char")},
      {"text-format", Name(std::string("Sound\0\n", 7)), Name("Sound\n")},
      {"text-format", Name("Sound\nx"), Monitor({{kDummyAt, TextSlot(0x0F, "Sound\nx")}})},
      {"text-trailing-space", Name("Sound \n"), Name("So und\n")},
      {"text-empty", Name("  \n"), Name("  .\n")},
      {"serial-string-placeholder", Monitor({{kDummyAt, TextSlot(0xFF, "0010 00\n")}}),
       Monitor({{kDummyAt, TextSlot(0xFF, "0010200\n")}})},
      {"serial-string-placeholder", Monitor({{kDummyAt, TextSlot(0xFF, "demoset-1\n")}}),
       Monitor({{kDummyAt, TextSlot(0xFE, "demoset-1\n")}})},
      // timings
      {"preferred-timing-missing", Monitor({{kTimingAt, TextSlot(0xFE, "Sound\n")}}),
       Monitor13({{kTimingAt, TextSlot(0xFE, "Sound\n")}, {0x18, {0x0C}}})},
      {"preferred-bit-clear", Monitor13({{0x18, {0x0C}}}), Monitor({{0x18, {0x0C}}})},
      {"dtd-implausible", MonitorWith({FullHd(24000)}), MonitorWith({FullHd(24760)})},
      {"dtd-implausible", Monitor({{kTimingAt + 6, {0}}}), Monitor({{kTimingAt + 6, {1}}})},
      {"dtd-sync-beyond-blanking", MonitorWith({Porches(k1080p60, 237, 4)}), MonitorWith({Porches(k1080p60, 236, 4)})},
      {"dtd-zero-porch", MonitorWith({Porches(k1080p60, 236, 4)}), MonitorWith({Porches(k1080p60, 235, 4)})},
      {"dtd-zero-porch", MonitorWith({Porches(k1080p60, 88, 0)}), MonitorWith({Porches(k1080p60, 88, 0, 1)})},
      {"dtd-after-descriptor", Monitor({{kNameAt, DescriptorOf(k720p60)}}),
       MonitorWith({FullHd(148500), FullHd(74250)})},
      {"standard-timing-unused-code", Monitor({{0x28, {0x00, 0x01}}}), Monitor({{0x28, {0xD1, 0x00}}})},
      {"standard-timing-unused-code", Monitor({{0x34, {0x01, 0x40}}}), Monitor({{0x34, {0x31, 0x01}}})},
      // sizes
      {"dtd-size-over-display", MonitorWith({FullHd(148500, 610)}), MonitorWith({FullHd(148500, 609)})},
      {"dtd-size-over-display", MonitorWith({FullHd(148500, 600, 350)}), MonitorWith({FullHd(9990, 600, 350)})},
      {"preferred-size-below-display", MonitorWith({FullHd(148500, 590, 330)}),
       MonitorWith({FullHd(148500, 590, 331)})},
      {"preferred-aspect", MonitorWith({FullHd(148500, 600, 303)}), MonitorWith({FullHd(148500, 600, 308)})},
      {"size-is-a-ratio", Monitor({{0x15, {16, 9}}}), Monitor({{0x15, {16, 10}}})},
      {"size-is-a-ratio", MonitorWith({FullHd(148500, 160, 90)}), MonitorWith({FullHd(148500, 160, 100)})},
      {"dtd-size-one-sided", MonitorWith({FullHd(148500, 600, 0)}),
       MonitorWith({FullHd(148500, 0, 0)}, {{0x15, {0, 0}}})},
      {"dtd-size-one-sided", Monitor13({{0x15, {60, 0}}}), Monitor({{0x15, {79, 0}}})},
      // range limits: 24-75 Hz, 30-140 kHz, 600 MHz
      {"preferred-outside-range-limits", Range({0, 24, 58}), Range({0, 24, 59})},
      {"preferred-outside-range-limits", Range({0, 24, 75, 70, 140}), Range({0, 24, 75, 70, 70})},
      {"preferred-outside-range-limits", Range({0, 24, 75, 30, 140, 14}), Range({0, 24, 75, 30, 140, 0})},
      {"dtd-outside-range-limits", MonitorWith({FullHd(148500), FullHd(198000)}),
       MonitorWith({FullHd(148500), FullHd(188000)})},
      {"range-limits-missing", Monitor13({{kRangeAt, kUnusedSlot}}), Monitor({{kRangeAt, kUnusedSlot}})},
      {"range-limits-missing", Monitor({{kRangeAt, kUnusedSlot}, {0x18, {0x0F}}}), Monitor13({{0x18, {0x0F}}})},
      {"range-min-over-max", Range({0, 76}), Range({0, 75})},
      {"range-min-over-max", Range({0x0C, 24, 75, 31, 30}), Range({0x08, 24, 75, 31, 30})},
      {"range-saturated", MonitorWith({FullHd(148500), FullHd(635000)}, {{kRangeAt + 22, {0, 24, 255, 30, 140, 64}}}),
       MonitorWith({FullHd(148500), FullHd(635000)}, {{kRangeAt + 22, {2, 24, 255, 30, 140, 64}}})},
      {"range-class", Range({0, 24, 75, 30, 140, 60, 3}), Monitor13({{kRangeAt + 10, {2}}})},
      {"range-class", Monitor13({{kRangeAt + 10, {1}}}), Range({0, 24, 75, 30, 140, 60, 4})},
      {"range-formula-not-continuous", Range({0, 24, 75, 30, 140, 60, 0}), Monitor13()},
      {"range-formula-not-continuous", Range({0, 24, 75, 30, 140, 60, 4}),
       Monitor({{kRangeAt + 10, {0}}, {0x18, {0x0F}}})},
      {"range-padding", Monitor({{kRangeAt + 11, ByteVector(7)}}),
       Monitor({{kRangeAt + 10, {2, 0, 40, 1, 1, 1, 1, 1}}})},
      {"range-formula-fields", Range({0, 24, 75, 30, 140, 0}), Monitor13({{kRangeAt + 9, {0}}})},
      {"range-formula-fields", Range({1}), Range({2})},
      {"range-formula-fields", Range({0, 24, 75, 30, 140, 60, 4, 0x11, 0, 0xF0, 0xF8, 0xB8, 0, 0}),
       Range({0, 24, 75, 30, 140, 60, 4, 0x11, 0, 0xF0, 0xF8, 0x98, 0, 60})},
      {"range-formula-fields", Range({0, 24, 75, 30, 140, 60, 2, 0, 0, 0, 0, 0, 0, 0}),
       Range({0, 24, 75, 30, 140, 60, 2, 0, 40, 0, 0, 0, 0, 0})},
      // colour
      {"chromaticity-impossible", Monitor({{0x19, ByteVector(10)}}),
       Monitor({{0x19, ByteVector(10)}, {0x14, {0}}, {0x18, {2}}})},
      {"chromaticity-impossible", Monitor({{0x21, {0xC0, 0x10}}}), Monitor({{0x21, {0x50, 0x53}}})},
      {"chromaticity-impossible", Monitor({{0x1B, {0xA3, 0x5F}}}), Monitor({{0x1B, {0xA3, 0x5D}}})},
      {"srgb-flag-wrong", Monitor({{0x21, {0x50, 0x55}}}), Monitor({{0x21, {0x50, 0x55}}, {0x18, {0x0A}}})},
      {"srgb-flag-missing", Monitor({{0x18, {0x0A}}}), Monitor({{0x21, {0x50, 0x55}}, {0x18, {0x0A}}})},
      // structure of the base block
      {"video-input-reserved", Monitor({{0x14, {0xF5}}}), Monitor({{0x14, {0xE5}}})},
      {"video-input-reserved", Monitor({{0x14, {0xA6}}}), Monitor({{0x14, {0x26}}})},
      {"video-input-reserved", Monitor13({{0x14, {0x82}}}), Monitor13({{0x14, {0x81}}})},
      {"descriptor-all-zero", Monitor({{kDummyAt, ByteVector(18)}}), Monitor({{kDummyAt + 3, {0x0F}}})},
      {"descriptor-header", Monitor({{kDummyAt + 2, {1}}}), Monitor({{kRangeAt + 4, {2}}})},
      {"descriptor-header", Monitor({{kDummyAt + 3, {0x11}}}), Monitor({{kDummyAt + 3, {0x0F}}})},
      {"descriptor-header", Monitor13({{kDummyAt + 3, {0xF7, 0, 0x0A}}}), Monitor({{kDummyAt + 3, {0xF7, 0, 0x0A}}})},
      {"dummy-descriptor-garbage", Monitor({{kDummyAt + 17, {1}}}), Monitor({{kDummyAt + 3, {0x0F, 0, 1}}})},
  };
}

}  // namespace reedid::test
