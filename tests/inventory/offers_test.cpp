// The timings and rates that an image offers: every source, with its place in the bytes.
#include "reedid/offers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

#include "base/bytes.h"
#include "tests/support/corpus.h"
#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

// "source: 1920x1080 60000" and what is marked; place as "@block.container.dataBlock.index:offset".
std::string TextOf(const OfferedTiming& t, bool place) {
  const auto text = [](unsigned number) { return std::to_string(number); };
  const auto blockText = [&](unsigned index) { return index == TIMING_NO_BLOCK ? "-" : text(index); };
  std::string all = text(t.source) + ": " + text(t.timing.hactive) + "x" + text(t.timing.vactive) +
                    (t.timing.interlaced ? "i " : " ") + text(t.rate);
  if (t.timing.preferred) all += " preferred";
  if (t.native) all += " native";
  if (t.ycc420 != YCC420_NO) all += t.ycc420 == YCC420_ONLY ? " only 4:2:0" : " 4:2:0";
  if (place) {
    all += " @" + text(t.block) + "." + blockText(t.container) + "." + blockText(t.dataBlock) + "." + text(t.index) +
           (t.variant ? "/" + text(t.variant) : "") + ":" + text(t.offset);
  }
  return all;
}

std::vector<std::string> TextsOf(const ByteVector& image, bool place) {
  std::vector<std::string> texts;
  for (const OfferedTiming& timing : Image(image).Timings()) texts.push_back(TextOf(timing, place));
  return texts;
}

using Texts = std::vector<std::string>;

// A DisplayID descriptor of 20 bytes: 1920x1080 in 2200x1125 at a clock given less 1, and its third byte.
ByteVector Type20(uint32_t clock, uint8_t flags = 4) {
  ByteVector bytes(3);
  PutLe24(bytes.data(), clock - 1);
  return Concat({bytes, {flags}, Hex("7F 07 17 01 57 00 2B 00 37 04 2C 00 03 00 04 00")});
}

ByteVector With(ByteVector bytes, size_t at, uint8_t byte) {
  bytes.at(at) = byte;
  return bytes;
}

const ByteVector k1080p = DescriptorOf(k1080p60);

