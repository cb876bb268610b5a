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
  const Edid mapped = Edid().Extension(test::ByteVector(128)).Extension(Cta());
  const struct {
    const char* name;
    std::function<void(Notes&)> work;
    ErrorKind kind;
    const char* message;
  } cases[] = {
      {"a limit", [](Notes&) { FindLimit("hdmi21"); }, ErrorKind::kArgument, "hdmi20, hdmi14, pcm2ch"},
      {"a rate of 0", [](Notes&) { ParseRates("60,0"); }, ErrorKind::kArgument, "120,60,50"},
      {"a rate that is missing", [](Notes&) { ParseRates("60,"); }, ErrorKind::kArgument, "'60,'"},
      {"three places", [](Notes& notes) { ParseAddress("1.2.3", notes); }, ErrorKind::kArgument, "1.2.0.0"},
      {"no hexadecimal digit", [](Notes& notes) { ParseAddress("0x12g4", notes); }, ErrorKind::kArgument, "'0x12g4'"},
      {"an address without a block", [](Notes& notes) { SetAddress(Sample("dvi"), 0x1000, Loss::kAllow, notes); },
       ErrorKind::kRefused, "no HDMI block"},
      {"HDMI already", [](Notes& notes) { ToHdmi(Sample("tv-4k"), 0x1000, Loss::kAllow, notes); }, ErrorKind::kRefused,
       "address 1.0.0.0"},
      {"no EDID",
       [](Notes& notes) {
         ToHdmi(Image::FromBytes("x", Section(0x12, 6).Block(0x55, 0, {7}).Build()), 0x1000, Loss::kAllow, notes);
       },
       ErrorKind::kRefused, "no place"},
      {"another block in the way", [&](Notes& notes) { ToHdmi(Open(mapped), 0x1000, Loss::kRefuse, notes); },
       ErrorKind::kLoss, "block 1 (extension of unknown kind) would be lost"},
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
  const Edit edits[] = {{&FindLimit("hdmi20")}, {nullptr, 0x2000}, {&FindLimit("hdmi14")}, {&FindLimit("sdr")}};
  Notes notes;
  Image image = ApplyEdits(Sample("tv-4k120"), edits, {}, Loss::kRefuse, notes);
  EXPECT_EQ(AddressOf(image), 0x2000);
  EXPECT_EQ(SlowestLink(edits)->clock, 340000u);
  EXPECT_TRUE(TimingsAbove(DescribeImage(image), 340000, false).empty());
  EXPECT_TRUE(notes.empty());
}

TEST(Edit, NotesWhatIsWorthKnowing) {
  Notes notes;
  EXPECT_EQ(ParseAddress("0x1200", notes), 0x1200);
  EXPECT_EQ(ParseAddress("1.2.f.0", notes), 0x12F0);
  EXPECT_TRUE(notes.empty());
  EXPECT_EQ(ParseAddress("1.0.2.0", notes), 0x1020);
  EXPECT_EQ(notes.size(), 1u);
  const Edid threeD = Edid().Extension(Cta().Hdmi(0x1000, {0, 30, 0x20, 0x80, 0x00}));
  Image image = SetAddress(Open(threeD), 0x2000, Loss::kRefuse, notes);
  EXPECT_EQ(AddressOf(image), 0x2000);
  ASSERT_EQ(notes.size(), 2u);
  EXPECT_NE(notes[1].find("3D formats"), std::string::npos) << notes[1];
}

// What the library leaves out when it writes an extension anew is counted, and needs leave.
TEST(Edit, LossIsRefusedUnlessAllowed) {
  Notes notes;
  const Image image = Image::FromBytes("x", SampleBytes("tv-4k"));
  const CtaContent before = CountCtaContent(image);
  EXPECT_EQ(std::tuple(before.dataBlocks, before.timings, before.otherBytes), std::tuple(9u, 1u, 0u));
  EXPECT_NO_THROW(CheckLoss(image, before, Loss::kRefuse, notes));
  for (const CtaContent& more : {CtaContent{10, 1, 0}, CtaContent{9, 2, 0}, CtaContent{9, 1, 1}}) {
    EXPECT_THROW(CheckLoss(image, more, Loss::kRefuse, notes), Error);
    EXPECT_NO_THROW(CheckLoss(image, more, Loss::kAllow, notes));
  }
  EXPECT_EQ(notes.size(), 3u);
}

// A type VII block in YCbCr 4:2:0 needs half its clock, where the link knows 4:2:0 at all.
TEST(Edit, TimingsAboveALimit) {
  const Node account =
      DescribeImage(Open(Edid().Dtd(AtClock(k2160p60, 600010)).Extension(Cta().Vdb({97}).Extended(14, {118}))));
  EXPECT_EQ(TimingsAbove(account, 600000, true).size(), 1u);
  EXPECT_EQ(TimingsAbove(account, 600010, true).size(), 0u);
  EXPECT_EQ(TimingsAbove(account, 600010, false).size(), 1u);
  EXPECT_EQ(TimingsAbove(account, 593999, true).size(), 3u);
}

}  // namespace
}  // namespace reedid::document
