// Bytes as tests build and compare them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <vector>

namespace reedid::test {

using ByteVector = std::vector<uint8_t>;

// A copy of bytes in a heap buffer of exactly their size, so that one byte read or written too far stops a sanitized
// run.
class ExactBytes {
 public:
  explicit ExactBytes(const ByteVector& bytes) : size_(bytes.size()), data_(new uint8_t[bytes.size()]) {
    for (size_t i = 0; i < size_; ++i) data_[i] = bytes[i];
  }
  uint8_t* data() const { return data_.get(); }
  uint32_t size() const { return static_cast<uint32_t>(size_); }

 private:
  size_t size_;
  std::unique_ptr<uint8_t[]> data_;
};

inline ByteVector Concat(std::initializer_list<ByteVector> parts) {
  ByteVector all;
  for (const ByteVector& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

}  // namespace reedid::test