TEST(Offers, OfABaseBlock) {
  const ByteVector cvtCodes = Hex("00 01 1B 22 1F 00 00 00 1B 22 01");
  const std::tuple<const char*, Edid, Texts> cases[] = {
      {"nothing", Edid(), {}},
      {"established and standard timings, in the order of the bytes",
       Edid().Set(35, {0x20, 0x10, 0x80}).Set(38, {0xB3, 0x00, 1, 1, 0x71, 0x40}),
       {"1: 640x480 59940 @0.-.-.5:35", "1: 1024x384i 86958 @0.-.-.12:36", "1: 1152x870 75062 @0.-.-.16:37",
        "2: 1680x1050 59954 @0.-.-.0:38", "2: 1152x864 60000 @0.-.-.2:42"}},
      {"detailed timings; the first is preferred, and native where the base block says so",
       Edid().Set(24, {0x02}).Dtd(k720p60).Dtd(AtClock(k1080p60, 148350)),
       {"3: 1280x720 60000 preferred native @0.-.-.0:54", "3: 1920x1080 59939 @0.-.-.1:72"}},
      {"before EDID 1.4, that bit is not about being native",
       Edid(3).Set(24, {0x02}).Dtd(k720p60),
       {"3: 1280x720 60000 preferred @0.-.-.0:54"}},
      {"half a line more in each field",
       Edid().Dtd({74250, 1920, 280, 88, 44, 540, 22, 2, 5, 1, 1, 1, 0, 8, 0, 0, 0, 0, 0}),
       {"3: 1920x540i 60000 preferred native @0.-.-.0:54"}},
      {"the fields of VIC 39 are equal",
       Edid().Dtd({72000, 1920, 384, 32, 168, 540, 85, 23, 5, 1, 0, 1, 0, 8, 0, 0, 0, 0, 0}),
       {"3: 1920x540i 50000 preferred native @0.-.-.0:54"}},
      {"no timings: erased, a name, neither timing nor known descriptor, without picture",
       Edid()
           .Slot(ByteVector(18, 0xFF))
           .Name("REED")
           .Slot(With(ByteVector(18), 3, 1))
           .Slot(With(With(k1080p, 2, 0), 4, 1)),
       {}},
      {"standard timings descriptor",
       Edid().Descriptor(0xFA, {0, 0x81, 0x8F, 0x8B, 0xC0, 1, 1, 1, 1, 1, 1, 1, 1}),
       {"2: 1280x1024 75025 @0.-.-.0:59", "2: 1360x768 60015 @0.-.-.1:61"}},
      {"CVT as the range limits say",
       Edid().Set(38, {0x71, 0x40}).Descriptor(0xFD, Hex("00 32 4B 1E 50 11 04 12 00 F0 F8 18 00 3C")),
       {"2: 1152x864 59959 @0.-.-.0:38"}},
      {"CVT codes: five rates of one, an unused one, reduced blanking alone",
       Edid().Descriptor(0xF8, cvtCodes),
       {"5: 1440x1080 49975 @0.-.-.0:60", "5: 1440x1080 59989 @0.-.-.0/1:60", "5: 1440x1080 74917 @0.-.-.0/2:60",
        "5: 1440x1080 84912 @0.-.-.0/3:60", "5: 1440x1080 59912 @0.-.-.0/4:60", "5: 1440x1080 59912 @0.-.-.2:66"}},
      {"established timings III",
       Edid().Descriptor(0xF7, {0, 10, 0x80, 0x10}),
       {"4: 640x350 85080 @0.-.-.7:60", "4: 1280x768 84837 @0.-.-.12:61"}},
      {"a video timing block with one item of each kind",
       Edid().Extension(Concat({{0x10, 1, 1, 1, 1}, k1080p, Hex("1B 22 01 E1 C0 00*100")})),
       {"3: 1920x1080 60000 @1.-.-.0:5", "5: 1440x1080 59912 @1.-.-.0:23", "2: 2048x1152 60000 @1.-.-.0:26"}},
  };
  for (const auto& [name, edid, texts] : cases) EXPECT_EQ(TextsOf(edid.Build(), true), texts) << name;
}

