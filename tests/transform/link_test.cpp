#include <gtest/gtest.h>

#include "tests/support/corpus.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

constexpr DtdTiming k1440p144 = {580000, 2560, 160, 48, 32, 1440, 41, 3, 5, 1, 0, 0, 0, 8, 0, 0, 600, 340, 0};
constexpr uint8_t kNative16 = 0x90;

// What remains of an HDMI Forum block of 48 Gbit/s: 600 MHz, deep colour in 4:2:0, VRR 48-120; then DSC.
const ByteVector kForum = {1, 120, 0x80, 0x67, 0, 48, 120};
const ByteVector kForumDsc = {1, 120, 0x80, 0x63, 0, 48, 120, 0xC3, 0x66, 0x0F};

Edid Range(const Edid& edid, const std::string& bytes4To17) {
  return Edid(edid).Descriptor(0xFD, Hex(bytes4To17));
}
const std::string kPadding = " 0A 20*06";

DtdTiming Slower(const DtdTiming& timing, uint32_t rate) {
  const uint64_t hertz = uint64_t{rate} * (timing.hactive + timing.hblank) * (timing.vactive + timing.vblank);
  return AtClock(timing, static_cast<uint32_t>((hertz + 5000) / 10000 * 10));
}

// The mode of a VIC as a descriptor of the preferred timing's image size.
DtdTiming Sized(DtdTiming timing, uint16_t width, uint16_t height) {
  timing.hImageSize = width;
  timing.vImageSize = height;
  return timing;
}

struct Row {
  const char* name;
  EdidLink link;
  Edid before, after;
};

EdidLink With(EdidLink link, const uint32_t& rate) {
  link.rates = &rate;
  link.rateCount = 1;
  return link;
}
constexpr uint32_t k60Hz = 60000;

bool HasTimingFirst(const ByteVector& image) {
  return isEdidHeader(image.data()) != 0 && (image[54] != 0 || image[55] != 0);
}

void ExpectLimited(const Row& row) {
  const Image handle(row.before.Build());
  EXPECT_EQ(EDID_LimitToLink(handle.get(), &row.link), 0) << row.name;
  EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(row.after.Build())) << row.name;
  EXPECT_EQ(EDID_LimitToLink(handle.get(), &row.link), 0) << row.name;
  EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(row.after.Build())) << row.name << ", twice";
}

TEST(LimitToLink, DetailedTimings) {
  const DtdTiming k2160p120 = AtClock(k2160p60, 1188000 / 2);  // fits 600 MHz; the next does not
  const DtdTiming fast = AtClock(k1440p144, 640000);
  const Edid hd = Edid().Dtd(k1080p60);
  const ByteVector unused = Hex("00 00 00 01 00*14"), dummy = Hex("00 00 00 10 00*14");
  const Cta native = Cta().Flags(3).Vdb({16, 63}).Extended(13, {16, 129, 130, 131, 132});
  const Row rows[] = {
      {"what fits stays, odd or not", EDID_LINK_HDMI20,
       Edid().Dtd(k2160p120).Slot(unused).Dtd(k720p60).Extension(
           Cta().Flags(0xF1).Vdb({16, 0, 97}).Block(0, {}).HdmiForum({1, 120, 0x80, 0}).Dtd(k2160p60)),
       Edid().Dtd(k2160p120).Slot(unused).Dtd(k720p60).Extension(
           Cta().Flags(0xF1).Vdb({16, 0, 97}).Block(0, {}).HdmiForum({1, 120, 0x80, 0}).Dtd(k2160p60))},
      {"slowed to the highest rate of the display", EDID_LINK_HDMI20,
       Edid(hd).Dtd(fast).Name("a").Extension(Cta().Vdb({16, 63})),
       Edid(hd).Dtd(Slower(k1440p144, 120)).Name("a").Extension(Cta().Vdb({16, 63}))},
      {"slowed to a wanted rate", With(EDID_LINK_HDMI20, k60Hz), Edid(hd).Dtd(fast).Extension(Cta().Vdb({16, 63})),
       Edid(hd).Dtd(Slower(k1440p144, 60)).Extension(Cta().Vdb({16, 63}))},
      {"a usual rate where the display has none that fits", EDID_LINK_HDMI14, Edid().Dtd(k1440p144),
       Edid().Dtd(Slower(k1440p144, 60))},
      {"goes when the picture is there at that rate; later ones move up, a dummy is left", EDID_LINK_HDMI14,
       Edid(hd).Dtd(k1440p144).Name("a").Dtd(Slower(k1440p144, 60)),
       Edid(hd).Dtd(Slower(k1440p144, 60)).Name("a").Slot(dummy)},
      {"references and the native count go along", EDID_LINK_HDMI14,
       Edid(hd).Extension(Cta(native).Dtd(k1440p144).Dtd(k720p60).Dtd(Slower(k1440p144, 60))),
       Edid(hd).Extension(
           Cta().Flags(2).Vdb({16, 63}).Extended(13, {16, 129, 130, 131}).Dtd(k720p60).Dtd(Slower(k1440p144, 60)))},
      {"references to type VII timings and codes, of both kinds of blocks", EDID_LINK_HDMI14,
       Edid(hd).Extension(Cta()
                              .Vdb({16})
                              .Extended(0x2A, {0, 0x02, 0xFF, 0x0E, 0x6F, 0x08, 0xEF})
                              .Extended(0x2A, {0, 0x02, 0x7F, 0x07, 0x37, 0x04, 0x3B})
                              .Extended(0x23, {0, 0x52, 0x04})
                              .Extended(8, {145})
                              .Extended(13, {146, 145, 254, 147})),
       Edid(hd).Extension(Cta()
                              .Vdb({16})
                              .Extended(0x2A, {0, 0x02, 0x7F, 0x07, 0x37, 0x04, 0x3B})
                              .Extended(0x23, {0, 0x52, 0x04})
                              .Extended(13, {145, 254, 146}))},
      {"an extension without data blocks", EDID_LINK_HDMI14, Edid(hd).Extension(Cta().Dtd(k2160p60)),
       Edid(hd).Extension(Cta().Dtd(AtClock(k2160p60, 297000)))},
      {"not below the range limits: it goes", EDID_LINK_HDMI14,
       Range(Edid(hd).Dtd(k2160p60), "00 38 4B 1E A0 22 01" + kPadding),
       Range(Edid(hd).Slot(dummy), "00 38 4B 1E A0 22 01" + kPadding)},
  };
  for (const Row& row : rows) ExpectLimited(row);
}

