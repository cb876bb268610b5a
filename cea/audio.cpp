// Audio Data Block (CTA-861, 7.5.2) and Speaker Allocation Data Block (7.5.3).
//
// Audio: header, then short audio descriptors of 3 bytes.
//   0  format 6..3, channels - 1 2..0
//   1  sample rates in bits 0..6: 32, 44.1, 48, 88.2, 96, 176.4, 192 kHz
//   2  what the format makes of it: L-PCM bit depths 16, 20, 24 in bits 0..2; extended formats their code in bits 7..3

#include <iterator>

#include "base/layout.h"
#include "base/log.h"
#include "base/pinned.h"
#include "cea/codec.h"
#include "cea/speakers.h"

namespace reedid {
namespace {

PIN_FIELDS(SadRecord, 0, 1, formatCode, extFormatCode, channels, rate32k, rate44k1, rate48k, rate88k2, rate96k,
           rate176k4, rate192k, bits16, bits20, bits24, maxBitrate, formatDependent);
PIN_SIZE(SadRecord, 15);
PIN_FIELDS(AdbRecord, 0, 1, sadCount);
PIN_FIELDS(AdbRecord, 1, 150, sads);
PIN_SIZE(AdbRecord, 151);
PIN_FIELDS(SpeakerRecord, 0, 1, FL_FR, LFE1, FC, BL_BR, BC, FLc_FRc, RLC_RRC, FLw_FRw, TpFL_TpFR, TpC, TpFC, LS_RS,
           LFE2, TpBC, SiL_SiR, TpSiL_TpSiR, TpBL_TpBR, BtFC, BtFL_BtFR, TpLS_TpRS);
PIN_SIZE(SpeakerRecord, 20);

constexpr CeaForm kAudio = {CEA_TAG_AUDIO, 0, 4, 31};
constexpr CeaForm kSpeaker = {CEA_TAG_SPEAKERS, 0, 4, 31};
constexpr unsigned kMaxSads = 10;
constexpr unsigned kSadSize = 3;

// What a format makes of the three bytes. Whatever it is, a reader takes the channels and bits 2..0 of the third byte,
// which only some forms write.
struct SadForm {
  uint16_t first, last;     // format codes, kExtended + extended format codes
  uint8_t rates = 0x7F;     // bits of the sample rates that it can state
  uint8_t channelBase = 1;  // channels are stored less this
  uint8_t channelBits = 3;
  bool wide = false;  // two more bits of channels, in bit 7 of the first and of the second byte
  bool depths = false;
  uint8_t bitrateBits = 0, ownBits = 0;  // of the third byte
};

constexpr uint8_t kExtendedFormat = 15;
constexpr uint16_t kExtended = 0x100;

// The first row that has the code holds; codes that no format has are written as the rows of all others are.
constexpr SadForm kSadForms[] = {
    {.first = 2, .last = 8, .bitrateBits = 8},                                          // AC-3 to ATRAC
    {.first = 9, .last = 13, .ownBits = 8},                                             // one-bit audio to DST
    {.first = 14, .last = 14, .ownBits = 3},                                            // WMA Pro
    {.first = 0, .last = 0xFF, .depths = true},                                         // L-PCM
    {.first = kExtended + 4, .last = kExtended + 10, .rates = 0x1F, .ownBits = 3},      // MPEG-4 HE AAC and its kin
    {.first = kExtended + 11, .last = kExtended + 11, .channelBase = 0, .ownBits = 2},  // MPEG-H 3D audio: a level
    {.first = kExtended + 12, .last = kExtended + 12, .rates = 0x56, .channelBits = 0, .ownBits = 3},  // AC-4
    {.first = kExtended + 13, .last = kExtended + 13, .wide = true, .depths = true},                   // L-PCM 3D audio
    {.first = kExtended, .last = kExtended + 0xFF},
};

constexpr const SadForm& FormOf(uint8_t format, uint8_t extFormat) {
  const unsigned code = format == kExtendedFormat ? kExtended + extFormat : format;
  const SadForm* form = kSadForms;
  while (code < form->first || code > form->last) ++form;
  return *form;
}

constexpr uint8_t SadRecord::*kRates[] = {&SadRecord::rate32k,  &SadRecord::rate44k1, &SadRecord::rate48k,
                                          &SadRecord::rate88k2, &SadRecord::rate96k,  &SadRecord::rate176k4,
                                          &SadRecord::rate192k};

template <class Io, class Sad>
constexpr void FormatLayout(const Io& io, Sad& sad) {
  io(sad.formatCode, Place{0, 3, 4});
  if (sad.formatCode == kExtendedFormat) io(sad.extFormatCode, Place{2, 3, 5});
}

template <class Io, class Sad>
constexpr void SadLayout(const Io& io, Sad& sad) {
  FormatLayout(io, sad);
  const SadForm& form = FormOf(sad.formatCode, sad.extFormatCode);
  const uint8_t channelBits = Io::kReads ? uint8_t{3} : form.channelBits;
  Above(io, sad.channels, form.channelBase, Place{0, 0, channelBits}, Place{0, 7, form.wide}, Place{1, 7, form.wide});
  for (unsigned i = 0; i < std::size(kRates); ++i) {
    io(sad.*kRates[i], Place{1, Low8(i), Bit(form.rates, i)});
  }
  const uint8_t depthBits = Io::kReads || form.depths;
  io(sad.bits16, Place{2, 0, depthBits});
  io(sad.bits20, Place{2, 1, depthBits});
  io(sad.bits24, Place{2, 2, depthBits});
  io(sad.maxBitrate, Place{2, 0, form.bitrateBits});
  io(sad.formatDependent, Place{2, 0, form.ownBits});
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetADB(const CeaDataBlock* entry, AdbRecord* record) {
  if (!Matches(entry, kAudio) || record == nullptr) return REEDID_ERR("invalid parameters");
  *record = {};
  record->sadCount = Low8((entry->size - 1u) / kSadSize);
  for (unsigned i = 0; i < record->sadCount; ++i) {
    SadLayout(LayoutReader(BytesOf(*entry).From(1 + kSadSize * i)), record->sads[i]);
  }
  return 0;
}

int32_t CEA_SetADB(const AdbRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry) || record->sadCount > kMaxSads) return REEDID_ERR("invalid parameters");
  BeginDataBlock(*entry, kAudio, kSadSize * record->sadCount + 1);
  for (unsigned i = 0; i < record->sadCount; ++i)
    SadLayout(LayoutWriter(entry->bytes + 1 + kSadSize * i), record->sads[i]);
  return 0;
}

int32_t CEA_GetSADB(const CeaDataBlock* entry, SpeakerRecord* record) {
  if (!Matches(entry, kSpeaker) || record == nullptr) return REEDID_ERR("invalid parameters");
  *record = {};
  SpeakerLayout(LayoutReader(BytesOf(*entry)), *record, 1);
  return 0;
}

int32_t CEA_SetSADB(const SpeakerRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  SpeakerLayout(BeginDataBlock(*entry, kSpeaker, 4), *record, 1);
  return 0;
}
