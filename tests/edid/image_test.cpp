#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

TEST(Image, OpensEachKindOfBlock) {
  struct Case {
    uint8_t tag;
    uint8_t type;
    std::string log;
  };
  const Case cases[] = {
      {0x02, EDID_BLOCK_CEA, ""},
      {0x70, EDID_BLOCK_DISPID_EXT, ""},
      {0xF0, EDID_BLOCK_MAP, ""},
      {0x10, EDID_BLOCK_UNKNOWN, Warn("ParseEdid", "unknown extension block(tag=10)")},
      {0x00, EDID_BLOCK_UNKNOWN, Warn("ParseEdid", "unknown extension block(tag=00)")},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(int{c.tag});
    ByteVector extension(128);
    extension[0] = c.tag;
    Owned<EdidHandle> handle;
    EXPECT_EQ(LogOf([&] { handle = OpenImage(Edid().Extension(extension).Build()); }), c.log);
    ASSERT_EQ(handle->blockCount, 2);
    EXPECT_EQ(handle->blocks[0].type, EDID_BLOCK_VESA);
    EXPECT_EQ(handle->blocks[1].type, c.type);
    EXPECT_EQ(handle->blocks[1].capacity, 128);
    EXPECT_EQ(handle->blocks[1].size, 128);
  }
}

}  // namespace
}  // namespace reedid::test