TEST(LimitToLink, PreferredTiming) {
  const DtdTiming wide = Sized(AtClock(k2160p60, 533250), 600, 340);
  const Cta hd = Cta().Flags(0x01).Vdb({16});
  const auto range = [](const Edid& edid, const char* bytes) { return Range(edid, bytes + kPadding); };
  DtdTiming odd = k1440p144;  // so much blanking that 60 Hz need more than 340 MHz
  odd.hblank = 1600;
  odd.vblank = 400;
  const DtdTiming reduced = {241500, 2560, 160, 48, 32, 1440, 41, 3, 5, 1, 0, 0, 0, 8, 0, 0, 600, 340, 0};
  const Row rows[] = {
      {"slowed within the range limits", EDID_LINK_HDMI14, range(Edid().Dtd(k1440p144), "00 37 90 1E FF 22 01"),
       range(Edid().Dtd(Slower(k1440p144, 60)), "00 37 90 1E FF 22 01")},
      {"another mode of the same size", EDID_LINK_HDMI14, range(Edid().Dtd(odd), "00 3A 90 1E FF 22 01"),
       range(Edid().Dtd(reduced), "00 3A 90 1E FF 22 01")},
      {"the largest that is left, no longer native", EDID_LINK_HDMI14,
       range(Edid().Set(24, {0x0A}).Dtd(wide), "00 37 4B 1E A0 22 01").Extension(Cta(hd)),
       range(Edid().Set(24, {0x08}).Dtd(Sized(k1080p60, 600, 340)), "00 37 4B 1E A0 22 01").Extension(Cta().Vdb({16}))},
      {"in spite of the range limits only when nothing else is left", EDID_LINK_HDMI14,
       range(Edid().Dtd(wide), "00 46 4B 82 A0 22 01").Extension(Cta().Vdb({16})),
       range(Edid().Set(24, {0x0C}).Dtd(Sized(k1080p60, 600, 340)), "00 3C 4B 44 A0 22 01").Extension(Cta().Vdb({16}))},
  };
  for (const Row& row : rows) ExpectLimited(row);
}

