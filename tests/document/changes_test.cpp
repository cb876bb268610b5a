#include "document/compare/changes.h"

#include <gtest/gtest.h>

#include "document/account/image_account.h"
#include "tests/document/sound_images.h"
#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"

namespace reedid::document {
namespace {

using test::AtClock;
using test::Cta;
using test::Edid;
using test::k1080p60;
using test::k2160p60;
using test::k720p60;

Node Account(const Edid& edid) {
  Node node;
  test::Quietly([&] { node = DescribeImage(Image::FromBytes("x", edid.Build())); });
  return node;
}

Edid With(const Cta& cta) {
  return Edid().Extension(cta);
}

TEST(Changes, EachKind) {
  const std::tuple<const char*, Edid, Edid, const char*> cases[] = {
      {"kept", Edid().Dtd(k1080p60), Edid().Dtd(k1080p60), "kept      detailed timing  1920x1080 60.000 Hz"},
      {"lowered", Edid().Dtd(AtClock(k2160p60, 650000)), Edid().Dtd(k2160p60),
       "Hz 650.000 MHz -> 3840x2160 60.000 Hz 594.000 MHz"},
      {"raised", Edid().Dtd(AtClock(k2160p60, 297000)), Edid().Dtd(k2160p60), "raised    detailed"},
      {"dropped", Edid().Dtd(k1080p60), Edid(), "dropped   detailed timing  1920x1080"},
      {"another format is no lowering", Edid().Dtd(k1080p60), Edid().Dtd(k720p60),
       "dropped   detailed timing  1920x1080"},
      {"porches alone", Edid().Dtd(k1080p60),
       Edid().Dtd({148500, 1920, 280, 80, 44, 1080, 45, 4, 5, 1, 1, 0, 60, 8, 0, 0, 0, 0, 0}),
       "replaced  detailed timing"},
      {"VIC replaced", With(Cta().Vdb({118})), With(Cta().Vdb({97})), "replaced  VIC              118 (3840x2160 120"},
      {"VIC moved to 4:2:0", With(Cta().Vdb({118})), With(Cta().Vdb({}).Extended(14, {118})), "-> 4:2:0 VIC 118 ("},
      {"one of two equal VICs", With(Cta().Vdb({16, 16})), With(Cta().Vdb({16})), "dropped   VIC              16 ("},
      {"field of a block", With(Cta().Hdmi(0x1000)), With(Cta().Hdmi(0x2000)), "Physical address  1.0.0.0 -> 2.0.0.0"},
      {"bytes without a reader", With(Cta().Extended(99, {1})), With(Cta().Extended(99, {2})),
       "Reserved Data Block (7/99) / Bytes, byte 6  01 -> 02"},
      {"native mark", With(Cta().Vdb({16})), With(Cta().Vdb({0x90})),
       "16:9 -> VIC 16: 1920x1080 60.000 Hz 148.500 MHz"},
      {"image size", Edid().Dtd(k1080p60), Edid().Dtd(test::Sized(k1080p60)),
       "detailed timing / Image size  600 x 340 mm\n1 kept, 0 lowered, 0 raised, 0 replaced, 0 dropped, 1 added, 1 "
       "changed, 0 m"},
      {"a reserved bit", Edid().Dtd(k1080p60), Edid().Dtd(k1080p60).Set(24, {0x42}), "Features"},
      {"another order of VICs", With(Cta().Vdb({16, 4})), With(Cta().Vdb({4, 16})),
       "moved     Block 1: CTA-861 extension / Video Data Block (2)  byte 5 -> byte 6\n"},
      {"another order of blocks", With(Cta().Vdb({16, 4}).Hdmi(0x1000)), With(Cta().Hdmi(0x1000).Vdb({16, 4})),
       "(3), HDMI 1.4b  bytes 7-14 -> bytes 4-11\n"},
      {"into another extension", Edid().Extension(Cta().Vdb({16}).Hdmi(0x1000)).Extension(Cta().Vdb({4})),
       Edid().Extension(Cta().Vdb({16})).Extension(Cta().Vdb({4}).Hdmi(0x1000)),
       "Block 1: CTA-861 extension, bytes 6-13 -> Block 2: CTA-861 extension, bytes 6-13\n"},
      {"a new block moves others", With(Cta().Hdmi(0x1000).Dtd(k720p60)),
       With(Cta().Vdb({16}).Hdmi(0x1000).Dtd(k720p60)), "HDMI 1.4b to Detailed timing 1  bytes 4-29 -> bytes 6-31\n"},
      {"an extension that is gone", With(Cta().Vdb({16})), Edid(),
       "dropped   Block 1: CTA-861 extension / Revision  3\n"},
      {"a checksum in one line", With(Cta().Vdb({16})), With(Cta().Vdb({17})), "CTA-861 extension / Checksum  "},
  };
  for (const auto& [name, before, after, line] : cases) {
    const std::string text = ChangesText(FindChanges(Account(before), Account(after)), true);
    EXPECT_NE(text.find(line), std::string::npos) << name << ":\n" << text;
  }
}

}  // namespace
}  // namespace reedid::document
