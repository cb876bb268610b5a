// check: what do images state wrongly? explain: what is a rule about?

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "commands.h"
#include "document/check/rule_text.h"
#include "findings.h"
#include "input.h"
#include "inputs.h"
#include "terminal.h"

namespace reedid::tool {
namespace {

using document::Finding;
using document::Image;
using document::Severity;

// Which findings count.
class Filter {
 public:
  explicit Filter(const CheckOptions& options) : strict_(options.strict) {
    for (const std::string& id : options.rules) only_.push_back(&NamedRule(id));
    for (const std::string& id : options.withoutRules) without_.push_back(&NamedRule(id));
    for (const Severity severity : {Severity::kNote, Severity::kWarning, Severity::kError}) {
      if (options.severity == document::ToText(severity)) lowest_ = severity;
    }
  }
  std::vector<Finding> Of(const Image& image) const {
    std::vector<Finding> findings = document::Check(BytesOf(image), ThisYear());
    std::erase_if(findings, [&](const Finding& finding) { return !Counts(finding); });
    return findings;
  }
  Exit ExitOf(const std::vector<Finding>& findings) const {
    const Severity bad = strict_ ? Severity::kWarning : Severity::kError;
    return std::ranges::any_of(findings, [&](const Finding& finding) { return finding.severity >= bad; }) ? Exit::kNo
                                                                                                          : Exit::kDone;
  }

 private:
  static bool Holds(const std::vector<const document::Rule*>& rules, const Finding& finding) {
    return std::ranges::find(rules, finding.rule) != rules.end();
  }
  bool Counts(const Finding& finding) const {
    return finding.severity >= lowest_ && (only_.empty() || Holds(only_, finding)) && !Holds(without_, finding);
  }
  std::vector<const document::Rule*> only_, without_;
  Severity lowest_ = Severity::kNote;
  bool strict_;
};

// An input that is read, or the reason why it cannot be.
struct Verdict {
  std::vector<Finding> findings;
  std::optional<ToolError> failure;
};

Verdict CheckInput(const std::string& input, const Filter& filter) {
  Verdict verdict;
  try {
    verdict.findings = filter.Of(ReadImage(input));
  } catch (const ToolError& error) {
    verdict.failure = error;
  } catch (const document::Error& error) {
    verdict.failure = FromDocument(error);
  }
  return verdict;
}

// The reason without the name that stands in front of it already.
document::Node FailureNode(const std::string& input, const ToolError& failure) {
  const std::string name = ShownName(input);
  std::string reason = failure.what();
  if (reason.starts_with(name + ": ")) reason.erase(0, name.size() + 2);
  document::Node node;
  node.title = fmt::format("{}: no EDID", name);
  node.Add("image", "error: " + reason).isFault = true;
  return node;
}

document::Node VerdictNode(const std::string& input, const Verdict& verdict) {
  if (verdict.failure) return FailureNode(input, *verdict.failure);
  return FindingsNode(fmt::format("{}: {}", ShownName(input), CountText(verdict.findings)), verdict.findings);
}

Exit CheckSingle(const CheckOptions& options, const Filter& filter, Streams& streams) {
  const std::string& input = options.inputs[0];
  const Verdict verdict = CheckInput(input, filter);
  if (verdict.failure) throw ToolError(*verdict.failure);
  const Exit exit = filter.ExitOf(verdict.findings);
  if (!options.quiet || exit != Exit::kDone) {
    streams.Result(ToText(VerdictNode(input, verdict), StyleFor(options.color, streams)));
  }
  return exit;
}

Exit CheckSeveral(const CheckOptions& options, const Filter& filter, Streams& streams) {
  size_t valid = 0, notValid = 0, none = 0;
  document::RuleCounts counts;
  const document::TextStyle style = StyleFor(options.color, streams);
  Progress progress;
  const Exit worst = ForEachInput(options.inputs, progress, [&](const std::string& input) {
    const Verdict verdict = CheckInput(input, filter);
    const Exit exit = verdict.failure ? verdict.failure->code() : filter.ExitOf(verdict.findings);
    ++(verdict.failure ? none : exit == Exit::kDone ? valid : notValid);
    counts.Add(verdict.findings);
    if (options.quiet && exit == Exit::kDone) return exit;
    progress.Erase();
    streams.Result(ToText(VerdictNode(input, verdict), style));
    return exit;
  });
  progress.Erase();
  if (options.quiet) return worst;
  const std::string table = counts.Text();
  if (!table.empty()) streams.Result("\n  inputs  severity rule\n" + table);
  streams.Result(fmt::format("{} valid, {} not valid, {} no EDID\n", valid, notValid, none));
  return worst;
}

}  // namespace

Exit RunCheck(const CheckOptions& options, Streams& streams) {
  const Filter filter(options);
  if (!options.json) {
    return IsSingle(options.inputs) ? CheckSingle(options, filter, streams) : CheckSeveral(options, filter, streams);
  }
  Exit worst = Exit::kDone;
  const Exit answered = AnswerEach(options.inputs, true, streams, [&](const Image& image, bool) {
    const std::vector<Finding> findings = filter.Of(image);
    worst = std::max(worst, filter.ExitOf(findings));
    return Answer{"", FindingsJson(findings)};
  });
  return std::max(worst, answered);
}

Exit RunExplain(const ExplainOptions& options, Streams& streams) {
  if (options.markdown) {
    streams.Result(document::RulesMarkdown());
  } else {
    streams.Result(options.rule.empty() ? document::RuleList() : document::RuleText(NamedRule(options.rule)));
  }
  return Exit::kDone;
}

}  // namespace reedid::tool
