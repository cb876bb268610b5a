#include "document/check/marks.h"

namespace reedid::document {
namespace {

// Who has a byte: the fewer bytes somebody has besides, the better he tells what it means.
class Search {
 public:
  explicit Search(size_t byte) : byte_(byte) {}

  void Visit(Node& node) {
    for (Field& field : node.fields) {
      if (!field.value.empty()) Offer(field.bytes, field.remarks);
    }
    Offer(node.bytes, node.remarks);
    for (Node& child : node.children) Visit(child);
  }
  // The smallest part that the byte lies in, for bytes that nobody tells of.
  void VisitParts(Node& node) {
    if (node.extent && byte_ - node.extent->offset < node.extent->size) Offer(node.extent->size, node.remarks);
    for (Node& child : node.children) VisitParts(child);
  }
  std::vector<Remark>* found() const { return found_; }

 private:
  void Offer(size_t size, std::vector<Remark>& remarks) {
    if (found_ != nullptr && size >= size_) return;
    found_ = &remarks;
    size_ = size;
  }
  void Offer(const SourceBytes& bytes, std::vector<Remark>& remarks) {
    for (size_t i = 0; i < bytes.size(); ++i) {
      if (bytes.OffsetOf(i) == byte_) return Offer(bytes.size(), remarks);
    }
  }

  size_t byte_;
  size_t size_ = 0;
  std::vector<Remark>* found_ = nullptr;
};

std::vector<Remark>& RemarksAt(const Place& place, Node& account) {
  if (place.block >= account.children.size()) return account.remarks;
  Node& block = account.children[place.block];
  Search search(place.byte);
  search.Visit(block);
  if (search.found() == nullptr) search.VisitParts(block);
  return search.found() == nullptr ? block.remarks : *search.found();
}

}  // namespace

void MarkFindings(std::span<const Finding> findings, Node& account) {
  for (const Finding& finding : findings) {
    RemarksAt(finding.place, account).push_back({ToText(finding.severity), finding.rule->id, finding.values});
  }
}

}  // namespace reedid::document
