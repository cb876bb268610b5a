#include "document/account/queries.h"

#include <fmt/format.h>

#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {

std::vector<uint16_t> AllRates(const Image& image) {
  std::vector<uint16_t> rates(REEDID_MAX_FRAME_RATES);
  rates.resize(EDID_GetAllFrameRate(image.handle(), rates.data(), REEDID_MAX_FRAME_RATES));
  return rates;
}

std::optional<TimingItem> PreferredOf(const Image& image) {
  TimingItem item = {TimingKind::kDetailed, 0, false, {}};
  EDID_GetPreferredTiming(image.handle(), &item.timing);
  return IsKnown(item) ? std::optional(item) : std::nullopt;
}

std::vector<DtdTiming> DetailedTimings(const Image& image, TimingOrder order) {
  std::vector<DtdTiming> timings(REEDID_MAX_DTDS);
  const uint32_t count = EDID_FindOutAllDTD(image.handle(), timings.data(), REEDID_MAX_DTDS);
  timings.resize(count);
  if (order == TimingOrder::kRate) SortDTDbyFrameRate(timings.data(), static_cast<int32_t>(count));
  if (order == TimingOrder::kArea) SortDTDbyResolution(timings.data(), count);
  return timings;
}

Node DescribeTimings(const std::string& name, std::span<const DtdTiming> timings) {
  Node node;
  for (size_t i = 0; i < timings.size(); ++i) {
    const TimingItem item = {TimingKind::kDetailed, 0, false, timings[i]};
    node.AddTiming(fmt::format("{}", i + 1), item, timings[i].preferred != 0 ? ", preferred" : "");
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
