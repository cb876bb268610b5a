// An opened image.
#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

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

  // Every timing that is offered, as the display means it.
  std::vector<OfferedTiming> Timings() const { return opened_.Timings(); }

  // What is wrong with block 0's count and checksum bytes; empty when nothing is.
  const std::string& firstBlockFaults() const { return firstBlockFaults_; }
  // Which counts, maps and checksums were wrong when the image was read, a few words each; empty when none was.
  const Notes& faults() const { return faults_; }

  // The bytes of the image with right counts, maps and checksums; notes which were not. Throws kRefused.
  ByteVector Generate(Notes& notes) const;

 private:
  Image(const std::string& name, reedid::Image opened) : name_(name), opened_(std::move(opened)) {}
  std::string name_;
  reedid::Image opened_;
  std::string firstBlockFaults_;
  Notes faults_;
};

// "base block", "CTA-861 extension", ...
const char* BlockKindName(const EdidBlock& block);

}  // namespace reedid::document
