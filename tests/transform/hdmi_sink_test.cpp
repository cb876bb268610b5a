#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

const ByteVector kPcm = {0x09, 0x07, 0x07}, kFront = {1, 0, 0};

Edid Input(uint8_t byte20, uint8_t revision = 4) {
  return Edid(revision).Set(20, {byte20});
}

TEST(MakeHdmi, AddsWhatIsMissing) {
  const Section section = Section(0x20).Block(0x0A, 0, {'1'});
  const ByteVector filler(30, 0x11);
  const Cta full =
      Cta().Flags(0x80).Vdb({16, 1}).Block(3, filler).Block(3, filler).Block(3, filler).Block(3, ByteVector(20, 0x11));
  const Cta hdr = Cta().Flags(0x31).Vdb({16, 1}).Block(1, {0x0F, 7, 7}).Extended(6, {5, 1});
  const DtdTiming odd = AtClock(k1080p60, 140000);  // no VIC
  const Cta only640 =
      Cta().Flags(0xC0).Vdb({1}).Block(1, kPcm).Block(4, kFront).Hdmi(0x1200, {0, 33}).Extended(0, {0x4A});
  const Cta fullAfter = Cta(full).Flags(0xC0);
  const struct {
    const char* name;
    Edid before, after;
  } rows[] = {
      {"a base block, of DisplayPort", Input(0xA5).Dtd(k1080p60).Dtd(k720p60),
       Input(0xA2).Dtd(k1080p60).Dtd(k720p60).Extension(Cta()
                                                            .Flags(0xC0)
                                                            .Vdb({16, 4, 1})
                                                            .Block(1, kPcm)
                                                            .Block(4, kFront)
                                                            .Hdmi(0x1200, {0, 33})
                                                            .Extended(0, {0x4A}))},
      {"the CTA extension comes first; sound and HDR are there",
       Input(0xB1).Dtd(k1080p60).Extension(section).Extension(hdr),
       Input(0xB2)
           .Dtd(k1080p60)
           .Extension(Cta(hdr).Flags(0xF1).Hdmi(0x1200, {0x30, 33}).Extended(0, {0xCA}))
           .Extension(section)},
      {"a full one gets another in front", Input(0xA1).Dtd(k1080p60).Extension(full),
       Input(0xA2)
           .Dtd(k1080p60)
           .Extension(Cta().Flags(0xC0).Block(1, kPcm).Block(4, kFront).Hdmi(0x1200, {0, 33}).Extended(0, {0x4A}))
           .Extension(fullAfter)},
      {"above 340 MHz the HDMI Forum block tells", Input(0x80, 3).Dtd(k2160p60).Extension(Cta().Vdb({97, 1})),
       Input(0x80, 3).Dtd(k2160p60).Extension(Cta()
                                                  .Flags(0xC0)
                                                  .Vdb({97, 1})
                                                  .Block(1, kPcm)
                                                  .Block(4, kFront)
                                                  .Hdmi(0x1200, {0, 68})
                                                  .HdmiForum({1, 119, 0x80, 0})
                                                  .Extended(0, {0x4A}))},
      {"before EDID 1.4 a map tells of the second extension", Input(0x80, 3).Dtd(k1080p60).Extension(section),
       Input(0x80, 3)
           .Dtd(k1080p60)
           .Extension(Concat({{0xF0, 2, 0x70}, ByteVector(124, 0), {0x9E}}))
           .Extension(
               Cta().Flags(0xC0).Vdb({16, 1}).Block(1, kPcm).Block(4, kFront).Hdmi(0x1200, {0, 33}).Extended(0, {0x4A}))
           .Extension(section)},
      {"the only format widens the range limits",
       Input(0x80, 3).Dtd(odd).Descriptor(0xFD, Hex("00 32 4B 28 50 11 00 0A 20*06")),
       Input(0x80, 3).Dtd(odd).Descriptor(0xFD, Hex("00 32 4B 1F 50 11 00 0A 20*06")).Extension(only640)},
      {"HDMI already", Input(0xA2).Extension(Cta().Hdmi(0x3000)), Input(0xA2).Extension(Cta().Hdmi(0x3000))},
  };
  for (const auto& row : rows) {
    const Image handle(row.before.Build());
    EXPECT_EQ(EDID_MakeHdmi(handle.get(), 0x1200), 0) << row.name;
    EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(row.after.Build())) << row.name;
  }
}

TEST(MakeHdmi, RefusesWhatCannotBeOne) {
  const Image digital(Input(0x80).Build()), analog(Input(0x0E).Build());
  const Image section(Section().Build());
  const struct {
    EdidHandle* handle;
    uint16_t address;
    const char* message;
  } rows[] = {{digital.get(), 0xFFFF, "no address of a port: FFFF"},
              {analog.get(), 0x1000, "no digital input"},
              {section.get(), 0x1000, "no digital input"}};
  for (const auto& row : rows) {
    const ByteVector before = Generate(row.handle);
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_MakeHdmi(row.handle, row.address), -1); }), Err("EDID_MakeHdmi", row.message));
    EXPECT_EQ(Generate(row.handle), before);
  }
}

}  // namespace
}  // namespace reedid::test
