#include "edit_steps.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "commands.h"

namespace reedid::tool {
namespace {

using document::Edit;

constexpr EditStep kSteps[] = {
    {"--limit", "NAME", "a limit, as for 'reedid limit'",
     [](const std::string& word, const StepSettings& settings) {
       return document::LimitEdit(document::FindLimit(word), settings.rates);
     }},
    {"--phys", "ADDRESS", "a physical address",
     [](const std::string& word, const StepSettings& settings) {
       return document::AddressEdit(AskedAddress(word, settings.force));
     }},
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
