#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "document/account/image_account.h"
#include "document/edit/address.h"
#include "document/edit/edits.h"
#include "document/edit/high_refresh.h"
#include "document/edit/to_hdmi.h"
#include "document/read/samples.h"
#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"

namespace reedid::document {
namespace {

using test::AtClock;
using test::Cta;
using test::Edid;
using test::k2160p60;
using test::Section;

Image Open(const Edid& edid) {
  return Image::FromBytes("x", edid.Build());
}

Image Sample(const char* name) {
  return Image::FromBytes("x", SampleBytes(name));
}

// Why an edit is stopped; nothing when it is not.
std::optional<Error> WhyStopped(const std::function<void(Notes&)>& work, Notes& notes) {
  std::optional<Error> why;
  test::Quietly([&] {
    try {
      work(notes);
    } catch (const Error& error) {
      why = error;
    }
  });
  return why;
}

TEST(Edit, Stops) {
  const EdidLink slowLink = {20000, 0, 0, 0, 0, 0, 0, 0, 0, 0, nullptr, 0};
  const Limit slow = {"slow", "", &slowLink, nullptr};
  const Edid analog = Edid().Set(20, {0x0E});
  const test::ByteVector filler(30, 0x11), rest(9, 0x11);
  const Edid full = Edid()
                        .Dtd(test::k1080p60)
                        .Extension(Cta()
                                       .Vdb({16, 95})
                                       .Hdmi(0x1000, {})
                                       .HdmiForum({1, 120, 0x80, 1})
                                       .Extended(14, {97})
                                       .Block(3, filler)
                                       .Block(3, filler)
                                       .Block(3, filler)
                                       .Block(3, rest));
  test::ByteVector damaged = Edid().Dtd(test::k1080p60).Set(20, {0xA5}).Extension(Cta().Dtd(test::k1080p60)).Build();
  std::fill_n(damaged.begin() + 128 + 4, 8, uint8_t{0});  // a timing without a picture,
  damaged[128 + 4] = damaged[128 + 5] = 0xFE;             // of 652 MHz
  const struct {
    const char* name;
    std::function<void(Notes&)> work;
    ErrorKind kind;
    const char* message;
  } cases[] = {
      {"a limit", [](Notes&) { FindLimit("hdmi21"); }, ErrorKind::kArgument, "hdmi20, hdmi14, dvi"},
      {"a rate of 0", [](Notes&) { ParseRates("60,0"); }, ErrorKind::kArgument, "120,60,50"},
      {"a rate that is missing", [](Notes&) { ParseRates("60,"); }, ErrorKind::kArgument, "'60,'"},
      {"three places", [](Notes&) { ParseAddress("1.2.3"); }, ErrorKind::kArgument, "1.2.0.0"},
      {"no hexadecimal digit", [](Notes&) { ParseAddress("0x12g4"); }, ErrorKind::kArgument, "'0x12g4'"},
      {"a digit behind a 0", [](Notes&) { ParseAddress("1.0.2.0"); }, ErrorKind::kRefused, "no port"},
      {"the root", [](Notes&) { ParseAddress("0.0.0.0"); }, ErrorKind::kRefused, "no port"},
      {"an address where no HDMI block can be", [&](Notes& notes) { SetAddress(Open(analog), 0x1000, notes); },
       ErrorKind::kRefused, "analog"},
      {"a clock that nothing fits", [&](Notes&) { ApplyLimit(Sample("dvi"), slow, {}); }, ErrorKind::kRefused,
       "not held to slow: the preferred timing (block 0, descriptor 1)"},
      {"no byte for the clock", [&](Notes&) { ApplyLimit(Open(full), FindLimit("300mhz-420"), {}); },
       ErrorKind::kRefused, "block 1, a CTA-861 extension, has no byte left"},
      {"timings that are none", [&](Notes& notes) { ToHdmi(Image::FromBytes("x", damaged), 0x1000, notes); },
       ErrorKind::kRefused, "counts bytes as timings"},
      {"HDMI already", [](Notes& notes) { ToHdmi(Sample("tv-4k"), 0x1000, notes); }, ErrorKind::kRefused,
       "address 1.0.0.0"},
      {"analog", [&](Notes& notes) { ToHdmi(Open(analog), 0x1000, notes); }, ErrorKind::kRefused, "analog"},
      {"no EDID",
       [](Notes& notes) { ToHdmi(Image::FromBytes("x", Section(0x12, 6).Block(0x55, 0, {7}).Build()), 0x1000, notes); },
       ErrorKind::kRefused, "no place"},
      {"two blocks", [](Notes&) { HighRefresh(Sample("tv-4k")); }, ErrorKind::kRefused, "two blocks"},
  };
  for (const auto& c : cases) {
    Notes notes;
    const std::optional<Error> why = WhyStopped(c.work, notes);
    ASSERT_TRUE(why) << c.name;
    EXPECT_EQ(why->kind(), c.kind) << c.name;
    EXPECT_NE(std::string(why->what()).find(c.message), std::string::npos) << c.name << ": " << why->what();
    EXPECT_TRUE(notes.empty()) << c.name;
  }
}

TEST(Edit, SeveralBehindEachOther) {
  const Edit edits[] = {LimitEdit(FindLimit("hdmi20"), {}), AddressEdit(0x2000), LimitEdit(FindLimit("hdmi14"), {}),
                        LimitEdit(FindLimit("sdr"), {})};
  const Image image = ApplyEdits(Sample("tv-4k120"), edits);
  EXPECT_EQ(AddressOf(image), 0x2000);
  const std::optional<EdidLink> slowest = SlowestLink(edits);
  ASSERT_TRUE(slowest);
  EXPECT_EQ(slowest->maxTmdsClock, EDID_LINK_HDMI14.maxTmdsClock);
  EXPECT_TRUE(TimingsAbove(image, EDID_LINK_HDMI14).empty());
}

// What a source of HDMI finds in an EDID that was one of DVI or DisplayPort.
TEST(Edit, ToHdmi) {
  Notes notes;
  const Edid displayPort = Edid()
                               .Dtd(k2160p60)
                               .Dtd(test::k1080p60)
                               .Set(20, {0xA5})
                               .Extension(Section(0x20).Block(0x25, 0, {0, 0, 0, 0, 0, 0, 0, 0, 0}).BuildExtension());
  const Image image = ToHdmi(Open(displayPort), 0x1200, notes);
  EXPECT_TRUE(notes.empty());
  ASSERT_EQ(image.blocks().size(), 3u);
  EXPECT_EQ(image.blocks()[1].type, EDID_BLOCK_CEA);  // sources look there
  EXPECT_EQ(image.blocks()[0].bytes[20], 0xA2);
  const test::ByteVector expected = {0x43, 97,   16,   1,    0x23, 0x09, 0x07, 0x07, 0x83, 0x01, 0x00, 0x00, 0x67,
                                     0x03, 0x0C, 0x00, 0x12, 0x00, 0x00, 68,   0x67, 0xD8, 0x5D, 0xC4, 0x01};
  const uint8_t* const cta = image.blocks()[1].bytes;
  EXPECT_EQ(test::ByteVector(cta + 4, cta + 4 + expected.size()), expected);
  const Edid fast = Edid().Dtd(AtClock(k2160p60, 650000)).Set(20, {0xA5});
  EXPECT_TRUE(TimingsAbove(ToHdmi(Open(fast), 0x1000, notes), EDID_LINK_HDMI20).empty());
  EXPECT_EQ(notes.size(), 1u);
}

// An address where no HDMI block is makes it one of HDMI, and says so.
TEST(Edit, AddressAddsTheBlock) {
  Notes notes;
  const Image image = SetAddress(Sample("dvi"), 0x2100, notes);
  EXPECT_EQ(AddressOf(image), 0x2100);
  EXPECT_EQ(notes.size(), 1u);
}

// A counted timing in YCbCr 4:2:0 needs half its clock, where the link knows 4:2:0 at all.
TEST(Edit, TimingsAboveALimit) {
  const Image image = Open(Edid().Dtd(AtClock(k2160p60, 600010)).Extension(Cta().Vdb({97}).Extended(14, {118})));
  const auto above = [&](uint32_t clock, uint8_t has420) {
    return TimingsAbove(image, {clock, 0, 0, has420, 0, 0, 0, 0, 0, 0, nullptr, 0}).size();
  };
  EXPECT_EQ(above(600000, 1), 1u);
  EXPECT_EQ(above(600010, 1), 0u);
  EXPECT_EQ(above(600010, 0), 1u);
  EXPECT_EQ(above(593999, 1), 3u);
}

}  // namespace
}  // namespace reedid::document
