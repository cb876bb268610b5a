#include "document/read/samples.h"

#include <fmt/format.h>

#include <array>

#include "document/error.h"
#include "document/printable.h"
#include "document/read/sample_parts.h"

namespace reedid::document {
namespace {

// Hz, kHz and MHz.
RangeLimits Limits(std::array<uint16_t, 2> vertical, std::array<uint16_t, 2> horizontal, uint32_t maxClock) {
  RangeLimits limits = {};
  limits.minVRate = vertical[0];
  limits.maxVRate = vertical[1];
  limits.minHRate = horizontal[0];
  limits.maxHRate = horizontal[1];
  limits.maxPixelClock = maxClock * 1000;
  limits.timingFormula = 3;  // range limits only
  return limits;
}

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
  const StaticHdrRecord hdr = {1, 0, 1, 1, 1, 138, 115, 51};  // about 990, 600 and 0.4 cd/m2
  const Vic420Record both = {4, {97, 118, 117, 96}};
  CtaBuilder cta;
  CeaBlock& model = *cta.model();
  model.underscan = model.basicAudio = model.ycbcr444 = model.ycbcr422 = 1;
  model.nativeDtdCount = 1;
  cta.Add(CEA_SetVDB, video).Add(CEA_SetADB, TvAudio()).Add(CEA_SetSADB, speakers).Add(CEA_SetH14bVSDB, TvHdmi14b());
  cta.Add(CEA_SetHFVSDB, TvHdmiForum()).Add(CEA_SetCDB, colorimetry).Add(CEA_SetVCDB, capability);
  cta.Add(CEA_SetStaticHDR, hdr).Add420Map(both);
  cta.AddTiming(TimingSlot(kVic4, 1210, 680));
  return cta;
}

VesaBlock TvBase(uint16_t productCode, const DtdTiming& second, uint8_t maxVRate, const char* name) {
  VesaBlock base = BaseModel(productCode, 4);
  base.bitDepth = 10;
  base.interfaceType = 2;  // HDMI-a
  base.hScreenSize = 121;
  base.vScreenSize = 68;
  base.colorType = 3;
  base.descriptors[0] = TimingSlot(kVic97, 1210, 680);
  base.descriptors[1] = TimingSlot(second, 1210, 680);
  base.descriptors[2] = RangeSlot(base, Limits({24, maxVRate}, {15, 270}, 1190));
  base.descriptors[3] = TextSlot(VESA_SetProductName, name);
  return base;
}

ByteVector BuildTv4k() {
  const VesaBlock base = TvBase(0x4B04, kVic16, 120, "REED TV 4K");
  return ImageBuilder(base).Add(TvExtension().model()).Build();
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
  return ImageBuilder(base).Add(cta.model()).Build();
}

// ---- dvi

ByteVector BuildDvi() {
  VesaBlock base = BaseModel(0x0013, 3);
  base.hScreenSize = 34;
  base.vScreenSize = 27;
  base.established[0] = base.established[11] = 1;  // 800x600 and 1024x768, 60 Hz
  base.standardTimings[0] = {1, 60, 1280, ASPECT_5_4};
  base.descriptors[0] = TimingSlot(k1280x1024, 338, 270);
  base.descriptors[1] = RangeSlot(base, Limits({56, 76}, {30, 81}, 140));
  base.descriptors[1].bytes[10] = 0;  // EDID 1.3 has no "range limits only"
  base.descriptors[2] = TextSlot(VESA_SetProductName, "REED DVI 19");
  base.descriptors[3] = TextSlot(VESA_SetSerialNumber, "RD0000001");
  return ImageBuilder(base).Build();
}

// ---- gaming-dp

DisplayIdSection GamingSection() {
  uint8_t empty[REEDID_BLOCK_SIZE] = {EDID_EXTENSION_DISPLAYID, 0x12, 0x79, 0x03, 0x00};  // 1.2, standalone display
  empty[126] = static_cast<uint8_t>(GetChecksum(empty + 1, 126));
  empty[127] = static_cast<uint8_t>(GetChecksum(empty, sizeof empty));
  DisplayIdSection model(EdidBlock{EDID_BLOCK_DISPID_EXT, sizeof empty, sizeof empty, empty});
  Must(model ? 0 : -1);
  DtdTiming timings[] = {k1440p144, k1440p165};
  timings[0].preferred = 1;
  for (DtdTiming& timing : timings) timing.aspectRatio = ASPECT_16_9;
  uint8_t bytes[REEDID_DISPID_DATA_BLOCK_SIZE];
  DispIdDataBlock entry = {};
  entry.bytes = bytes;
  Must(DispID_Set20ByteDTD(timings, 2, &entry));
  entry.revision = bytes[1] = 0;  // that of DisplayID 1.2
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
  base.descriptors[1] = RangeSlot(base, Limits({48, 165}, {30, 258}, 700));
  base.descriptors[2] = TextSlot(VESA_SetProductName, "REED GAME 27");
  base.descriptors[3] = TextSlot(VESA_SetSerialNumber, "RD0000002");
  const VdbRecord video = {16, 3, {16, 63, 4}};
  ColorimetryRecord colorimetry = {};
  colorimetry.BT2020YCC = colorimetry.BT2020RGB = 1;
  CtaBuilder cta;
  cta.model()->underscan = 1;
  cta.Add(CEA_SetVDB, video).Add(CEA_SetCDB, colorimetry);
  const DisplayIdSection section = GamingSection();
  return ImageBuilder(base).Add(cta.model()).Add(section).Build();
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
  throw Error(ErrorKind::kInput, fmt::format("sample:{}: no such sample; there are {}", Shortened(name), names));
}

}  // namespace reedid::document
