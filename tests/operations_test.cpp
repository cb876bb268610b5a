// The whole table of operations over images of every kind, with each allocation failing in turn.
#include "tests/support/operations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <span>

#include "inventory/walk.h"
#include "tests/support/edid_builder.h"
#include "tests/support/failing_malloc.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"
#include "tests/support/sample_images.h"

namespace reedid::test {
namespace {

constexpr unsigned kMoreThanAnyNeeds = 5000;

// Whether every block has its bytes and the image can be written whole.
bool IsUsable(EdidHandle& handle) {
  size_t total = 0;
  for (const EdidBlock& block : std::span(handle.blocks, handle.blocks == nullptr ? 0 : handle.blockCount)) {
    if (block.bytes == nullptr) return false;
    total += block.size;
  }
  return total == 0 || Generate(&handle).size() == total;
}

// Done, or not done and told; of an operation that goes block by block, each block for itself.
bool IsAllOrNothing(const Operation& operation, const ByteVector& before, const Outcome& now, const Outcome& done) {
  if (now == done || now == Outcome{-1, before}) return true;
  if (!operation.byBlock || now.result != -1 || now.image.size() != before.size()) return false;
  const Image blocks(before);
  for (size_t i = 0, at = 0; i < blocks->blockCount; at += blocks->blocks[i++].size) {
    const auto isThat = [&](const ByteVector& image) {
      return image.size() == before.size() &&
             std::equal(image.data() + at, image.data() + at + blocks->blocks[i].size, now.image.data() + at);
    };
    if (!isThat(before) && !isThat(done.image)) return false;
  }
  return true;
}

// Whether the operation asked for its `nth` allocation.
bool FailsAt(const Operation& operation, const ByteVector& image, const Outcome& done, unsigned nth) {
  bool failed = false;
  int32_t result = 0;
  const long before = LiveAllocations();
  {
    Image handle;
    LogOf([&] { handle = Image(image); });
    const std::string log = LogOf([&] {
      const FailingMalloc failing(nth);
      result = operation.run(*handle);
      failed = failing.Failed();
    });
    EXPECT_EQ(log.find("malloc fail") != std::string::npos, failed) << log;
    EXPECT_TRUE(IsUsable(*handle));
    EXPECT_TRUE(IsAllOrNothing(operation, image, {result, Generate(handle.get())}, done)) << "half done, or not told";
    LogOf([&] { operation.run(*handle); });
    EXPECT_TRUE(IsUsable(*handle));
  }
  EXPECT_EQ(LiveAllocations(), before) << "leaked";
  return failed;
}

TEST(Operations, OutliveAnyFailedAllocation) {
  for (const SampleImage& sample : SampleImages()) {
    for (const Operation& operation : Operations()) {
      SCOPED_TRACE(sample.name + ": " + operation.name);
      Outcome done;
      Quietly([&] { done = OutcomeOf(operation, sample.bytes); });
      unsigned nth = 1;
      while (nth < kMoreThanAnyNeeds && FailsAt(operation, sample.bytes, done, nth) && !testing::Test::HasFailure())
        ++nth;
      EXPECT_LT(nth, kMoreThanAnyNeeds);
      if (testing::Test::HasFailure()) FAIL() << "allocation " << nth;
    }
  }
}

// Pointers to blocks outlive an edit that removes none.
TEST(Operations, LeaveBlocksWhereTheyAre) {
  for (const SampleImage& sample : SampleImages()) {
    for (const Operation& operation : Operations()) {
      SCOPED_TRACE(sample.name + ": " + operation.name);
      Image handle;
      Quietly([&] { handle = Image(sample.bytes); });
      const EdidBlock* const array = handle->blocks;
      const std::vector<EdidBlock> before(array, array + handle->blockCount);
      Quietly([&] { operation.run(*handle); });
      if (handle->blockCount != before.size() || operation.name == std::string("EDID_DVItoHDMI")) continue;
      EXPECT_EQ(handle->blocks, array);
      for (size_t i = 0; i < before.size(); ++i) EXPECT_EQ(handle->blocks[i].bytes, before[i].bytes);
    }
  }
}

TEST(Operations, ModelsTellTheirGaps) {
  for (const SampleImage& sample : SampleImages()) {
    Image handle;
    Quietly([&] { handle = Image(sample.bytes); });
    VisitBlocks(*handle, [&]<class Model>(const Model& whole) {
      EXPECT_TRUE(IsComplete(whole));
      const EdidBlock* const block = std::find_if(handle->blocks, handle->blocks + handle->blockCount,
                                                  [](const EdidBlock& b) { return Family<Model>::Owns(b.type); });
      unsigned nth = 0, failed = 1;
      while (failed != 0) {
        ++nth;
        SCOPED_TRACE(sample.name + ", allocation " + std::to_string(nth));
        Opened<Model> model;
        MemoryWatch memory;
        const std::string log = LogOf([&] {
          const FailingMalloc failing(nth);
          model = Open<Model>(*block, memory);
          failed = failing.Failed();
        });
        EXPECT_EQ(memory.sufficed(), failed == 0);
        EXPECT_EQ(model != nullptr && IsComplete(*model), failed == 0) << log;
      }
    });
  }
}

// What was copied before memory ran out is there.
TEST(Operations, OpenWhatMemoryAllows) {
  const ByteVector edid = Edid().Extension(Cta().Vdb({16, 31})).Extension(Cta().Vdb({16, 31})).Build();
  const ByteVector sections = Concat({Section().ExtensionCount(2).Build(), Section().Build(), Section().Build()});
  for (const ByteVector& image : {edid, sections}) {
    for (unsigned nth = 1; nth <= 6; ++nth) {  // handle, array, three blocks
      SCOPED_TRACE(nth);
      Image handle;
      EXPECT_EQ(LogOf([&] {
                  const FailingMalloc failing(nth);
                  handle = Image(image);
                }),
                nth > 5 ? "" : Err(image == edid ? "ParseEdid" : "ParseDisplayID", "malloc fail"));
      ASSERT_EQ(static_cast<bool>(handle), nth > 2);
      EXPECT_TRUE(!handle || handle->blockCount == std::min(nth - 3, 3u)) << "the blocks copied so far";
    }
  }
}

TEST(Operations, RefuseWhatIsNotThere) {
  EdidHandle empty = {};
  const Image handle(Edid().Build()), bare(Edid().Build());
  EDID_DeleteBlock(bare.get(), bare->blocks);
  uint16_t rate = 60;
  DtdTiming timing;
  AudioFmtCap cap;
  const std::pair<const char*, std::function<void()>> refused[] = {
      {"isValidEdid", [&] { EXPECT_EQ(isValidEdid(nullptr), 0); }},
      {"isValidEdid", [&] { EXPECT_EQ(isValidEdid(&empty), 0); }},
      {"CEA_IsComplete", [] { EXPECT_EQ(CEA_IsComplete(nullptr), 0); }},
      {"DispID_IsComplete", [] { EXPECT_EQ(DispID_IsComplete(nullptr), 0); }},
      {"isDVIEdid", [&] { EXPECT_EQ(isDVIEdid(nullptr), 0); }},
      {"isDVIEdid", [&] { EXPECT_EQ(isDVIEdid(&empty), 0); }},
      {"EDID_DVItoHDMI", [&] { EXPECT_EQ(EDID_DVItoHDMI(nullptr, 0x1000), -1); }},
      {"EDID_DVItoHDMI", [&] { EXPECT_EQ(EDID_DVItoHDMI(&empty, 0x1000), -1); }},
      {"EDID_GetAudioFmtCap", [&] { EXPECT_EQ(EDID_GetAudioFmtCap(handle.get(), nullptr), -1); }},
      {"EDID_GetAudioFmtCap", [&] { EXPECT_EQ(EDID_GetAudioFmtCap(nullptr, &cap), -1); }},
      {"EDID_GenerateImage", [&] { EXPECT_EQ(EDID_GenerateImage(nullptr, &cap.lpcm, 1), -1); }},
      {"EDID_GenerateImage", [&] { EXPECT_EQ(EDID_GenerateImage(&empty, &cap.lpcm, 1), -1); }},
      {"EDID_GenerateImage", [&] { EXPECT_EQ(EDID_GenerateImage(handle.get(), nullptr, 999), -1); }},
      {"EDID_MakeHdmi", [] { EXPECT_EQ(EDID_MakeHdmi(nullptr, 0x1000), -1); }},
      {"EDID_MakeHdmi", [&] { EXPECT_EQ(EDID_MakeHdmi(&empty, 0x1000), -1); }},
      {"EDID_StripHdr", [] { EXPECT_EQ(EDID_StripHdr(nullptr), -1); }},
      {"EDID_StripHdr", [&] { EXPECT_EQ(EDID_StripHdr(&empty), -1); }},
      {"EDID_PatchPhyAddr", [] { EXPECT_EQ(EDID_PatchPhyAddr(nullptr, 0x1000), -1); }},
      {"EDID_LimitToStereo", [&] { EXPECT_EQ(EDID_LimitToStereo(&empty), -1); }},
      {"EDID_PatchPhyAddr", [&] { EXPECT_EQ(EDID_PatchPhyAddr(&empty, 0x1000), -1); }},
      {"EDID_LimitToPCM2CH", [] { EDID_LimitToPCM2CH(nullptr); }},
      {"EDID_LimitToFrl40G", [] { EDID_LimitToFrl40G(nullptr); }},
      {"EDID_LimitToSDR", [] { EDID_LimitToSDR(nullptr); }},
      {"EDID_HighRefreshRate", [] { EXPECT_EQ(EDID_HighRefreshRate(nullptr), -1); }},
      {"DeleteEODB", [] { DeleteEODB(nullptr); }},
      {"EDID_GetAllFrameRate", [&] { EXPECT_EQ(EDID_GetAllFrameRate(nullptr, &rate, 1), 0u); }},
      {"EDID_GetAllFrameRate", [&] { EXPECT_EQ(EDID_GetAllFrameRate(&empty, &rate, 1), 0u); }},
      {"EDID_GetAllFrameRate", [&] { EXPECT_EQ(EDID_GetAllFrameRate(handle.get(), nullptr, 1), 0u); }},
      {"EDID_GetDTDCnt", [] { EXPECT_EQ(EDID_GetDTDCnt(nullptr), 0u); }},
      {"EDID_FindOutAllDTD", [&] { EXPECT_EQ(EDID_FindOutAllDTD(nullptr, &timing, 1), 0u); }},
      {"SortDTDbyFrameRate", [] { SortDTDbyFrameRate(nullptr, 3); }},
      {"EDID_GetPreferredTiming", [&] { EDID_GetPreferredTiming(nullptr, &timing); }},
      {"EDID_LimitToHDMI20", [&] { EDID_LimitToHDMI20(nullptr, &rate, 1); }},
      {"EDID_LimitToHDMI20", [&] { EDID_LimitToHDMI20(&empty, &rate, 1); }},
      {"EDID_LimitToHDMI20", [&] { EDID_LimitToHDMI20(handle.get(), nullptr, 1); }},
      {"EDID_LimitToHDMI20", [&] { EDID_LimitToHDMI20(handle.get(), &rate, 0); }},
      {"EDID_LimitToHDMI14", [&] { EDID_LimitToHDMI14(handle.get(), &rate, 0); }},
  };
  for (const auto& [name, call] : refused) EXPECT_EQ(LogOf(call), Err(name, "invalid parameters"));
  EXPECT_EQ(LogOf([&] {
              EXPECT_EQ(EDID_GetPhyAddr(nullptr) & EDID_GetPhyAddr(&empty), 0xFFFF);
              EXPECT_EQ(EDID_SetPhyAddr(nullptr, 0x1000) + EDID_SetPhyAddr(&empty, 0x1000), -2);
              EXPECT_EQ(EDID_GetDTDCnt(&empty) + EDID_FindOutAllDTD(&empty, &timing, 1), 0u);
              EXPECT_EQ(EDID_GetAllFrameRate(bare.get(), &rate, 1), 0u);
              EXPECT_EQ(VESA_LimitToHDMI20(nullptr, &rate, 1) + VESA_LimitToHDMI14(nullptr, &rate, 1), -2);
              CEA_LimitToHDMI20(nullptr, &rate, 1);
              CEA_LimitToHDMI14(nullptr, &rate, 1);
              DispID_LimitToHDMI20(nullptr, &rate, 1);
            }),
            "");
  EXPECT_EQ(rate, 60);
}

}  // namespace
}  // namespace reedid::test
