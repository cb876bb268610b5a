#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

using RateVector = std::vector<uint16_t>;
using Limit = void (*)(EdidHandle*, const uint16_t*, uint32_t);
constexpr Limit k20 = EDID_LimitToHDMI20;
constexpr Limit k14 = EDID_LimitToHDMI14;

// The image after a limit, as bytes.
ByteVector Limited(const ByteVector& image, Limit limit, const RateVector& rates) {
  const Image handle(image);
  limit(handle.get(), rates.data(), static_cast<uint32_t>(rates.size()));
  return Generate(handle.get());
}

TEST(LinkLimit, ReclocksOrDropsDetailedTimings) {
  const struct {
    const char* name;
    Limit limit;
    DtdTiming timing;
    RateVector rates;
    uint32_t pixelClock;  // 0: dropped
  } rows[] = {
      {"at the limit", k20, k2160p60, {120, 60}, 594000},
      {"1000/1001 of a whole rate stays one", k20, AtClock(k2160p60, 593400), {60}, 593400},
      {"66 Hz to 60", k20, AtClock(k2160p60, 655300), {66, 60, 50}, 594000},
      {"no listed rate fits", k20, AtClock(k2160p60, 655300), {66, 62}, 0},
      {"4K 60 to 30", k14, k2160p60, {60, 30, 24}, 297000},
      {"4K 60 with only 60 listed", k14, k2160p60, {60}, 0},
      {"the caller's order decides", k14, k2160p60, {24, 30}, 237600},
      {"59.94 Hz to 29.97 Hz", k14, AtClock(k2160p60, 593406), {30}, 296703},
      {"slow enough", k14, k720p60, {24}, 74250},
  };
  for (const auto& row : rows) {
    const DtdTiming slower = AtClock(row.timing, row.pixelClock);
    Edid before = Edid().Dtd(row.timing).Dtd(row.timing), after;
    Cta cta = Cta().Vdb({0x90}), limited = cta;
    if (row.pixelClock != 0) after.Dtd(slower).Dtd(slower), limited.Dtd(slower).Dtd(slower);
    before.Dtd(k720p60).Name("behind").Extension(cta.Dtd(row.timing).Dtd(row.timing).Dtd(k720p60));
    after.Dtd(k720p60).Name("behind").Extension(limited.Dtd(k720p60));
    EXPECT_EQ(Limited(before.Build(), row.limit, row.rates), after.Build()) << row.name;
  }
}

// 2160 lines at 75 and 85 Hz need more than 600 MHz, and so does 60 Hz with full blanking; a code without a rate goes.
TEST(LinkLimit, CutsCvtCodesAndRangeLimits) {
  const auto edid = [](const char* codes, uint8_t clock, const char* padding = "0A 20*06") {
    const ByteVector range = Concat({{0, 48, 144, 30, 255, clock, 1}, Hex(padding)});
    return Edid().Descriptor(0xF8, Hex(codes)).Descriptor(0xFD, range).Build();
  };
  const ByteVector fast = edid("00 01 37 44 3F 1B 24 3F", 65);
  EXPECT_EQ(Limited(fast, k20, {60}), edid("00 01 37 44 31 1B 24 3F", 60, ""));
  EXPECT_EQ(Limited(fast, k14, {60}), edid("00 01 00 00 00 1B 24 3F", 34, ""));
  EXPECT_EQ(Limited(edid("00 01", 60), k20, {60}), edid("00 01", 60)) << "nothing to cut";
}

// A type VII block of 3840x2160 at this clock.
ByteVector TypeVii(uint32_t clock, uint8_t ycc420) {
  const Cea20ByteDtdRecord record = {0, 0, ycc420, AtClock(k2160p60, clock)};
  uint8_t bytes[32];
  CeaDataBlock entry = {0, 0, 0, bytes};
  EXPECT_EQ(CEA_Set20ByteDTD(&record, &entry), 0);
  return ByteVector(bytes + 1, bytes + entry.size);
}

// 2560x1440 by formula: at 240 Hz it needs 1019 MHz, half of that in 4:2:0. The slow one behind it stays.
ByteVector TypeX(uint8_t ycc420, uint8_t rate, bool slow = true) {
  const ByteVector fast = {static_cast<uint8_t>(ycc420 << 7 | 2), 0xFF, 0x09, 0x9F, 0x05,
                           static_cast<uint8_t>(rate - 1)};
  return Concat({{0x2A, 0}, rate == 0 ? ByteVector() : fast, slow ? Hex("02 7F 02 DF 01 3B") : ByteVector()});
}

