// HDMI's blocks about 3D audio and tone mapping, and CTA-861's video formats by resolution.
//
// HDMI audio (HDMI 2.0), extended tag 18
//   2     streams - 1 1..0, not mixed 2
//   3     number of formats 2..0; then each in 4 bytes: 0 format 3..0, 1 channels - 1 4..0, 2 sample rates 6..0, 3 sizes
//         of L-PCM 2..0 or the format's own; behind formats the speakers in 4 bytes: 0-2 as in speaker allocation and
//         LSd/RSd 4 of 2, 3 system 7..4
//
// Source-based tone mapping (HDMI 2.1a), extended tag 122
//   2     version 3..0, general RDM 6..5, D-RDM 7; with it
//   3     HGiG peak 2..0, use HGiG 4, MaxRGB 5, gamut 7..6
//   then  with gamut 0 x and y of red, green, blue, white, low byte first; with HGiG peak 0 least and peak brightness; up
//         to four points: part of the screen, peak
//
// Video formats (CTA-861.6), tag 6
//   1     4:2:0 7, 1000/1001 6, bytes of a descriptor - 1 1..0; then descriptors
//     0   resolution 5..0, 24 Hz 6, 25 Hz 7
//     1   factors 5..0, 144 Hz 6, 30 Hz 7; without it 30 Hz and factors 1 and 2
//     2   48 Hz 0

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "cea/speakers.h"
#include "reedid/cea_display.h"

namespace reedid {
namespace {

PIN_FIELDS(VideoFormatEntry, 0, 1, rid, base50, rate24, base60, rate144, factors, rate48);
PIN_SIZE(VideoFormatEntry, 7);
PIN_FIELDS(VideoFormatsRecord, 0, 1, ycc420, fractionalPreferred, descriptorSize, count);
PIN_FIELDS(VideoFormatsRecord, 4, 210, entries);
PIN_SIZE(VideoFormatsRecord, 214);
PIN_FIELDS(HdmiAudioFormat, 0, 1, formatCode, channels, rate32k, rate44k1, rate48k, rate88k2, rate96k, rate176k4,
           rate192k, bits16, bits20, bits24, formatDependent);
PIN_SIZE(HdmiAudioFormat, 13);
PIN_FIELDS(HdmiAudioRecord, 0, 1, maxStreams, nonMixed, count);
PIN_FIELDS(HdmiAudioRecord, 3, 78, formats);
PIN_FIELDS(HdmiAudioRecord, 81, 20, speakers);
PIN_FIELDS(HdmiAudioRecord, 101, 1, LSd_RSd, speakerSystem);
PIN_SIZE(HdmiAudioRecord, 103);
PIN_FIELDS(ToneMappingPoint, 0, 1, percent, peak);
PIN_SIZE(ToneMappingPoint, 2);
PIN_FIELDS(ToneMappingRecord, 0, 2, redX, redY, greenX, greenY, blueX, blueY, whiteX, whiteY);
PIN_FIELDS(ToneMappingRecord, 16, 1, version, grdmSupport, drdm, hgigDrdm, useHgig, maxRgb, gamut, minBrightness10,
           peakBrightness100, pointCount);
PIN_FIELDS(ToneMappingRecord, 26, 8, points);
PIN_SIZE(ToneMappingRecord, 34);

struct HdmiAudio : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_HDMI_AUDIO, 3, 32};
  static constexpr unsigned kFixed = 4, kFormat = 4;

  static unsigned SizeOf(unsigned count) { return kFixed + (count == 0 ? 0 : kFormat * (count + 1)); }
  static bool Takes(Bytes bytes) { return bytes.size() == 3 || bytes.size() == SizeOf(Bits(bytes[3], 0, 3)); }
  static bool Holds(const HdmiAudioRecord& r) { return r.count <= std::size(r.formats); }
  static unsigned Size(const HdmiAudioRecord& r, const uint8_t*) { return SizeOf(r.count); }

  static void Layout(const ExactIo& io, HdmiAudioRecord& r, unsigned) {
    LessOne(io, r.maxStreams, Place{2, 0, 2});
    io(r.nonMixed, Place{2, 2, 1});
    io(r.count, Place{3, 0, 3});
    if (r.count == 0) return;
    for (unsigned i = 0; i < r.count; ++i) Format(io, r.formats[i], Low8(kFixed + kFormat * i));
    const uint8_t at = Low8(kFixed + kFormat * r.count);
    SpeakerLayout(io, r.speakers, at);
    io(r.LSd_RSd, Place{Low8(at + 2), 4, 1});
    io(r.speakerSystem, Place{Low8(at + 3), 4, 4});
  }

 private:
  static void Format(const ExactIo& io, HdmiAudioFormat& f, uint8_t at) {
    const uint8_t rates = Low8(at + 2), last = Low8(at + 3);
    io(f.formatCode, Place{at, 0, 4});
    LessOne(io, f.channels, Place{Low8(at + 1), 0, 5});
    io(f.rate32k, Place{rates, 0, 1});
    io(f.rate44k1, Place{rates, 1, 1});
    io(f.rate48k, Place{rates, 2, 1});
    io(f.rate88k2, Place{rates, 3, 1});
    io(f.rate96k, Place{rates, 4, 1});
    io(f.rate176k4, Place{rates, 5, 1});
    io(f.rate192k, Place{rates, 6, 1});
    if (f.formatCode != 1) {
      io(f.formatDependent, Place{last});
      return;
    }
    io(f.bits16, Place{last, 0, 1});
    io(f.bits20, Place{last, 1, 1});
    io(f.bits24, Place{last, 2, 1});
  }
};

