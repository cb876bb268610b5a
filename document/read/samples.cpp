#include "document/read/samples.h"

#include <fmt/format.h>

#include <cstring>
#include <string_view>

#include "document/error.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

constexpr uint16_t kBlockSize = 128;

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
constexpr DtdTiming kVic97 = Timing(594000, {3840, 560, 176, 88}, {2160, 90, 8, 10}, true, true);
constexpr DtdTiming kVic16 = Timing(148500, {1920, 280, 88, 44}, {1080, 45, 4, 5}, true, true);
constexpr DtdTiming kVic4 = Timing(74250, {1280, 370, 110, 40}, {720, 30, 5, 5}, true, true);
constexpr DtdTiming k1280x1024 = Timing(108000, {1280, 408, 48, 112}, {1024, 42, 1, 3}, true, true);
constexpr DtdTiming k1440p60 = Timing(241500, {2560, 160, 48, 32}, {1440, 41, 3, 5}, true, false);
constexpr DtdTiming k1440p144 = Timing(604250, {2560, 160, 48, 32}, {1440, 103, 3, 5}, true, false);
constexpr DtdTiming k1440p165 = Timing(699500, {2560, 160, 48, 32}, {1440, 119, 3, 5}, true, false);

// The samples are constants in all but form: a call that fails here is a fault of the program.
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

// Product name, serial number or text (EDID 1.4, table 3.23): ended by a line feed, filled with blanks.
DtdSlot TextSlot(uint8_t tag, std::string_view text) {
  DtdSlot slot = {tag, {0, 0, 0, tag, 0}};
  std::memset(slot.bytes + 5, ' ', 13);
  std::memcpy(slot.bytes + 5, text.data(), text.size());
  if (text.size() < 13) slot.bytes[5 + text.size()] = '\n';
  return slot;
}

// Range limits (EDID 1.4, table 3.26), no secondary formula: bytes 4 to 9.
DtdSlot RangeSlot(std::array<uint8_t, 6> limits) {
  DtdSlot slot = {0xFD, {0, 0, 0, 0xFD, 0, 0, 0, 0, 0, 0, 0x01, '\n', ' ', ' ', ' ', ' ', ' ', ' '}};
  std::memcpy(slot.bytes + 4, limits.data(), limits.size());
  return slot;
}

// What the samples' base blocks have in common; sRGB primaries.
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

class ImageBuilder {
 public:
  explicit ImageBuilder(const VesaBlock& base) {
    uint8_t bytes[kBlockSize];
    EdidBlock block = {EDID_BLOCK_VESA, kBlockSize, kBlockSize, bytes};
    Must(VESA_GenerateBlock(&base, &block));
    image_ = reedid::Image(bytes);
    Must(image_ ? 0 : -1);
  }
  // Appends a model's block; the library keeps the count of extensions.
  template <class Model>
  ImageBuilder& Add(const Model& model, int32_t (*generate)(const Model*, EdidBlock*)) {
    uint8_t bytes[kBlockSize];
    EdidBlock block = {EDID_BLOCK_UNKNOWN, kBlockSize, kBlockSize, bytes};
    Must(generate(&model, &block));
    Must(EDID_AddBlock(image_.get(), &block, image_->blockCount));
    return *this;
  }
  ByteVector Build() {
    ByteVector bytes = image_.Bytes();
    Must(bytes.empty() ? -1 : 0);
    return bytes;
  }

 private:
  reedid::Image image_;
};

