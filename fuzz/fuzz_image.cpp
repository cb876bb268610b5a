// A whole image: opened and written back as it came; then, on a fresh handle each, every question, every edit and every
// transform, with the outcome written out and opened again.
#include "fuzz/fuzz.h"
#include "reedid/reedid.h"
#include "tests/support/handle.h"
#include "tests/support/operations.h"

namespace reedid::fuzz {
namespace {

using test::Generate;
using test::Operation;

Image Open(const ByteVector& image) {
  const ExactBytes exact(image);
  return Image(EDID_Open(exact.data(), exact.size()));
}

ByteVector BytesOf(const EdidBlock& block) {
  return ByteVector(block.bytes, block.bytes + block.size);
}

std::vector<ByteVector> BlocksOf(const EdidHandle& handle) {
  std::vector<ByteVector> blocks;
  for (unsigned i = 0; i < handle.blockCount; ++i) blocks.push_back(BytesOf(handle.blocks[i]));
  return blocks;
}

bool AddsUpToZero(const ByteVector& block) {
  unsigned sum = 0;
  for (const uint8_t byte : block) sum += byte;
  return sum % 256 == 0;
}

// An unedited image comes out as it went in, but for the count of extensions.
void CheckUnedited(const ByteVector& image) {
  const Image handle = Open(image);
  if (!handle || handle->blockCount == 0) return;
  const ByteVector out = Generate(handle.get());
  const size_t countByte = handle->blocks[0].type == EDID_BLOCK_VESA ? 126 : 3;
  Check(!out.empty() && out.size() <= image.size(), "the unedited image is written", "EDID_GenerateEdid");
  for (size_t i = 0; i < out.size(); ++i) {
    Check(i == countByte || out[i] == image[i], "an unedited byte is kept", "EDID_GenerateEdid");
  }
  Check(out[countByte] == handle->blockCount - 1, "the count byte is right", "EDID_GenerateEdid");
}

// A block that was rewritten has a right checksum, and the whole can be written. What cannot be opened again was not an
// image of one kind before.
void CheckEdited(EdidHandle& handle, const std::vector<ByteVector>& before, const char* name) {
  size_t total = 0;
  for (const ByteVector& block : BlocksOf(handle)) {
    total += block.size();
    const bool kept = std::find(before.begin(), before.end(), block) != before.end();
    Check(kept || AddsUpToZero(block), "a rewritten block adds up to zero", name);
  }
  const ByteVector out = Generate(&handle);
  Check(out.size() == total, "the edited image is written whole", name);
  if (!out.empty()) Open(out);
}

void RunOperations(const ByteVector& image) {
  for (const Operation& operation : test::Operations()) {
    const Image handle = Open(image);
    if (!handle) return;
    const std::vector<ByteVector> before = BlocksOf(*handle);
    operation.run(*handle);
    CheckEdited(*handle, before, operation.name);
  }
}

}  // namespace
}  // namespace reedid::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const reedid::fuzz::ByteVector image(data, data + size);
  reedid::fuzz::CheckUnedited(image);
  reedid::fuzz::RunOperations(image);
  return 0;
}
