#include "document/nearest.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace reedid::document {
namespace {

char Lower(char c) {
  return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

}  // namespace

size_t Slips(std::string_view a, std::string_view b) {
  std::vector<std::vector<size_t>> cost(a.size() + 1, std::vector<size_t>(b.size() + 1));
  const auto same = [&](size_t x, size_t y) { return Lower(a[x]) == Lower(b[y]); };
  for (size_t i = 0; i <= a.size(); ++i) {
    for (size_t j = 0; j <= b.size(); ++j) {
      size_t& here = cost[i][j] = i + j;
      if (i == 0 || j == 0) continue;
      here = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + (same(i - 1, j - 1) ? 0u : 1u)});
      if (i > 1 && j > 1 && same(i - 1, j - 2) && same(i - 2, j - 1)) here = std::min(here, cost[i - 2][j - 2] + 1);
    }
  }
  return cost[a.size()][b.size()];
}

}  // namespace reedid::document
