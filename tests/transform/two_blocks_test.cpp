#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

DtdTiming Sized(DtdTiming timing, uint16_t width, uint16_t height) {
  timing.hImageSize = width;
  timing.vImageSize = height;
  return timing;
}

// The blocks that stay keep their bytes; what the others have comes in where there is room.
TEST(FitTwoBlocks, KeepsAndFills) {
  const DtdTiming first = Sized(k1080p60, 600, 340), hd = Sized(k720p60, 600, 340);
  const DtdTiming fast = Sized(AtClock(k1080p60, 297000), 600, 340), uhd = Sized(k2160p60, 600, 340);
  const Cta cta = Cta().Flags(0x41).Vdb({16}).Dtd(first);
  const ByteVector dummy = Hex("00 00 00 10 00*14"), filler(31, 0x11);
  const auto fullWith = [&](uint8_t reference) {
    return Cta()
        .Flags(0x41)
        .Vdb({16})
        .Block(3, filler)
        .Block(3, filler)
        .Block(3, filler)
        .Block(3, ByteVector(10, 0x11))
        .Extended(13, {129, reference});
  };
  const Cta full = fullWith(130);
  const auto type1 = [](const std::vector<DtdTiming>& timings) { return Section().TypeI(timings); };
  CvtTiming request = {};
  request.formula = 2;
  request.aspectRatio = ASPECT_16_9;
  request.hactive = 1920;
  request.vactive = 1080;
  request.frameRate = 120;
  DtdTiming high;
  ASSERT_EQ(Cvt2ToDtd(&request, &high), 0);
  high = Sized(high, 600, 340);
  const struct {
    const char* name;
    Edid before, after;
  } rows[] = {
      {"behind the timings of the extension, fast ones first; what is there already stays away",
       Edid().Dtd(first).Extension(type1({hd, first, fast})).Extension(cta),
       Edid().Dtd(first).Extension(Cta(cta).Dtd(fast).Dtd(hd))},
      {"in the base block when the extension is full: names move down, references follow",
       Edid().Dtd(first).Name("a").Slot(dummy).Extension(full).Extension(type1({fast})),
       Edid().Dtd(first).Dtd(fast).Name("a").Extension(fullWith(131))},
      {"not among native ones", Edid().Dtd(first).Slot(dummy).Extension(Cta(full).Flags(0x42)).Extension(type1({fast})),
       Edid().Dtd(first).Slot(dummy).Extension(Cta(full).Flags(0x42))},
      {"a format of another extension comes as one", Edid().Dtd(first).Extension(cta).Extension(Cta().Vdb({4, 97})),
       Edid().Dtd(first).Extension(Cta().Flags(0x41).Vdb({16, 97, 4}).Dtd(first))},
      {"not where all formats are told to have 3D",
       Edid().Dtd(first).Extension(Cta().Vdb({16}).Hdmi(0x1000, {0, 60, 0x20, 0x80, 0})).Extension(Cta().Vdb({97})),
       Edid().Dtd(first).Extension(Cta().Vdb({16}).Hdmi(0x1000, {0, 60, 0x20, 0x80, 0}).Dtd(uhd))},
      {"slowed down to a rate of the display, and the high rate at a smaller size",
       Edid().Dtd(first).Extension(cta).Extension(type1({AtClock(uhd, 1188000)})),
       Edid().Dtd(first).Extension(Cta(cta).Dtd(high).Dtd(uhd))},
      {"range limits hold it",
       Edid().Dtd(first).Descriptor(0xFD, Hex("00 38 4B 1E 50 0F 01 0A 20*06")).Extension(cta).Extension(type1({fast})),
       Edid().Dtd(first).Descriptor(0xFD, Hex("00 38 78 1E 87 1E 01 0A 20*06")).Extension(Cta(cta).Dtd(fast))},
  };
  for (const auto& row : rows) {
    const Image handle(row.before.Build());
    EXPECT_EQ(EDID_FitTwoBlocks(handle.get()), 0) << row.name;
    EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(row.after.Build())) << row.name;
  }
  EXPECT_EQ(LogOf([] { EXPECT_EQ(EDID_FitTwoBlocks(nullptr), -1); }), Err("EDID_FitTwoBlocks", "invalid parameters"));
}

}  // namespace
}  // namespace reedid::test
