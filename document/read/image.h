// An opened image.
#pragma once

#include <span>
#include <string>
#include <utility>

#include "document/bytes.h"
#include "document/error.h"
#include "reedid/reedid.hpp"

namespace reedid::document {

class Image {
 public:
  // Throws kInput, also when the library would not keep every byte. Messages name the image by `name`.
  static Image FromBytes(const std::string& name, std::span<const uint8_t> bytes);

  const std::string& name() const { return name_; }
  EdidHandle* handle() const { return opened_.get(); }
  std::span<EdidBlock> blocks() const { return opened_.Blocks(); }
  bool IsEdid() const { return blocks()[0].type == EDID_BLOCK_VESA; }

  // What was wrong with block 0's count and checksum bytes when the image was read; empty when nothing was.
  const std::string& firstBlockFaults() const { return firstBlockFaults_; }

  // The bytes of the image with right count and checksum in block 0; notes what was not. Throws kRefused.
  ByteVector Generate(Notes& notes);

 private:
  Image(const std::string& name, reedid::Image opened) : name_(name), opened_(std::move(opened)) {}
  std::string name_;
  reedid::Image opened_;
  std::string firstBlockFaults_;
};

// "base block", "CTA-861 extension", ...
const char* BlockKindName(const EdidBlock& block);

}  // namespace reedid::document
