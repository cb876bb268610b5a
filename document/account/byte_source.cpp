#include "document/account/byte_source.h"

#include <algorithm>

namespace reedid::document {

ByteVector ByteSource::operator()(std::initializer_list<size_t> offsets) const {
  ByteVector taken;
  for (const size_t offset : offsets) {
    if (offset >= bytes_.size()) continue;
    taken.push_back(bytes_[offset]);
    (*given_)[start_ + offset] = true;
  }
  return taken;
}

ByteVector ByteSource::operator()(size_t first, size_t count) const {
  ByteVector taken;
  for (size_t i = first; i < bytes_.size() && i - first < count; ++i) taken.push_back((*this)({i}).front());
  return taken;
}

ByteSource ByteSource::Part(size_t first, size_t count) const {
  first = std::min(first, bytes_.size());
  ByteSource part = *this;
  part.bytes_ = bytes_.subspan(first, std::min(count, bytes_.size() - first));
  part.start_ += first;
  return part;
}

ByteVector ByteSource::Rest() const {
  ByteVector rest;
  for (size_t i = 0; i < bytes_.size(); ++i) {
    if (!(*given_)[start_ + i]) rest.push_back((*this)({i}).front());
  }
  return rest;
}

}  // namespace reedid::document
