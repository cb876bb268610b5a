#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"

namespace reedid::test {
namespace {

constexpr DtdTiming k1280x1024 = {108000, 1280, 408, 48, 112, 1024, 42, 1, 3, 1, 1, 0, 60, 8, 0, 0, 0, 0, 0};
constexpr DtdTiming k2560x1440 = {241500, 2560, 160, 48, 32, 1440, 41, 3, 5, 1, 0, 0, 60, 8, 0, 0, 0, 0, 0};

// 640x480 by formula, as many records as `count`, at 60, 61, 62, ... Hz.
ByteVector TypeX(unsigned count) {
  ByteVector payload = {0};
  for (unsigned i = 0; i < count; ++i) {
    const uint8_t record[] = {2, 0x7F, 2, 0xDF, 1, static_cast<uint8_t>(59 + i)};
    payload.insert(payload.end(), std::begin(record), std::end(record));
  }
  return payload;
}

const ByteVector kType7 = {2, 0x2F, 0x11, 0x09, 4, 0xFF, 0x0E, 0x2F, 2, 0xAF, 0, 0x57, 0, 0x6F, 8, 0x59, 0, 7, 0, 9, 0};

TEST(Preferred, Timing) {
  const auto svr = [](uint8_t reference) { return Cta().Block(7, {13, reference}); };  // the format preference block
  const auto withSvr = [&](uint8_t reference) {
    return Edid().Dtd(k720p60).Dtd(k1280x1024).Extension(svr(reference).Vdb({16}));
  };
  const struct {
    const char* name;
    Edid image;
    uint16_t hactive;  // 0: no answer
    uint32_t pixelClock;
    uint16_t hImageSize = 0;  // 500: what stood there before, which a VIC does not know
  } cases[] = {
      {"a VIC before the first DTD", withSvr(16), 1920, 148500, 500},
      {"the first VIC", withSvr(1), 640, 25175, 500},
      {"a VIC of the upper range", withSvr(200), 7680, 4752000, 500},
      {"a DTD by number", withSvr(130), 1280, 108000},
      {"a DTD beyond the last: the first counts", withSvr(131), 1280, 74250},
      {"reserved: the first DTD counts", withSvr(170), 1280, 74250},
      {"no reference", withSvr(128), 1280, 74250},
      {"timing code, which nothing answers", withSvr(254), 1280, 74250},
      {"the first of four records of type X, behind one of type VII",
       Edid().Extension(svr(146).Extended(0x22, kType7).Extended(0x2A, TypeX(4))), 640, 21384},
      {"a number beyond the last of them", Edid().Dtd(k720p60).Extension(svr(146).Extended(0x22, kType7)), 1280, 74250},
      {"type VII", Edid().Extension(svr(145).Extended(0x22, kType7)), 3840, 594224},
      {"type X of one record points behind it", Edid().Dtd(k720p60).Extension(svr(145).Extended(0x2A, TypeX(1))), 1280,
       74250},
      {"a wide timing behind a narrow first one", Edid().Dtd(k1280x1024).Dtd(k1080p60), 1920, 148500},
      {"a wider timing behind a wide first one", Edid().Dtd(k2560x1440).Dtd(k2160p60), 2560, 241500},
      {"a larger but narrow timing", Edid().Dtd(k720p60).Dtd(k1280x1024), 1280, 74250},
      {"no DTD: the native VIC", Edid().Extension(Cta().Vdb({16, 0x84})), 1280, 74250, 500},
      {"no DTD, no VIC", Edid().Extension(Cta().Hdmi(0x1000)), 0, 0, 500},
      {"nothing at all", Edid(), 0, 0, 500},
  };
  for (const auto& c : cases) {
    DtdTiming out = {};
    out.hImageSize = 500;
    EDID_GetPreferredTiming(Image(c.image.Build()).get(), &out);
    EXPECT_EQ(out.hactive, c.hactive) << c.name;
    EXPECT_EQ(out.pixelClock, c.pixelClock) << c.name;
    EXPECT_EQ(out.hImageSize, c.hImageSize) << c.name;
  }
}

}  // namespace
}  // namespace reedid::test