TEST(LimitToLink, VideoFormats) {
  const Edid hd = Edid().Dtd(k1080p60);
  const auto hdmi = [](const ByteVector& threeD) { return Concat({{0xB8, 60, 0x20, 0xC0}, threeD}); };
  const Row rows[] = {
      {"by 4:2:0 alone; maps, 3D formats and references follow", EDID_LINK_HDMI20,
       Edid(hd).Extension(Cta()
                              .Vdb({kNative16, 118, 31, 97})
                              .Hdmi(0x1000, hdmi({0x06, 0x01, 0x40, 0x00, 0x0A, 0x00, 0x26}))
                              .Extended(15, {0x0A})
                              .Extended(13, {118, 16})),
       Edid(hd).Extension(Cta()
                              .Vdb({kNative16, 31, 97})
                              .Hdmi(0x1000, hdmi({0x06, 0x01, 0x40, 0x00, 0x04, 0x00, 0x16}))
                              .Extended(15, {0x04})
                              .Extended(13, {118, 16})
                              .Extended(14, {118}))},
      {"its 3D formats go with it", EDID_LINK_HDMI20,
       Edid(hd).Extension(Cta().Vdb({118, 16, 97}).Hdmi(0x1000, {0xB8, 60, 0x20, 0x80, 0x03, 0x08, 0x10, 0x16})),
       Edid(hd).Extension(Cta().Vdb({16, 97}).Hdmi(0x1000, {0xB8, 60, 0x20, 0x80, 0x01, 0x06}))},
      {"not at a rate that nobody wants", With(EDID_LINK_HDMI20, k60Hz),
       Edid(hd).Extension(Cta().Vdb({16, 118, 97}).Extended(15, {0x06}).Extended(14, {117})),
       Edid(hd).Extension(Cta().Vdb({16, 97}).Extended(15, {0x02}))},
      {"a slower one of the format in its place", EDID_LINK_HDMI14,
       Edid(hd).Extension(Cta().Vdb({16, 97, 34}).Extended(13, {97})),
       Edid(hd).Extension(Cta().Vdb({16, 95, 34}).Extended(13, {95}))},
      {"the mark stays where it was", EDID_LINK_CAPTURE_165MHZ, Edid(hd).Extension(Cta().Vdb({0xBF, 4})),
       Edid(hd).Extension(Cta().Vdb({kNative16, 4}))},
      {"never an empty list", EDID_LINK_CAPTURE_165MHZ, Edid(hd).Extension(Cta().Vdb({95})),
       Edid(hd).Extension(Cta().Vdb({1}))},
      {"HDMI VICs", EDID_LINK_CAPTURE_165MHZ,
       Edid(hd).Extension(Cta().Vdb({16}).Hdmi(0x1000, {0, 30, 0x20, 0, 0x60, 1, 2, 3})),
       Edid(hd).Extension(Cta().Vdb({16}).Hdmi(0x1000, {0, 30, 0x20, 0, 0x00}))},
  };
  for (const Row& row : rows) ExpectLimited(row);
}

