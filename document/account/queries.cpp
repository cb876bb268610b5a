#include "document/account/queries.h"

#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <iterator>

#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

constexpr uint16_t kUsualRates[] = {60, 50, 30, 25, 24};  // Hz

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

// Of the display itself, not of the adapters that it lets work with it.
bool IsOwn(const OfferedTiming& timing) {
  return timing.source >= TIMING_VIC || timing.source == TIMING_DETAILED;
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

std::vector<uint16_t> LinkRates(const Image& image) {
  std::vector<uint16_t> rates;
  for (const OfferedTiming& timing : TimingsOf(image)) {
    const uint32_t hertz = (timing.rate + 500) / 1000;
    if (IsOwn(timing) && hertz != 0 && hertz <= UINT16_MAX) rates.push_back(static_cast<uint16_t>(hertz));
  }
  std::sort(rates.begin(), rates.end(), std::greater());
  rates.erase(std::unique(rates.begin(), rates.end()), rates.end());
  for (const uint16_t usual : kUsualRates) {
    if (std::find(rates.begin(), rates.end(), usual) == rates.end()) rates.push_back(usual);
  }
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
  const NamedFlag formats[] = {{cap.lpcm, "L-PCM"},
                               {cap.dts, "DTS"},
                               {cap.dtsHd, "DTS-HD"},
                               {cap.dtsHdExt1, "DTS-HD extension 1"},
                               {cap.dtsHdExt2, "DTS-HD extension 2"},
                               {cap.dtsHdExt3, "DTS-HD extension 3"},
                               {cap.ac3, "AC-3"},
                               {cap.eac3, "Enhanced AC-3"},
                               {cap.eac3Ext, "Enhanced AC-3 with extension"},
                               {cap.mat, "MAT"},
                               {cap.matExt, "MAT with extension"}};
  node.Add("Formats", SetFlags(formats));
  return node;
}

}  // namespace reedid::document
