// All sound but two channels of L-PCM taken away, by bytes.
//
// Short audio descriptor (CTA-861, 7.5.2): format 6..3 and channels - 1 in 2..0 of byte 0; rates in byte 1; of L-PCM the
// sample sizes in byte 2. Speaker allocation (7.5.3): front left and right are bit 0 of its first byte.

#include "base/log.h"
#include "patch/cta.h"
#include "reedid/transforms.h"

namespace reedid {
namespace {

constexpr unsigned kSadSize = 3;
constexpr unsigned kLpcm = 1, kStereo = 1;                                     // format; channels - 1
constexpr uint8_t kBasicAudio[kSadSize] = {kLpcm << 3 | kStereo, 0x07, 0x01};  // up to 48 kHz, 16 bit

// Speakers and formats beyond two channels of L-PCM are all that these tell.
bool IsMultichannel(const CtaCursor& cursor) {
  return cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_AUDIO) || cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_HDMI_AUDIO) ||
         cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_ROOM_CONFIGURATION) ||
         cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_SPEAKER_LOCATION);
}

// The audio data block with the L-PCM descriptors of another, cut down to two channels. One that is cut joins another
// with two: what a sink plays with eight channels it plays with two.
class StereoBlock {
 public:
  explicit StereoBlock(Bytes block) {
    for (unsigned at = 1; at + kSadSize <= block.size(); at += kSadSize) {
      const Bytes sad = block.From(at).First(kSadSize);
      if (Bits(sad[0], 3, 4) == kLpcm) Add(sad);
    }
    if (size_ == 1) Append(Bytes(kBasicAudio, kSadSize));
    bytes_[0] = Low8(unsigned{CEA_TAG_AUDIO} << 5 | (size_ - 1));
  }
  Bytes view() const { return {bytes_, size_}; }

 private:
  void Add(Bytes sad) {
    const bool cut = Bits(sad[0], 0, 3) > kStereo;
    if (cut && stereoAt_ != 0) return Join(sad);
    if (!cut && hasCut_ && Bits(sad[0], 0, 3) == kStereo) return Join(sad);
    if (Bits(sad[0], 0, 3) >= kStereo) stereoAt_ = size_;
    Append(sad);
    if (cut) bytes_[stereoAt_] = kBasicAudio[0];
    hasCut_ = hasCut_ || cut;
  }
  void Join(Bytes sad) {
    for (unsigned i = 1; i < kSadSize; ++i) bytes_[stereoAt_ + i] = Low8(bytes_[stereoAt_ + i] | sad[i]);
    hasCut_ = true;
  }
  void Append(Bytes sad) {
    sad.CopyTo(bytes_ + size_);
    size_ += kSadSize;
  }

  uint8_t bytes_[REEDID_CEA_DATA_BLOCK_SIZE + kSadSize] = {};
  unsigned size_ = 1;
  unsigned stereoAt_ = 0;  // the last descriptor of two channels; 0 for none yet
  bool hasCut_ = false;    // and it stands for one that had more
};

void LimitSpeakers(CtaCursor& speakers) {
  constexpr uint8_t kFront[] = {0x01, 0x00, 0x00};
  const bool none = UsedEnd(speakers.bytes(), 1, static_cast<unsigned>(speakers.bytes().size())) == 1;
  if (none || speakers.bytes().size() <= sizeof kFront) return;
  for (unsigned i = 0; i < sizeof kFront; ++i) speakers.Set(1 + i, kFront[i]);
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t EDID_LimitToStereo(EdidHandle* handle) {
  if (handle == nullptr || handle->blocks == nullptr) return REEDID_ERR("invalid parameters");
  VisitCtaDataBlocks(*handle, [](CtaCursor& cursor) {
    if (IsMultichannel(cursor)) return cursor.Erase();
    if (cursor.Is(CEA_TAG_SPEAKERS)) return LimitSpeakers(cursor);
    // What holds no whole descriptor has no format to take away.
    if (cursor.Is(CEA_TAG_AUDIO) && cursor.bytes().size() > kSadSize) {
      cursor.Replace(StereoBlock(cursor.bytes()).view());
    }
  });
  return 0;
}
