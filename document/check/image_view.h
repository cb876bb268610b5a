// The bytes of an image, taken apart once for all rules. A view holds addresses and numbers only: it keeps what the
// bytes say, right or wrong, and reads nothing beyond them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "document/check/check.h"
#include "reedid/tags.h"

namespace reedid::document::check {

inline constexpr size_t kBlockSize = 128;
inline constexpr size_t kSlotSize = 18;

// Bytes of a structure; what lies beyond its end reads as 0.
class Bytes {
 public:
  Bytes() = default;
  explicit Bytes(std::span<const uint8_t> bytes) : bytes_(bytes) {}
  unsigned operator[](size_t at) const { return at < bytes_.size() ? bytes_[at] : 0u; }
  size_t size() const { return bytes_.size(); }
  auto begin() const { return bytes_.begin(); }
  auto end() const { return bytes_.end(); }
  Bytes From(size_t at, size_t count = std::dynamic_extent) const;
  unsigned Little(size_t at, size_t count) const;  // least significant byte first
  bool AllZero() const;
  std::span<const uint8_t> span() const { return bytes_; }

 private:
  std::span<const uint8_t> bytes_;
};

// Clock and counts as EDID 1.4 table 3.21 has them: lines are those of a field when interlaced.
struct Timing {
  uint32_t clock = 0;  // kHz
  unsigned hActive = 0, hBlank = 0, hFront = 0, hSync = 0;
  unsigned vActive = 0, vBlank = 0, vFront = 0, vSync = 0;
  bool interlaced = false;

  double Mhz() const { return clock / 1000.0; }
  double LineRate() const;  // kHz; 0 without a total
  double Rate() const;      // Hz, of fields when interlaced; 0 without a total
  unsigned FrameLines() const { return interlaced ? 2 * vActive : vActive; }
  bool HasTotals() const { return hActive != 0 && hBlank != 0 && vActive != 0 && vBlank != 0; }
  bool SyncBeyondBlanking() const { return hFront + hSync > hBlank || vFront + vSync > vBlank; }
};

// The timing of a video identification code; none for codes without one.
std::optional<Timing> TimingOfVic(unsigned vic);

struct DetailedTiming : Timing {
  Place place;
  unsigned number = 0;             // of the image, from 1
  unsigned width = 0, height = 0;  // mm
  bool isFirst = false;            // stands in the first slot of the base block
  bool HasSize() const { return width != 0 && height != 0; }
  bool HasPlausibleClock() const { return clock >= 10000; }
};

// A slot of the base block (EDID 1.4, 3.10).
struct Slot {
  unsigned index = 0;
  size_t at = 0;
  Bytes bytes;
  bool isDtd = false;
  unsigned tag = 0;
  bool isText = false;  // name, serial text or free text; a panel maker's private ones are none
};

// The display range limits descriptor (EDID 1.4, table 3.26).
struct RangeLimits {
  Slot slot;
  unsigned formula = 0;                             // byte 10
  unsigned vMin = 0, vMax = 0, hMin = 0, hMax = 0;  // Hz, kHz, offsets added
  unsigned maxClock = 0;                            // MHz, 0 = not stated
  bool vOpen = false, hOpen = false;                // before EDID 1.4 an FF has no upper bound