TEST(LimitToLink, WhatTheDisplaySaysOfItsLink) {
  const Edid hd = Edid().Dtd(k1080p60);
  EdidLink slow = EDID_LINK_HDMI20;
  slow.maxRate = 60000;
  slow.maxBitsPerColour = 10;
  const Row rows[] = {
      {"HDMI 2.0 knows no FRL and no DSC", EDID_LINK_HDMI20,
       Edid(hd).Extension(Cta().Vdb({97}).Hdmi(0x1000, {0xB8, 60}).HdmiForum(kForumDsc).Extended(15, {1})),
       Edid(hd).Extension(Cta()
                              .Vdb({97})
                              .Hdmi(0x1000, {0xB8, 60})
                              .HdmiForum({1, 120, 0x80, 0x03, 0, 48, 120, 0, 0, 0})
                              .Extended(15, {1}))},
      {"FRL 3 with DSC", EDID_LINK_FRL3, Edid(hd).Extension(Cta().Vdb({97}).HdmiForum(kForumDsc)),
       Edid(hd).Extension(Cta().Vdb({97}).HdmiForum({1, 120, 0x80, 0x33, 0, 48, 120, 0xC3, 0x36, 0x0F}))},
      {"HDMI 1.4: the timings' clock", EDID_LINK_HDMI14,
       Edid(hd).Extension(Cta().Vdb({95}).Hdmi(0x1000, {0x38, 30}).HdmiForum(kForum).Extended(14, {97})),
       Edid(hd).Extension(Cta().Vdb({95}).Hdmi(0x1000, {0x38, 60}))},
      {"HDMI 1.4: a clock that was not told", EDID_LINK_HDMI14,
       Edid(hd).Extension(Cta().Vdb({95}).Hdmi(0x1000, {}).HdmiForum(kForum)),
       Edid(hd).Extension(Cta().Vdb({95}).Hdmi(0x1000, {0, 68}))},
      {"300 MHz: no more than that in any block", EDID_LINK_300MHZ_420,
       Edid(hd).Extension(Cta().Vdb({97, 16}).Hdmi(0x1000, {0, 68}).HdmiForum(kForum).Extended(15, {1})),
       Edid(hd).Extension(
           Cta().Vdb({16}).Hdmi(0x1000, {0, 60}).HdmiForum({1, 0, 0x80, 0x07, 0, 48, 120}).Extended(14, {97}))},
      {"rate and depth", slow,
       Edid()
           .Set(20, {0xC5})
           .Dtd(k1080p60)
           .Extension(Cta().Vdb({16}).Hdmi(0x1000, {0x78, 60}).HdmiForum(kForum).Extended(14, {97})),
       Edid()
           .Set(20, {0xB5})
           .Dtd(k1080p60)
           .Extension(
               Cta().Vdb({16}).Hdmi(0x1000, {0x18, 60}).HdmiForum({1, 120, 0x80, 0x01, 0, 0, 0}).Extended(14, {97}))},
      {"range limits, their padding kept", EDID_LINK_HDMI20, Range(hd, "00 30 90 1E FF 6A 01" + kPadding),
       Range(hd, "00 30 90 1E FF 3C 01" + kPadding)},
      {"range limits with the clock of CVT", EDID_LINK_CAPTURE_165MHZ,
       Range(hd, "00 30 90 1E FF 3C 04 11 27 C0 80 80 00 3C"), Range(hd, "00 30 90 1E FF 10 04 11 03 C0 80 80 00 3C")},
      {"DVI has no sound", EDID_LINK_DVI,
       Edid()
           .Set(20, {0xA2})
           .Dtd(k1080p60)
           .Extension(
               Cta().Flags(0xF1).Vdb({16}).Block(1, {9, 7, 7}).Hdmi(0x1000).Extended(0, {0x4A}).Extended(6, {5, 1})),
       Edid().Set(20, {0xA1}).Dtd(k1080p60).Extension(Cta().Flags(0x81).Vdb({16}).Extended(0, {0x4A}))},
      {"without the HDMI block sizes are no shapes", EDID_LINK_DVI,
       Edid()
           .Set(21, {60, 34})
           .Dtd(Sized(k1080p60, 160, 90))
           .Extension(Cta().Vdb({16}).Hdmi(0x1000, {0, 0, 0x20, 8, 0})),
       Edid().Set(21, {60, 34}).Dtd(Sized(k1080p60, 600, 337)).Extension(Cta().Vdb({16}))},
  };
  for (const Row& row : rows) ExpectLimited(row);
}

TEST(LimitToLink, DisplayIdTimings) {
  const Edid hd = Edid().Dtd(k1080p60);
  const auto held = [](const ByteVector& vics) {
    return Section(0x20).Block(0x81, 0, Concat({{static_cast<uint8_t>(0x40 | vics.size())}, vics}));
  };
  const Row rows[] = {
      {"slowed, or gone", EDID_LINK_HDMI14,
       Edid(hd).Extension(Section().TypeI({k1440p144, Slower(k1440p144, 60), k2160p60, k720p60})),
       Edid(hd).Extension(Section().TypeI({Slower(k1440p144, 60), AtClock(k2160p60, 297000), k720p60}))},
      {"the last one takes its block along", EDID_LINK_DVI,
       Edid(hd).Extension(Section().TypeI({AtClock(k2160p60, 5940000)}).Block(0x0A, 0, {'1'})),
       Edid(hd).Extension(Section().Block(0x0A, 0, {'1'}))},
      {"codes and bits", EDID_LINK_CAPTURE_165MHZ,
       Edid(hd).Extension(Section(0x20).Block(0x23, 0x40, {16, 97, 4}).Block(0x08, 0, {0, 0x80, 0, 0, 0, 0, 0, 0x40})),
       Edid(hd).Extension(Section(0x20).Block(0x23, 0x40, {16, 4}).Block(0x08, 0, {0, 0x80, 0, 0, 0, 0, 0, 0}))},
      {"VICs inside", EDID_LINK_HDMI14, Edid(hd).Extension(held({97, 95, 16})), Edid(hd).Extension(held({95, 16}))},
      {"range limits", EDID_LINK_HDMI14,
       Edid(hd).Extension(Section(0x20).Block(0x25, 0, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 48, 120, 0})),
       Edid(hd).Extension(Section(0x20).Block(0x25, 0, {0x1F, 0x30, 0x05, 0x1F, 0x30, 0x05, 48, 120, 0}))},
  };
  for (const Row& row : rows) ExpectLimited(row);
}

