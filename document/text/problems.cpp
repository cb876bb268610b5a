#include "document/text/problems.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "document/nearest.h"
#include "document/printable.h"

namespace reedid::document::text {
Place Place::Key(std::string_view key) const {
  return {
      path_.empty() ? Shortened(WithoutControls(key)) : fmt::format("{}.{}", path_, Shortened(WithoutControls(key))),
      problems_};
}

Place Place::At(size_t index) const {
  return {fmt::format("{}[{}]", path_, index), problems_};
}

std::string Nearest(std::string_view word, const std::vector<std::string>& words) {
  constexpr size_t kLongest = 40, kMostSlips = 2;
  if (word.size() > kLongest) return "";
  std::string nearest;
  size_t slips = std::min(kMostSlips, word.size() / 2) + 1;
  for (const std::string& candidate : words) {
    const size_t distance = Slips(word, candidate);
    if (distance >= slips) continue;
    slips = distance;
    nearest = candidate;
  }
  return nearest;
}

std::string UnknownText(std::string_view word, const std::vector<std::string>& words) {
  const std::string nearest = Nearest(word, words);
  if (!nearest.empty()) return fmt::format("is not known; did you mean {}?", nearest);
  return fmt::format("is not known; there are {}", fmt::join(words, ", "));
}

}  // namespace reedid::document::text
