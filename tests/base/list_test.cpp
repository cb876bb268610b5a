#include "base/list.h"

#include <gtest/gtest.h>

#include <string>

#include "reedid/reedid.h"
#include "tests/support/failing_malloc.h"

namespace reedid::test {
namespace {

// A list of data blocks whose tags are letters; each owns one byte, the letter again.
class Letters {
 public:
  explicit Letters(const std::string& letters) {
    for (const char c : letters) Insert(c, kEnd);
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

  static constexpr uint32_t kEnd = UINT32_MAX;
  CeaDataBlock* items = nullptr;
  uint8_t count = 0;
  List<CeaDataBlock> list{items, count};
};

TEST(List, InsertsAtMinOfIndexAndCount) {
  struct Case {
    std::string before;
    uint32_t index;
    std::string after;
  };
  const Case cases[] = {{"", 0, "x"},       {"", 5, "x"},       {"abc", 0, "xabc"},
                        {"abc", 2, "abxc"}, {"abc", 3, "abcx"}, {"abc", 0xFFFFFFFF, "abcx"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.before + " at " + std::to_string(c.index));
    Letters letters(c.before);
    EXPECT_EQ(letters.Insert('x', c.index), ListResult::kDone);
    EXPECT_EQ(letters.Text(), c.after);
  }
}

TEST(List, ErasesByAddress) {
  const std::string after[] = {"bc", "ac", "ab"};
  for (unsigned i = 0; i < 3; ++i) {
    Letters letters("abc");
    EXPECT_TRUE(letters.list.Erase(&letters.items[i]));
    EXPECT_EQ(letters.Text(), after[i]);
    EXPECT_FALSE(letters.list.Erase(&letters.items[2])) << "the stale slot is not an entry";
    EXPECT_EQ(letters.Text(), after[i]);
  }
  Letters letters("a");
  const CeaDataBlock equal = letters.items[0];
  EXPECT_FALSE(letters.list.Erase(&equal));
  EXPECT_TRUE(letters.list.Erase(letters.items));
  EXPECT_NE(letters.items, nullptr) << "empty, not absent";
  EXPECT_FALSE(letters.list.Erase(letters.items));
}

TEST(List, HoldsNoMoreThan255) {
  Letters letters(std::string(255, 'a'));
  EXPECT_EQ(letters.Insert('x', 0), ListResult::kFull);
  EXPECT_EQ(letters.Text(), std::string(255, 'a'));
  EXPECT_TRUE(letters.list.StartOver());
  EXPECT_EQ(letters.count, 0);
  EXPECT_NE(letters.items, nullptr);
}

TEST(List, CopiesItsOwnEntries) {
  Letters letters("abc");
  EXPECT_EQ(letters.list.Insert(letters.items[1], 0), ListResult::kDone);
  EXPECT_EQ(letters.Text(), "babc");
  EXPECT_TRUE(letters.list.Assign(letters.items[3], letters.items[1]));
  EXPECT_TRUE(letters.list.Assign(letters.items[0], letters.items[0]));
  EXPECT_EQ(letters.Text(), "baba");
}

TEST(List, StaysAsItWasWithoutMemory) {
  Letters letters("abc");
  for (unsigned nth = 1; nth <= 2; ++nth) {
    FailingMalloc failing(nth);
    EXPECT_EQ(letters.Insert('x', 1), ListResult::kNoMemory) << nth;
  }
  {
    FailingMalloc failing(1);
    EXPECT_FALSE(letters.list.Assign(letters.items[0], letters.items[2]));
  }
  {
    FailingMalloc failing(1);
    EXPECT_FALSE(letters.list.StartOver());
  }
  EXPECT_EQ(letters.Text(), "abc");
}

TEST(List, ReservesTheCapacityOfABlock) {
  EdidBlock* items = nullptr;
  uint8_t count = 9;  // no array, so no entries whatever the count says
  List list(items, count);
  uint8_t bytes[4] = {1, 2, 3, 4};
  ASSERT_EQ(list.Insert({0, 128, 4, bytes}, 3), ListResult::kDone);
  ASSERT_EQ(list.Insert({0, 0, 4, bytes}, 0), ListResult::kDone);
  ASSERT_EQ(count, 2);
  EXPECT_EQ(items[0].bytes[3], 4);
  EXPECT_EQ(items[1].bytes[3], 4);
  for (unsigned i = 4; i < 128; ++i) EXPECT_EQ(items[1].bytes[i], 0) << i;
  list.Clear();
  EXPECT_EQ(items, nullptr);
}

}  // namespace
}  // namespace reedid::test
