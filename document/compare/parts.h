// The parts of two images, and which of them are the same part.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "document/account/tree.h"

namespace reedid::document {

// A node below the image, as one of a list in which parents stand before their children.
struct Part {
  const Node* node;
  std::optional<size_t> parent;  // none: a block
  size_t block;                  // the number of the block
  std::string path;              // "Block 1: CTA-861 extension / Video Data Block (2)"
  std::string content;           // its kind and all bytes of it and of its children
  std::optional<size_t> partner = {};
};

// The parts of an image; those of one label below one parent are numbered in their paths.
std::vector<Part> PartsOf(const Node& image);

/*
 * Makes partners: of the children of partners, those with the same content, then those of the same kind; and what is
 * left over, with the same content anywhere. Timings are left to whoever pairs timings.
 */
void PairParts(std::vector<Part>& before, std::vector<Part>& after);

}  // namespace reedid::document