TEST(Offers, OfACtaExtension) {
  const std::tuple<const char*, Cta, Texts> cases[] = {
      {"VICs, native and of two bytes' range; what is no VIC",
       Cta().Vdb({0x90, 0, 128, 254, 218}),
       {"6: 1920x1080 60000 native @1.-.0.0:5", "6: 4096x2160 100000 @1.-.0.4:9"}},
      {"4:2:0 alone, and by a map over two video blocks",
       Cta().Vdb({16, 31}).Vdb({96}).Extended(14, {97}).Extended(15, {0x06}),
       {"6: 1920x1080 60000 @1.-.0.0:5", "6: 1920x1080 50000 4:2:0 @1.-.0.1:6", "6: 3840x2160 50000 4:2:0 @1.-.1.0:8",
        "7: 3840x2160 60000 only 4:2:0 @1.-.2.0:11"}},
      {"a map without bits is for all", Cta().Vdb({16}).Extended(15, {}), {"6: 1920x1080 60000 4:2:0 @1.-.0.0:5"}},
      {"HDMI VICs behind one or two pairs of latencies",
       Cta().Hdmi(0x1000, {0, 60, 0xA0, 1, 2, 0, 0x40, 1, 4}).Hdmi(0x1000, {0, 60, 0xE0, 1, 2, 3, 4, 0, 0x40, 2, 3}),
       {"8: 3840x2160 30000 @1.-.0.0:17", "8: 4096x2160 24000 @1.-.0.1:18", "8: 3840x2160 25000 @1.-.1.0:34",
        "8: 3840x2160 24000 @1.-.1.1:35"}},
      {"another vendor", Cta().Block(3, {3, 12, 1, 0x10, 0, 0, 60, 0x20, 0, 0x20, 1}), {}},
      {"behind data blocks with the reserved tag",
       Cta().Vdb({16}).Block(0, {}).Block(0, {31}).Vdb({32}),
       {"6: 1920x1080 60000 @1.-.0.0:5", "6: 1920x1080 24000 @1.-.1.0:10"}},
      {"a data block that reaches too far", Cta().Vdb({16, 31}).DtdOffset(6), {}},
      {"type VII with an extra byte each, whose mark is 4:2:0",
       Cta().Extended(0x22, Concat({{0x12}, Type20(297000, 0x84), {9}})),
       {"17: 1920x1080 120000 4:2:0 @1.-.0.0:7"}},
      {"type VIII: DMT, VIC and two bytes per code",
       Cta().Extended(0x23, {0, 0x52, 0x04}).Extended(0x23, {0x60, 63}).Extended(0x23, {0x08, 0x52, 0, 0x52, 1}),
       {"18: 1920x1080 60000 @1.-.0.0:7", "18: 640x480 59940 @1.-.0.1:8", "18: 1920x1080 120000 4:2:0 @1.-.1.0:12",
        "18: 1920x1080 60000 @1.-.2.0:16"}},
      {"type X with a fast rate; formula 2 twice when it is marked; no formula 3",
       Cta().Extended(0x2A, Concat({{0x10}, Hex("02 FF 09 9F 05 2B 01 12 FF 09 9F 05 3B 00 03 FF 09 9F 05 3B 00")})),
       {"20: 2560x1440 300000 @1.-.0.0:7", "20: 2560x1440 60000 @1.-.0.1:14", "20: 2560x1440 59940 @1.-.0.1/1:14"}},
      {"detailed timings behind one that is none; the first of the EDID are native",
       Cta().Flags(2).Dtd(k720p60).Dtd(k1080p60).Dtd(AtClock(k1080p60, 297000)),
       {"3: 1280x720 60000 native @1.-.-.0:4", "3: 1920x1080 60000 native @1.-.-.1:22",
        "3: 1920x1080 120000 @1.-.-.2:40"}},
      {"version 1 has no data blocks", Cta().Revision(1).Vdb({16}).Dtd(k720p60), {"3: 1280x720 60000 @1.-.-.0:6"}},
      {"without detailed timings, all is data blocks", Cta().Vdb({16}).DtdOffset(0), {"6: 1920x1080 60000 @1.-.0.0:5"}},
  };
  for (const auto& [name, cta, texts] : cases) EXPECT_EQ(TextsOf(Edid().Extension(cta).Build(), true), texts) << name;
  ByteVector cta = Cta().Dtd(k720p60).Dtd(k1080p60).Build();
  cta[4] = cta[5] = 0;
  EXPECT_EQ(TextsOf(Edid().Extension(cta).Build(), true), Texts{"3: 1920x1080 60000 @1.-.-.1:22"});
}

