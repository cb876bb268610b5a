#include "tests/document/check_cases.h"
#include "tests/document/sound_images.h"

namespace reedid::test {
namespace {

// HDMI vendor blocks of the sound television from the address on, and HDMI Forum blocks from the version on.
ByteVector Hdmi(const ByteVector& rest) {
  return Concat({{0x03, 0x0C, 0x00}, rest});
}
ByteVector Forum(const ByteVector& rest) {
  return Concat({{0xD8, 0x5D, 0xC4}, rest});
}

constexpr size_t kCtaAt = 128;

// The television with other HDMI blocks.
ByteVector HdmiTv(const ByteVector& hdmi, const ByteVector& forum = {1, 120, 0x80, 0x00}) {
  return Build({.hdmi = Hdmi(hdmi), .forum = Forum(forum)});
}
ByteVector ForumTv(const ByteVector& forum) {
  return Build({.forum = Forum(forum)});
}

// HDMI 1.4 alone, with these VICs.
ByteVector OldTv(const ByteVector& hdmi, const ByteVector& vdb = {0x90, 4, 1}) {
  return Build({.vdb = vdb, .hdmi = Hdmi(hdmi), .forum = {}});
}

ByteVector VideoTv(const ByteVector& vdb, const ByteVector& y420 = {}) {
  return Build({.vdb = vdb, .y420 = y420});
}

ByteVector MoreTv(const ByteVector& blocks) {
  return Build({.more = blocks});
}

ByteVector Section1(uint8_t tag, const ByteVector& payload) {
  return WithSection(Section(0x12).Block(tag, 0, payload));
}
ByteVector Section2(uint8_t tag, const ByteVector& payload) {
  return WithSection(Section(0x20).Block(tag, 0, payload));
}

ByteVector TypeI(uint16_t hFront, uint16_t hSync) {
  DtdTiming timing = k1080p60;
  timing.hfrontPorch = hFront;
  timing.hsyncWidth = hSync;
  timing.aspectRatio = ASPECT_16_9;
  return WithSection(Section(0x12).TypeI({timing}));
}

const ByteVector kBlockMap = [] {
  ByteVector map(128);
  map[0] = 0xF0;
  map[1] = 0x02;
  FixChecksum(map);
  return map;
}();

// Base block, block map, CTA extension.
ByteVector WithMap(uint8_t tag) {
  const ByteVector tv = Build({});
  const ByteVector base(tv.begin(), tv.begin() + 128), cta(tv.begin() + 128, tv.end());
  return Spoiled(Concat({base, kBlockMap, cta}), {{0x7E, {2}}, {129, {tag}}});
}

std::vector<CheckCase> VideoCases() {
  return {
      {"vdb-missing", Build({.vdb = {}}), Build({.vdb = {}, .hdmi = {}, .forum = {}})},
      {"vga-missing", VideoTv({0x90, 4}), Build({.vdb = {0x90, 4}, .spoils = {{0x23, {0x20}}}})},
      {"svd-unknown", VideoTv({0x90, 4, 1, 128}), VideoTv({0x90, 4, 1, 127})},
      {"svd-unknown", VideoTv({0x90, 4, 1, 220}), VideoTv({0x90, 4, 1, 219})},
      {"vic-duplicate", VideoTv({16, 4, 1, 0x90}), VideoTv({16, 4, 1, 15})},
      {"vic-duplicate", VideoTv({0x90, 4, 1}, {0x0E, 96, 97, 96}), VideoTv({0x90, 4, 1}, {0x0E, 96, 97})},
      {"native-mixed", VideoTv({0x90, 0x84, 1}), VideoTv({0x90, 0x9F, 1})},
      {"native-mixed", Build({.flags = 0xF0, .vdb = {0x85, 4, 1}}), VideoTv({0x90, 0x85, 1})},
      {"native-count-over-dtds", Build({.flags = 0xF2}), Build({.flags = 0xF2, .dtds = {k1080p60}})},
      {"y420-map", VideoTv({0x90, 4, 1, 97}, {0x0F, 0x18}), VideoTv({0x90, 4, 1, 97}, {0x0F, 0x08})},
      {"y420-map", VideoTv({0x90, 4, 1, 97}, {0x0F, 0}), VideoTv({0x90, 4, 1, 97}, {0x0F})},
      {"y420-rate-low", VideoTv({95, 97, 1}, {0x0F, 0x03}), VideoTv({95, 97, 1}, {0x0F, 0x02})},
      {"y420-rate-low", VideoTv({97, 1}, {0x0E, 95}), VideoTv({1}, {0x0E, 96})},
      {"y420-vic-also-regular", VideoTv({1, 97}, {0x0E, 97}), VideoTv({1, 97}, {0x0E, 96})},
      {"vic-outside-range-limits", VideoTv({16, 1, 63}), VideoTv({16, 1, 31})},
  };
}

std::vector<CheckCase> HdmiCases() {
  return {
      {"hdmi-identity", Build({.hdmi = {}, .forum = {}}), Build({.hdmi = {}, .forum = {}, .spoils = {{0x14, {0xA5}}}})},
      {"hdmi-identity", Build({.spoils = {{0x14, {0x0E}}}}),
       Build({.hdmi = {}, .forum = {}, .spoils = {{0x14, {0x0E}}}})},
      {"hdmi-vsdb-on-displayport", Build({.spoils = {{0x14, {0xA5}}}}), Build({.spoils = {{0x14, {0xA1}}}})},
      {"hdmi-phys-addr", HdmiTv({0x10, 0x01, 0x38, 68}), HdmiTv({0x11, 0x10, 0x38, 68})},
      {"hdmi-phys-addr", HdmiTv({0, 0, 0x38, 68}), HdmiTv({0xFF, 0xFE, 0x38, 68})},
      {"hdmi-tmds-unset", OldTv({0x10, 0x00, 0x38}), OldTv({0x10, 0x00, 0x80})},
      {"hdmi-tmds-unset", OldTv({0x10, 0x00, 0x00, 0}, {0x90, 1, 63}), OldTv({0x10, 0x00, 0x00, 0}, {0x90, 1, 31})},
      {"hdmi-tmds-over-340", HdmiTv({0x10, 0x00, 0x38, 69}), HdmiTv({0x10, 0x00, 0x38, 68})},
      {"hdmi-timing-over-tmds", OldTv({0x10, 0x00, 0x38, 29}), OldTv({0x10, 0x00, 0x38, 30})},
      {"hdmi-timing-over-tmds", VideoTv({1, 118}, {0x0E, 218}), VideoTv({1, 97}, {0x0E, 218})},
      {"hdmi-deep-color-bits", HdmiTv({0x10, 0x00, 0x10, 68}), HdmiTv({0x10, 0x00, 0x20, 68})},
      {"hdmi-deep-color-bits", HdmiTv({0x10, 0x00, 0x08, 68}), HdmiTv({0x10, 0x00, 0x28, 68})},
      {"hdmi-3d-fields", HdmiTv({0x10, 0x00, 0x38, 68, 0x20, 0x00, 0x20, 5}),
       HdmiTv({0x10, 0x00, 0x38, 68, 0x20, 0x00, 0x20, 4})},
      {"hdmi-3d-fields", HdmiTv({0x10, 0x00, 0x38, 68, 0x20, 0x80, 0x02, 0x07, 0x06}),
       HdmiTv({0x10, 0x00, 0x38, 68, 0x20, 0x80, 0x03, 0x06, 0x38, 0x10})},
      {"hdmi-3d-fields", HdmiTv({0x10, 0x00, 0x38, 68, 0x20, 0xC0, 0x04, 0x00, 0x01, 0x00, 0x10}),
       HdmiTv({0x10, 0x00, 0x38, 68, 0x20, 0xC0, 0x04, 0x00, 0x01, 0x00, 0x0F})},
      {"hdmi-block-order", Build({.forum = {}, .more = Hex("67 D8 5D C4 01 78 80 00")}), Build({})},
      {"hf-block-shape", ForumTv({2, 120, 0x80, 0x00}), ForumTv({1, 120, 0x80, 0x00, 0x00})},
      {"hf-block-shape", ForumTv({1, 120, 0x80, 0, 0, 48}), ForumTv({1, 120, 0x80, 0, 0, 48, 120})},
      {"hf-block-shape", Build({.more = Hex("67 D8 5D C4 01 78 80 00")}), Build({.hdmi = {}, .forum = {}})},
      {"hf-tmds-rate", ForumTv({1, 68, 0x80, 0x00}), ForumTv({1, 69, 0x80, 0x00})},
      {"hf-tmds-rate", ForumTv({1, 121, 0x80, 0x00}), ForumTv({1, 0, 0x80, 0x00})},
      {"hf-scdc-missing", ForumTv({1, 120, 0x00, 0x00}), ForumTv({1, 0, 0x00, 0x00})},
      {"hf-frl-dsc-inconsistent", ForumTv({1, 119, 0x80, 0x60}), ForumTv({1, 120, 0x80, 0x60})},
      {"hf-frl-dsc-inconsistent", ForumTv({1, 120, 0x80, 0x30, 0, 0, 0, 0x82, 0x42, 0x07}),
       ForumTv({1, 120, 0x80, 0x30, 0, 0, 0, 0x82, 0x32, 0x07})},
      {"hf-vrr", ForumTv({1, 120, 0x80, 0, 0, 49, 120}), ForumTv({1, 120, 0x80, 0, 0, 48, 100})},
      {"hf-vrr", ForumTv({1, 120, 0x80, 0, 0x10}), ForumTv({1, 120, 0x80, 0, 0x08})},
      {"hf-y420-deep-without-y420", ForumTv({1, 120, 0x80, 0x01}),
       Build({.forum = Forum({1, 120, 0x80, 0x01}), .y420 = {0x0F, 8}})},
      {"hdmi-vic-pairs", HdmiTv({0x10, 0x00, 0x38, 68, 0x20, 0x00, 0x20, 1}),
       Build({.vdb = {0x90, 1, 95}, .hdmi = Hdmi({0x10, 0x00, 0x38, 68, 0x20, 0x00, 0x20, 1})})},
      {"eeodb-inconsistent", Build({.vdb = {1}, .more = Hex("E2 78 02")}), Build({.more = Hex("E2 20 00")})},
  };
}

std::vector<CheckCase> AudioAndColorCases() {
  return {
      {"audio-without-basic-audio", Build({.flags = 0xB1}), Build({.flags = 0xB1, .audio = {}, .speakers = {}})},
      {"audio-descriptor-fields", Build({.audio = {0x09, 0x00, 0x07}}), Build({.audio = {0x09, 0x40, 0x04}})},
      {"audio-descriptor-fields", Build({.audio = {0x09, 0x07, 0x07, 0x09}}),
       Build({.audio = {0x0A, 0x07, 0x07, 0x15, 0x07, 0x50}})},
      {"audio-descriptor-fields", Build({.audio = {0x79, 0x07, 0x48}}), Build({.audio = {0x79, 0x07, 0x50}})},
      {"speakers-missing", Build({.audio = {0x0A, 0x07, 0x07}, .speakers = {}}), Build({.speakers = {}})},
      {"speaker-allocation-doubtful", Build({.audio = {0x0D, 0x07, 0x07}, .speakers = {0x07, 0, 0}}),
       Build({.audio = {0x0D, 0x07, 0x07}, .speakers = {0x0F, 0, 0}})},
      {"speaker-allocation-doubtful", Build({.speakers = {0x01, 0x08, 0}}), Build({.speakers = {0x01, 0x04, 0}})},
      {"vcdb-missing", Build({.capability = {}}), Build({.withCta = false})},
      {"vcdb-range-fixed", Build({.capability = {0, 0x4A}}), Build({.flags = 0xC1, .capability = {0, 0x4A}})},
      {"vcdb-underscan-conflict", Build({.flags = 0x71}), Build({.flags = 0x71, .capability = {0, 0xCE}})},
      {"vcdb-underscan-conflict", Build({.capability = {0, 0xC6}}), Build({.flags = 0x71, .capability = {0, 0xC6}})},
      {"vcdb-ce-unsupported", Build({.capability = {0, 0xC8}}), Build({.vdb = {1}, .capability = {0, 0xC8}})},
      {"hdr-static-fields", Build({.hdr = {6, 0x09, 0x00}}), Build({.hdr = {6, 0x03, 0x00}})},
      {"hdr-static-fields", Build({.hdr = {6, 0x14, 0x01}}), Build({.hdr = {6, 0x0F, 0x01}})},
      {"hdr-unusable", Build({.colorimetry = {5, 0x1F, 0x80}}),
       Build({.colorimetry = {5, 0x1F, 0x80}, .hdr = {6, 0x01, 0x01}})},
      {"hdr-unusable", Build({.flags = 0xE1, .hdmi = Hdmi({0x10, 0x00, 0x00, 68})}),
       Build({.flags = 0xE1, .hdmi = Hdmi({0x10, 0x00, 0x20, 68})})},
  };
}

std::vector<CheckCase> DisplayIdCases() {
  return {
      {"displayid-section-broken", WithSection(Section().Block(1, 0, PanelParameters()), {{kSectionAt + 1, {122}}}),
       WithSection(Section().Block(1, 0, PanelParameters()))},
      {"displayid-section-broken", WithSection(Section().Block(1, 0, PanelParameters()), {{kSectionAt + 18, {1}}}),
       WithSection(Section().Block(0x7F, 0, ByteVector(118)))},
      {"displayid-extension-count", WithSection(Section().ExtensionCount(1).Block(1, 0, PanelParameters())),
       Section().Block(1, 0, PanelParameters()).Build()},
      {"displayid-extension-count",
       Concat(
           {Section().ExtensionCount(1).Block(1, 0, PanelParameters()).Build(), Section().Block(10, 0, {1}).Build()}),
       Concat({Section().ExtensionCount(1).Block(1, 0, PanelParameters()).Build(),
               Section(0x12, 0).Block(10, 0, {1}).Build()})},
      {"displayid-product-type", WithSection(Section(0x12, 0).Block(1, 0, PanelParameters())),
       WithSection(Section(0x12, 1).Block(1, 0, PanelParameters()))},
      {"displayid-tag-version", Section2(0x01, PanelParameters()), Section1(0x1F, {1})},
      {"displayid-tag-version", Section1(0x20, ByteVector(12, 1)), Section1(0x7F, {1})},
      {"displayid-block-fields", Section1(0x01, ByteVector(13)), Section1(0x01, PanelParameters())},
      {"displayid-block-fields", Section1(0x12, ByteVector(22)), Section1(0x12, ByteVector(22, 1))},
      {"displayid-block-fields", Section2(0x25, {0, 0, 0, 1, 0, 0, 61, 60, 0}),
       Section2(0x25, {0, 0, 0, 1, 0, 0, 61, 4, 1})},
      {"displayid-block-fields", Section1(0x05, {1, 2, 3, 4}), Section1(0x05, {1, 2, 3})},
      {"displayid-fill", WithSection(Section().Block(1, 0, PanelParameters()), {{kSectionAt + 22, {1}}}),
       WithSection(Section().Block(1, 0, PanelParameters()))},
      {"displayid-differs", Section1(0x01, PanelParameters(1920, 1200)), Section1(0x01, PanelParameters(1920, 0))},
      {"displayid-differs", Section1(0x01, PanelParameters(1920, 1080, 610)),
       Section1(0x01, PanelParameters(1920, 1080, 609))},
      {"dtd-sync-beyond-blanking", TypeI(250, 31), TypeI(250, 30)},
      {"dtd-zero-porch", TypeI(250, 30), TypeI(250, 29)},
  };
}

std::vector<CheckCase> StructureCases() {
  return {
      {"block-checksum", Concat({Monitor(), ByteVector(127, 0), {1}}), Concat({Monitor(), ByteVector(128, 2)})},
      {"extension-count", Build({.spoils = {{0x7E, {2}}}}), Build({.spoils = {{0x7E, {1}}}})},
      {"extension-tag-unknown", Build({.extensions = {ByteVector(128, 0x20)}}),
       Build({.extensions = {ByteVector(128, 0x10)}})},
      {"block-map-wrong", WithMap(0x70), WithMap(0x02)},
      {"block-map-wrong", Build({.extensions = {kBlockMap}}), Build({})},
      {"block-map-missing", Build({.spoils = {{0x13, {3}}}, .extensions = {ByteVector(128, 0x10)}}),
       Build({.extensions = {ByteVector(128, 0x10)}})},
      {"cta-header", Build({.spoils = {{kCtaAt + 1, {2}}}}), Build({.spoils = {{kCtaAt + 1, {1, 4, 0}}}})},
      {"cta-header", Build({.spoils = {{kCtaAt + 1, {1}}}}), Build({.spoils = {{kCtaAt + 2, {0}}}})},
      {"cta-header", Build({.extensions = {Cta().Flags(0xF0).Build()}}),
       Build({.extensions = {Cta().Flags(0xF1).Build()}})},
      {"data-block-length", Build({.spoils = {{kCtaAt + 4, {0x5F, 0x90, 0x84}}, {kCtaAt + 2, {5}}}}), Build({})},
      {"data-block-length", Build({.speakers = {1, 0}}), Build({.colorimetry = {0x20, 0}})},
      {"data-block-length", HdmiTv({0x10, 0x00, 0x38, 68, 0x80, 0x01}),
       HdmiTv({0x10, 0x00, 0x38, 68, 0x80, 0x01, 0x01})},
      {"data-block-duplicate", MoreTv(Hex("83 01 00 00")), MoreTv(Hex("41 03"))},
      {"data-block-duplicate", MoreTv(Hex("E2 00 CA")), MoreTv(Hex("E4 01 46 D0 00 E4 01 46 D0 00"))},
      {"data-block-unknown", MoreTv(Hex("E2 09 00")), MoreTv(Hex("E2 2A 00"))},
      {"cta-padding", Build({.spoils = {{kCtaAt + 126, {1}}}}), Build({.dtds = {k1080p60, k720p60}})},
  };
}

}  // namespace

std::vector<CheckCase> ExtensionCases() {
  std::vector<CheckCase> all;
  for (const auto& cases : {VideoCases(), HdmiCases(), AudioAndColorCases(), DisplayIdCases(), StructureCases()}) {
    all.insert(all.end(), cases.begin(), cases.end());
  }
  return all;
}

std::vector<CheckCase> CheckCases() {
  std::vector<CheckCase> all = BaseBlockCases();
  for (const CheckCase& row : ExtensionCases()) all.push_back(row);
  return all;
}

}  // namespace reedid::test
