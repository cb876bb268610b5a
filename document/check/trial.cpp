#include "document/check/trial.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>

#include "document/check/image_view.h"

namespace reedid::document::check {
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

using Counts = std::map<std::pair<const Rule*, Severity>, size_t>;

Counts Count(const std::vector<Finding>& findings) {
  Counts counts;
  for (const Finding& finding : findings) ++counts[{finding.rule, finding.severity}];
  return counts;
}

const Rule* FindBroken(const std::vector<Finding>& before, const std::vector<Finding>& after, const Finding& mended) {
  Counts old = Count(before);
  const Counts now = Count(after);
  for (const auto& [key, count] : now) {
    if (count > old[key]) return key.first;
  }
  const auto left = now.find({mended.rule, mended.severity});
  return left == now.end() || left->second < old[left->first] ? nullptr : mended.rule;
}

}  // namespace

std::vector<uint8_t> WithChanges(std::span<const uint8_t> image, std::span<const Patch> changes) {
  std::vector<uint8_t> bytes(image.begin(), image.end());
  for (const Patch& change : changes) {
    if (change.at > bytes.size() || change.bytes.size() > bytes.size() - change.at) continue;
    std::ranges::copy(change.bytes, bytes.begin() + static_cast<std::ptrdiff_t>(change.at));
  }
  const std::vector<uint8_t> changed = bytes;
  const ImageView view(changed, 0);
  const std::span<uint8_t> all(bytes);
  for (const Section& section : view.sections) {
    const size_t size = section.bytes.size();
    if (section.isWhole && Touches(changes, section.at, size)) MendSum(all.subspan(section.at, size));
  }
  for (size_t at = 0; at < view.blockCount * kBlockSize; at += kBlockSize) {
    if (Touches(changes, at, kBlockSize)) MendSum(all.subspan(at, kBlockSize));
  }
  return bytes;
}

Trial Try(std::span<const uint8_t> image, const std::vector<Finding>& findings, const Finding& mended, int thisYear) {
  Trial trial = {WithChanges(image, mended.changes), {}};
  trial.left = RunRules(trial.image, thisYear);
  trial.broken = FindBroken(findings, trial.left, mended);
  return trial;
}

}  // namespace reedid::document::check
