#include "base/bytes.h"

#include <gtest/gtest.h>

#include "tests/support/bytes.h"

namespace reedid::test {
namespace {

TEST(Bytes, EndWhereTheyEnd) {
  const ExactBytes exact({0x11, 0x22, 0x33});
  const Bytes bytes(exact.data(), exact.size());
  EXPECT_EQ(bytes[2], 0x33);
  EXPECT_EQ(bytes[3], 0);
  EXPECT_EQ(bytes.Le16(1), 0x3322);
  EXPECT_EQ(bytes.Le16(2), 0x0033);
  EXPECT_EQ(bytes.Le24(0), 0x332211u);
  EXPECT_EQ(bytes.Le32(0), 0x00332211u);
  EXPECT_EQ(bytes.From(1)[1], 0x33);
  EXPECT_EQ(bytes.From(3).size(), 0u);
  EXPECT_EQ(bytes.From(1).First(1)[1], 0) << "a part does not reach into what follows it";
  EXPECT_EQ(bytes.First(9).size(), 3u);
  EXPECT_EQ(Bytes(nullptr, 5)[0], 0);
}

TEST(Bytes, PutLittleEndian) {
  uint8_t bytes[10] = {};
  PutLe16(bytes, 0x51234);
  PutLe24(bytes + 2, 0x9A785634);
  PutLe32(bytes + 5, 0xDEADBEEF);
  EXPECT_EQ(ByteVector(bytes, bytes + 10), ByteVector({0x34, 0x12, 0x34, 0x56, 0x78, 0xEF, 0xBE, 0xAD, 0xDE, 0}));
}

}  // namespace
}  // namespace reedid::test
