#include "document/check/fix.h"

#include <algorithm>
#include <utility>

#include "document/check/trial.h"

namespace reedid::document {
namespace {

// Whether a repair is made. Names pick; without any it must be safe.
bool IsWanted(const Finding& finding, const FixSelection& selection) {
  if (finding.repair == Repair::kNone) return false;
  if (selection.rules.empty()) return finding.repair == Repair::kSafe;
  return std::ranges::find(selection.rules, finding.rule->id) != selection.rules.end();
}

}  // namespace

Fixed Fix(std::span<const uint8_t> image, int thisYear, const FixSelection& selection) {
  Fixed fixed = {std::vector<uint8_t>(image.begin(), image.end()), {}, {}};
  std::vector<Finding> findings = check::RunRules(image, thisYear);
  for (size_t i = 0; i < findings.size(); ++i) {
    const Finding& finding = findings[i];
    if (!IsWanted(finding, selection)) continue;
    check::Trial trial = check::Try(fixed.image, findings, finding, thisYear);
    if (!trial.isBetter()) continue;
    fixed.done.push_back(finding);
    fixed.image = std::move(trial.image);
    findings = std::move(trial.left);
    i = static_cast<size_t>(-1);  // a repair may make room for one that was refused before
  }
  fixed.open = Check(fixed.image, thisYear);
  return fixed;
}

}  // namespace reedid::document
