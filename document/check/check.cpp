#include "document/check/check.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/check/image_view.h"
#include "document/check/report.h"
#include "document/check/trial.h"

namespace reedid::document {
namespace {

std::vector<const Rule*> AllRules() {
  using namespace check;
  std::vector<const Rule*> all;
  for (const auto rules :
       {IdentityRules(), TimingRules(), SizeRules(), VideoRules(), LimitRules(), HdmiRules(), HdmiForumRules(),
        AudioRules(), HdrAndColorRules(), DisplayIdRules(), StructureRules(), CtaStructureRules()}) {
    for (const Rule& rule : rules) all.push_back(&rule);
  }
  return all;
}

}  // namespace

Finding& Finding::Mend(Repair kind, std::vector<Patch> bytes) {
  repair = bytes.empty() ? Repair::kNone : kind;
  changes = std::move(bytes);
  return *this;
}

std::span<const Rule* const> Rules() {
  static const std::vector<const Rule*> kAll = AllRules();
  return kAll;
}

const Rule* FindRule(std::string_view id) {
  const auto rules = Rules();
  const auto found = std::ranges::find_if(rules, [&](const Rule* rule) { return rule->id == id; });
  return found == rules.end() ? nullptr : *found;
}

const char* ToText(Severity severity) {
  constexpr const char* kTexts[] = {"note", "warning", "error"};
  return kTexts[static_cast<size_t>(severity)];
}

const char* ToText(RuleGroup group) {
  constexpr const char* kTexts[] = {"identity", "timings",        "range limits", "HDMI",
                                    "audio",    "HDR and colour", "DisplayID",    "structure"};
  return kTexts[static_cast<size_t>(group)];
}

const char* ToText(Repair repair) {
  constexpr const char* kTexts[] = {"none", "safe", "ask"};
  return kTexts[static_cast<size_t>(repair)];
}

std::string ToText(const Place& place) {
  std::string text = fmt::format("block {}", place.block);
  if (place.slot) text += fmt::format(", descriptor {}", *place.slot + 1);
  if (place.dataBlock) text += fmt::format(", data block {}", *place.dataBlock + 1);
  if (place.timing && !place.slot) text += fmt::format(", timing {}", *place.timing);
  return text + fmt::format(", byte {}", place.byte);
}

std::vector<Finding> Check(std::span<const uint8_t> image, int thisYear) {
  const std::vector<Finding> findings = check::RunRules(image, thisYear);
  std::vector<Finding> told = findings;
  for (Finding& finding : told) {
    if (finding.repair == Repair::kNone) continue;
    const check::Trial trial = check::Try(image, findings, finding, thisYear);
    if (trial.isBetter()) continue;
    finding.Mend(Repair::kNone, {});
    if (trial.broken != finding.rule) finding.values += fmt::format("; mending it would break {}", trial.broken->id);
  }
  return told;
}

std::vector<Finding> check::RunRules(std::span<const uint8_t> image, int thisYear) {
  const ImageView view(image, thisYear);
  std::vector<Finding> findings;
  for (const Rule* rule : Rules()) {
    if (rule->scope == RuleScope::kEdid && !view.isEdid) continue;
    Report report(*rule, findings);
    rule->run(view, report);
  }
  return findings;
}

}  // namespace reedid::document
