#include "document/compare/changes.h"

#include <gtest/gtest.h>

#include "document/account/image_account.h"
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
      {"bytes without a reader", With(Cta().Extended(99, {1})), With(Cta().Extended(99, {2})), "01 -> 02"},
  };
  for (const auto& [name, before, after, line] : cases) {
    const std::string text = ChangesText(FindChanges(Account(before), Account(after)));
    EXPECT_NE(text.find(line), std::string::npos) << name << ":\n" << text;
  }
}

}  // namespace
}  // namespace reedid::document