// A Video Data Block without a native mark is written with its first VIC marked, when that can be.
TEST(LinkLimit, RewritesCtaExtensions) {
  const Cta base = Cta().Vdb({0x90});
  const Cta vendors = Cta(base).Hdmi(0x1000, {0x80, 130}).HdmiForum(Hex("01 F0 80 67 3F 70 90 C7 65 1F"));
  const Cta atLimit = Cta(base).Hdmi(0x1000, {0x80, 120}).Block(3, {1, 2, 3, 4});
  const auto with7 = [&](const ByteVector& block) { return Cta(base).Block(7, block); };
  const struct {
    const char* name;
    Cta before, after;
    RateVector rates = {60};
    Limit limit = k20;
  } rows[] = {
      {"VIC 97 fits HDMI 2.0", Cta().Vdb({97, 16}), Cta().Vdb({97, 16})},
      {"4K 100 Hz becomes 60 Hz", Cta().Vdb({16, 117}), Cta().Vdb({0x90, 97}), {100, 60, 50}},
      {"a format that is there is not added", Cta().Vdb({117, 96}), Cta().Vdb({96})},
      {"two of one format add one", Cta().Vdb({117, 118, 16}), Cta().Vdb({16, 97}), {60, 50}},
      {"no slower rate listed", Cta().Vdb({117, 16}), Cta().Vdb({16}), {120, 100}},
      {"unknown VICs stay", Cta().Vdb({128, 254}), Cta().Vdb({128, 254})},
      {"4K 60 Hz becomes 30 Hz", Cta().Vdb({97, 0x90}), Cta().Vdb({0x90, 95}), {60, 30}, k14},
      {"of the same aspect", Cta().Vdb({107, 0x90}), Cta().Vdb({0x90, 105}), {60, 30}, k14},
      {"an emptied list", Cta().Vdb({97}), Cta().Vdb({}), {60}, k14},
      {"the native mark stays", Cta().Vdb({97, 0x90, 4}), Cta().Vdb({0x90, 4}), {60}, k14},
      {"what a second list lost, the first takes", Cta(base).Vdb({97, 4}), Cta().Vdb({0x90, 95}).Vdb({4}), {30}, k14},
      // The map marks VIC 118 (4K 120 Hz, 594 MHz in 4:2:0) and VIC 97: the one is 4:2:0 only from now on, at the end.
      {"moves to 4:2:0", Cta().Vdb({118, 97, 16}).Extended(15, {0x03}),
       Cta().Vdb({97, 16}).Extended(15, {0x01}).Extended(14, {118})},
      {"8K is too fast even in 4:2:0", Cta().Vdb({118, 97}).Extended(15, {0x01}).Extended(14, {96, 199}),
       Cta().Vdb({97}).Extended(15, {0x00}).Extended(14, {96, 118})},
      {"an emptied 4:2:0 block goes", Cta(base).Extended(14, {199}), base},
      {"HDMI 1.4 has no 4:2:0", Cta(base).Extended(14, {96}).Extended(15, {0x01}), base, {60}, k14},
      {"nothing lost, nothing merged", Cta(base).Extended(14, {96, 199}).Extended(14, {97}),
       Cta(base).Extended(14, {96}).Extended(14, {97})},
      // Of several 4:2:0 blocks the last one's list, with what the map saves, takes the place of the first.
      {"several 4:2:0 blocks", Cta().Vdb({118, 97}).Extended(14, {96}).Extended(14, {101}).Extended(15, {0x01}),
       Cta().Vdb({97}).Extended(14, {101, 118}).Extended(14, {101}).Extended(15, {0x00})},
      {"the last 4:2:0 block emptied", Cta().Vdb({118, 97}).Extended(14, {96}).Extended(14, {199}).Extended(15, {0x01}),
       Cta().Vdb({97}).Extended(14, {118}).Extended(15, {0x00})},
      {"several maps: the last one's VICs, in the first",
       Cta().Vdb({118, 97, 0x90}).Extended(15, {0x01}).Extended(15, {0x02}),
       Cta().Vdb({97, 0x90}).Extended(15, {0x01}).Extended(15, {0x02})},
      {"a map of 8K only goes", Cta().Vdb({199, 0x90}).Extended(15, {0x01}), Cta().Vdb({0x90})},
      {"a map without formats", Cta().Extended(15, {0x01}), Cta().Extended(15, {0x01})},
      // 600 MHz; no fixed-rate link, variable refresh or compression, low latency stays.
      {"vendor blocks", vendors, Cta(base).Hdmi(0x1000, {0x80, 120, 0}).HdmiForum({1, 120, 0x80, 0x07, 0x02})},
      {"no Forum block in HDMI 1.4", vendors, Cta(base).Hdmi(0x1000, {0x80, 68, 0}), {60}, k14},
      {"vendor blocks at the limit", atLimit, atLimit},
      {"half of 1188 MHz in 4:2:0", with7(TypeVii(1188000, 1)), with7(TypeVii(1188000, 1))},
      {"1188 MHz", with7(TypeVii(1188000, 0)), with7(TypeVii(594000, 0))},
      {"no rate for 1188 MHz", with7(TypeVii(1188000, 0)), base, {100}},
      {"slow enough without 4:2:0", with7(TypeVii(1188000, 1)), with7(TypeVii(297000, 0)), {30}, k14},
      {"still in need of 4:2:0", with7(TypeVii(1300000, 1)), with7(TypeVii(594000, 1))},
      {"a formula in 4:2:0", with7(TypeX(1, 240)), with7(TypeX(1, 240)), {120}},
      {"a slower formula", with7(TypeX(1, 240)), with7(TypeX(1, 60)), {120, 60}, k14},
      {"only the slow formula is left", with7(TypeX(1, 240)), with7(TypeX(0, 0)), {120}, k14},
      {"no formula is left", with7(TypeX(1, 240, false)), base, {120}, k14},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(HexOf(Limited(Edid().Extension(row.before).Build(), row.limit, row.rates)),
              HexOf(Edid().Extension(row.after).Build()))
        << row.name;
  }
}

