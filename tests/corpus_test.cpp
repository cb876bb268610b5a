// What holds for every EDID: those of the folder REEDID_CORPUS (*.bin) when it is set, else a few of the builder's.
#include "tests/support/corpus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "inventory/walk.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

// A model as text, without what generating writes anew.
template <class T>
void Append(std::string& text, const T* items, size_t count) {
  text.append(reinterpret_cast<const char*>(items), count * sizeof(T));
  text.push_back('|');
}

std::string Content(const VesaBlock& model) {
  VesaBlock copy;
  std::memcpy(&copy, &model, sizeof copy);
  copy.checksum = copy.checksumValid = 0;
  for (StdTiming& timing : copy.standardTimings) {
    const auto [valid, frameRate, hactive, aspectRatio] = timing;
    std::memset(&timing, 0, sizeof timing);  // its last byte is padding and holds anything
    timing.valid = valid;
    timing.frameRate = frameRate;
    timing.hactive = hactive;
    timing.aspectRatio = aspectRatio;
  }
  if (copy.aspectRatioX100 == 100) copy.aspectRatioX100 = 0;  // 1:1 is below what is written
  std::string text;
  Append(text, &copy, 1);
  return text;
}

std::string Content(const CeaBlock& model) {
  const uint8_t head[] = {model.revision, model.underscan,      model.basicAudio, model.ycbcr444,
                          model.ycbcr422, model.nativeDtdCount, model.dtdCount};
  std::string text;
  Append(text, head, sizeof head);
  for (unsigned i = 0; i < model.dataBlockCount; ++i) {
    const CeaDataBlock& entry = model.dataBlocks[i];
    // A block of one byte has no extended tag of its own; what follows it is moved.
    if (entry.size > 1) text.push_back(static_cast<char>(entry.extTag));
    Append(text, entry.bytes, entry.size);
  }
  Append(text, model.dtds, model.dtdCount);
  return text;
}

std::string Content(const DispIdBlock& model) {
  // A first section is written without product type, the others without count.
  const bool first = model.type == EDID_BLOCK_DISPID_FIRST;
  const uint8_t head[] = {model.type, model.version, model.revision, model.payloadUsed,
                          first ? model.extensionCount : model.productType};
  std::string text;
  Append(text, head, sizeof head);
  for (unsigned i = 0; i < model.dataBlockCount; ++i) Append(text, model.dataBlocks[i].bytes, model.dataBlocks[i].size);
  return text;
}

// Data blocks that reach into the last two bytes before the checksum are read but not written; letters that are none,
// a section without data blocks or without product type are refused.
bool CanBeWritten(const VesaBlock& model) {
  return std::all_of(model.manufacturer, model.manufacturer + 3, [](char c) { return c >= 'A' && c <= 'Z'; });
}

bool CanBeWritten(const CeaBlock& model) {
  unsigned end = 4;
  for (unsigned i = 0; i < model.dataBlockCount; ++i) end += model.dataBlocks[i].size;
  return model.dataBlocks != nullptr && end <= 125;
}

bool CanBeWritten(const DispIdBlock& model) {
  if (model.dataBlocks == nullptr || model.payloadUsed + 5 > model.sectionSize) return false;
  return model.type != EDID_BLOCK_DISPID_FIRST || model.productType != 0;
}

// Opens a block, generates it and opens that again.
template <class Model>
void ExpectEqualAgain(const EdidBlock& block) {
  const Opened<Model> model = Open<Model>(block);
  if (model == nullptr) return;
  Block out(0, ByteVector(block.capacity));
  const int32_t result = Family<Model>::kGenerate(model.get(), &out);
  if (!CanBeWritten(*model)) return;
  ASSERT_EQ(result, 0);
  const Opened<Model> again = Open<Model>(out);
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(again->checksumValid, 1);
  EXPECT_EQ(Content(*again), Content(*model));
}

// Everything that can be asked of an image, on a buffer of exactly its bytes.
void AskEverything(const ByteVector& bytes) {
  const ExactBytes exact(bytes);
  const Owned<EdidHandle> handle(EDID_Open(exact.data(), exact.size()));
  if (handle == nullptr) return;
  size_t total = 0;
  for (unsigned i = 0; i < handle->blockCount; ++i) {
    const EdidBlock& block = handle->blocks[i];
    total += block.size;
    if (block.type == EDID_BLOCK_VESA) ExpectEqualAgain<VesaBlock>(block);
    if (block.type == EDID_BLOCK_CEA) ExpectEqualAgain<CeaBlock>(block);
    if (Family<DispIdBlock>::Owns(block.type)) ExpectEqualAgain<DispIdBlock>(block);
  }
  isValidEdid(handle.get());
  if (handle->blockCount > 0) {
    const uint32_t countByte = isEdidHeader(exact.data()) ? 126 : 3;
    ByteVector expected(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(total));
    expected[countByte] = static_cast<uint8_t>(handle->blockCount - 1);
    EXPECT_EQ(Generate(handle.get()), expected);
  }
  EDID_SetPhyAddr(handle.get(), 0x1230);
  if (isDVIEdid(handle.get())) EDID_DVItoHDMI(handle.get(), 0x1000);
}

TEST(Corpus, IsThere) {
  EXPECT_GE(Corpus().size(), 5u);
}

TEST(Corpus, ComesOutAsItWentIn) {
  for (const auto& [name, bytes] : Corpus()) {
    SCOPED_TRACE(name);
    Quietly([&bytes = bytes] { AskEverything(bytes); });
  }
}

TEST(Corpus, CutAtEveryLength) {
  for (const auto& [name, bytes] : Corpus()) {
    SCOPED_TRACE(name);
    Quietly([&bytes = bytes] {
      for (size_t length = 0; length < bytes.size(); ++length) {
        AskEverything(ByteVector(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)));
        // The same bytes as sections, whose lengths are their own.
        if (length > 128)
          AskEverything(ByteVector(bytes.begin() + 128, bytes.begin() + static_cast<std::ptrdiff_t>(length)));
      }
    });
  }
}

TEST(Corpus, ChangedInEveryByte) {
  for (const auto& [name, bytes] : Corpus()) {
    SCOPED_TRACE(name);
    Quietly([&bytes = bytes] {
      for (size_t at = 0; at < bytes.size(); ++at) {
        ByteVector changed = bytes;
        changed[at] = static_cast<uint8_t>(at % 2 == 0 ? ~changed[at] : changed[at] + 0x21);
        AskEverything(changed);
      }
    });
  }
}

}  // namespace
}  // namespace reedid::test