// A CTA extension that grows by data blocks and detailed timings.
class CtaBuilder {
 public:
  CtaBuilder() {
    uint8_t empty[kBlockSize] = {0x02, 0x03, 0x04};
    empty[kBlockSize - 1] = static_cast<uint8_t>(GetChecksum(empty, kBlockSize));
    const EdidBlock block = {EDID_BLOCK_CEA, kBlockSize, kBlockSize, empty};
    model_ = CtaExtension(block);
    Must(model_ ? 0 : -1);
  }
  template <class Record>
  CtaBuilder& Add(int32_t (*set)(const Record*, CeaDataBlock*), const Record& record) {
    CeaDataBlock block = {0, 0, 0, bytes_};
    Must(set(&record, &block));
    return AddBlock(block);
  }
  // A data block given by its payload, the extended tag first.
  CtaBuilder& AddExtended(std::initializer_list<uint8_t> payload) {
    bytes_[0] = static_cast<uint8_t>(7 << 5 | payload.size());
    std::copy(payload.begin(), payload.end(), bytes_ + 1);
    return AddBlock({7, *payload.begin(), static_cast<uint8_t>(payload.size() + 1), bytes_});
  }
  CtaBuilder& Add420Map(const Vic420Record& record) {
    CeaDataBlock block = {0, 0, 0, bytes_};
    Must(CEA_Set420CMDB(&record, CEA_FindDataBlock(model_.get(), 2, 0), &block));
    return AddBlock(block);
  }
  CtaBuilder& AddTiming(const DtdSlot& slot) {
    Must(CEA_AddDTD(model_.get(), &slot, model_->dtdCount));
    return *this;
  }
  CeaBlock& model() { return *model_; }

 private:
  CtaBuilder& AddBlock(const CeaDataBlock& block) {
    Must(CEA_AddDataBlock(model_.get(), &block, model_->dataBlockCount));
    return *this;
  }
  CtaExtension model_;
  uint8_t bytes_[32] = {};
};

// ---- tv-4k

AdbRecord TvAudio() {
  AdbRecord audio = {};
  audio.sadCount = 3;
  audio.sads[0] = {1, 0, 2, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0};   // L-PCM, stereo, all rates and depths
  audio.sads[1] = {2, 0, 6, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 80, 0};  // AC-3, 5.1, 640 kbit/s
  audio.sads[2] = {10, 0, 8, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 1};  // Enhanced AC-3, 7.1, with joint object coding
  return audio;
}

H14bRecord TvHdmi14b() {
  H14bRecord hdmi = {};
  hdmi.physAddr = 0x1000;
  hdmi.supportsAI = hdmi.DC_36bit = hdmi.DC_30bit = hdmi.DC_Y444 = 1;
  hdmi.max_TMDS_Clock = 300;
  hdmi.hdmiVideoPresent = 1;
  hdmi.cnc[0] = hdmi.cnc[1] = hdmi.cnc[2] = hdmi.cnc[3] = 1;
  hdmi.hdmiVicLen = 3;
  hdmi.hdmiVics[0] = 1, hdmi.hdmiVics[1] = 2, hdmi.hdmiVics[2] = 3;
  return hdmi;
}

HfVsdbRecord TvHdmiForum() {
  HfVsdbRecord forum = {};
  forum.version = 1;
  forum.TMDS_Character_Rate = 600;
  forum.scdcPresent = forum.rrCapable = forum.lte340Scramble = 1;
  forum.Max_FRL_Rate = 6;
  forum.dc36bit420 = forum.dc30bit420 = 1;
  forum.fva = forum.allm = 1;
  forum.VRRmin = 48;
  forum.VRRmax = 120;
  forum.DSC_1p2 = forum.dscNative420 = forum.dscAllBpp = forum.dsc12bpc = forum.dsc10bpc = 1;
  forum.DSC_Max_FRL_Rate = 6;
  forum.DSC_MaxSlices = 4;
  forum.DSC_TotalChunkKBytes = 10;
  return forum;
}

