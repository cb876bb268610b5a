#include "tools/reedid/plot.h"

#include <gtest/gtest.h>

#include <cmath>
#include <regex>

#include "tests/support/corpus.h"
#include "tests/support/edid_builder.h"
#include "tools/reedid/describe.h"
#include "tools/reedid/plot_labels.h"
#include "tools/reedid/samples.h"
#include "tools/reedid/streams.h"

namespace reedid::tool {
namespace {

using test::Cta;
using test::Edid;
using test::Section;

std::string Plot(const ByteVector& bytes, const std::string& name = "x") {
  std::string picture;
  CaptureDiagnostics([&] { picture = PlotImage(Image::FromBytes(name, bytes)); });
  return picture;
}

size_t Count(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

// Elements nest, attributes are quoted, no stray markup or entity; what is wrong, or nothing.
std::string FindXmlFault(const std::string& xml) {
  static const std::regex tag(R"(<(/?)([a-zA-Z]+)((?: [a-zA-Z0-9:-]+="[^"<]*")*)(/?)>)");
  static const std::regex entity("&(?!(amp|lt|gt|quot);)");
  if (std::regex_search(xml, entity)) return "stray &";
  std::vector<std::string> open;
  std::smatch match;
  for (size_t at = xml.find("?>") + 2; (at = xml.find('<', at)) != xml.npos;
       at += static_cast<size_t>(match.length())) {
    const auto begin = xml.begin() + static_cast<std::ptrdiff_t>(at);
    if (!std::regex_search(begin, xml.end(), match, tag, std::regex_constants::match_continuous))
      return "no tag: " + xml.substr(at, 60);
    if (match[4].length() != 0) continue;
    if (match[1].length() == 0) {
      open.push_back(match[2]);
    } else if (open.empty() || open.back() != match[2]) {
      return "closed too early: " + match[2].str();
    } else {
      open.pop_back();
    }
  }
  return open.empty() ? "" : "not closed: " + open.back();
}

// The number behind `what` in the first element that matches.
double Number(const std::string& picture, const std::string& what) {
  std::smatch match;
  if (std::regex_search(picture, match, std::regex(what))) return std::stod(match[1]);
  ADD_FAILURE() << "no " << what;
  return 0;
}

TEST(Plot, IsWellFormedWhateverTheImage) {
  for (const auto& [name, bytes] : test::Corpus()) {
    SCOPED_TRACE(name);
    EXPECT_EQ(FindXmlFault(Plot(bytes, "<" + name + ">&\"\xFF\x01")), "");
  }
}

TEST(Plot, EachTimingIsOnePoint) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.name);
    const std::string picture = Plot(sample.build());
    std::vector<DtdTiming> detailed(256);
    const Image image = Image::FromBytes("x", sample.build());
    detailed.resize(EDID_FindOutAllDTD(image.handle(), detailed.data(), 256));
    std::vector<TimingItem> items = ItemsOf(DescribeImage(image));
    for (const DtdTiming& timing : detailed) items.push_back({TimingKind::kDetailed, 0, false, timing});
    ASSERT_FALSE(items.empty());
    for (const TimingItem& item : items) {
      TimingItem plain = item;
      plain.timing.aspectRatio = ASPECT_UNKNOWN;  // a format that is listed with and without one is the same point
      EXPECT_EQ(Count(picture, "<title>" + TimingText(plain.timing)), 1u) << TimingText(item.timing);
    }
    EXPECT_EQ(Count(picture, ", preferred</title>"), 1u);
  }
}

// Where the clock axis has its limits and points, told by its own ticks.
TEST(Plot, LimitsAndPointsStandAtTheirClock) {
  const std::string picture = Plot(Edid().Dtd(test::k2160p60).Extension(Cta().Extended(0x0E, {97, 102})).Build());
  const auto tick = [&](const char* clock) {
    return Number(picture, "class=\"tick mid\" x=\"([0-9.]+)\" y=\"[0-9.]+\">" + std::string(clock) + "<");
  };
  const double at100 = tick("100"), decade = tick("1000") - at100;
  const auto clockAt = [&](double x) { return 100 * std::pow(10, (x - at100) / decade); };
  std::vector<double> limits;
  const std::regex line("class=\"limit\" x1=\"([0-9.]+)\"");
  for (std::sregex_iterator at(picture.begin(), picture.end(), line), end; at != end; ++at) {
    limits.push_back(clockAt(std::stod((*at)[1])));
  }
  ASSERT_EQ(limits.size(), 3u);
  EXPECT_NEAR(limits[0], 340, 0.5);
  EXPECT_NEAR(limits[1], 600, 0.5);
  EXPECT_NEAR(limits[2], 1777.8, 1);
  EXPECT_NEAR(clockAt(Number(picture, "class=\"timing\" fill=\"[^\"]*\" cx=\"([0-9.]+)\"")), 594, 0.5);
  EXPECT_EQ(Count(picture, ", 4:2:0 only</title>"), 2u);  // VICs 97 and 102, at 594 MHz too
}

