// The n-th allocation fails, for n = 1, 2, ... until none does: no crash, no leak, nothing lost, and what is left
// works.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/data_block.h"
#include "tests/support/edid_builder.h"
#include "tests/support/failing_malloc.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

const Cta kCta = Cta().Vdb({16, 31}).Block(5, {1}).Dtd(k1080p60);

// Every road from an image through its models and back. Checks that a refused call leaves a model as it was.
int32_t EditModels(EdidHandle* handle) {
  int32_t result = 0;
  const Owned<CeaBlock> cea(CEA_Open(&handle->blocks[1]));
  const Owned<DispIdBlock> section(DispID_Open(&handle->blocks[2]));
  const Owned<VesaBlock> vesa(VESA_Open(&handle->blocks[0]));
  if (cea == nullptr || section == nullptr || vesa == nullptr) return -1;
  const DataBlock block({0x23, 0x09, 0x04, 0x01});
  const DtdSlot slot = SlotOf(k720p60);
  uint8_t bytes[] = {9, 0, 2, 7, 7};  // as large as the one that is there
  const DispIdDataBlock entry = {9, 0, 0, 5, bytes};
  const auto check = [&result](unsigned more, const std::function<unsigned()>& count,
                               const std::function<int32_t()>& add) {
    const unsigned before = count();
    const int32_t added = add();
    EXPECT_EQ(count(), added == 0 ? before + more : before);
    result |= added;
  };
  check(
      1, [&] { return cea->dataBlockCount; }, [&] { return CEA_AddDataBlock(cea.get(), &block, 1); });
  check(
      1, [&] { return 255u - cea->freeSpace; },
      [&] { return CEA_ReplaceDataBlock(cea.get(), &cea->dataBlocks[0], &block); });
  check(
      1, [&] { return cea->dtds == nullptr ? 0 : cea->dtdCount; }, [&] { return CEA_AddDTD(cea.get(), &slot, 0); });
  check(
      5, [&] { return section->payloadUsed; }, [&] { return DispID_AddDB(section.get(), &entry, 0); });
  check(
      0, [&] { return section->payloadUsed; },
      [&] { return DispID_ReplaceDB(section.get(), &section->dataBlocks[0], &entry); });
  EXPECT_EQ(CEA_GenerateBlock(cea.get(), &handle->blocks[1]), 0);
  EXPECT_EQ(DispID_GenerateBlock(section.get(), &handle->blocks[2]), 0);
  EXPECT_EQ(VESA_GenerateBlock(vesa.get(), &handle->blocks[0]), 0);
  return result;
}

TEST(Allocation, MayFailAnywhere) {
  struct Case {
    const char* name;
    bool keepsImage;  // when it fails
    std::function<int32_t(EdidHandle*)> work;
  };
  const Block extra(EDID_BLOCK_CEA, kCta.Build());
  const Case cases[] = {
      {"add a block", true, [&](EdidHandle* h) { return EDID_AddBlock(h, &extra, 1); }},
      {"generate", true, [](EdidHandle* h) { return Generate(h).empty() ? -1 : 0; }},
      {"ask", true, [](EdidHandle* h) { return isValidEdid(h) - 1 + (isDVIEdid(h) - 1); }},
      {"set the address", true, [](EdidHandle* h) { return EDID_SetPhyAddr(h, 0x2000); }},
      {"DVI to HDMI", false, [](EdidHandle* h) { return EDID_DVItoHDMI(h, 0x1000); }},
      {"edit the models", false, EditModels},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const bool hdmi = std::string(c.name) == "set the address";
    const Cta cta = hdmi ? Cta(kCta).Hdmi(0x1000) : kCta;
    const ByteVector image = Edid().Extension(cta).Extension(Section().Block(1, 0, {1, 2})).Build();
    unsigned nth = 0;
    for (bool failed = true; failed && nth < 200;) {
      SCOPED_TRACE(++nth);
      const Owned<EdidHandle> handle = OpenImage(image);
      int32_t result = 0;
      const std::string log = LogOf([&] {
        const FailingMalloc failing(nth);
        result = c.work(handle.get());
        failed = failing.Failed();
      });
      EXPECT_EQ(log.find("malloc fail") != std::string::npos, failed) << log;
      EXPECT_TRUE(failed || result == 0) << log;
      EXPECT_TRUE(!failed || !c.keepsImage || Generate(handle.get()) == image);
      const Block block(EDID_BLOCK_CEA, kCta.Build());
      EXPECT_EQ(EDID_AddBlock(handle.get(), &block, 9), 0) << "the handle is still good";
    }
    EXPECT_LT(nth, 200u);
  }
}

TEST(Allocation, MayFailWhileOpening) {
  const ByteVector edid = Edid().Extension(kCta).Extension(kCta).Build();
  const ByteVector sections = Concat({Section().ExtensionCount(2).Build(), Section().Build(), Section().Build()});
  for (const ByteVector& image : {edid, sections}) {
    for (unsigned nth = 1; nth <= 6; ++nth) {  // handle, array, three blocks
      SCOPED_TRACE(nth);
      Owned<EdidHandle> handle;
      EXPECT_EQ(LogOf([&] {
                  const FailingMalloc failing(nth);
                  handle = OpenImage(image);
                }),
                nth > 5 ? "" : Err(image == edid ? "ParseEdid" : "ParseDisplayID", "malloc fail"));
      ASSERT_EQ(handle != nullptr, nth > 2);
      EXPECT_TRUE(handle == nullptr || handle->blockCount == std::min(nth - 3, 3u)) << "the blocks copied so far";
    }
  }
}

}  // namespace
}  // namespace reedid::test