  // Each with the play that rounding needs.
  bool RateAbove(const Timing& timing) const { return !vOpen && timing.Rate() > vMax + 1.0; }
  bool RateBelow(const Timing& timing) const { return timing.Rate() < vMin - 1.0; }
  bool LineRateAbove(const Timing& timing) const { return !hOpen && timing.LineRate() > hMax + 1.0; }
  bool LineRateBelow(const Timing& timing) const { return hMin != hMax && timing.LineRate() < hMin - 1.0; }
  bool ClockAbove(const Timing& timing) const { return maxClock != 0 && timing.Mhz() > maxClock + 5.0; }
  bool Misses(const Timing& timing) const;
};

// What a data block of a CTA extension is: its tag, or kExtended with its extended tag.
inline constexpr unsigned kAudio = CEA_TAG_AUDIO, kVideo = CEA_TAG_VIDEO, kVendor = CEA_TAG_VENDOR,
                          kSpeaker = CEA_TAG_SPEAKERS, kExtended = CEA_TAG_EXTENDED << 8,
                          kVideoCapability = kExtended + CEA_EXT_TAG_VIDEO_CAPABILITY,
                          kColorimetry = kExtended + CEA_EXT_TAG_COLORIMETRY,
                          kHdrStatic = kExtended + CEA_EXT_TAG_STATIC_HDR,
                          kNativeResolution = kExtended + CEA_EXT_TAG_NATIVE_RESOLUTION,
                          kY420Video = kExtended + CEA_EXT_TAG_420_VIDEO, kY420Map = kExtended + CEA_EXT_TAG_420_MAP,
                          kExtensionOverride = kExtended + CEA_EXT_TAG_EXTENSION_OVERRIDE,
                          kSinkCapability = kExtended + CEA_EXT_TAG_SINK_CAPABILITY;

struct DataBlock {
  size_t at = 0;
  unsigned cta = 0;    // number of its CTA extension
  unsigned index = 0;  // in that extension
  unsigned kind = 0;
  Bytes bytes;  // with the header
  Place place;
  unsigned L() const { return static_cast<unsigned>(bytes.size()) - 1; }
  bool IsVendor(unsigned oui) const { return kind == kVendor && L() >= 3 && bytes.Little(1, 3) == oui; }
};

// A CTA extension (CTA-861, 7.3).
struct CtaBlock {
  size_t at = 0;
  unsigned block = 0;
  Bytes bytes;
  unsigned revision = 0, dtdOffset = 0, flags = 0;
  size_t timingsEnd = 0;             // first byte that no timing uses
  std::optional<size_t> overlongAt;  // a data block that reaches beyond the data block collection
};

// A code of a video block (CTA-861, 7.5.1).
struct Svd {
  size_t at = 0;
  unsigned code = 0;
  unsigned vic = 0;  // 0 for a code that is none
  bool native = false;
  std::optional<Timing> timing;
  const DataBlock* dataBlock = nullptr;
};

// The HDMI vendor block (HDMI 1.4b, 8.3.2).
struct HdmiBlock {
  const DataBlock* block = nullptr;
  unsigned flags = 0;    // byte 6
  unsigned maxTmds = 0;  // MHz, 0 = not stated
  unsigned wanted = 0;   // bytes that its flags announce
  bool hasVideo = false;
  unsigned imageSize = 0;  // 1 aspect ratio, 2 cm, 3 units of 5 cm
  bool has3d = false;
  unsigned multi3d = 0;  // 1 structures, 2 structures and mask
  Bytes vics, part3d;
};

// What an HDMI 2.x sink tells of itself, in either block (HDMI 2.1, table 10-7).
struct SinkCapability {
  const DataBlock* block = nullptr;
  unsigned Byte(unsigned number) const { return block->bytes[3 + number]; }  // PB1 is the version
  size_t At(unsigned number) const { return block->at + 3 + number; }
  unsigned Count() const { return block->L() < 3 ? 0 : block->L() - 3; }
  unsigned maxTmds() const { return Byte(2) * 5; }  // MHz, 0 = not stated
  unsigned frlRate() const { return Byte(4) >> 4; }
};

struct SectionBlock {
  size_t at = 0;
  unsigned index = 0;
  unsigned tag = 0;
  Bytes bytes;  // with the 3-byte header
  unsigned L() const { return static_cast<unsigned>(bytes.size()) - 3; }
};

// A DisplayID section, from its version byte.
struct Section {
  size_t at = 0;
  unsigned block = 0;
  bool isExtension = false;
  Bytes bytes;           // with the checksum, as far as they are there
  unsigned length = 0;   // of the data blocks, as stated
  bool isWhole = false;  // the stated length fits
  std::vector<SectionBlock> dataBlocks;
  size_t used = 0;                   // bytes up to the end of the last data block
  std::optional<size_t> overlongAt;  // a data block that reaches beyond the section
  unsigned version() const { return bytes[0]; }
};

struct SectionTiming : Timing {
  Place place;
};

struct ImageView {
  ImageView(std::span<const uint8_t> image, int thisYear);
  ImageView(const ImageView&) = delete;  // it points into itself
  ImageView& operator=(const ImageView&) = delete;

  Bytes image;
  int thisYear;
  bool isEdid = false;
  unsigned blockCount = 0;
  unsigned minor = 0;
  bool digital = false;
  std::vector<Slot> slots;
  std::vector<CtaBlock> ctas;
  std::vector<DataBlock> dataBlocks;
  std::vector<Section> sections;
  std::vector<SectionTiming> sectionTimings;  // types I and VII
  std::vector<DetailedTiming> dtds;
  std::vector<Svd> svds;
  std::vector<Svd> y420Svds;  // 4:2:0 only
  std::optional<RangeLimits> range;
  std::optional<HdmiBlock> hdmi;
  std::optional<SinkCapability> sink;
  const DataBlock* videoCapability = nullptr;
  const DataBlock* extensionOverride = nullptr;
  unsigned width = 0, height = 0;                // of the base block, mm; 0 unless both are told
  bool sizeIsRatio = false;                      // the HDMI block says so
  unsigned largestWidth = 0, largestHeight = 0;  // told anywhere, mm
  bool otherSize = false;                        // told outside the base block

  const DataBlock* First(unsigned kind) const;
  Bytes Block(unsigned index) const { return image.From(index * kBlockSize, kBlockSize); }
  unsigned CtaFlags() const { return ctas.empty() ? 0 : ctas.front().flags; }
  bool ListsVic(unsigned vic) const;
  bool SizeIsKnown() const { return width != 0 && height != 0 && !sizeIsRatio; }
  bool firstIsPreferred() const { return minor >= 4 || (image[0x18] & 2) != 0; }
  bool continuous() const { return (image[0x18] & 1) != 0; }
  // Whether something counts the codes of the video blocks: a 4:2:0 map or a list of 3D formats.
  bool VideoCodesAreCounted() const;
  Place PlaceAt(size_t at) const;

 private:
  void ReadBase();
  void ReadCta(unsigned block);
  void ReadSection(size_t at, unsigned block, bool isExtension);
  void ReadDtd(size_t at, std::optional<unsigned> slot);
  void ReadCodes();
  void ReadHdmi(const DataBlock& block);
  void ReadSizes();
  void ReadSectionTimings(const Section& section);
};

Place PlaceOf(const ImageView& view, const Slot& slot);
Place PlaceOf(const ImageView& view, const SectionBlock& block);

}  // namespace reedid::document::check