TEST(Offers, OfADisplayIdSection) {
  const ByteVector typeVi = Hex("13 44 02 7F 87 37 84 17 57 01 2B 2C 03 04");
  const std::tuple<const char*, Section, Texts> cases[] = {
      {"type I, preferred",
       Section().Block(3, 1, Concat({Type20(14850, 0x84), Type20(29700)})),
       {"11: 1920x1080 60000 preferred @1.-.0.0:8", "11: 1920x1080 120000 @1.-.0.1:28"}},
      {"type II",
       Section().Block(4, 0, Hex("01 3A 00 8C EF 44 A5 37 04 2C 34")),
       {"12: 1920x1080 60000 preferred @1.-.0.0:8"}},
      {"types III and V: CVT, with reduced blanking, and at 59.94 too",
       Section().Block(5, 1, {0x94, 239, 59}).Block(0x11, 0, {0x10, 0, 0x7F, 7, 0x37, 4, 59}),
       {"13: 1920x1080 59934 preferred @1.-.0.0:8", "15: 1920x1080 60000 @1.-.1.0:14",
        "15: 1920x1080 59940 @1.-.1.0/1:14"}},
      {"type IV, HDMI VIC", Section().Block(6, 0x81, {1, 9}), {"14: 3840x2160 30000 @1.-.0.0:8"}},
      {"bitmaps",
       Section().Block(7, 0, {8}).Block(8, 0, {0, 0x80}),
       {"21: 640x480 59940 @1.-.0.4:8", "22: 1920x1080 60000 @1.-.1.16:13"}},
      {"type VI", Section().Block(0x13, 0, typeVi), {"16: 1920x1080 60000 @1.-.0.0:8"}},
      {"type VII: the mark has had two meanings",
       Section(0x20).Block(0x22, 0, Type20(148500, 0x84)).Block(0x22, 2, Type20(148500, 0x84)),
       {"17: 1920x1080 60000 preferred @1.-.0.0:8", "17: 1920x1080 60000 4:2:0 @1.-.1.0:31"}},
      {"type IX in 4:2:0",
       Section(0x20).Block(0x24, 0, {0x82, 0x7F, 7, 0x37, 4, 119}),
       {"19: 1920x1080 120000 4:2:0 @1.-.0.0:8"}},
      {"CTA-861 data blocks inside, the last one cut",
       Section(0x20).Block(0x24, 0, {}).Block(0x81, 0, {0x42, 0x90, 31, 0xE2, 14, 97, 0x43, 16}),
       {"6: 1920x1080 60000 native @1.1.0.0:12", "6: 1920x1080 50000 @1.1.0.1:13",
        "7: 3840x2160 60000 only 4:2:0 @1.1.1.0:16"}},
  };
  for (const auto& [name, section, texts] : cases) {
    EXPECT_EQ(TextsOf(Edid().Extension(section).Build(), true), texts) << name;
    const Texts alone = TextsOf(section.Build(), false), inside = TextsOf(Edid().Extension(section).Build(), false);
    EXPECT_EQ(alone, inside) << name;
  }
  EXPECT_EQ(TextsOf(Section(0x02).TypeI({k1080p60}).Build(), false), Texts{}) << "no version";
}

TEST(Offers, WhatTheRecordTells) {
  const std::vector<OfferedTiming> list = Image(Edid()
                                                    .Set(35, {0x20})
                                                    .Dtd(AtClock(k2160p60, 594000))
                                                    .Extension(Cta().Vdb({218}).Hdmi(0x1000, {0, 0, 0x20, 0, 0x20, 4}))
                                                    .Build())
                                              .Timings();
  ASSERT_EQ(list.size(), 4u);
  const OfferedTiming& vga = list[0];
  EXPECT_EQ(vga.dmt, 4);
  EXPECT_EQ(vga.hBorder + vga.vBorder, 16);
  EXPECT_EQ(uint64_t{vga.timing.pixelClock} * 2000 * 1000 / (800 * vga.vTotalHalfLines), vga.rate);
  EXPECT_EQ(list[1].dmt + list[1].vic + list[1].hdmiVic, 0);
  EXPECT_EQ(list[2].vic, 218);
  EXPECT_EQ(list[2].timing.aspectRatio, ASPECT_256_135);
  EXPECT_EQ(list[3].hdmiVic, 4);
  // A border beside a blanking that holds it, and one that does not fit.
  ByteVector bordered = Hex("D5 09 80 A0 20 E0 2D 10 08 60 22 00 46 6D 10 08 08 18"), odd = bordered;
  odd[15] = 40;
  const std::vector<OfferedTiming> two = Image(Edid().Slot(bordered).Slot(odd).Build()).Timings();
  ASSERT_EQ(two.size(), 2u);
  EXPECT_EQ(two[0].timing.hfrontPorch * 100 + two[0].timing.vfrontPorch, 1610);
  EXPECT_EQ(two[0].rate, 59929u);
  EXPECT_EQ(two[0].timing.hImageSize, 326);
  EXPECT_EQ(two[1].hBorder, 0);
  EXPECT_EQ(two[1].timing.hfrontPorch, 8);
}