TEST(Plot, Primaries) {
  ByteVector parameters(29);  // DisplayID 2.0, table 4-2: BT.2020 in units of 1/4096
  const ByteVector primaries = {0x54, 0xCB, 0x4A, 0xB8, 0x12, 0xCC, 0x19, 0xC2, 0x0B, 0x01, 0x45, 0x54};
  std::copy(primaries.begin(), primaries.end(), parameters.begin() + 9);
  const struct {
    const char* name;
    ByteVector image;
    std::vector<const char*> texts;
  } cases[] = {
      {"sRGB", SampleBytes("tv-4k"), {">100 %<", ">74 %<", ">53 %<"}},
      {"none", Edid().Set(25, ByteVector(10)).Build(), {"no primaries are stated"}},
      {"all alike", Edid().Set(25, {0, 0, 80, 80, 80, 80, 80, 80, 80, 84}).Build(), {"span no triangle"}},
      {"a section without", Section(0x20).Block(0x2B, 0, {'x'}).Build(), {"no primaries are stated", "no timings"}},
      {"a section with",
       Section(0x20).Block(0x21, 0, parameters).Build(),
       {">189 %<", ">100 %<", "red: 0.7080, 0.2920"}},
  };
  for (const auto& c : cases) {
    const std::string picture = Plot(c.image);
    for (const char* text : c.texts) EXPECT_NE(picture.find(text), std::string::npos) << c.name << ": " << text;
  }
}

TEST(Plot, LabelsCoverNothing) {
  const Box frame = {0, 0, 300, 200};
  Labels labels(frame);
  std::vector<Box> taken = {{100, 95, 10, 10}};
  labels.Occupy(taken[0]);
  for (int i = 0; i < 30; ++i) {
    const auto box = labels.Place(105, 100, 60, 13);
    if (!box) continue;
    EXPECT_TRUE(box->x >= 0 && box->y >= 0 && box->right() <= frame.right() && box->bottom() <= frame.bottom());
    for (const Box& other : taken) {
      EXPECT_TRUE(box->right() <= other.x || other.right() <= box->x || box->bottom() <= other.y ||
                  other.bottom() <= box->y);
    }
    taken.push_back(*box);
  }
  EXPECT_GT(taken.size(), 6u);
  EXPECT_LT(taken.size(), 31u);
}

TEST(Svg, TextsAndNumbers) {
  const struct {
    std::string text, escaped;
  } texts[] = {{"a<b>&\"'", "a&lt;b&gt;&amp;&quot;'"},
               {"\xC3\xA4 \xE2\x89\x88 \xF0\x9F\x98\x80", "\xC3\xA4 \xE2\x89\x88 \xF0\x9F\x98\x80"},
               {"\x1B\t", "\uFFFD\t"},
               {"\xC0\x80", "\uFFFD\uFFFD"},
               {"\xED\xA0\x80!", "\uFFFD!"},
               {"\xE2\x89", "\uFFFD\uFFFD"},
               {"\xEF\xBF\xBF", "\uFFFD"},
               {"\xF4\x90\x80\x80", "\uFFFD"}};
  for (const auto& c : texts) EXPECT_EQ(XmlText(c.text), c.escaped);
  const struct {
    double number;
    const char* text;
  } numbers[] = {{0.5, "0.5"}, {-0.001, "0"}, {100, "100"}, {1.006, "1.01"}, {NAN, "0"}, {1e300, "1000000"}};
  for (const auto& c : numbers) EXPECT_EQ(SvgNumber(c.number), c.text);
}

}  // namespace
}  // namespace reedid::tool
