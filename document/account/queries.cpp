#include "document/account/queries.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <iterator>

#include "document/account/cta_audio.h"
#include "document/account/records.h"
#include "document/read/data_blocks.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

std::vector<OfferedTiming> TimingsOf(const Image& image) {
  std::vector<OfferedTiming> timings(EDID_GetTimings(image.handle(), nullptr, 0));
  EDID_GetTimings(image.handle(), timings.data(), static_cast<uint32_t>(timings.size()));
  return timings;
}

// Detailed timing descriptors and their like of DisplayID, which state every count.
bool IsDetailed(const OfferedTiming& timing) {
  static constexpr uint8_t kSources[] = {TIMING_DETAILED, TIMING_TYPE_I, TIMING_TYPE_II, TIMING_TYPE_VI,
                                         TIMING_TYPE_VII};
  return std::find(std::begin(kSources), std::end(kSources), timing.source) != std::end(kSources);
}

// A format that is told twice, in CTA-861 and in DisplayID, is one.
void AddFormat(const AudioFormat& format, Node& node) {
  const Json record = format;
  Json& formats = node.record["formats"];
  if (std::find(formats.begin(), formats.end(), record) != formats.end()) return;
  formats.push_back(record);
  node.Add(AudioFormatName(format), AudioFormatText(format));
}

uint32_t Area(const OfferedTiming& timing) {
  return uint32_t{timing.timing.hactive} * timing.timing.vactive;
}

}  // namespace

std::vector<uint32_t> AllRates(const Image& image) {
  std::vector<uint32_t> rates(EDID_GetRates(image.handle(), nullptr, 0));
  EDID_GetRates(image.handle(), rates.data(), static_cast<uint32_t>(rates.size()));
  return rates;
}

std::optional<TimingItem> PreferredOf(const Image& image) {
  TimingItem item = {TimingKind::kDetailed, 0, false, {}};
  EDID_GetPreferredTiming(image.handle(), &item.timing);
  return IsKnown(item) ? std::optional(item) : std::nullopt;
}

std::vector<OfferedTiming> DetailedTimings(const Image& image, TimingOrder order) {
  std::vector<OfferedTiming> timings = TimingsOf(image);
  std::erase_if(timings, [](const OfferedTiming& timing) { return !IsDetailed(timing); });
  const auto falling = [&timings](auto key) {
    std::stable_sort(timings.begin(), timings.end(),
                     [key](const OfferedTiming& a, const OfferedTiming& b) { return key(a) > key(b); });
  };
  if (order == TimingOrder::kRate) falling([](const OfferedTiming& timing) { return timing.rate; });
  if (order == TimingOrder::kArea) falling(Area);
  return timings;
}

Node DescribeTimings(const std::string& name, std::span<const OfferedTiming> timings) {
  Node node;
  for (size_t i = 0; i < timings.size(); ++i) {
    const TimingItem item = {TimingKind::kDetailed, 0, false, timings[i].timing};
    node.AddTiming(fmt::format("{}", i + 1), item, timings[i].timing.preferred != 0 ? ", preferred" : "");
  }
  const size_t count = node.timings.size();
  node.title = fmt::format("{}: {} detailed timing{}", name, count, count == 1 ? "" : "s");
  return node;
}

Node DescribeAudioFormats(const Image& image) {
  AudioFmtCap cap = {};
  EDID_GetAudioFmtCap(image.handle(), &cap);
  Node node;
  node.title = fmt::format("{}: audio formats", image.name());
  node.record = cap;
  node.record["formats"] = Json::array();
  ForEachCtaDataBlock(image, [&node](const CeaDataBlock& entry) {
    const auto record = Get<AudioFormatsRecord>(entry);
    for (size_t i = 0; record && i < record->count; ++i) AddFormat(record->formats[i], node);
  });
  if (node.fields.empty()) node.Add("Formats", "none");
  return node;
}

}  // namespace reedid::document
