// The sound that two displays both take. A short audio descriptor tells a set: up to so many channels, at each of its
// rates, in each of its depths; what two displays share are the overlaps of their sets.
//
// Basic audio, bit 6 of byte 3 of a CTA extension, is two channels of L-PCM at 32 to 48 kHz with 16 bits.

#include <algorithm>

#include "reedid/cea_media.h"
#include "transform/common/mixes.h"
#include "transform/common/records.h"

namespace reedid {
namespace {

constexpr unsigned kSadSize = 3;
constexpr uint8_t kBasicSad[kSadSize] = {0x09, 0x07, 0x01};
constexpr uint8_t kLpcm = 1, kWmaPro = 14, kExtended = 15, kLpcm3d = 13;
constexpr unsigned kFrontPair = 0x01;  // the speakers of a display that tells none
constexpr unsigned kPairs = 0x0DC9E9;  // bits of the speaker allocation that are two speakers (CTA-861, 7.5.3)
constexpr unsigned kMostSads = 64;     // that an image is looked at for

constexpr uint8_t AudioFormat::*const kFlags[] = {
    &AudioFormat::rate32k,
    &AudioFormat::rate44k1,
    &AudioFormat::rate48k,
    &AudioFormat::rate88k2,
    &AudioFormat::rate96k,
    &AudioFormat::rate176k4,
    &AudioFormat::rate192k,
    &AudioFormat::bits16,
    &AudioFormat::bits20,
    &AudioFormat::bits24,
    &AudioFormat::joc,
    &AudioFormat::jocAcmod28,
    &AudioFormat::dtsX,
    &AudioFormat::matObjects,
    &AudioFormat::matNoHash,
    &AudioFormat::frames1024,
    &AudioFormat::frames960,
    &AudioFormat::systemH,
    &AudioFormat::mpegSurroundExplicit,
    &AudioFormat::lowComplexityProfile,
    &AudioFormat::baselineProfile,
};
constexpr unsigned kRates = 7;    // the first of these
constexpr unsigned kDepths = 10;  // the end of the depths behind them

bool Any(const AudioFormat& format, unsigned from, unsigned to) {
  return std::any_of(kFlags + from, kFlags + to, [&](auto flag) { return format.*flag != 0; });
}

// The overlap of two sets; false when it is empty.
bool Overlap(const AudioFormat& a, const AudioFormat& b, AudioFormat& both) {
  if (a.formatCode != b.formatCode || a.extFormatCode != b.extFormatCode) return false;
  both = a;
  for (const auto flag : kFlags) both.*flag &= b.*flag;
  both.channels = Lower(a.channels, b.channels);
  both.level = Lower(a.level, b.level);
  both.formatDependent =  // a profile, or flags
      a.formatCode == kWmaPro ? Lower(a.formatDependent, b.formatDependent)
                              : Low8(a.formatDependent & b.formatDependent);
  both.maxBitrate =
      a.maxBitrate == 0 || (b.maxBitrate != 0 && b.maxBitrate < a.maxBitrate) ? b.maxBitrate : a.maxBitrate;
  if (a.matObjects != b.matObjects) both.matNoHash = 0;
  const bool pcm = a.formatCode == kLpcm || (a.formatCode == kExtended && a.extFormatCode == kLpcm3d);
  if (pcm && !Any(both, kRates, kDepths)) return false;
  return Any(both, 0, kRates) || !Any(a, 0, kRates);
}

bool Covers(const AudioFormat& whole, const AudioFormat& part) {
  AudioFormat both;
  return Overlap(part, whole, both) && SameRecord(both, part);
}

// A descriptor as a data block of its own.
bool ReadSad(Bytes sad, AudioFormat& format) {
  uint8_t bytes[1 + kSadSize] = {CEA_TAG_AUDIO << 5 | kSadSize};
  sad.CopyTo(bytes + 1);
  const CeaDataBlock entry = EntryOf(Bytes(bytes, sizeof bytes));
  AudioFormatsRecord record;
  if (Bits(sad[0], 3, 4) == 0 || CEA_GetAudioFormats(&entry, &record) != 0 || record.count != 1) return false;
  format = record.formats[0];
  return true;
}

bool WriteSad(const AudioFormat& format, uint8_t* sad) {
  AudioFormatsRecord record = {};
  record.count = 1;
  record.formats[0] = format;
  ScratchDataBlock block;
  if (CEA_SetAudioFormats(&record, &block) != 0) return false;
  BytesOf(block).From(1).First(kSadSize).CopyTo(sad);
  return true;
}

template <class Visit>
void VisitSads(const EdidHandle& image, Visit visit) {
  VisitDataBlocks(image, [&](const CtaCursor& cursor) {
    if (!cursor.Is(CEA_TAG_AUDIO)) return;
    for (unsigned at = 1; at + kSadSize <= cursor.bytes().size(); at += kSadSize) {
      visit(cursor.bytes().From(at).First(kSadSize));
    }
  });
}

// The formats of an image.
struct Formats {
  explicit Formats(const EdidHandle& image) {
    VisitSads(image, [&](Bytes sad) { Add(sad); });
  }
  void Add(Bytes sad) {
    if (count < kMostSads && ReadSad(sad, list[count])) ++count;
  }
  template <class Takes>
  bool Any(Takes takes) const {
    return std::any_of(list, list + count, takes);
  }
  AudioFormat list[kMostSads];
  unsigned count = 0;
};

// An audio data block, made of the descriptors that another display takes too.
class MixedBlock {
 public:
  explicit MixedBlock(const Formats& theirs) : theirs_(theirs) {}

