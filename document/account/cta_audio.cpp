#include "document/account/cta_audio.h"

#include <fmt/format.h>

#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

std::string AudioFormatName(const SadRecord& sad) {
  static constexpr const char* kFormats[] = {"reserved",      "L-PCM",  "AC-3",      "MPEG-1", "MP3",
                                             "MPEG-2",        "AAC LC", "DTS",       "ATRAC",  "One Bit Audio",
                                             "Enhanced AC-3", "DTS-HD", "MAT (MLP)", "DST",    "WMA Pro"};
  static constexpr const char* kExtended[] = {"reserved",
                                              "reserved",
                                              "reserved",
                                              "reserved",
                                              "MPEG-4 HE AAC",
                                              "MPEG-4 HE AAC v2",
                                              "MPEG-4 AAC LC",
                                              "DRA",
                                              "MPEG-4 HE AAC and MPEG Surround",
                                              "reserved",
                                              "MPEG-4 AAC LC and MPEG Surround",
                                              "MPEG-H 3D Audio",
                                              "AC-4",
                                              "L-PCM 3D Audio"};
  if (sad.formatCode < std::size(kFormats)) return kFormats[sad.formatCode];
  if (sad.extFormatCode < std::size(kExtended)) return kExtended[sad.extFormatCode];
  return fmt::format("extended format {}", sad.extFormatCode);
}

std::string SadText(const SadRecord& sad) {
  const NamedFlag rates[] = {{sad.rate32k, "32"},    {sad.rate44k1, "44.1"}, {sad.rate48k, "48"},
                             {sad.rate88k2, "88.2"}, {sad.rate96k, "96"},    {sad.rate176k4, "176.4"},
                             {sad.rate192k, "192"}};
  const NamedFlag depths[] = {{sad.bits16, "16"}, {sad.bits20, "20"}, {sad.bits24, "24"}};
  std::string text = fmt::format("{} channels; {} kHz", sad.channels, SetFlags(rates, "no"));
  const bool isPcm = sad.formatCode == 1 || (sad.formatCode == 15 && sad.extFormatCode == 13);
  if (isPcm) text += fmt::format("; {} bits", SetFlags(depths, "no"));
  if (sad.formatCode >= 2 && sad.formatCode <= 8) text += fmt::format("; up to {} kbit/s", sad.maxBitrate * 8);
  if (sad.formatDependent != 0) text += fmt::format("; format's own {:#04x}", sad.formatDependent);
  return text;
}

}  // namespace

bool DescribeAudio(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  AdbRecord record;
  if (CEA_GetADB(&entry, &record) != 0) return false;
  node.record = record;
  for (unsigned i = 0; i < record.sadCount; ++i) {
    node.Add(AudioFormatName(record.sads[i]), SadText(record.sads[i]), at(1 + 3 * i, 3));
  }
  return true;
}

bool DescribeSpeakers(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  SpeakerRecord s;
  if (CEA_GetSADB(&entry, &s) != 0) return false;
  node.record = s;
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
  node.Add("Speakers", SetFlags(flags), at(1, 3));
  return true;
}

}  // namespace reedid::document