TEST(Offers, OfOneCode) {
  const StdTiming std = {1, 60, 1152, ASPECT_4_3}, unused = {0, 60, 1152, ASPECT_4_3},
                  narrow = {1, 60, 248, ASPECT_4_3};
  const ByteVector image = Edid().Descriptor(0xFD, Hex("00 32 4B 1E 50 11 04 12 00 F0 F8 18 00 3C")).Build();
  const Image handle(image);
  const BaseBlock model(handle->blocks[0]);
  using Ask = std::function<int32_t(OfferedTiming*)>;
  const std::tuple<const char*, Ask, const char*> cases[] = {
      {"VIC", [](OfferedTiming* t) { return VicToMode(218, t); }, "6: 4096x2160 100000 @0.-.-.0:0"},
      {"no VIC", [](OfferedTiming* t) { return VicToMode(130, t); }, nullptr},
      {"DMT", [](OfferedTiming* t) { return DmtToMode(5, t); }, "0: 640x480 72809 @0.-.-.0:0"},
      {"no DMT", [](OfferedTiming* t) { return DmtToMode(0, t); }, nullptr},
      {"established", [](OfferedTiming* t) { return EstToMode(16, t); }, "1: 1152x870 75062 @0.-.-.0:0"},
      {"established III", [](OfferedTiming* t) { return EstToMode(140, t); }, "4: 1280x768 84837 @0.-.-.0:0"},
      {"no established", [](OfferedTiming* t) { return EstToMode(17, t); }, nullptr},
      {"nor III", [](OfferedTiming* t) { return EstToMode(176, t); }, nullptr},
      {"GTF", [&](OfferedTiming* t) { return StdToMode(nullptr, &std, t); }, "2: 1152x864 60000 @0.-.-.0:0"},
      {"CVT", [&](OfferedTiming* t) { return StdToMode(model.get(), &std, t); }, "2: 1152x864 59959 @0.-.-.0:0"},
      {"unused", [&](OfferedTiming* t) { return StdToMode(nullptr, &unused, t); }, nullptr},
      {"too narrow", [&](OfferedTiming* t) { return StdToMode(nullptr, &narrow, t); }, nullptr},
      {"null", [&](OfferedTiming* t) { return StdToMode(nullptr, nullptr, t); }, nullptr},
  };
  for (const auto& [name, ask, text] : cases) {
    OfferedTiming timing = {};
    EXPECT_EQ(ask(&timing), text == nullptr ? -1 : 0) << name;
    EXPECT_EQ(TextOf(timing, true), text == nullptr ? "0: 0x0 0 @0.0.0.0:0" : text) << name;
    EXPECT_EQ(ask(nullptr), -1) << name;
  }
}

TEST(Rates, FallEachOnceAndStayApart) {
  const ByteVector image = Edid().Set(35, {0x20}).Dtd(k1080p60).Extension(Cta().Vdb({16, 31, 63, 4, 3})).Build();
  const Image handle(image);
  EXPECT_EQ(handle.Rates(), (std::vector<uint32_t>{120000, 60000, 59940, 50000}));
  uint32_t rates[3] = {1, 1, 1};
  EXPECT_EQ(EDID_GetRates(handle.get(), rates, 2), 4u);
  EXPECT_EQ(rates[1], 60000u);
  EXPECT_EQ(rates[2], 1u);
  OfferedTiming timings[2] = {};
  EXPECT_EQ(EDID_GetTimings(handle.get(), timings, 1), 7u);
  EXPECT_EQ(timings[1].rate, 0u);
  EdidHandle empty = {};
  for (const EdidHandle* none : {static_cast<const EdidHandle*>(nullptr), static_cast<const EdidHandle*>(&empty)}) {
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_GetTimings(none, timings, 1), 0u); }),
              Err("EDID_GetTimings", "invalid parameters"));
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_GetRates(none, rates, 1), 0u); }), Err("EDID_GetRates", "invalid parameters"));
  }
}

