// Audio Data Block (CTA-861, 7.5.2) with the bits of each format by name: 3 bytes for each short audio descriptor.
//   0  format 6..3, channels - 1 2..0; MPEG-H has a level there, AC-4 and Auro-Cx nothing
//   1  sample rates in bits 0..6: 32, 44.1, 48, 88.2, 96, 176.4, 192 kHz
//   2  what the format makes of it; extended formats their code in bits 7..3
// L-PCM 3D has two more bits of channels, 7 of the bytes 0 and 1.

#include <iterator>

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "reedid/cea_media.h"

namespace reedid {
namespace {

PIN_FIELDS(AudioFormat, 0, 1, formatCode, extFormatCode, channels, level, rate32k, rate44k1, rate48k, rate88k2, rate96k,
           rate176k4, rate192k, bits16, bits20, bits24, joc, jocAcmod28, dtsX, matObjects, matNoHash, frames1024,
           frames960, systemH, mpegSurroundExplicit, lowComplexityProfile, baselineProfile, formatDependent);
PIN_FIELDS(AudioFormat, 26, 2, maxBitrate);
PIN_SIZE(AudioFormat, 28);
PIN_FIELDS(AudioFormatsRecord, 0, 2, count);
PIN_FIELDS(AudioFormatsRecord, 2, 280, formats);
PIN_SIZE(AudioFormatsRecord, 282);

constexpr uint8_t kExtendedFormat = 15;
constexpr uint16_t kExtended = 0x100;  // added to the codes of extended formats
constexpr uint16_t kMpegH = kExtended + 11, kPcm3d = kExtended + 13;
constexpr unsigned kSadSize = 3;

constexpr bool Within(unsigned code, uint16_t first, uint16_t last) {
  return code >= first && code <= last;
}

struct NamedBit {
  uint16_t first, last;  // formats
  uint8_t bit;           // of the third byte
  uint8_t AudioFormat::*field;
};

constexpr NamedBit kNamedBits[] = {
    {1, 1, 0, &AudioFormat::bits16},
    {1, 1, 1, &AudioFormat::bits20},
    {1, 1, 2, &AudioFormat::bits24},
    {10, 10, 0, &AudioFormat::joc},
    {10, 10, 1, &AudioFormat::jocAcmod28},
    {11, 11, 1, &AudioFormat::dtsX},
    {12, 12, 0, &AudioFormat::matObjects},
    {12, 12, 1, &AudioFormat::matNoHash},
    {kExtended + 4, kExtended + 6, 1, &AudioFormat::frames960},
    {kExtended + 4, kExtended + 6, 2, &AudioFormat::frames1024},
    {kExtended + 6, kExtended + 6, 0, &AudioFormat::systemH},
    {kExtended + 8, kExtended + 8, 0, &AudioFormat::mpegSurroundExplicit},
    {kExtended + 8, kExtended + 8, 1, &AudioFormat::frames960},
    {kExtended + 8, kExtended + 8, 2, &AudioFormat::frames1024},
    {kExtended + 10, kExtended + 10, 0, &AudioFormat::mpegSurroundExplicit},
    {kExtended + 10, kExtended + 10, 1, &AudioFormat::frames960},
    {kExtended + 10, kExtended + 10, 2, &AudioFormat::frames1024},
    {kMpegH, kMpegH, 0, &AudioFormat::lowComplexityProfile},
    {kMpegH, kMpegH, 1, &AudioFormat::baselineProfile},
    {kPcm3d, kPcm3d, 0, &AudioFormat::bits16},
    {kPcm3d, kPcm3d, 1, &AudioFormat::bits20},
    {kPcm3d, kPcm3d, 2, &AudioFormat::bits24},
};

// Bits of the third byte that belong to a format and have no name here.
struct OwnBits {
  uint16_t first, last;
  uint8_t mask;
};

constexpr OwnBits kOwnBits[] = {
    {0, 0, 0xFF},
    {9, 9, 0xFF},
    {11, 11, 0xFD},
    {12, 12, 0x04},
    {13, 13, 0xFF},
    {14, 14, 0x07},
    {kExtended + 1, kExtended + 3, 0x07},
    {kExtended + 7, kExtended + 7, 0x07},
    {kExtended + 12, kExtended + 12, 0x07},
    {kExtended + 14, kExtended + 31, 0x07},
};

constexpr uint8_t AudioFormat::*kRates[] = {&AudioFormat::rate32k,  &AudioFormat::rate44k1, &AudioFormat::rate48k,
                                            &AudioFormat::rate88k2, &AudioFormat::rate96k,  &AudioFormat::rate176k4,
                                            &AudioFormat::rate192k};

struct AudioFormats : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_AUDIO, 0, 4, 32};

  static bool Holds(const AudioFormatsRecord& r) { return r.count <= std::size(r.formats); }
  static unsigned Size(const AudioFormatsRecord& r, const uint8_t*) { return 1 + kSadSize * r.count; }

  static void Layout(const ExactIo& io, AudioFormatsRecord& r, unsigned size) {
    if (io.Reads()) r.count = Low8((size - 1) / kSadSize);
    for (unsigned i = 0; i < r.count; ++i) Descriptor(io, r.formats[i], Low8(1 + kSadSize * i));
  }

 private:
  static void Descriptor(const ExactIo& io, AudioFormat& f, uint8_t at) {
    const uint8_t second = Low8(at + 1), third = Low8(at + 2);
    io(f.formatCode, Place{at, 3, 4});
    if (f.formatCode == kExtendedFormat) io(f.extFormatCode, Place{third, 3, 5});
    const unsigned code = f.formatCode == kExtendedFormat ? kExtended + f.extFormatCode : f.formatCode;
    Channels(io, f, code, at);
    for (unsigned i = 0; i < std::size(kRates); ++i) io(f.*kRates[i], Place{second, Low8(i), 1});
    for (const NamedBit& named : kNamedBits) {
      if (Within(code, named.first, named.last)) io(f.*named.field, Place{third, named.bit, 1});
    }
    if (Within(code, 2, 8)) Scaled(io, f.maxBitrate, 8, Place{third});
    for (const OwnBits& own : kOwnBits) {
      if (!Within(code, own.first, own.last)) continue;
      Coded(
          io, f.formatDependent, [own](uint32_t byte) { return byte & own.mask; },
          [own](uint32_t value) { return value & own.mask; }, Place{third});
    }
  }

  static void Channels(const ExactIo& io, AudioFormat& f, unsigned code, uint8_t at) {
    if (code == kMpegH) {
      io(f.level, Place{at, 0, 3});
    } else if (code == kPcm3d) {
      LessOne(io, f.channels, Place{at, 0, 3}, Place{at, 7, 1}, Place{Low8(at + 1), 7, 1});
    } else if (code != kExtended + 12 && code != kExtended + 14) {
      LessOne(io, f.channels, Place{at, 0, 3});
    }
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetAudioFormats(const CeaDataBlock* entry, AudioFormatsRecord* record) {
  return GetExact<AudioFormats>(entry, record);
}

int32_t CEA_SetAudioFormats(const AudioFormatsRecord* record, CeaDataBlock* entry) {
  return SetExact<AudioFormats>(record, entry);
}
