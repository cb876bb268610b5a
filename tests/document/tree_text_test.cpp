#include "document/account/tree_text.h"

#include <gtest/gtest.h>

#include "document/printable.h"

namespace reedid::document {
namespace {

Node Tree(Field field) {
  Node node;
  node.title = "T";
  node.fields.push_back(std::move(field));
  return node;
}

SourceBytes Bytes(const ByteVector& bytes) {
  return ByteSource(bytes).All();
}

// The value's column begins at 6; a line has at least 40 characters and a value at least 20.
TEST(TreeText, Lines) {
  constexpr TextStyle k40 = {40}, kColor = {40, true}, kHex = {40, false, true};
  std::string e30;
  for (int i = 0; i < 30; ++i) e30 += "\xC3\xA9";
  const std::string a30(30, 'a'), y70(70, 'y');
  const struct {
    const char* name;
    Field field;
    TextStyle style;
    std::string text;
  } cases[] = {
      {"fits", Field{"ab", a30 + " 234"}, k40, "ab  " + a30 + " 234\n"},
      {"one more does not", Field{"ab", a30 + " 2345"}, k40, "ab  " + a30 + "\n      2345\n"},
      {"no width", Field{"ab", a30 + " 2345"}, TextStyle{0}, "ab  " + a30 + "\n      2345\n"},
      {"characters, not bytes", Field{"ab", e30 + " 234 6"}, k40, "ab  " + e30 + " 234\n      6\n"},
      {"a long word stands alone", Field{"ab", "x " + y70 + " z"}, k40, "ab  x\n      " + y70 + "\n      z\n"},
      {"a long name leaves room", Field{a30, "a b c d e f g h i j k"}, k40,
       a30 + "  a b c d e f g h i j\n" + std::string(34, ' ') + "k\n"},
      {"blanks alone", Field{"ab", std::string(50, ' ')}, k40,
       "ab  " + std::string(34, ' ') + "\n      " + std::string(15, ' ') + "\n"},
      {"what a terminal obeys", Field{"ab", "a\x1b[31m\x7f\xC2\x9B\xC3\xA9"}, k40,
       "ab  a\\x1b[31m\\x7f\\xc2\\x9b\xC3\xA9\n"},
      {"what older terminals obey",
       Field{"ab",
             "a\x9B"
             "1m\xC3"},
       k40, "ab  a\\x9b1m\\xc3\n"},
      {"colours are not counted", Field{"ab", a30 + " 234"}, kColor, "\x1b[36mab\x1b[0m  " + a30 + " 234\n"},
      {"a fault stands out", Field{"ab", "x y", {}, true}, kColor, "\x1b[36mab\x1b[0m  \x1b[1m\x1b[31mx y\x1b[0m\n"},
      {"bytes wrap on their own", Field{"ab", a30, Bytes({1, 2, 3, 4, 5, 6, 7, 8, 9})}, TextStyle{70, false, true},
       "ab  01 02 03 04 05 06 07 08  " + a30 + "\n      09\n"},
      {"values wrap on their own", Field{"ab", a30 + " c", Bytes({1})}, kHex, "ab  01  " + a30 + "\n          c\n"},
      {"bytes are not told twice", Field{"ab", "01 02", Bytes({1, 2})}, kHex, "ab  01 02\n"},
      {"bytes alone", Field{"ab", "", Bytes({1})}, k40, ""},
      {"bytes alone, shown", Field{"ab", "", Bytes({1})}, kHex, "ab  01\n"},
  };
  for (const auto& c : cases) {
    const std::string title = c.style.color ? "\x1b[1m\x1b[4mT\x1b[0m\n" : "T\n";
    EXPECT_EQ(ToText(Tree(c.field), c.style), title + (c.text.empty() ? "" : "  ") + c.text) << c.name;
  }
}

TEST(Printable, WordsInMessages) {
  const std::string e40(40, 'e'), longer = e40 + "f";
  std::string two;  // characters of two bytes
  for (int i = 0; i < 41; ++i) two += "\xC3\xA9";
  EXPECT_EQ(Shortened(e40), e40);
  EXPECT_EQ(Shortened(longer), e40.substr(3) + "...");
  EXPECT_EQ(Shortened(two), two.substr(0, 74) + "...");
  EXPECT_EQ(Shortened(""), "");
}

}  // namespace
}  // namespace reedid::document
