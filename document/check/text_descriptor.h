// The text of a display descriptor (EDID 1.4, 3.10.3): 13 bytes from byte 5 of a slot.
#pragma once

#include <array>
#include <string>

#include "document/check/image_view.h"

namespace reedid::document::check {

inline constexpr size_t kTextSize = 13;

class TextDescriptor {
 public:
  static constexpr unsigned kNone = 256;  // no terminator

  explicit TextDescriptor(const Bytes& slot) : bytes_(slot.From(5, kTextSize)) {
    while (length_ < kTextSize && !IsTerminator(Byte(length_))) ++length_;
  }
  unsigned Byte(size_t at) const { return bytes_[at]; }
  size_t length() const { return length_; }
  unsigned terminator() const { return length_ < kTextSize ? Byte(length_) : kNone; }
  bool isBlank() const { return ContentLength() == 0; }
  // Spaces alone behind the terminator.
  bool IsPadded() const {
    for (size_t at = length_ + 1; at < kTextSize; ++at) {
      if (Byte(at) != 0x20) return false;
    }
    return true;
  }
  // Without the spaces at the end.
  std::string Content() const {
    return std::string(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(ContentLength()));
  }
  // As the standard writes it.
  std::array<uint8_t, kTextSize> Rewritten() const {
    std::array<uint8_t, kTextSize> text;
    text.fill(0x20);
    const size_t count = ContentLength();
    for (size_t at = 0; at < count; ++at) text[at] = static_cast<uint8_t>(Byte(at));
    if (count < kTextSize) text[count] = 0x0A;
    return text;
  }

 private:
  static bool IsTerminator(unsigned byte) { return byte == 0x0A || byte == 0x00 || byte == 0xFF; }
  size_t ContentLength() const {
    size_t count = length_;
    while (count > 0 && Byte(count - 1) == 0x20) --count;
    return count;
  }
  Bytes bytes_;
  size_t length_ = 0;
};

}  // namespace reedid::document::check