struct ToneMapping : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_TONE_MAPPING, 3, 32};

  // Without its points.
  static unsigned FixedSize(bool drdm, unsigned gamut, unsigned hgigDrdm) {
    return !drdm ? 3 : 4u + (gamut == 0 ? 16 : 0) + (hgigDrdm == 0 ? 2 : 0);
  }
  static bool Takes(Bytes bytes) {
    return bytes.size() >= FixedSize(Bit(bytes[2], 7) != 0, bytes[3] >> 6, Bits(bytes[3], 0, 3));
  }
  static bool Holds(const ToneMappingRecord& r) { return r.pointCount <= std::size(r.points); }
  static unsigned Size(const ToneMappingRecord& r, const uint8_t*) {
    return FixedSize(r.drdm, r.gamut, r.hgigDrdm) + 2u * r.pointCount;
  }

  static void Layout(const ExactIo& io, ToneMappingRecord& r, unsigned size) {
    io(r.version, Place{2, 0, 4});
    io(r.grdmSupport, Place{2, 5, 2});
    io(r.drdm, Place{2, 7, 1});
    if (!r.drdm) return;
    io(r.hgigDrdm, Place{3, 0, 3});
    io(r.useHgig, Place{3, 4, 1});
    io(r.maxRgb, Place{3, 5, 1});
    io(r.gamut, Place{3, 6, 2});
    uint8_t at = 4;
    if (r.gamut == 0) {
      for (uint16_t* field : {&r.redX, &r.redY, &r.greenX, &r.greenY, &r.blueX, &r.blueY, &r.whiteX, &r.whiteY}) {
        io(*field, Place{at}, Place{Low8(at + 1)});
        at = Low8(at + 2);
      }
    }
    if (r.hgigDrdm == 0) {
      io(r.minBrightness10, Place{at});
      io(r.peakBrightness100, Place{Low8(at + 1)});
      at = Low8(at + 2);
    }
    List(io, r.pointCount, r.points, at, size, [&io](ToneMappingPoint& point, unsigned place) {
      io(point.percent, Place{Low8(place)});
      io(point.peak, Place{Low8(place + 1)});
      return 2u;
    });
  }
};

struct VideoFormats : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_VIDEO_FORMAT, 0, 2, 32};
  static constexpr unsigned kFixed = 2;

  static bool Holds(const VideoFormatsRecord& r) {
    return r.count <= std::size(r.entries) && Size(r, nullptr) <= REEDID_CEA_DATA_BLOCK_SIZE;
  }
  static unsigned Size(const VideoFormatsRecord& r, const uint8_t*) {
    return kFixed + unsigned{r.descriptorSize} * r.count;
  }

  static void Layout(const ExactIo& io, VideoFormatsRecord& r, unsigned size) {
    io(r.ycc420, Place{1, 7, 1});
    io(r.fractionalPreferred, Place{1, 6, 1});
    LessOne(io, r.descriptorSize, Place{1, 0, 2});
    List(io, r.count, r.entries, kFixed, size, [&](VideoFormatEntry& entry, unsigned at) -> unsigned {
      io(entry.rid, Place{Low8(at), 0, 6});
      io(entry.rate24, Place{Low8(at), 6, 1});
      io(entry.base50, Place{Low8(at), 7, 1});
      if (r.descriptorSize > 1) {
        io(entry.factors, Place{Low8(at + 1), 0, 6});
        io(entry.rate144, Place{Low8(at + 1), 6, 1});
        io(entry.base60, Place{Low8(at + 1), 7, 1});
      } else if (io.Reads()) {
        entry.factors = 3;
        entry.base60 = 1;
      }
      if (r.descriptorSize > 2) io(entry.rate48, Place{Low8(at + 2), 0, 1});
      return r.descriptorSize;
    });
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetHdmiAudio(const CeaDataBlock* entry, HdmiAudioRecord* record) {
  return GetExact<HdmiAudio>(entry, record);
}

int32_t CEA_SetHdmiAudio(const HdmiAudioRecord* record, CeaDataBlock* entry) {
  return SetExact<HdmiAudio>(record, entry);
}

int32_t CEA_GetHFSBTMDB(const CeaDataBlock* entry, ToneMappingRecord* record) {
  return GetExact<ToneMapping>(entry, record);
}

int32_t CEA_SetHFSBTMDB(const ToneMappingRecord* record, CeaDataBlock* entry) {
  return SetExact<ToneMapping>(record, entry);
}

int32_t CEA_GetVFDB(const CeaDataBlock* entry, VideoFormatsRecord* record) {
  return GetExact<VideoFormats>(entry, record);
}

int32_t CEA_SetVFDB(const VideoFormatsRecord* record, CeaDataBlock* entry) {
  return SetExact<VideoFormats>(record, entry);
}
