// A tree as text for people.
#pragma once

#include <cstddef>
#include <string>

#include "document/account/tree.h"

namespace reedid::document {

struct TextStyle {
  size_t width = 100;  // characters of a line
  bool color = false;
  bool hex = false;  // the bytes of each field beside it, those of a title behind it
};

/*
 * Indented text; values of one node stand in one column and are wrapped between words. Control characters, which a
 * terminal would obey, are written as \x1b.
 */
std::string ToText(const Node& root, const TextStyle& style = {});

}  // namespace reedid::document
