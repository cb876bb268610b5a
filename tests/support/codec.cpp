#include "tests/support/codec.h"

#include <sstream>

namespace reedid::test {
namespace {

// The number behind `mark` in a word, or what stands for it.
int64_t NumberBehind(const std::string& word, char mark, int64_t otherwise) {
  const size_t at = word.find(mark);
  return at == std::string::npos ? otherwise : std::stoll(word.substr(at + 1));
}

}  // namespace

std::vector<Meaning> MeaningsOf(const std::string& prefix, const std::string& text) {
  std::vector<Meaning> meanings;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const std::string name = word.substr(0, word.find_first_of(":@*"));
    const int64_t count = NumberBehind(word, ':', 1);
    for (int64_t i = 0; i < count; ++i) {
      if (name == "-" || name == "?") {
        meanings.push_back({name, 0});
      } else if (name.back() == '#') {
        meanings.push_back({prefix + name.substr(0, name.size() - 1) + std::to_string(i), 1});
      } else {
        meanings.push_back({prefix + name, NumberBehind(word, '*', 1) * NumberBehind(word, '@', 1) << i});
      }
    }
  }
  return meanings;
}

Meaning Difference(const Json& from, const Json& to) {
  const Json before = from.flatten(), after = to.flatten();
  Meaning difference = {"-", 0};
  for (const auto& [key, value] : after.items()) {
    const Json was = before.value(key, Json(0));
    if (was == value) continue;
    if (difference.name != "-" || !value.is_number()) return {"? " + ToText(to), 0};
    difference = {key.substr(1), value.get<int64_t>() - was.get<int64_t>()};
  }
  return difference;
}

}  // namespace reedid::test
