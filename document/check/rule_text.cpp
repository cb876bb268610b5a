#include "document/check/rule_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace reedid::document {
namespace {

constexpr int kJsonVersion = 1;
constexpr Severity kSeverities[] = {Severity::kError, Severity::kWarning, Severity::kNote};

size_t CountOf(std::span<const Finding> findings, Severity severity) {
  return static_cast<size_t>(std::ranges::count(findings, severity, &Finding::severity));
}

std::string Sentence(const Finding& finding) {
  return fmt::format("{}: {}. {}", ToText(finding.place), finding.values, finding.rule->advice);
}

// What a person can have done about a finding.
std::string WithRepair(const Finding& finding) {
  if (finding.repair == Repair::kSafe) return Sentence(finding) + " (reedid fix)";
  if (finding.repair == Repair::kNone) return Sentence(finding);
  return fmt::format("{} (reedid fix --rule {})", Sentence(finding), finding.rule->id);
}

Json PlaceJson(const Place& place) {
  Json json = {{"block", place.block}, {"byte", place.byte}, {"offset", place.at}};
  if (place.slot) json["descriptor"] = *place.slot + 1;
  if (place.dataBlock) json["dataBlock"] = *place.dataBlock + 1;
  if (place.timing) json["timing"] = *place.timing;
  return json;
}

}  // namespace

std::string RuleText(const Rule& rule) {
  return fmt::format("{}: {} ({}; {})\n\n{}\n\n{}\n\n{}\n", rule.id, ToText(rule.severity), ToText(rule.group),
                     rule.standard, rule.why, rule.explanation, rule.advice);
}

std::string RuleList() {
  std::string text;
  const Rule* last = nullptr;
  for (const Rule* rule : Rules()) {
    if (last == nullptr || last->group != rule->group) {
      text += fmt::format("{}{}\n", last == nullptr ? "" : "\n", ToText(rule->group));
    }
    text += fmt::format("  {:<31} {:<8} {}\n", rule->id, ToText(rule->severity), rule->why);
    last = rule;
  }
  return text;
}

std::string RulesMarkdown() {
  std::string text =
      "# Rules\n\nWhat `reedid check` looks for. An error may stop a source, a warning contradicts a standard, a note "
      "is "
      "worth knowing. This page is\nthe output of `reedid explain --markdown`.\n";
  const Rule* last = nullptr;
  for (const Rule* rule : Rules()) {
    if (last == nullptr || last->group != rule->group) text += fmt::format("\n## {}\n", ToText(rule->group));
    text += fmt::format("\n### {}\n\n{}; {}.\n\n{}\n\n{}\n\n{}\n", rule->id, ToText(rule->severity), rule->standard,
                        rule->why, rule->explanation, rule->advice);
    last = rule;
  }
  return text;
}

std::string CountText(std::span<const Finding> findings) {
  std::string text;
  for (const Severity severity : kSeverities) {
    const size_t count = CountOf(findings, severity);
    if (count == 0) continue;
    text += fmt::format("{}{} {}{}", text.empty() ? "" : ", ", count, ToText(severity), count == 1 ? "" : "s");
  }
  return text.empty() ? "no findings" : text;
}

Node FindingsNode(const std::string& title, std::span<const Finding> findings) {
  Node node;
  node.title = title;
  for (const Severity severity : kSeverities) {
    if (CountOf(findings, severity) == 0) continue;
    Node& part = node.Child({});
    part.title = fmt::format("{}s", ToText(severity));
    for (const Finding& finding : findings) {
      if (finding.severity != severity) continue;
      part.Add(finding.rule->id, WithRepair(finding)).isFault = severity != Severity::kNote;
    }
  }
  return node;
}

Node OpenNode(const std::string& title, std::span<const Finding> findings) {
  Node node;
  node.title = title;
  for (const Finding& finding : findings) {
    if (finding.severity == Severity::kNote && finding.repair != Repair::kAsk) continue;
    node.Add(finding.rule->id, WithRepair(finding));
  }
  return node;
}

Json FindingsJson(std::span<const Finding> findings) {
  Json json = {{"version", kJsonVersion},
               {"errors", CountOf(findings, Severity::kError)},
               {"warnings", CountOf(findings, Severity::kWarning)},
               {"notes", CountOf(findings, Severity::kNote)},
               {"findings", Json::array()}};
  for (const Finding& finding : findings) {
    json["findings"].push_back({{"rule", finding.rule->id},
                                {"severity", ToText(finding.severity)},
                                {"group", ToText(finding.rule->group)},
                                {"place", PlaceJson(finding.place)},
                                {"values", finding.values},
                                {"why", finding.rule->why},
                                {"advice", finding.rule->advice},
                                {"standard", finding.rule->standard},
                                {"repair", ToText(finding.repair)}});
  }
  return json;
}

void RuleCounts::Add(std::span<const Finding> findings) {
  std::set<const Rule*> broken;
  for (const Finding& finding : findings) broken.insert(finding.rule);
  for (const Rule* rule : broken) ++images_[rule];
}

std::string RuleCounts::Text() const {
  std::vector<std::pair<const Rule*, size_t>> rows;
  for (const Rule* rule : Rules()) {
    if (const auto found = images_.find(rule); found != images_.end()) rows.push_back(*found);
  }
  std::ranges::stable_sort(rows, [](const auto& a, const auto& b) { return a.second > b.second; });
  std::string text;
  for (const auto& [rule, count] : rows)
    text += fmt::format("{:>7}  {:<8} {}\n", count, ToText(rule->severity), rule->id);
  return text;
}

}  // namespace reedid::document
