// Whether the table that everything here is tested by has every codec.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>

#include "tests/support/codecs.h"

namespace reedid::test {
namespace {

TEST(CodecTable, HasEveryExportedCodec) {
  const std::set<std::string> questions = {"CEA_GetVSDBType", "CEA_GetVSVDBType", "DispID_GetTimingCnt",
                                           "DispID20_GetCtaCnt"};
  const std::regex codec("(VESA|CEA|DispID|DispID20)_[GS]et.*");
  std::set<std::string> exported, listed = questions;
  std::ifstream file(REEDID_EXPORTS);
  for (std::string line; std::getline(file, line);) {
    if (std::regex_match(line, codec)) exported.insert(line);
  }
  const auto add = [&](const auto& codecs) {
    for (const auto& row : codecs) listed.insert({row.getter, row.setter});
  };
  std::apply([&](const auto&... codecs) { (add(codecs), ...); }, AllCodecs());
  EXPECT_EQ(listed, exported);
}

}  // namespace
}  // namespace reedid::test
