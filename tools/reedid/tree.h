// An account of something as a tree, which writers turn into text (or JSON, or colours).
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace reedid::tool {

struct Field {
  std::string name;
  std::string value;
};

struct Node {
  std::string title;
  std::vector<Field> fields;
  std::vector<Node> children;

  Node& Add(std::string name, std::string value) {
    fields.push_back({std::move(name), std::move(value)});
    return *this;
  }
  Node& Child(Node node) {
    children.push_back(std::move(node));
    return children.back();
  }
};

// Indented text; values of one node stand in one column and are wrapped between words.
std::string ToText(const Node& root);

}  // namespace reedid::tool
