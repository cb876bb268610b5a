// An opened image and the models of its blocks, as objects that release themselves.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>

#include "reedid/reedid.h"
#include "tool_error.h"

namespace reedid::tool {

struct Closer {
  void operator()(EdidHandle* p) const { EDID_Close(p); }
  void operator()(VesaBlock* p) const { VESA_Close(p); }
  void operator()(CeaBlock* p) const { CEA_Close(p); }
  void operator()(DispIdBlock* p) const { DispID_Close(p); }
};
template <class Model>
using Owned = std::unique_ptr<Model, Closer>;

class Image {
 public:
  // Opens what the user named. Throws Exit::kInput, also when the library would not keep every byte.
  static Image Read(const std::string& name);
  static Image FromBytes(const std::string& name, const ByteVector& bytes);

  const std::string& name() const { return name_; }
  EdidHandle* handle() const { return handle_.get(); }
  std::span<EdidBlock> blocks() const { return {handle_->blocks, handle_->blockCount}; }
  bool IsEdid() const { return blocks()[0].type == EDID_BLOCK_VESA; }

  // What was wrong with block 0's count and checksum bytes when the image was read; empty when nothing was.
  const std::string& firstBlockFaults() const { return firstBlockFaults_; }

  // The bytes of the image with right count and checksum in block 0; says on standard error what was not.
  ByteVector Generate();

 private:
  Image(const std::string& name, Owned<EdidHandle> handle) : name_(name), handle_(std::move(handle)) {}
  std::string name_;
  Owned<EdidHandle> handle_;
  std::string firstBlockFaults_;
};

// What the user names in messages: the file, or "standard input".
std::string ShownName(const std::string& name);

// The stored and the right checksum of a block, as text: "a5, right" or "a5, wrong (must be b7)".
std::string ChecksumText(std::span<const uint8_t> bytes);

// "base block", "CTA-861 extension", ...
const char* BlockKindName(const EdidBlock& block);

// The number of extensions by the HDMI Forum's override block (HDMI 2.1, 10.3.6), where byte 126 says 1 on purpose.
std::optional<unsigned> OverrideCount(const Image& image);

// The bytes of the first HDMI 1.4b block of the image; empty when there is none.
ByteVector FindHdmiBytes(const Image& image);

}  // namespace reedid::tool
