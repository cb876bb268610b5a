// rates, timings, preferred and audio: what does the display offer?

#include "query.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "commands.h"
#include "describe.h"
#include "inputs.h"
#include "records.h"
#include "terminal.h"

namespace reedid::tool {
namespace {

constexpr size_t kMostTimings = 256;

Node TimingsNode(const std::vector<DtdTiming>& timings) {
  Node node;
  for (size_t i = 0; i < timings.size(); ++i) {
    const TimingItem item = {TimingKind::kDetailed, 0, false, timings[i]};
    node.AddTiming(fmt::format("{}", i + 1), item, timings[i].preferred != 0 ? ", preferred" : "");
  }
  return node;
}

std::vector<DtdTiming> SortedTimings(const Image& image, const std::string& order) {
  std::vector<DtdTiming> timings(kMostTimings);  // more than the count, which has 8 bits
  const uint32_t count = EDID_FindOutAllDTD(image.handle(), timings.data(), kMostTimings);
  timings.resize(count);
  if (order == "rate") SortDTDbyFrameRate(timings.data(), static_cast<int32_t>(count));
  if (order == "area") SortDTDbyResolution(timings.data(), count);
  return timings;
}

Node AudioNode(const Image& image) {
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

// What the options of a query ask for.
template <class Options>
Answer AnswerOf(const Node& node, const Options& options, const Streams& streams) {
  return options.json ? Answer{"", ToJson(node)} : Answer{ToText(node, StyleFor(options.color, streams)), {}};
}

}  // namespace

std::vector<uint16_t> AllRates(const Image& image) {
  std::vector<uint16_t> rates(255);
  rates.resize(EDID_GetAllFrameRate(image.handle(), rates.data(), 255));
  return rates;
}

std::optional<TimingItem> PreferredOf(const Image& image) {
  TimingItem item = {TimingKind::kDetailed, 0, false, {}};
  EDID_GetPreferredTiming(image.handle(), &item.timing);
  return IsKnown(item) ? std::optional(item) : std::nullopt;
}

// Alone, a rate to a line; among others, all rates on the line of their image.
Exit RunRates(const QueryOptions& options, Streams& streams) {
  return AnswerEach(options.inputs, options.json, streams, [](const Image& image, bool single) {
    const std::vector<uint16_t> rates = AllRates(image);
    Answer answer = {"", {{"frameRates", rates}}};
    for (const unsigned rate : rates) answer.text += fmt::format("{} Hz\n", rate);
    if (!single) answer.text = fmt::format("{}: {} Hz\n", WithoutControls(image.name()), fmt::join(rates, ", "));
    return answer;
  });
}

Exit RunTimings(const TimingsOptions& options, Streams& streams) {
  return AnswerEach(options.inputs, options.json, streams, [&](const Image& image, bool) {
    Node node = TimingsNode(SortedTimings(image, options.sort));
    const size_t count = node.timings.size();
    node.title = fmt::format("{}: {} detailed timing{}", image.name(), count, count == 1 ? "" : "s");
    return AnswerOf(node, options, streams);
  });
}

Exit RunPreferred(const QueryOptions& options, Streams& streams) {
  return AnswerEach(options.inputs, options.json, streams, [&](const Image& image, bool) {
    const std::optional<TimingItem> item = PreferredOf(image);
    if (!item) throw ToolError(Exit::kNo, fmt::format("{}: no preferred timing", image.name()));
    return AnswerOf(DescribeTiming(image.name(), *item), options, streams);
  });
}

Exit RunAudio(const QueryOptions& options, Streams& streams) {
  return AnswerEach(options.inputs, options.json, streams,
                    [&](const Image& image, bool) { return AnswerOf(AudioNode(image), options, streams); });
}

}  // namespace reedid::tool
