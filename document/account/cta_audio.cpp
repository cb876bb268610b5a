#include "document/account/cta_audio.h"

#include <fmt/format.h>

#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

constexpr unsigned kExtended = 15;
constexpr unsigned kMpegH = 11, kPcm3d = 13;  // extended formats
constexpr unsigned kMat = 12;

bool Is(const AudioFormat& format, unsigned extended) {
  return format.formatCode == kExtended && format.extFormatCode == extended;
}

// What a format has besides channels and rates, by the names that people know it by.
std::string FeaturesText(const AudioFormat& f) {
  const bool trueHdOnly = f.formatCode == kMat && f.matObjects == 0;
  const NamedFlag flags[] = {{f.joc, "Dolby Atmos (JOC)"},
                             {f.jocAcmod28, "JOC with acmod 28"},
                             {f.dtsX, "DTS:X"},
                             {trueHdOnly, "Dolby TrueHD"},
                             {f.matObjects, "Dolby TrueHD, Dolby Atmos and PCM in MAT"},
                             {f.matNoHash, "no hash needed"},
                             {f.frames1024, "frames of 1024"},
                             {f.frames960, "frames of 960"},
                             {f.systemH, "22.2 channels"},
                             {f.mpegSurroundExplicit, "MPEG Surround signalled explicitly too"},
                             {f.lowComplexityProfile, "low complexity profile"},
                             {f.baselineProfile, "baseline profile"}};
  return SetFlags(flags, "");
}

std::string ChannelsText(const AudioFormat& f) {
  if (Is(f, kMpegH)) return f.level == 0 ? "no level stated" : fmt::format("level {}", f.level);
  if (f.channels == 0) return "any channels";
  return fmt::format("{} channel{}", f.channels, f.channels == 1 ? "" : "s");
}

// By its fields that an audio descriptor has as well.
std::string HdmiAudioText(const HdmiAudioFormat& format) {
  AudioFormat f = {};
  f.formatCode = format.formatCode;
  f.channels = format.channels;
  f.rate32k = format.rate32k;
  f.rate44k1 = format.rate44k1;
  f.rate48k = format.rate48k;
  f.rate88k2 = format.rate88k2;
  f.rate96k = format.rate96k;
  f.rate176k4 = format.rate176k4;
  f.rate192k = format.rate192k;
  f.bits16 = format.bits16;
  f.bits20 = format.bits20;
  f.bits24 = format.bits24;
  f.formatDependent = format.formatDependent;
  return fmt::format("{}, {}", AudioFormatName(f), AudioFormatText(f));
}

}  // namespace

std::string AudioFormatName(const AudioFormat& format) {
  static constexpr const char* kFormats[] = {"reserved",      "L-PCM",  "AC-3",      "MPEG-1", "MP3",
                                             "MPEG-2",        "AAC LC", "DTS",       "ATRAC",  "One Bit Audio",
                                             "Enhanced AC-3", "DTS-HD", "MAT (MLP)", "DST",    "WMA Pro"};
  static constexpr const char* kExtendedFormats[] = {"reserved",
                                                     "HE AAC",
                                                     "HE AAC v2",
                                                     "MPEG Surround",
                                                     "MPEG-4 HE AAC",
                                                     "MPEG-4 HE AAC v2",
                                                     "MPEG-4 AAC LC",
                                                     "DRA",
                                                     "MPEG-4 HE AAC and MPEG Surround",
                                                     "reserved",
                                                     "MPEG-4 AAC LC and MPEG Surround",
                                                     "MPEG-H 3D Audio",
                                                     "AC-4",
                                                     "L-PCM 3D Audio",
                                                     "Auro-Cx",
                                                     "MPEG-D USAC"};
  if (format.formatCode < std::size(kFormats)) return kFormats[format.formatCode];
  if (format.extFormatCode < std::size(kExtendedFormats)) return kExtendedFormats[format.extFormatCode];
  return fmt::format("extended format {}", format.extFormatCode);
}

