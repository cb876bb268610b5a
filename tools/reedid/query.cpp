// rates, timings, preferred and audio: what does the display offer?

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "commands.h"
#include "document/account/detailed_timing.h"
#include "document/account/queries.h"
#include "document/account/tree_json.h"
#include "document/printable.h"
#include "inputs.h"
#include "terminal.h"

namespace reedid::tool {
namespace {

using document::Image;
using document::Node;
using document::TimingOrder;

// What the options of a query ask for.
template <class Options>
Answer AnswerOf(const Node& node, const Options& options, const Streams& streams) {
  return options.json ? Answer{"", ToJson(node)} : Answer{ToText(node, StyleFor(options.color, streams)), {}};
}

}  // namespace

// Alone, a rate to a line; among others, all rates on the line of their image.
Exit RunRates(const QueryOptions& options, Streams& streams) {
  return AnswerEach(options.inputs, options.json, streams, [](const Image& image, bool single) {
    std::vector<std::string> texts;
    Answer answer = {"", {{"frameRates", document::Json::array()}}};
    for (const uint32_t rate : document::AllRates(image)) {
      texts.push_back(document::RateText(rate));
      answer.json["frameRates"].push_back(rate / 1000.0);
      answer.text += texts.back() + " Hz\n";
    }
    if (!single) {
      answer.text = fmt::format("{}: {} Hz\n", document::WithoutControls(image.name()), fmt::join(texts, ", "));
    }
    return answer;
  });
}

Exit RunTimings(const TimingsOptions& options, Streams& streams) {
  const TimingOrder order = options.sort == "rate"   ? TimingOrder::kRate
                            : options.sort == "area" ? TimingOrder::kArea
                                                     : TimingOrder::kImage;
  return AnswerEach(options.inputs, options.json, streams, [&](const Image& image, bool) {
    return AnswerOf(document::DescribeTimings(image.name(), document::DetailedTimings(image, order)), options, streams);
  });
}

Exit RunPreferred(const QueryOptions& options, Streams& streams) {
  return AnswerEach(options.inputs, options.json, streams, [&](const Image& image, bool) {
    const std::optional<document::TimingItem> item = document::PreferredOf(image);
    if (!item) throw ToolError(Exit::kNo, fmt::format("{}: no preferred timing", image.name()));
    return AnswerOf(document::DescribeTiming(image.name(), *item), options, streams);
  });
}

Exit RunAudio(const QueryOptions& options, Streams& streams) {
  return AnswerEach(options.inputs, options.json, streams, [&](const Image& image, bool) {
    return AnswerOf(document::DescribeAudioFormats(image), options, streams);
  });
}

}  // namespace reedid::tool
