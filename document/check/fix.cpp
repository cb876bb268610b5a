#include "document/check/fix.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>

#include "document/check/image_view.h"

namespace reedid::document {
namespace {

// Makes bytes add up to 0 by the last of them.
void MendSum(std::span<uint8_t> bytes) {
  const unsigned sum = std::accumulate(bytes.begin(), bytes.end(), 0u);
  bytes.back() = static_cast<uint8_t>(bytes.back() - sum);
}

bool Touches(std::span<const Patch> changes, size_t at, size_t size) {
  return std::ranges::any_of(
      changes, [&](const Patch& change) { return change.at < at + size && at < change.at + change.bytes.size(); });
}

// Whether a repair is made. Names pick; without any it must be safe.
bool IsWanted(const Finding& finding, const FixSelection& selection) {
  if (finding.repair == Repair::kNone) return false;
  if (selection.rules.empty()) return finding.repair == Repair::kSafe;
  return std::ranges::find(selection.rules, finding.rule->id) != selection.rules.end();
}

using Counts = std::map<std::pair<const Rule*, Severity>, size_t>;

Counts Count(const std::vector<Finding>& findings) {
  Counts counts;
  for (const Finding& finding : findings) ++counts[{finding.rule, finding.severity}];
  return counts;
}

// Whether a finding is gone and no other came up.
bool IsBetter(const std::vector<Finding>& before, const std::vector<Finding>& after, const Finding& mended) {
  Counts old = Count(before);
  const Counts now = Count(after);
  for (const auto& [key, count] : now) {
    if (count > old[key]) return false;
  }
  const auto left = now.find({mended.rule, mended.severity});
  return left == now.end() || left->second < old[left->first];
}

}  // namespace

std::vector<uint8_t> WithChanges(std::span<const uint8_t> image, std::span<const Patch> changes) {
  std::vector<uint8_t> bytes(image.begin(), image.end());
  for (const Patch& change : changes) {
    if (change.at > bytes.size() || change.bytes.size() > bytes.size() - change.at) continue;
    std::ranges::copy(change.bytes, bytes.begin() + static_cast<std::ptrdiff_t>(change.at));
  }
  const std::vector<uint8_t> changed = bytes;
  const check::ImageView view(changed, 0);
  const std::span<uint8_t> all(bytes);
  for (const check::Section& section : view.sections) {
    const size_t size = section.bytes.size();
    if (section.isWhole && Touches(changes, section.at, size)) MendSum(all.subspan(section.at, size));
  }
  for (size_t at = 0; at < view.blockCount * check::kBlockSize; at += check::kBlockSize) {
    if (Touches(changes, at, check::kBlockSize)) MendSum(all.subspan(at, check::kBlockSize));
  }
  return bytes;
}

Fixed Fix(std::span<const uint8_t> image, int thisYear, const FixSelection& selection) {
  Fixed fixed = {std::vector<uint8_t>(image.begin(), image.end()), {}, Check(image, thisYear)};
  for (size_t i = 0; i < fixed.open.size(); ++i) {
    const Finding& finding = fixed.open[i];
    if (!IsWanted(finding, selection)) continue;
    std::vector<uint8_t> mended = WithChanges(fixed.image, finding.changes);
    std::vector<Finding> left = Check(mended, thisYear);
    if (!IsBetter(fixed.open, left, finding)) continue;
    fixed.done.push_back(finding);
    fixed.image = std::move(mended);
    fixed.open = std::move(left);
    i = static_cast<size_t>(-1);  // a repair may make room for one that was refused before
  }
  return fixed;
}

}  // namespace reedid::document
