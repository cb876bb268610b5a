#include "edit_steps.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "commands.h"
#include "document/edit/two_displays.h"
#include "document/printable.h"
#include "input.h"
#include "tool_error.h"

namespace reedid::tool {
namespace {

using document::Edit;

// A link with one limit: the option is its name in messages.
template <EdidLink (*kParse)(const std::string&)>
Edit MakeLink(const std::string& word, const StepSettings& settings) {
  return document::LinkEdit(kParse(word), word, settings.rates);
}

Edit MakeDolby(const std::string& word, const StepSettings&) {
  if (word != "low-latency") {
    throw ToolError(Exit::kUsage, fmt::format("--dolby '{}': there is low-latency", document::Shortened(word)));
  }
  return document::DolbyLowLatencyEdit();
}

constexpr EditStep kSteps[] = {
    {"--limit", "NAME", "a limit, as for 'reedid limit'",
     [](const std::string& word, const StepSettings& settings) {
       return document::LimitEdit(document::FindLimit(word), settings.rates);
     }},
    {"--phys", "ADDRESS", "a physical address",
     [](const std::string& word, const StepSettings& settings) {
       return document::AddressEdit(AskedAddress(word, settings.force));
     }},
    {"--max-clock", "MHZ", "the fastest pixel clock", MakeLink<document::ParseMaxClock>},
    {"--max", "WxH@HZ", "the largest picture and, of any, the highest rate", MakeLink<document::ParseMaxPicture>},
    {"--max-rate", "HZ", "the highest rate", MakeLink<document::ParseMaxRate>},
    {"--max-frl", "GBIT", "the fastest FRL rate: 9, 18, 24, 32, 40 or 48", MakeLink<document::ParseMaxFrl>},
    {"--dolby", "FORM", "low-latency: Dolby Vision in no other form", MakeDolby},
    {"--common", "EDID", "what another display takes, too",
     [](const std::string& word, const StepSettings&) { return document::CommonEdit(ReadImage(word)); }},
    {"--audio-from", "EDID", "the sound of another display",
     [](const std::string& word, const StepSettings&) { return document::AudioEdit(ReadImage(word)); }},
};

}  // namespace

std::span<const EditStep> EditSteps() {
  return kSteps;
}

const EditStep& FindStep(const char* option) {
  const std::string_view wanted = option;
  return *std::find_if(std::begin(kSteps), std::end(kSteps),
                       [wanted](const EditStep& step) { return wanted == step.option; });
}

}  // namespace reedid::tool