CtaBuilder TvExtension() {
  const VdbRecord video = {97, 17, {97, 118, 117, 96, 95, 94, 93, 16, 31, 34, 33, 32, 4, 19, 3, 18, 1}};
  SpeakerRecord speakers = {};
  speakers.FL_FR = 1;
  ColorimetryRecord colorimetry = {};
  colorimetry.xvYCC601 = colorimetry.xvYCC709 = 1;
  colorimetry.BT2020cYCC = colorimetry.BT2020YCC = colorimetry.BT2020RGB = 1;
  const VideoCapRecord capability = {1, 1, 0, 3, 3};
  const Vic420Record both = {4, {97, 118, 117, 96}};
  CtaBuilder cta;
  CeaBlock& model = cta.model();
  model.underscan = model.basicAudio = model.ycbcr444 = model.ycbcr422 = 1;
  model.nativeDtdCount = 1;
  cta.Add(CEA_SetVDB, video).Add(CEA_SetADB, TvAudio()).Add(CEA_SetSADB, speakers).Add(CEA_SetH14bVSDB, TvHdmi14b());
  cta.Add(CEA_SetHFVSDB, TvHdmiForum()).Add(CEA_SetCDB, colorimetry).Add(CEA_SetVCDB, capability);
  // HDR static metadata: SDR, PQ and HLG; type 1; about 990, 600 and 0.4 cd/m2 (CTA-861, 7.5.13).
  cta.AddExtended({6, 0x0D, 0x01, 138, 115, 51}).Add420Map(both);
  cta.AddTiming(TimingSlot(kVic4, 1210, 680));
  return cta;
}

// 24 Hz and more, 15 to 270 kHz (255 + 15), up to 1190 MHz.
VesaBlock TvBase(uint16_t productCode, const DtdTiming& second, uint8_t maxVRate, const char* name) {
  VesaBlock base = BaseModel(productCode, 4);
  base.bitDepth = 10;
  base.interfaceType = 2;  // HDMI-a
  base.hScreenSize = 121;
  base.vScreenSize = 68;
  base.colorType = 3;
  base.descriptors[0] = TimingSlot(kVic97, 1210, 680);
  base.descriptors[1] = TimingSlot(second, 1210, 680);
  base.descriptors[2] = RangeSlot({0x08, 24, maxVRate, 15, 15, 119});
  base.descriptors[3] = TextSlot(0xFC, name);
  return base;
}

ByteVector BuildTv4k() {
  const VesaBlock base = TvBase(0x4B04, kVic16, 120, "REED TV 4K");
  return ImageBuilder(base).Add(TvExtension().model(), CEA_GenerateBlock).Build();
}

// ---- tv-4k120: what an HDMI 2.0 link cannot carry, in every place where it can stand

ByteVector BuildTv4k120() {
  const VesaBlock base = TvBase(0x4B78, k1440p144, 144, "REED TV 4K120");
  CtaBuilder cta = TvExtension();
  Cea20ByteDtdRecord fast = {};  // above 655 MHz, which an 18-byte descriptor cannot hold
  fast.timing = kVic97;
  fast.timing.pixelClock = 1188000;
  fast.timing.aspectRatio = ASPECT_16_9;
  cta.Add(CEA_Set20ByteDTD, fast);
  return ImageBuilder(base).Add(cta.model(), CEA_GenerateBlock).Build();
}

// ---- dvi

ByteVector BuildDvi() {
  VesaBlock base = BaseModel(0x0013, 3);
  base.hScreenSize = 34;
  base.vScreenSize = 27;
  base.established[0] = base.established[11] = 1;  // 800x600 and 1024x768, 60 Hz
  base.standardTimings[0] = {1, 60, 1280, ASPECT_5_4};
  base.descriptors[0] = TimingSlot(k1280x1024, 338, 270);
  base.descriptors[1] = RangeSlot({0, 56, 76, 30, 81, 14});
  base.descriptors[1].bytes[10] = 0;  // EDID 1.3 has no "range limits only"
  base.descriptors[2] = TextSlot(0xFC, "REED DVI 19");
  base.descriptors[3] = TextSlot(0xFF, "RD0000001");
  return ImageBuilder(base).Build();
}

// ---- gaming-dp