TEST(LinkLimit, LimitsDisplayIdSections) {
  // 2560x1440 with reduced blanking 2, and a maximum clock in units of 10 kHz less 1.
  const auto formulas = [](uint8_t rate, const char* clock) {
    const ByteVector range = Concat({{0, 0, 0}, Hex(clock), {30, 255, 0, 0, 48, 240, 0, 0, 0}});
    return Section(0x20)
        .Block(0x24, 0, {2, 0xFF, 0x09, 0x9F, 0x05, static_cast<uint8_t>(rate - 1)})
        .Block(0x09, 0, range);
  };
  const DtdTiming fast = AtClock(k2160p60, 1188000);
  const Section empty = Section().Block(0x0A, 0, {'x'});
  const struct {
    RateVector rates;
    Section before, after;
  } rows[] = {
      {{60}, Section().TypeI({fast, k720p60}), Section().TypeI({AtClock(k2160p60, 594000), k720p60})},
      {{100}, Section().TypeI({fast, k720p60}), Section().TypeI({k720p60})},
      {{144, 120}, formulas(255, "BF D4 01"), formulas(144, "5F EA 00")},
      {{60}, formulas(60, "5E EA 00"), formulas(60, "5E EA 00")},
      {{200},
       Section(empty).Block(0x24, 0, {2, 0xFF, 0x0E, 0x6F, 0x08, 239}),
       empty},  // the block goes with its timing
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    EXPECT_EQ(Limited(Edid().Extension(row.before).Build(), k20, row.rates), Edid().Extension(row.after).Build());
    EXPECT_EQ(Limited(Edid().Extension(row.before).Extension(Cta().Vdb({0x90})).Build(), k14, row.rates),
              Edid().Extension(Cta().Vdb({0x90})).Build())
        << "HDMI 1.4 sources know no DisplayID";
  }
}

TEST(LinkLimit, SaysWhichBlockItCouldNotRead) {
  const ByteVector type7 = {0x22, 0, 0}, type10 = {0x2A, 0, 2, 0xFF, 0x09, 0x9F, 0x05};  // a byte short of a timing
  for (const auto& [name, block] : {std::pair("CEA_Get20ByteDTD", type7), std::pair("CEA_Get6ByteCVT", type10)}) {
    const ByteVector image = Edid().Extension(Cta().Block(7, block)).Build();
    for (const Limit limit : {k20, k14}) {
      EXPECT_EQ(LogOf([&] { EXPECT_EQ(Limited(image, limit, {60}), image); }), Err(name, "invalid parameters"));
    }
  }
}

TEST(LinkLimit, ARefusedBlockKeepsItsBytes) {
  const ByteVector image = Edid().Set(8, {0, 0}).Dtd(AtClock(k2160p60, 655000)).Build();  // no manufacturer letters
  const ByteVector section = Section().Build(10);                                         // no data blocks
  EXPECT_EQ(Limited(image, k20, {60}), image);
  EXPECT_EQ(Limited(section, k20, {60}), section);
}

}  // namespace
}  // namespace reedid::test
