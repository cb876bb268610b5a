// Sound: audio blocks, speakers, and the flag that announces both.
#include <fmt/format.h>

#include <algorithm>
#include <bit>

#include "document/check/draft.h"
#include "document/check/image_view.h"
#include "document/check/report.h"

namespace reedid::document::check {
namespace {

constexpr unsigned kBasicAudio = 0x40, kLpcm = 1, kExtendedFormat = 15;

// Channels of the widest L-PCM descriptor; 0 without one.
unsigned LpcmChannels(const ImageView& view) {
  unsigned channels = 0;
  for (const DataBlock& block : view.dataBlocks) {
    if (block.kind != kAudio) continue;
    for (size_t at = 1; at + 3 <= block.bytes.size(); at += 3) {
      if ((block.bytes[at] >> 3 & 0x0F) == kLpcm) channels = std::max(channels, (block.bytes[at] & 7) + 1);
    }
  }
  return channels;
}

void WithoutBasicAudio(const ImageView& view, Report& report) {
  const auto isSound = [](const DataBlock& block) {
    return block.kind == kAudio || block.kind == kSpeaker ||
           (block.kind >= kExtended + 0x11 && block.kind <= kExtended + 0x14);
  };
  const auto found = std::ranges::find_if(view.dataBlocks, isSound);
  const auto hasFlag = [](const CtaBlock& cta) { return (cta.flags & kBasicAudio) != 0; };
  if (found == view.dataBlocks.end() || std::ranges::any_of(view.ctas, hasFlag)) return;
  Draft draft(view);
  for (const CtaBlock& cta : view.ctas) draft[cta.at + 3] |= kBasicAudio;
  report.Add(found->place, "bit 6 of the CTA header is clear").Mend(Repair::kSafe, draft.Changes());
}

// What is wrong with one descriptor (CTA-861, 7.5.2); null when nothing is.
const char* DescriptorFault(unsigned b1, unsigned b2, unsigned b3) {
  const unsigned format = b1 >> 3 & 0x0F, code = b3 >> 3;
  if (format == 0) return "format 0";
  if (format == kExtendedFormat) return code == 0 || code == 9 || code >= 16 ? "an unknown extended format" : nullptr;
  if (((b1 | b2) & 0x80) != 0) return "a reserved bit";
  if (format == kLpcm && (b2 & 0x7F) == 0) return "L-PCM without a rate";
  if (format == kLpcm && (b3 & 7) == 0) return "L-PCM without a sample size";
  return (format == kLpcm || format == 14) && code != 0 ? "reserved bits" : nullptr;
}

void DescriptorFields(const ImageView& view, Report& report) {
  for (const DataBlock& block : view.dataBlocks) {
    if (block.kind != kAudio) continue;
    if (block.L() % 3 != 0) report.Add(block.place, fmt::format("{} bytes of payload", block.L()));
    for (size_t at = 1; at + 3 <= block.bytes.size(); at += 3) {
      const unsigned b1 = block.bytes[at], b2 = block.bytes[at + 1], b3 = block.bytes[at + 2];
      const char* fault = DescriptorFault(b1, b2, b3);
      if (fault == nullptr) continue;
      Place place = view.PlaceAt(block.at + at);
      place.dataBlock = block.index;
      report.Add(place, fmt::format("{:02x} {:02x} {:02x}: {}", b1, b2, b3, fault));
    }
  }
}

void SpeakersMissing(const ImageView& view, Report& report) {
  const unsigned channels = LpcmChannels(view);
  if (channels <= 2 || view.First(kSpeaker) != nullptr) return;
  report.Add(view.First(kAudio)->place, fmt::format("{} channels and no speaker block", channels));
}

void AllocationDoubtful(const ImageView& view, Report& report) {
  constexpr unsigned kPairs[] = {2, 1, 1, 2, 1, 2, 2, 2, 2, 1, 1};  // speakers of bits 0 to 10
  for (const DataBlock& block : view.dataBlocks) {
    if (block.kind != kSpeaker) continue;
    const unsigned bits = block.bytes.Little(1, 3);
    unsigned speakers = 0;
    for (size_t i = 0; i < std::size(kPairs); ++i) speakers += (bits >> i & 1) * kPairs[i];
    const unsigned channels = LpcmChannels(view);
    if (speakers != 0 && bits >> 11 == 0 && speakers >= channels) continue;
    report.Add(block.place, fmt::format("allocation {:06x}, {} speakers for {} channels", bits, speakers, channels));
  }
}

constexpr RuleGroup kGroup = RuleGroup::kAudio;
constexpr RuleScope kEdid = RuleScope::kEdid;

constexpr Rule kRules[] = {
    {"audio-without-basic-audio", Severity::kError, kGroup, kEdid, "CTA-861-I, 7.3.3",
     "A source that asks the flag sends no sound.",
     "Audio or speaker blocks are there, but no CTA extension has bit 6 of its header set, which says that the display "
     "takes sound at all.",
     "Set bit 6 of byte 3 in every CTA extension.", WithoutBasicAudio},
    {"audio-descriptor-fields", Severity::kWarning, kGroup, kEdid, "CTA-861-I, 7.5.2",
     "Drivers skip the format, or the whole list.",
     "A short audio descriptor has a reserved format or bit, or is L-PCM without a rate or a sample size; or the block "
     "is "
     "not a whole number of descriptors of three bytes.",
     "Correct the descriptor or take it out.", DescriptorFields},
    {"speakers-missing", Severity::kWarning, kGroup, kEdid, "CTA-861-I, 7.5.3",
     "Sources send two channels where they do not know of more speakers.",
     "More than two channels of L-PCM are announced, and no speaker allocation block tells where they go.",
     "Add a speaker allocation block.", SpeakersMissing},
    {"speaker-allocation-doubtful", Severity::kNote, kGroup, kEdid, "CTA-861-I, 7.5.3",
     "Channels are mixed down or left out.",
     "The speaker allocation names no speaker, uses bits for speakers that few sources know, or fewer speakers than "
     "L-PCM "
     "has channels.",
     "Allocate the speakers that there are.", AllocationDoubtful},
};

}  // namespace

std::span<const Rule> AudioRules() {
  return kRules;
}

}  // namespace reedid::document::check