// More rates than are sorted in one walk.
TEST(Rates, OfManyTimings) {
  Edid edid;
  std::set<uint32_t, std::greater<>> expected;
  for (unsigned i = 0; i < 50; ++i) {
    Cta cta;
    for (unsigned j = 0; j < 6; ++j) {
      const uint32_t clock = 100000 + 10 * ((i * 6 + j) * 7919 % 307);
      expected.insert(static_cast<uint32_t>((uint64_t{clock} * 1000000 + 1237500) / 2475000));
      cta.Dtd(AtClock(k1080p60, clock));
    }
    edid.Extension(cta);
  }
  EXPECT_EQ(Image(edid.Build()).Rates(), std::vector<uint32_t>(expected.begin(), expected.end()));
}

// The rates of the detailed timings, read from the bytes with arithmetic of its own.
std::set<uint32_t> DetailedRates(const ByteVector& bytes) {
  std::set<uint32_t> rates;
  const auto take = [&](size_t at) {
    const auto byte = [&](size_t i) { return uint64_t{bytes[at + i]}; };
    const uint64_t clock = byte(0) | byte(1) << 8;
    const uint64_t columns = byte(2) + byte(3) + ((byte(4) >> 4) + (byte(4) & 15)) * 256;
    const uint64_t lines = byte(5) + byte(6) + ((byte(7) >> 4) + (byte(7) & 15)) * 256;
    const bool picture = (byte(2) | byte(4) >> 4) != 0 && (byte(5) | byte(7) >> 4) != 0;
    if (clock == 0 || !picture || std::count(&bytes[at], &bytes[at] + 18, 0xFF) == 18) return;
    const bool vic39 = clock == 7200 && columns == 2304 && lines == 625;
    const double halves = 2.0 * double(lines) + (byte(17) >= 0x80 && !vic39);
    rates.insert(static_cast<uint32_t>(double(clock) * 2e7 / (double(columns) * halves) + 0.5));
  };
  for (size_t at = 54; at < 126; at += 18) take(at);
  for (size_t block = 128; block < bytes.size(); block += 128) {
    if (bytes[block] != 2 || bytes[block + 2] < 4) continue;
    for (size_t at = block + bytes[block + 2]; at + 18 <= block + 127; at += 18) take(at);
  }
  return rates;
}

TEST(Corpus, OffersTheRatesOfItsTimings) {
  for (const auto& [name, image] : Corpus()) {
    SCOPED_TRACE(name);
    const ByteVector& bytes = image;  // clang captures no structured binding
    if (bytes.size() % 128 != 0 || !isEdidHeader(bytes.data())) continue;
    std::set<uint32_t> all, detailed, told;
    Quietly([&] {
      const Image handle(bytes);
      for (const OfferedTiming& timing : handle.Timings()) {
        all.insert(timing.rate);
        const bool known = timing.block == 0 || bytes[128u * timing.block] == 2;
        if (timing.source == TIMING_DETAILED && known) detailed.insert(timing.rate);
      }
      const std::vector<uint32_t> rates = handle.Rates();
      told.insert(rates.begin(), rates.end());
    });
    EXPECT_EQ(told, all);
    EXPECT_EQ(detailed, DetailedRates(bytes));
    EXPECT_EQ(told.count(63000) + told.count(77000), 0u);
  }
}

}  // namespace
}  // namespace reedid::test
