#include "base/list.h"

#include <gtest/gtest.h>

#include <string>

#include "reedid/reedid.h"
#include "tests/support/failing_malloc.h"

namespace reedid::test {
namespace {

// A list of data blocks whose tags are letters; each owns one byte, the letter again.
struct Letters {
  explicit Letters(const std::string& letters) {
    for (const char c : letters) Insert(c, UINT32_MAX);
  }
  ~Letters() { list.Clear(); }
  Letters(const Letters&) = delete;
  Letters& operator=(const Letters&) = delete;

  ListResult Insert(char letter, uint32_t index) {
    uint8_t byte = static_cast<uint8_t>(letter);
    return list.Insert({byte, 0, 1, &byte}, index);
  }
  std::string Text() const {
    std::string text;
    for (unsigned i = 0; i < count; ++i) {
      EXPECT_EQ(items[i].tag, items[i].bytes[0]) << "entry and bytes belong together";
      text.push_back(static_cast<char>(items[i].tag));
    }
    return text;
  }

  CeaDataBlock* items = nullptr;
  uint8_t count = 0;
  List<CeaDataBlock> list{items, count};
};

TEST(List, InsertsAtMinOfIndexAndCount) {
  const struct {
    const char* before;
    uint32_t index;
    const char* after;
  } cases[] = {{"", 5, "x"}, {"abc", 0, "xabc"}, {"abc", 2, "abxc"}, {"abc", 3, "abcx"}, {"abc", UINT32_MAX, "abcx"}};
  for (const auto& c : cases) {
    Letters letters(c.before);
    EXPECT_EQ(letters.Insert('x', c.index), ListResult::kDone);
    EXPECT_EQ(letters.Text(), c.after);
  }
}

TEST(List, ErasesByAddress) {
  for (unsigned i = 0; i < 3; ++i) {
    Letters letters("abc");
    const CeaDataBlock equal = letters.items[i];
    EXPECT_FALSE(letters.list.Erase(&equal));
    EXPECT_TRUE(letters.list.Erase(&letters.items[i]));
    EXPECT_FALSE(letters.list.Erase(&letters.items[2])) << "the stale slot is not an entry";
    EXPECT_EQ(letters.Text(), std::string("abc").erase(i, 1));
  }
}

TEST(List, StaysAsItWasWhenItIsFullOrWithoutMemory) {
  Letters full(std::string(255, 'a')), letters("abc");
  EXPECT_EQ(full.Insert('x', 0), ListResult::kFull);
  EXPECT_EQ(full.Text(), std::string(255, 'a'));
  for (unsigned nth = 1; nth <= 2; ++nth) {
    FailingMalloc failing(nth);
    EXPECT_EQ(letters.Insert('x', 1), ListResult::kNoMemory) << nth;
  }
  for (const bool assign : {true, false}) {
    FailingMalloc failing(1);
    EXPECT_FALSE(assign ? letters.list.Assign(letters.items[0], letters.items[2]) : letters.list.StartOver());
  }
  EXPECT_EQ(letters.Text(), "abc");
}

TEST(List, CopiesItsOwnEntries) {
  Letters letters("abc");
  EXPECT_EQ(letters.list.Insert(letters.items[1], 0), ListResult::kDone);
  EXPECT_TRUE(letters.list.Assign(letters.items[3], letters.items[1]));
  EXPECT_TRUE(letters.list.Assign(letters.items[0], letters.items[0]));
  EXPECT_EQ(letters.Text(), "baba");
}

}  // namespace
}  // namespace reedid::test
