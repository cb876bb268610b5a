#include <gtest/gtest.h>

#include "tools/reedid/tree.h"

namespace reedid::tool {
namespace {

Node Tree(Field field) {
  Node node;
  node.title = "T";
  node.fields.push_back(std::move(field));
  return node;
}

// The value's column begins at 6; a line has at least 40 characters and a value at least 20.
TEST(TreeText, Lines) {
  const std::string e30 =
      "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"
      "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9"
      "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9";
  const std::string a30(30, 'a');
  const struct {
    const char* name;
    Field field;
    TextStyle style;
    std::string text;
  } cases[] = {
      {"fits", {"ab", a30 + " 234"}, {40, false}, "T\n  ab  " + a30 + " 234\n"},
      {"one more does not", {"ab", a30 + " 2345"}, {40, false}, "T\n  ab  " + a30 + "\n      2345\n"},
      {"no width", {"ab", a30 + " 2345"}, {0, false}, "T\n  ab  " + a30 + "\n      2345\n"},
      {"characters, not bytes", {"ab", e30 + " 234 6"}, {40, false}, "T\n  ab  " + e30 + " 234\n      6\n"},
      {"a long word stands alone",
       {"ab", "x " + std::string(70, 'y') + " z"},
       {40, false},
       "T\n  ab  x\n      " + std::string(70, 'y') + "\n      z\n"},
      {"a long name leaves room",
       {a30, "a b c d e f g h i j k"},
       {40, false},
       "T\n  " + a30 + "  a b c d e f g h i j\n" + std::string(34, ' ') + "k\n"},
      {"blanks alone",
       {"ab", std::string(50, ' ')},
       {40, false},
       "T\n  ab  " + std::string(34, ' ') + "\n      " + std::string(15, ' ') + "\n"},
      {"what a terminal obeys",
       {"ab", "a\x1b[31m\x7f\xC2\x9B\xC3\xA9"},
       {40, false},
       "T\n  ab  a\\x1b[31m\\x7f\\xc2\\x9b\xC3\xA9\n"},
      {"colours are not counted",
       {"ab", a30 + " 234"},
       {40, true},
       "\x1b[1m\x1b[4mT\x1b[0m\n  \x1b[36mab\x1b[0m  " + a30 + " 234\n"},
      {"a fault stands out",
       {"ab", "x y", {}, true},
       {40, true},
       "\x1b[1m\x1b[4mT\x1b[0m\n  \x1b[36mab\x1b[0m  \x1b[1m\x1b[31mx y\x1b[0m\n"},
      {"bytes wrap on their own",
       {"ab", a30, {1, 2, 3, 4, 5, 6, 7, 8, 9}},
       {70, false, true},
       "T\n  ab  01 02 03 04 05 06 07 08  " + a30 + "\n      09\n"},
      {"values wrap on their own",
       {"ab", a30 + " c", {1}},
       {40, false, true},
       "T\n  ab  01  " + a30 + "\n          c\n"},
      {"bytes are not told twice", {"ab", "01 02", {1, 2}}, {40, false, true}, "T\n  ab  01 02\n"},
      {"bytes alone", {"ab", "", {1}}, {40, false, false}, "T\n"},
      {"bytes alone, shown", {"ab", "", {1}}, {40, false, true}, "T\n  ab  01\n"},
  };
  for (const auto& c : cases) EXPECT_EQ(ToText(Tree(c.field), c.style), c.text) << c.name;
}

}  // namespace
}  // namespace reedid::tool