  // A descriptor that the other display covers stays as it stands, and so does one that means nothing; of any other its
  // overlaps remain.
  void Add(Bytes sad) {
    AudioFormat ours = {};
    const auto covers = [&](const AudioFormat& format) { return Covers(format, ours); };
    if (!ReadSad(sad, ours) || theirs_.Any(covers)) return Append(sad, ours, true);
    changed_ = true;
    for (unsigned i = 0; i < theirs_.count; ++i) {
      AudioFormat both;
      uint8_t bytes[kSadSize];
      if (!Overlap(ours, theirs_.list[i], both) || !WriteSad(both, bytes)) continue;
      const auto coversBoth = [&](const AudioFormat& format) { return Covers(format, both); };
      if (!std::any_of(formats_, formats_ + count_, coversBoth)) Append(Bytes(bytes, sizeof bytes), both, false);
    }
  }

  bool changed() const { return changed_; }
  // At most `most` descriptors.
  Bytes Finish(size_t most) {
    const size_t size = 1 + Lower<size_t>(count_, most) * kSadSize;
    bytes_[0] = Low8(CEA_TAG_AUDIO << 5 | (size - 1));
    return {bytes_, size};
  }

 private:
  // Whether two sets are one: they differ in their rates only.
  static bool Join(const AudioFormat& format, AudioFormat& with) {
    AudioFormat a = format, b = with;
    for (unsigned i = 0; i < kRates; ++i) a.*kFlags[i] = b.*kFlags[i] = 0;
    if (!SameRecord(a, b)) return false;
    for (unsigned i = 0; i < kRates; ++i) with.*kFlags[i] |= format.*kFlags[i];
    return true;
  }

  // Overlaps that the new one covers go, or become one with it.
  void Append(Bytes sad, const AudioFormat& format, bool whole) {
    for (unsigned i = 0; i < count_; ++i) {
      if ((whole && whole_[i]) || format.formatCode == 0 || !Join(format, formats_[i])) continue;
      whole_[i] = false;
      WriteSad(formats_[i], bytes_ + 1 + i * kSadSize);
      return;
    }
    for (unsigned i = 0; i < count_;) {
      if (whole_[i] || !Covers(format, formats_[i])) {
        ++i;
        continue;
      }
      std::copy(formats_ + i + 1, formats_ + count_, formats_ + i);
      std::copy(whole_ + i + 1, whole_ + count_, whole_ + i);
      std::copy(bytes_ + 1 + (i + 1) * kSadSize, bytes_ + 1 + count_ * kSadSize, bytes_ + 1 + i * kSadSize);
      --count_;
    }
    if (count_ == kMost) return;
    sad.CopyTo(bytes_ + 1 + count_ * kSadSize);
    formats_[count_] = format;
    whole_[count_++] = whole;
  }