TEST(StripHdr, TakesNothingElse) {
  const Cta hdr = Cta().Vdb({16}).Extended(6, {5, 1}).Extended(7, {3, 1, 0, 0}).Extended(1, {0x46, 0xD0, 0x00, 0x48});
  const ByteVector held = Hex("E3 05 80 40 E3 06 05 01 E5 01 8B 84 90 01");
  const auto features = [](uint8_t combinations, const ByteVector& pairs) {
    return Concat({{4, 0, 0, 0, 0, 0, combinations, 0, static_cast<uint8_t>(pairs.size() / 2)}, pairs});
  };
  const std::pair<Edid, Edid> rows[] = {
      {Edid().Extension(Cta(hdr)
                            .Extended(1, {0x8B, 0x84, 0x90, 0x01})
                            .Extended(1, {0x01, 0x02, 0x03, 0x01})
                            .Extended(5, {0xE0, 0xC3})
                            .Extended(122, {1, 2})
                            .Dtd(k720p60)),
       Edid().Extension(Cta().Vdb({16}).Extended(1, {0x01, 0x02, 0x03, 0x01}).Extended(5, {0xE0, 0x83}).Dtd(k720p60))},
      {Edid().Extension(
           Section(0x20).Block(0x81, 0, held).Block(0x26, 0, features(0x61, {0x68, 0, 0x44, 0, 0x69, 0, 0x55, 0}))),
       Edid().Extension(
           Section(0x20).Block(0x81, 0, Hex("E3 05 80 00")).Block(0x26, 0, features(0x21, {0x44, 0, 0x55, 0})))},
  };
  for (const auto& [before, after] : rows) {
    const Image handle(before.Build());
    EXPECT_EQ(EDID_StripHdr(handle.get()), 0);
    EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(after.Build()));
  }
}

// Whatever the display: a preferred timing where one was, nothing above the link, twice equals once.
TEST(LimitToLink, HoldsForEveryDisplay) {
  for (const auto& [name, bytes] : Corpus()) {
    SCOPED_TRACE(name);
    for (const EdidLink* link : {&EDID_LINK_HDMI20, &EDID_LINK_HDMI14, &EDID_LINK_300MHZ_420, &EDID_LINK_DVI}) {
      SCOPED_TRACE(link->maxTmdsClock);
      Quietly([&, &image = bytes] {
        const Image handle(image);
        const bool hadPreferred = HasTimingFirst(image);
        const size_t size = handle.Bytes().size();
        ASSERT_EQ(EDID_LimitToLink(handle.get(), link), 0);
        const ByteVector once = handle.Bytes();
        EXPECT_EQ(once.size(), size);
        EXPECT_TRUE(!hadPreferred || HasTimingFirst(once));
        for (const OfferedTiming& offer : handle.Timings()) {
          if (offer.block == 0 || handle->blocks[offer.block].type != EDID_BLOCK_UNKNOWN) {
            EXPECT_LE(offer.timing.pixelClock / (offer.ycc420 == YCC420_ONLY ? 2 : 1), link->maxTmdsClock);
          }
        }
        ASSERT_EQ(EDID_LimitToLink(handle.get(), link), 0);
        EXPECT_EQ(HexOf(handle.Bytes()), HexOf(once));
      });
    }
  }
}

TEST(LimitToLink, RefusesWhatItCannotDo) {
  const ByteVector image = Edid().Dtd(k1080p60).Build();
  const Image handle(image);
  EdidLink frl = EDID_LINK_HDMI20, rates = EDID_LINK_HDMI20, tiny = EDID_LINK_HDMI20;
  frl.maxFrlRate = 7;
  rates.rateCount = 1;
  tiny.maxTmdsClock = 20000;
  ExpectRefused({{"EDID_LimitToLink", [&] { return EDID_LimitToLink(nullptr, &EDID_LINK_HDMI20); }},
                 {"EDID_LimitToLink", [&] { return EDID_LimitToLink(handle.get(), nullptr); }},
                 {"EDID_LimitToLink", [&] { return EDID_LimitToLink(handle.get(), &frl); }},
                 {"EDID_LimitToLink", [&] { return EDID_LimitToLink(handle.get(), &rates); }}});
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_LimitToLink(handle.get(), &tiny), EDID_LINK_NO_TIMING); }),
            Err("EDID_LimitToLink", "no timing fits the link"));
  EXPECT_EQ(Generate(handle.get()), image);
}

}  // namespace
}  // namespace reedid::test
