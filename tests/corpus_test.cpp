// What holds for every EDID: those of the folder REEDID_CORPUS (*.bin) when it is set, else a few of the builder's.
#include "tests/support/corpus.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "inventory/walk.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"
#include "tests/support/record_text.h"

namespace reedid::test {
namespace {

// A model without what generating writes anew.
Json Content(const VesaBlock& model) {
  Json json = model;
  for (const char* key : {"checksum", "checksumValid"}) json.erase(key);
  if (model.aspectRatioX100 == 100) json["aspectRatioX100"] = 0;  // 1:1 is below what is written
  for (const DtdSlot& slot : model.descriptors) json["descriptors"].push_back(slot.bytes);
  return json;
}

Json Content(const CeaBlock& model) {
  Json json = model;
  for (const char* key : {"checksum", "checksumValid", "dtdOffset", "freeSpace"}) json.erase(key);
  for (unsigned i = 0; i < model.dataBlockCount; ++i) {
    const CeaDataBlock& entry = model.dataBlocks[i];
    json["dataBlocks"].push_back(ByteVector(entry.bytes, entry.bytes + entry.size));
    // A block of one byte has no extended tag of its own; what follows it is moved.
    json["extTags"].push_back(entry.size > 1 ? entry.extTag : 0);
  }
  for (unsigned i = 0; i < model.dtdCount; ++i) json["dtds"].push_back(model.dtds[i].bytes);
  return json;
}

Json Content(const DispIdBlock& model) {
  Json json = model;
  for (const char* key : {"checksum", "checksumValid", "sectionSize"}) json.erase(key);
  // A first section is written without product type, the others without count.
  json.erase(model.type == EDID_BLOCK_DISPID_FIRST ? "productType" : "extensionCount");
  for (unsigned i = 0; i < model.dataBlockCount; ++i) {
    const DispIdDataBlock& entry = model.dataBlocks[i];
    json["dataBlocks"].push_back(ByteVector(entry.bytes, entry.bytes + entry.size));
  }
  return json;
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
  const Image handle(EDID_Open(exact.data(), exact.size()));
  if (!handle) return;
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

void ForEachImage(void (*ask)(const ByteVector& bytes)) {
  EXPECT_GE(Corpus().size(), 5u);
  for (const auto& [name, bytes] : Corpus()) {
    SCOPED_TRACE(name);
    Quietly([&, &image = bytes] { ask(image); });
  }
}

TEST(Corpus, ComesOutAsItWentIn) {
  ForEachImage(AskEverything);
}

TEST(Corpus, CutAtEveryLength) {
  ForEachImage([](const ByteVector& bytes) {
    for (auto end = bytes.begin(); end < bytes.end(); ++end) {
      AskEverything(ByteVector(bytes.begin(), end));
      // The same bytes as sections, whose lengths are their own.
      if (end > bytes.begin() + 128) AskEverything(ByteVector(bytes.begin() + 128, end));
    }
  });
}

TEST(Corpus, ChangedInEveryByte) {
  ForEachImage([](const ByteVector& bytes) {
    for (size_t at = 0; at < bytes.size(); ++at) {
      ByteVector changed = bytes;
      changed[at] = static_cast<uint8_t>(at % 2 == 0 ? ~changed[at] : changed[at] + 0x21);
      AskEverything(changed);
    }
  });
}

}  // namespace
}  // namespace reedid::test