// A type I detailed timing (DisplayID 1.3, 4.4.1): 20 bytes, every value less 1, bit 15 of a front porch the polarity.
void AppendTypeI(const DtdTiming& t, bool preferred, ByteVector& out) {
  const uint32_t clock = t.pixelClock / 10 - 1;
  for (const unsigned shift : {0u, 8u, 16u}) out.push_back(static_cast<uint8_t>(clock >> shift));
  out.push_back(static_cast<uint8_t>((preferred ? 0x80 : 0) | 0x04));  // 16:9, progressive, no stereo
  const unsigned hFront = (t.hfrontPorch - 1u) | (t.hsyncPositive ? 0x8000u : 0u);
  const unsigned vFront = (t.vfrontPorch - 1u) | (t.vsyncPositive ? 0x8000u : 0u);
  for (const unsigned value : {t.hactive - 1u, t.hblank - 1u, hFront, t.hsyncWidth - 1u, t.vactive - 1u, t.vblank - 1u,
                               vFront, t.vsyncWidth - 1u}) {
    out.push_back(static_cast<uint8_t>(value));
    out.push_back(static_cast<uint8_t>(value >> 8));
  }
}

DisplayIdSection GamingSection() {
  uint8_t empty[kBlockSize] = {0x70, 0x12, 0x79, 0x03, 0x00};  // DisplayID 1.2, standalone display device
  empty[126] = static_cast<uint8_t>(GetChecksum(empty + 1, 126));
  empty[127] = static_cast<uint8_t>(GetChecksum(empty, kBlockSize));
  const EdidBlock block = {EDID_BLOCK_DISPID_EXT, kBlockSize, kBlockSize, empty};
  DisplayIdSection model(block);
  Must(model ? 0 : -1);
  ByteVector timings = {0x03, 0x00, 40};  // type I, revision 0, two descriptors
  AppendTypeI(k1440p144, true, timings);
  AppendTypeI(k1440p165, false, timings);
  const DispIdDataBlock entry = {0x03, 0, 0, static_cast<uint8_t>(timings.size()), timings.data()};
  Must(DispID_AddDB(model.get(), &entry, 0));
  return model;
}

ByteVector BuildGamingDp() {
  VesaBlock base = BaseModel(0x0A5D, 4);
  base.bitDepth = 10;
  base.interfaceType = 5;  // DisplayPort
  base.hScreenSize = 60;
  base.vScreenSize = 34;
  base.continuousFreq = 1;
  base.descriptors[0] = TimingSlot(k1440p60, 597, 336);
  base.descriptors[1] = RangeSlot({0x08, 48, 165, 30, 3, 70});  // 48 to 165 Hz, 30 to 258 kHz, up to 700 MHz
  base.descriptors[2] = TextSlot(0xFC, "REED GAME 27");
  base.descriptors[3] = TextSlot(0xFF, "RD0000002");
  const VdbRecord video = {16, 3, {16, 63, 4}};
  ColorimetryRecord colorimetry = {};
  colorimetry.BT2020YCC = colorimetry.BT2020RGB = 1;
  CtaBuilder cta;
  cta.model().underscan = 1;
  cta.Add(CEA_SetVDB, video).Add(CEA_SetCDB, colorimetry);
  const DisplayIdSection section = GamingSection();
  return ImageBuilder(base).Add(cta.model(), CEA_GenerateBlock).Add(*section, DispID_GenerateBlock).Build();
}

constexpr Sample kSamples[] = {
    {"tv-4k", "4K television, HDMI 2.1: 3840x2160 at 120 Hz, HDR, VRR, DSC, FRL; base block and CTA-861 extension",
     BuildTv4k},
    {"tv-4k120", "tv-4k with 3840x2160 at 120 Hz and 2560x1440 at 144 Hz as detailed timings; to try limits with",
     BuildTv4k120},
    {"dvi", "1280x1024 DVI monitor: base block only", BuildDvi},
    {"gaming-dp", "2560x1440 DisplayPort monitor, 144 and 165 Hz in a DisplayID extension; CTA-861 extension",
     BuildGamingDp},
};

}  // namespace

std::span<const Sample> Samples() {
  return kSamples;
}

ByteVector SampleBytes(const std::string& name) {
  std::string names;
  for (const Sample& sample : kSamples) {
    if (name == sample.name) return sample.build();
    names += fmt::format("{}{}", names.empty() ? "" : ", ", sample.name);
  }
  throw Error(ErrorKind::kInput, fmt::format("sample:{}: no such sample; there are {}", name, names));
}

}  // namespace reedid::document