std::string AudioFormatText(const AudioFormat& f) {
  const NamedFlag rates[] = {{f.rate32k, "32"}, {f.rate44k1, "44.1"},   {f.rate48k, "48"},  {f.rate88k2, "88.2"},
                             {f.rate96k, "96"}, {f.rate176k4, "176.4"}, {f.rate192k, "192"}};
  const NamedFlag depths[] = {{f.bits16, "16"}, {f.bits20, "20"}, {f.bits24, "24"}};
  std::string text = fmt::format("{}; {} kHz", ChannelsText(f), SetFlags(rates, "no"));
  if (f.formatCode == 1 || Is(f, kPcm3d)) text += fmt::format("; {} bits", SetFlags(depths, "no"));
  if (f.formatCode >= 2 && f.formatCode <= 8) text += fmt::format("; up to {} kbit/s", f.maxBitrate);
  if (const std::string features = FeaturesText(f); !features.empty()) text += "; " + features;
  if (f.formatDependent != 0) text += fmt::format("; format's own {:#04x}", f.formatDependent);
  return text;
}

std::string SpeakersText(const SpeakerRecord& s) {
  const NamedFlag flags[] = {{s.FL_FR, "FL/FR"},
                             {s.LFE1, "LFE1"},
                             {s.FC, "FC"},
                             {s.BL_BR, "BL/BR"},
                             {s.BC, "BC"},
                             {s.FLc_FRc, "FLc/FRc"},
                             {s.RLC_RRC, "RLC/RRC"},
                             {s.FLw_FRw, "FLw/FRw"},
                             {s.TpFL_TpFR, "TpFL/TpFR"},
                             {s.TpC, "TpC"},
                             {s.TpFC, "TpFC"},
                             {s.LS_RS, "LS/RS"},
                             {s.LFE2, "LFE2"},
                             {s.TpBC, "TpBC"},
                             {s.SiL_SiR, "SiL/SiR"},
                             {s.TpSiL_TpSiR, "TpSiL/TpSiR"},
                             {s.TpBL_TpBR, "TpBL/TpBR"},
                             {s.BtFC, "BtFC"},
                             {s.BtFL_BtFR, "BtFL/BtFR"},
                             {s.TpLS_TpRS, "TpLS/TpRS"}};
  return SetFlags(flags);
}

bool DescribeAudio(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  AudioFormatsRecord record;
  if (CEA_GetAudioFormats(&entry, &record) != 0) return false;
  node.record = record;
  std::vector<std::string> names;
  for (unsigned i = 0; i < record.count; ++i) {
    names.push_back(AudioFormatName(record.formats[i]));
    node.Add(names.back(), AudioFormatText(record.formats[i]), at(1 + 3 * i, 3));
  }
  node.summary = Joined(names);
  return true;
}

bool DescribeSpeakers(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  SpeakerRecord record;
  if (CEA_GetSADB(&entry, &record) != 0) return false;
  node.record = record;
  node.Add("Speakers", SpeakersText(record), at(1, 3));
  return true;
}

bool DescribeHdmiAudio(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  constexpr size_t kSize = 4;  // of a format, and of the speakers
  static constexpr const char* kSystems[] = {"no system stated", "10.2 channels", "22.2 channels", "30.2 channels"};
  HdmiAudioRecord r;
  if (CEA_GetHdmiAudio(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Streams",
           fmt::format("{}{}", r.maxStreams == 1 ? "no multi-stream" : fmt::format("up to {}", r.maxStreams),
                       r.nonMixed != 0 ? ", also not to be mixed" : ""),
           at(2));
  for (size_t i = 0; i < r.count; ++i) {
    node.Add("3D audio", HdmiAudioText(r.formats[i]), at(4 + kSize * i, kSize));
  }
  if (r.count == 0) return true;
  node.Add("Speakers",
           fmt::format("{}: {}{}", NameOf(kSystems, r.speakerSystem), SpeakersText(r.speakers),
                       r.LSd_RSd != 0 ? ", LSd/RSd" : ""),
           at(4 + kSize * r.count, kSize));
  return true;
}

bool DescribeDolbyAudio(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  DolbyAudioRecord r;
  if (CEA_GetDolbyAudio(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag zones[] = {{r.centerZone, "centre"},
                             {r.surroundZone, "surround"},
                             {r.heightZone, "height"},
                             {r.headphoneOnly, "headphones only"}};
  node.Add("Version", fmt::format("{}", r.version), at(5));
  node.Add("Speaker zones", SetFlags(zones), at(5));
  if (at.size() > 6) node.Add("MAT", r.matPcm48Only != 0 ? "PCM at 48 kHz only" : "TrueHD and PCM", at(6));
  if (r.unknownFlag != 0) node.Add("Unknown", "bit 7 of byte 6", at(6));
  return true;
}

}  // namespace reedid::document
