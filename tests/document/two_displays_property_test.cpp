// What two displays have in common, over pairs of the built EDIDs, or of those of REEDID_CORPUS: nothing that either lacks, the
// same whichever comes first, and no finding that stood in neither. REEDID_PAIRS is how many pairs, else as many as take
// a few seconds.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <set>

#include "document/check/check.h"
#include "document/read/image.h"
#include "tests/document/sound_images.h"
#include "tests/support/corpus.h"
#include "tests/support/log_capture.h"
#include "tests/support/sample_images.h"

namespace reedid::document {
namespace {

using Named = std::pair<std::string, ByteVector>;

// What a display tells beside its timings and formats, as numbers of which less is less.
using Numbers = std::map<std::string, int>;

struct Told {
  std::vector<OfferedTiming> timings;
  std::vector<AudioFormat> formats;
  Numbers numbers;
  bool hdmi = false;
  bool cta = false;  // an extension of CTA-861
};

CeaDataBlock EntryOf(std::span<uint8_t> block) {
  const auto tag = static_cast<uint8_t>(block[0] >> 5);
  return {tag, tag == CEA_TAG_EXTENDED && block.size() > 1 ? block[1] : uint8_t{0}, static_cast<uint8_t>(block.size()),
          block.data()};
}

void TellHdmi(const CeaDataBlock& entry, Told& told) {
  H14b3dRecord r;
  if (CEA_GetH14b3D(&entry, &r) != 0) return;
  told.hdmi = true;
  told.numbers.merge(Numbers{{"hdmi TMDS", r.max_TMDS_Clock == 0 ? 165 : r.max_TMDS_Clock},
                             {"AI", r.supportsAI},
                             {"48 bit", r.DC_48bit},
                             {"36 bit", r.DC_36bit},
                             {"30 bit", r.DC_30bit},
                             {"deep 4:4:4", r.DC_Y444},
                             {"dual", r.DVI_Dual},
                             {"3D", r.threeD_present}});
}

void TellForum(const CeaDataBlock& entry, Told& told) {
  HfScdsRecord r;
  if ((entry.tag == CEA_TAG_VENDOR ? CEA_GetHFVSDBScds : CEA_GetHFSCDB)(&entry, &r) != 0) return;
  told.numbers.merge(Numbers{{"hdmi forum TMDS", r.TMDS_Character_Rate},
                             {"FRL", r.Max_FRL_Rate},
                             {"SCDC", r.scdcPresent},
                             {"DSC", r.DSC_1p2},
                             {"DSC FRL", r.DSC_Max_FRL_Rate},
                             {"slices", r.DSC_MaxSlices},
                             {"DSC 10", r.dsc10bpc},
                             {"DSC 12", r.dsc12bpc},
                             {"ALLM", r.allm},
                             {"FVA", r.fva},
                             {"VRR", r.VRRmin != 0},
                             {"above VRR minimum", r.VRRmin == 0 ? 0 : 64 - r.VRRmin},
                             {"VRR maximum", r.VRRmin == 0   ? 0
                                             : r.VRRmax == 0 ? 1024
                                                             : r.VRRmax}});
}

void TellExtended(std::span<const uint8_t> block, Told& told) {
  const auto flags = [&](const char* name, size_t from, size_t to) {
    for (size_t bit = 0; from + bit / 8 < std::min(to, block.size()); ++bit) {
      told.numbers[name + std::to_string(bit)] |= block[from + bit / 8] >> bit % 8 & 1;
    }
  };
  if (block[1] == CEA_EXT_TAG_COLORIMETRY) flags("colorimetry ", 2, 4);
  if (block[1] == CEA_EXT_TAG_VIDEO_CAPABILITY) told.numbers["selectable"] = block[2] >> 6;
  if (block[1] == CEA_EXT_TAG_DYNAMIC_HDR) told.numbers["dynamic metadata"] = 1;
  if (block[1] == CEA_EXT_TAG_VENDOR_VIDEO && block.size() > 4) {
    told.numbers["vendor video " + std::to_string(block[2] | block[3] << 8 | block[4] << 16)] = 1;
  }
  if (block[1] != CEA_EXT_TAG_STATIC_HDR) return;
  flags("curve ", 2, 3);
  if (block.size() > 4 && block[4] != 0) told.numbers["luminance"] = block[4];
}

// One format for each of its rates: two descriptors may tell the rates of one set.
void AddFormat(const AudioFormat& format, Told& told) {
  constexpr uint8_t AudioFormat::*kRates[] = {&AudioFormat::rate32k,  &AudioFormat::rate44k1, &AudioFormat::rate48k,
                                              &AudioFormat::rate88k2, &AudioFormat::rate96k,  &AudioFormat::rate176k4,
                                              &AudioFormat::rate192k};
  for (const auto rate : kRates) {
    if (format.formatCode == 0 || format.*rate == 0) continue;
    AudioFormat one = format;
    for (const auto other : kRates) one.*other = other == rate;
    told.formats.push_back(one);
  }
}

// Data blocks of a CTA-861 extension, or of a DisplayID block that holds some.
void TellDataBlocks(std::span<uint8_t> blocks, Told& told) {
  for (size_t at = 0, size = 0; at < blocks.size(); at += size) {
    size = (blocks[at] & 0x1Fu) + 1;
    if (at + size > blocks.size()) return;
    const std::span<uint8_t> data = blocks.subspan(at, size);
    const CeaDataBlock entry = EntryOf(data);
    const uint32_t oui = size > 3 ? data[1] | uint32_t{data[2]} << 8 | uint32_t{data[3]} << 16 : 0;
    const bool scdb = entry.tag == CEA_TAG_EXTENDED && entry.extTag == CEA_EXT_TAG_SINK_CAPABILITY;
    if (entry.tag == CEA_TAG_VENDOR && oui == REEDID_OUI_HDMI && !told.hdmi) TellHdmi(entry, told);
    if (scdb || (entry.tag == CEA_TAG_VENDOR && oui == REEDID_OUI_HDMI_FORUM)) TellForum(entry, told);
    if (entry.tag == CEA_TAG_EXTENDED && size > 2) TellExtended(data, told);
    AudioFormatsRecord audio;
    if (entry.tag != CEA_TAG_AUDIO || size < 4 || CEA_GetAudioFormats(&entry, &audio) != 0) continue;
    for (unsigned i = 0; i < audio.count; ++i) AddFormat(audio.formats[i], told);
  }
}

Told Tell(const Image& image) {
  Told told;
  told.timings = image.Timings();
  for (const EdidBlock& block : image.blocks()) {
    const std::span<uint8_t> bytes(block.bytes, block.size);
    if (block.type == EDID_BLOCK_VESA && bytes[19] >= 4 && bytes[20] >> 7 != 0 && (bytes[20] >> 4 & 7) != 0) {
      told.numbers["depth"] = bytes[20] >> 4 & 7;
    }
    for (size_t at = 5, size = 0; block.type == EDID_BLOCK_DISPID_EXT && at + 3 < bytes.size(); at += size) {
      size = bytes[at + 2] + 3u;
      if (bytes[at] != DISPID20_TAG_CTA || at + size > bytes.size()) continue;
      TellDataBlocks(bytes.subspan(at + 3, size - 3), told);
    }
    if (block.type != EDID_BLOCK_CEA || bytes[1] < 2) continue;
    told.cta = true;
    for (const unsigned bit : {4u, 5u, 6u}) told.numbers["CTA flag " + std::to_string(bit)] |= bytes[3] >> bit & 1;
    if (bytes[1] < 3) continue;
    const size_t end = bytes[2] == 0 ? 127 : std::clamp<size_t>(bytes[2], 4, 127);
    TellDataBlocks(bytes.subspan(4, end - 4), told);
  }
  if (told.numbers["CTA flag 6"] != 0) {
    AudioFormat basic = {};
    basic.formatCode = 1;
    basic.channels = 2;
    basic.rate32k = basic.rate44k1 = basic.rate48k = basic.bits16 = 1;
    AddFormat(basic, told);
  }
  return told;
}

bool Near(double a, double b) {
  return std::abs(a - b) <= std::max(a, b) / 900 + 15;
}

bool IsVga(const OfferedTiming& t) {
  return t.timing.hactive == 640 && t.timing.vactive == 480 && Near(t.rate, 59940);
}

// Whether a display offers the timing in one of its forms: in full colour, or in 4:2:0.
bool Offers(const Told& told, const OfferedTiming& t, bool in420) {
  return std::any_of(told.timings.begin(), told.timings.end(), [&](const OfferedTiming& other) {
    return other.timing.hactive == t.timing.hactive && other.timing.vactive == t.timing.vactive &&
           other.timing.interlaced == t.timing.interlaced && Near(other.timing.pixelClock, t.timing.pixelClock) &&
           Near(other.rate, t.rate) && (in420 ? other.ycc420 != YCC420_NO : other.ycc420 != YCC420_ONLY);
  });
}

// Every field of a format is a flag or a number of which less is less; the first two are its codes.
bool Covers(const AudioFormat& whole, const AudioFormat& part) {
  uint8_t a[offsetof(AudioFormat, maxBitrate)], b[sizeof a];
  std::memcpy(a, &whole, sizeof a);
  std::memcpy(b, &part, sizeof b);
  bool covers = a[0] == b[0] && a[1] == b[1] && (whole.maxBitrate == 0 || part.maxBitrate <= whole.maxBitrate);
  for (size_t i = 2; i < sizeof a; ++i) covers = covers && b[i] <= a[i];
  return covers;
}

std::string Name(const OfferedTiming& t) {
  return std::to_string(t.timing.hactive) + "x" + std::to_string(t.timing.vactive) + "@" + std::to_string(t.rate) +
         " " + std::to_string(t.timing.pixelClock) + " source " + std::to_string(t.source) + " 420 " +
         std::to_string(t.ycc420);
}

// What `part` offers and `whole` does not, in a few words; empty when there is nothing.
std::string Beyond(const Told& part, const Told& whole) {
  std::string beyond;
  for (const OfferedTiming& t : part.timings) {
    if (t.ycc420 != YCC420_ONLY && !IsVga(t) && !Offers(whole, t, false)) beyond += "\n  " + Name(t);
    if (t.ycc420 != YCC420_NO && !Offers(whole, t, true)) beyond += "\n  4:2:0 of " + Name(t);
  }
  for (const AudioFormat& format : part.formats) {
    const auto covers = [&](const AudioFormat& other) { return Covers(other, format); };
    if (std::none_of(whole.formats.begin(), whole.formats.end(), covers)) {
      beyond +=
          "\n  audio format " + std::to_string(format.formatCode) + ", channels " + std::to_string(format.channels);
    }
  }
  for (const auto& [name, number] : part.numbers) {
    const auto other = whole.numbers.find(name);
    const bool told = other != whole.numbers.end();
    // What a display without a block for it is counted on, or says nothing about.
    if (!whole.hdmi && name == "hdmi TMDS" && number <= 165) continue;
    if (!told && (name == "luminance" || name == "depth")) continue;
    // Only an extension of CTA-861 has the block or the flag.
    if (!whole.cta && (name == "selectable" || (name == "CTA flag 6" && !whole.formats.empty()))) continue;
    if (number > (told ? other->second : 0)) beyond += "\n  " + name + " " + std::to_string(number);
  }
  return beyond;
}

std::optional<ByteVector> Common(const ByteVector& a, const ByteVector& b) {
  const Image image = Image::FromBytes("a", a), other = Image::FromBytes("b", b);
  if (EDID_LimitToCommon(image.handle(), other.handle()) != 0) return std::nullopt;
  Notes notes;
  return image.Generate(notes);
}

std::set<std::string> Findings(const ByteVector& bytes) {
  std::set<std::string> found;
  for (const Finding& finding : Check(bytes, test::kThisYear)) found.insert(finding.rule->id);
  return found;
}

bool IsSound(const ByteVector& bytes) {
  for (const Finding& finding : Check(bytes, test::kThisYear)) {
    if (finding.rule->severity != Severity::kNote) return false;
  }
  return true;
}

// As a writer puts them right.
std::vector<Named> Images() {
  std::vector<Named> images = {{"sound television", test::Build({})}, {"sound monitor", test::Monitor()}};
  for (const test::SampleImage& sample : test::SampleImages()) images.emplace_back(sample.name, sample.bytes);
  for (const auto& [name, bytes] : test::Corpus()) images.emplace_back(name, bytes);
  std::vector<Named> whole;
  for (const auto& [name, bytes] : images) {
    try {
      Notes notes;
      whole.emplace_back(name, Image::FromBytes(name, bytes).Generate(notes));
    } catch (const Error&) {
      continue;  // no EDID
    }
  }
  return whole;
}

std::vector<std::pair<size_t, size_t>> Pairs(size_t images) {
  const char* asked = std::getenv("REEDID_PAIRS");
  const size_t count = asked == nullptr ? 300 : std::strtoul(asked, nullptr, 10);
  std::mt19937 random(19);
  std::vector<std::pair<size_t, size_t>> pairs;
  while (pairs.size() < count) pairs.emplace_back(random() % images, random() % images);
  return pairs;
}

TEST(TwoDisplaysProperty, CommonIsWhatBothHave) {
  const std::vector<Named> images = Images();
  test::Quietly([&] {
    for (const auto& [i, j] : Pairs(images.size())) {
      const auto& [name, a] = images[i];
      const auto& [otherName, b] = images[j];
      SCOPED_TRACE(name + " and " + otherName);
      const auto first = Common(a, b), second = Common(b, a);
      if (!first || !second) {
        ADD_FAILURE() << "refused";
        continue;
      }
      const Told ours = Tell(Image::FromBytes("a", a)), theirs = Tell(Image::FromBytes("b", b));
      const Told common = Tell(Image::FromBytes("c", *first)), reverse = Tell(Image::FromBytes("r", *second));
      EXPECT_EQ(Beyond(common, ours), "") << "beyond the first";
      EXPECT_EQ(Beyond(common, theirs), "") << "beyond the second";
      if (ours.hdmi && theirs.hdmi) {
        EXPECT_EQ(Beyond(common, reverse), "") << "beyond the other way round";
      }
      EXPECT_TRUE(!common.timings.empty() || !Image::FromBytes("a", a).IsEdid());
      std::set<std::string> stood = Findings(a);
      stood.merge(Findings(b));
      for (const std::string& rule : Findings(*first)) {
        EXPECT_TRUE(stood.contains(rule)) << rule;
      }
      EXPECT_TRUE(Common(*first, b) == first) << "twice is not once";
    }
  });
}

TEST(TwoDisplaysProperty, CommonWithItselfChangesNothing) {
  test::Quietly([&] {
    for (const auto& [name, bytes] : Images()) {
      if (!IsSound(bytes)) continue;
      EXPECT_EQ(Common(bytes, bytes), bytes) << name;
    }
  });
}

}  // namespace
}  // namespace reedid::document
