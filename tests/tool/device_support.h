// What the tests of devices share: EDIDs with as many blocks as are wanted, and what is thrown.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "document/error.h"
#include "tests/support/edid_builder.h"
#include "tools/reedid/tool_error.h"

namespace reedid::tool::device {

using document::Notes;
using test::ByteVector;
using test::Cta;

inline std::string Joined(const Notes& notes) {
  std::string text;
  for (const std::string& note : notes) text += note + "\n";
  return text;
}

// What is thrown; empty when nothing is.
inline std::string ErrorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const ToolError& error) {
    return error.what();
  }
  return "";
}

#define EXPECT_HAS(text, part) EXPECT_NE((text).find(part), std::string::npos) << (text)

// An EDID of this many blocks, each with bytes of its own; `count` is what byte 126 says.
inline ByteVector ImageOf(size_t blocks, uint8_t count, const ByteVector& firstExtension = {}) {
  ByteVector image = test::Edid().Dtd(test::k1080p60).Build();
  image[126] = count;
  for (size_t i = 1; i < blocks; ++i) {
    ByteVector block(128, static_cast<uint8_t>(0x10 + i));
    if (i == 1 && !firstExtension.empty()) block = firstExtension;
    image.insert(image.end(), block.begin(), block.end());
  }
  for (size_t at = 0; at < image.size(); at += 128) {
    image[at + 127] = static_cast<uint8_t>(GetChecksum(&image[at], 128));
  }
  return image;
}

}  // namespace reedid::tool::device
