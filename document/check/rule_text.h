// Rules and findings as people and programs read them.
#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "document/account/tree.h"
#include "document/check/check.h"

namespace reedid::document {

// A rule in a few lines; all rules, a line each, by group; and all of them as docs/rules.md has them.
std::string RuleText(const Rule& rule);
std::string RuleList();
std::string RulesMarkdown();

// "1 error, 2 warnings", "no findings"
std::string CountText(std::span<const Finding> findings);

// Findings by severity, the worst first, under a title.
Node FindingsNode(const std::string& title, std::span<const Finding> findings);

// What cannot be mended without a decision, and how it would be: those above notes, and what can be asked for.
Node OpenNode(const std::string& title, std::span<const Finding> findings);

// "version", "errors", "warnings", "notes" and "findings" (docs/json.md).
Json FindingsJson(std::span<const Finding> findings);

// How many images break each rule.
class RuleCounts {
 public:
  void Add(std::span<const Finding> findings);
  // A line for each rule that was broken, the most frequent first; empty when none was.
  std::string Text() const;

 private:
  std::map<const Rule*, size_t> images_;
};

}  // namespace reedid::document
