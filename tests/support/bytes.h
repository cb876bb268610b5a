// Bytes as tests build and compare them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>
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

// Bytes from text: "5F 01*31" are 32.
inline ByteVector Hex(const std::string& text) {
  ByteVector bytes;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const size_t times = word.size() > 2 ? std::stoul(word.substr(3)) : 1;
    bytes.insert(bytes.end(), times, static_cast<uint8_t>(std::stoul(word.substr(0, 2), nullptr, 16)));
  }
  return bytes;
}

// The other way, 16 to a line, so that a difference shows.
inline std::string HexOf(const ByteVector& bytes) {
  std::string text;
  for (size_t i = 0; i < bytes.size(); ++i) {
    text += {"0123456789ABCDEF"[bytes[i] >> 4], "0123456789ABCDEF"[bytes[i] & 15], i % 16 == 15 ? '\n' : ' '};
  }
  return text;
}

}  // namespace reedid::test
