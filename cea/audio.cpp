// Audio Data Block (CTA-861, 7.5.2) and Speaker Allocation Data Block (7.5.3).
//
// Audio: header, then short audio descriptors of 3 bytes.
//   1  format 6..3, channels - 1 2..0     (MPEG-H and the like use bit 7 too)
//   2  sample rates 32, 44.1, 48, 88.2, 96, 176.4, 192 kHz in bits 0..6
//   3  L-PCM: bit depths 16, 20, 24 in bits 0..2; formats 2..8: maximum bit rate / 8 kbit/s; 9..14: the format's own;
//      15: extended format 7..3 and the format's own bits 2..0

#include "base/bytes.h"
#include "base/log.h"
#include "cea/codec.h"

namespace reedid {
namespace {

constexpr CeaForm kAudio = {kAudioTag, 0, 4, 31};
constexpr CeaForm kSpeaker = {kSpeakerTag, 0, 4, 31};
constexpr unsigned kMaxSads = 10;
constexpr unsigned kSadSize = 3;

template <class Io, class Sad>
constexpr void RatesLayout(const Io& io, Sad& sad) {
  io(sad.rate32k, Place{1, 0, 1});
  io(sad.rate44k1, Place{1, 1, 1});
  io(sad.rate48k, Place{1, 2, 1});
  io(sad.rate88k2, Place{1, 3, 1});
  io(sad.rate96k, Place{1, 4, 1});
  io(sad.rate176k4, Place{1, 5, 1});
  io(sad.rate192k, Place{1, 6, 1});
}

template <class Io, class Sad>
constexpr void DepthsLayout(const Io& io, Sad& sad) {
  io(sad.bits16, Place{2, 0, 1});
  io(sad.bits20, Place{2, 1, 1});
  io(sad.bits24, Place{2, 2, 1});
}

// How a format uses byte 3, and an extended format the other two.
enum class SadForm { kPlain, kBitrate, kByte, kLow3, kExtLow3, kExtAmbisonic, kExtAc4, kExtPcm3d, kExtPlain };

SadForm FormOf(uint8_t format, uint8_t extFormat) {
  if (format >= 2 && format <= 8) return SadForm::kBitrate;
  if (format >= 9 && format <= 13) return SadForm::kByte;
  if (format == 14) return SadForm::kLow3;
  if (format != 15) return SadForm::kPlain;
  if (extFormat >= 4 && extFormat <= 10) return SadForm::kExtLow3;  // MPEG-4 HE AAC and its kin
  if (extFormat == 11) return SadForm::kExtAmbisonic;               // MPEG-H 3D audio: a level in place of channels
  if (extFormat == 12) return SadForm::kExtAc4;
  if (extFormat == 13) return SadForm::kExtPcm3d;  // L-PCM 3D: five bits of channels
  return SadForm::kExtPlain;
}

SadRecord DecodeSad(Bytes b) {
  SadRecord sad = {};
  const LayoutReader reader(b);
  sad.formatCode = Low8(Bits(b[0], 3, 4));
  sad.channels = Low8((b[0] & 7) + 1);
  RatesLayout(reader, sad);
  DepthsLayout(reader, sad);
  const uint8_t extFormat = sad.formatCode == 15 ? b[2] >> 3 : 0;
  sad.extFormatCode = extFormat;
  switch (FormOf(sad.formatCode, extFormat)) {
    case SadForm::kBitrate:
      sad.maxBitrate = b[2];
      break;
    case SadForm::kByte:
      sad.formatDependent = b[2];
      break;
    case SadForm::kLow3:
      sad.formatDependent = b[2] & 7;
      break;
    case SadForm::kExtLow3:
      sad.rate176k4 = sad.rate192k = 0;
      sad.formatDependent = b[2] & 7;
      break;
    case SadForm::kExtAmbisonic:
      sad.channels = b[0] & 7;
      sad.formatDependent = b[2] & 3;
      break;
    case SadForm::kExtAc4:
      sad.rate32k = sad.rate88k2 = sad.rate176k4 = 0;
      sad.formatDependent = b[2] & 7;
      break;
    case SadForm::kExtPcm3d:
      sad.channels = Low8((b[0] & 7) + 1 + 8 * Bit(b[0], 7) + 16 * Bit(b[1], 7));
      break;
    case SadForm::kPlain:
    case SadForm::kExtPlain:
      break;
  }
  return sad;
}

void EncodeSad(const SadRecord& sad, uint8_t* b) {
  const LayoutWriter writer(b);
  const unsigned channels = sad.channels - 1u;
  b[0] = Low8(Bits(sad.formatCode, 0, 4) << 3 | (channels & 7));
  RatesLayout(writer, sad);
  const SadForm form = FormOf(sad.formatCode, sad.extFormatCode);
  if (sad.formatCode == 15) b[2] = Low8(sad.extFormatCode << 3);
  switch (form) {
    case SadForm::kPlain:
      DepthsLayout(writer, sad);
      break;
    case SadForm::kBitrate:
      b[2] = sad.maxBitrate;
      break;
    case SadForm::kByte:
      b[2] = sad.formatDependent;
      break;
    case SadForm::kLow3:
      b[2] = sad.formatDependent & 7;
      break;
    case SadForm::kExtLow3:
      b[1] &= 0x9F;
      b[2] = Low8(b[2] | (sad.formatDependent & 7));
      break;
    case SadForm::kExtAmbisonic:
      b[0] = Low8((b[0] & ~7) | (sad.channels & 7));
      b[2] = Low8(b[2] | (sad.formatDependent & 3));
      break;
    case SadForm::kExtAc4:
      b[0] &= 0xF8;
      b[1] &= 0xD6;  // 32, 88.2 and 176.4 kHz
      b[2] = Low8(b[2] | (sad.formatDependent & 7));
      break;
    case SadForm::kExtPcm3d:
      b[0] = Low8(b[0] | Bit(channels, 3) << 7);
      b[1] = Low8(b[1] | Bit(channels, 4) << 7);
      DepthsLayout(writer, sad);
      break;
    case SadForm::kExtPlain:
      break;
  }
}

// Three bytes of flags (CTA-861, table 59).
template <class Io, class Record>
constexpr void SpeakerLayout(const Io& io, Record& r) {
  io(r.FL_FR, Place{1, 0, 1});
  io(r.LFE1, Place{1, 1, 1});
  io(r.FC, Place{1, 2, 1});
  io(r.BL_BR, Place{1, 3, 1});
  io(r.BC, Place{1, 4, 1});
  io(r.FLc_FRc, Place{1, 5, 1});
  io(r.RLC_RRC, Place{1, 6, 1});
  io(r.FLw_FRw, Place{1, 7, 1});
  io(r.TpFL_TpFR, Place{2, 0, 1});
  io(r.TpC, Place{2, 1, 1});
  io(r.TpFC, Place{2, 2, 1});
  io(r.LS_RS, Place{2, 3, 1});
  io(r.LFE2, Place{2, 4, 1});
  io(r.TpBC, Place{2, 5, 1});
  io(r.SiL_SiR, Place{2, 6, 1});
  io(r.TpSiL_TpSiR, Place{2, 7, 1});
  io(r.TpBL_TpBR, Place{3, 0, 1});
  io(r.BtFC, Place{3, 1, 1});
  io(r.BtFL_BtFR, Place{3, 2, 1});
  io(r.TpLS_TpRS, Place{3, 3, 1});
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetADB(const CeaDataBlock* entry, AdbRecord* record) {
  if (!Matches(entry, kAudio) || record == nullptr) return REEDID_ERR("invalid parameters");
  *record = {};
  record->sadCount = Low8((entry->size - 1u) / kSadSize);
  for (unsigned i = 0; i < record->sadCount; ++i) {
    record->sads[i] = DecodeSad(BytesOf(*entry).From(1 + kSadSize * i));
  }
  return 0;
}

int32_t CEA_SetADB(const AdbRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry) || record->sadCount > kMaxSads) return REEDID_ERR("invalid parameters");
  BeginDataBlock(*entry, kAudio, kSadSize * record->sadCount + 1);
  for (unsigned i = 0; i < record->sadCount; ++i) EncodeSad(record->sads[i], entry->bytes + 1 + kSadSize * i);
  return 0;
}

int32_t CEA_GetSADB(const CeaDataBlock* entry, SpeakerRecord* record) {
  if (!Matches(entry, kSpeaker) || record == nullptr) return REEDID_ERR("invalid parameters");
  *record = {};
  SpeakerLayout(LayoutReader(BytesOf(*entry)), *record);
  return 0;
}

int32_t CEA_SetSADB(const SpeakerRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  SpeakerLayout(BeginDataBlock(*entry, kSpeaker, 4), *record);
  return 0;
}