  static constexpr unsigned kMost = (REEDID_CEA_DATA_BLOCK_SIZE - 1) / kSadSize;
  const Formats& theirs_;
  uint8_t bytes_[REEDID_CEA_DATA_BLOCK_SIZE] = {};
  AudioFormat formats_[kMost];
  bool whole_[kMost];  // as the display had it
  unsigned count_ = 0;
  bool changed_ = false;
};

// A display without any CTA extension may tell sound in DisplayID, which has no flag for it.
bool HasBasicAudio(const EdidHandle& image) {
  return HasCtaExtension(image) ? HasCtaFlag(image, kCtaBasicAudio) : Formats(image).count != 0;
}

bool HasSound(const EdidHandle& image) {
  return HasBasicAudio(image) || Formats(image).count != 0;
}

// Speakers by the bits of the allocation.
struct Speakers {
  explicit Speakers(const EdidHandle& image) {
    const Bytes block = FirstDataBlock(image, [](const CtaCursor& cursor) { return cursor.Is(CEA_TAG_SPEAKERS); });
    told = block.size() != 0;
    if (told) bits = block.Le24(1);
  }
  bool told = false;
  unsigned bits = kFrontPair;
};

unsigned CountSpeakers(unsigned speakers) {
  unsigned count = 0;
  for (unsigned bit = 0; bit < 24; ++bit) count += Bit(speakers, bit) * (1u + Bit(kPairs, bit));
  return count;
}

// L-PCM has no more channels than there are speakers for. A display that tells fewer than it has channels is left with
// that.
void CapChannels(Formats& theirs, const Speakers& ours, const Speakers& others) {
  const unsigned both = ours.bits & others.bits;
  if (ours.told == others.told && (both == ours.bits || both == others.bits)) return;
  const uint8_t most = Low8(Higher(CountSpeakers(both), 2u));
  for (unsigned i = 0; i < theirs.count; ++i) {
    AudioFormat& format = theirs.list[i];
    if (format.formatCode == kLpcm) format.channels = Lower(format.channels, most);
  }
}

void MixFormats(CtaCursor& cursor, const Formats& theirs) {
  MixedBlock mixed(theirs);
  const size_t before = (cursor.bytes().size() - 1) / kSadSize;
  for (unsigned i = 0; i < before; ++i) mixed.Add(cursor.bytes().From(1 + i * kSadSize).First(kSadSize));
  if (!mixed.changed()) return;
  const Bytes fresh = mixed.Finish(SIZE_MAX);
  if (fresh.size() == 1) return cursor.Erase();
  if (!cursor.Replace(fresh)) cursor.Replace(mixed.Finish(before));
}

void MixSpeakers(CtaCursor& cursor, unsigned others) {
  const unsigned before = cursor.bytes().Le24(1), both = before & others;
  if (both == before) return;
  if (both == 0) return cursor.Erase();
  for (unsigned i = 0; i < 3 && 1 + i < cursor.bytes().size(); ++i) cursor.Set(1 + i, Low8(both >> 8 * i));
}

}  // namespace

bool IsSound(const CtaCursor& cursor) {
  return cursor.Is(CEA_TAG_AUDIO) || cursor.Is(CEA_TAG_SPEAKERS) ||
         cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_AUDIO) || cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_HDMI_AUDIO) ||
         cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_ROOM_CONFIGURATION) ||
         cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_SPEAKER_LOCATION);
}

void MixAudio(EdidHandle& image, const EdidHandle& other) {
  const bool basic = HasBasicAudio(image) && HasBasicAudio(other);
  Formats theirs(other);
  if (basic && HasCtaFlag(other, kCtaBasicAudio)) theirs.Add(Bytes(kBasicSad, kSadSize));
  const Speakers speakers(other);
  CapChannels(theirs, Speakers(image), speakers);
  VisitDataBlocks(image, [&](CtaCursor& cursor) {
    if (cursor.Is(CEA_TAG_AUDIO)) return MixFormats(cursor, theirs);
    if (cursor.Is(CEA_TAG_SPEAKERS)) MixSpeakers(cursor, speakers.bits);
  });
  if (!basic) ClearCtaFlags(image, kCtaBasicAudio);
  if (HasSound(image)) return;
  VisitDataBlocks(image, [](CtaCursor& cursor) {
    if (IsSound(cursor)) cursor.Erase();
  });
}

}  // namespace reedid
