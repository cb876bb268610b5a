#include "document/account/byte_source.h"

#include <algorithm>

namespace reedid::document {

SourceBytes ByteSource::operator()(std::initializer_list<size_t> offsets) const {
  SourceBytes taken;
  for (const size_t offset : offsets) {
    if (offset >= bytes_.size()) continue;
    taken.Add(bytes_[offset], start_ + offset);
    (*given_)[start_ + offset] = true;
  }
  return taken;
}

SourceBytes ByteSource::operator()(size_t first, size_t count) const {
  SourceBytes taken;
  for (size_t i = first; i < bytes_.size() && i - first < count; ++i) taken.Add((*this)({i}));
  return taken;
}

ByteSource ByteSource::Part(size_t first, size_t count) const {
  first = std::min(first, bytes_.size());
  ByteSource part = *this;
  part.bytes_ = bytes_.subspan(first, std::min(count, bytes_.size() - first));
  part.start_ += first;
  return part;
}

SourceBytes ByteSource::Rest() const {
  SourceBytes rest;
  for (size_t i = 0; i < bytes_.size(); ++i) {
    if (!(*given_)[start_ + i]) rest.Add((*this)({i}));
  }
  return rest;
}

}  // namespace reedid::document
