#include "document/compare/parts.h"

#include <fmt/format.h>

#include <map>

namespace reedid::document {
namespace {

const std::string& LabelOf(const Node& node) {
  return node.label.empty() ? node.title : node.label;
}

const std::string& KindOf(const Node& node) {
  return node.kind.empty() ? LabelOf(node) : node.kind;
}

std::string ContentOf(const Node& node) {
  std::string content = KindOf(node) + '\n' + Hex(node.bytes);
  for (const Field& field : node.fields) content += '\n' + Hex(field.bytes);
  for (const Node& child : node.children) content += '\n' + ContentOf(child);
  return content;
}

void Collect(const Node& node, std::optional<size_t> parent, size_t block, const std::string& path,
             std::vector<Part>& parts) {
  const size_t index = parts.size();
  parts.push_back({&node, parent, block, path, ContentOf(node)});
  std::map<std::string, unsigned> seen;
  for (const Node& child : node.children) {
    const unsigned number = ++seen[LabelOf(child)];
    Collect(child, index, block,
            fmt::format("{} / {}{}", path, LabelOf(child), number == 1 ? "" : fmt::format(" #{}", number)), parts);
  }
}

using Alike = bool (*)(const Part&, const Part&);

bool HaveSameContent(const Part& b, const Part& a) {
  return b.content == a.content;
}

bool HaveSameKind(const Part& b, const Part& a) {
  return KindOf(*b.node) == KindOf(*a.node);
}

class Pairing {
 public:
  Pairing(std::vector<Part>& before, std::vector<Part>& after) : before_(before), after_(after) {}

  // A parent's partner is known before its children are looked at.
  void PairChildren() {
    PairSiblings(ChildrenOf(before_, std::nullopt), ChildrenOf(after_, std::nullopt));
    for (size_t i = 0; i < before_.size(); ++i) {
      if (!before_[i].node->children.empty() && before_[i].partner) {
        PairSiblings(ChildrenOf(before_, i), ChildrenOf(after_, before_[i].partner));
      }
    }
  }

  void PairAnywhere() {
    std::vector<size_t> left, right;
    for (size_t i = 0; i < before_.size(); ++i) {
      if (before_[i].parent) left.push_back(i);
    }
    for (size_t i = 0; i < after_.size(); ++i) {
      if (after_[i].parent) right.push_back(i);
    }
    Pair(left, right, HaveSameContent);
  }

 private:
  static std::vector<size_t> ChildrenOf(const std::vector<Part>& parts, std::optional<size_t> parent) {
    std::vector<size_t> children;
    for (size_t i = 0; i < parts.size(); ++i) {
      if (parts[i].parent == parent) children.push_back(i);
    }
    return children;
  }

  void PairSiblings(const std::vector<size_t>& left, const std::vector<size_t>& right) {
    Pair(left, right, HaveSameContent);
    Pair(left, right, HaveSameKind);
  }

  void Pair(const std::vector<size_t>& left, const std::vector<size_t>& right, Alike alike) {
    for (const size_t i : left) {
      if (before_[i].node->isTiming) continue;
      for (const size_t j : right) {
        if (before_[i].partner) break;
        if (after_[j].partner || after_[j].node->isTiming || !alike(before_[i], after_[j])) continue;
        before_[i].partner = j;
        after_[j].partner = i;
      }
    }
  }

  std::vector<Part>& before_;
  std::vector<Part>& after_;
};

}  // namespace

std::vector<Part> PartsOf(const Node& image) {
  std::vector<Part> parts;
  for (size_t i = 0; i < image.children.size(); ++i) {
    Collect(image.children[i], std::nullopt, i, image.children[i].title, parts);
  }
  return parts;
}

void PairParts(std::vector<Part>& before, std::vector<Part>& after) {
  Pairing pairing(before, after);
  pairing.PairChildren();
  pairing.PairAnywhere();
  pairing.PairChildren();
}

}  // namespace reedid::document
