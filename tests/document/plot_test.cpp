#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <regex>

#include "document/account/image_account.h"
#include "document/plot/labels.h"
#include "document/plot/picture.h"
#include "document/plot/svg.h"
#include "document/read/samples.h"
#include "tests/support/corpus.h"
#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"

namespace reedid::document {
namespace {

using test::Cta;
using test::Edid;
using test::Section;

std::string Plot(const ByteVector& bytes, const std::string& name = "x") {
  std::string picture;
  test::Quietly([&] {
    const Image image = Image::FromBytes(name, bytes);
    picture = DrawPicture(image, DescribeImage(image));
  });
  return picture;
}

size_t Count(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

// Elements nest, attributes are quoted, no stray markup or entity; what is wrong, or nothing.
std::string FindXmlFault(const std::string& xml) {
  static const std::regex tag(R"(<(/?)([a-zA-Z]+)(?: [a-zA-Z0-9:-]+="[^"<]*")*(/?)>)");
  if (std::regex_search(xml, std::regex("&(?!(amp|lt|gt|quot);)"))) return "stray &";
  auto brackets = std::count(xml.begin(), xml.end(), '<') - 1;  // the declaration has one
  std::string open;
  for (std::sregex_iterator at(xml.begin(), xml.end(), tag), end; at != end; ++at, --brackets) {
    const std::string name = "<" + (*at)[2].str();
    if ((*at)[3].length() != 0) continue;
    if ((*at)[1].length() == 0) {
      open += name;
    } else if (open.ends_with(name)) {
      open.resize(open.size() - name.size());
    } else {
      return "closed too early: " + name;
    }
  }
  return brackets == 0 ? open : "no tag";
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
    std::vector<TimingItem> items = ItemsOf(DescribeImage(Image::FromBytes("x", sample.build())));
    ASSERT_FALSE(items.empty());
    for (TimingItem& item : items) {
      item.timing.aspectRatio = ASPECT_UNKNOWN;  // a format that is listed with and without one is the same point
      EXPECT_EQ(Count(picture, "<title>" + TimingText(item.timing)), 1u) << TimingText(item.timing);
    }
    EXPECT_EQ(Count(picture, ", preferred</title>"), 1u);
  }
}

// Where the clock axis has the limits of HDMI, those of the display in bold, and points, told by its own ticks.
TEST(Plot, LimitsAndPointsStandAtTheirClock) {
  const Cta hdmi = Cta().Hdmi(0x1000, {0, 68}).HdmiForum({1, 120, 0x80, 0x50, 0, 40, 120}).Extended(0x0E, {97, 102});
  const std::string picture = Plot(Edid().Dtd(test::k2160p60).Extension(hdmi).Build());
  const auto tick = [&](const char* clock) {
    return Number(picture, "class=\"tick mid\" x=\"([0-9.]+)\" y=\"[0-9.]+\">" + std::string(clock) + "<");
  };
  const double at100 = tick("100"), decade = tick("1000") - at100;
  const auto clockAt = [&](double x) { return 100 * std::pow(10, (x - at100) / decade); };
  size_t at = 0;
  // 40 Gbit/s of FRL takes the place of 48, which is too near to be named beside it.
  for (const auto& [limit, style] :
       {std::pair(340.0, "\"limit\""), {600.0, "\"limit own\""}, {1481.5, "\"limit own\""}}) {
    at = picture.find("<line class=\"limit", at + 1);
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(picture.find(style, at), at + 12);
    const size_t x = picture.find("x1=", at) + 4;
    EXPECT_NEAR(clockAt(std::stod(picture.substr(x, 10))), limit, limit / 1000);
  }
  EXPECT_EQ(Count(picture, "class=\"limit\"") + Count(picture, "class=\"limit own\""), 4u);  // one in the legend
  EXPECT_EQ(Count(picture,
                  "<title>VRR 40\xE2\x80\x93"
                  "120 Hz</title>"),
            1u);
  EXPECT_NEAR(clockAt(Number(picture, "class=\"timing\" fill=\"[^\"]*\" cx=\"([0-9.]+)\"")), 594, 0.5);
  EXPECT_EQ(Count(picture, ", 4:2:0 only</title>"), 2u);  // VICs 97 and 102, at 594 MHz too
}

TEST(Plot, PanelsHaveTheirOwnLimitsOnly) {
  const Edid edid = Edid().Descriptor(0xFD, {0, 48, 75, 30, 80, 17, 4}).Extension(Cta().Vdb({16}));
  const std::string picture = Plot(edid.Build());
  EXPECT_EQ(Count(picture, "<line class=\"limit"), 0u);
  EXPECT_EQ(Count(picture, "<title>range limits: 48 to 75 Hz, up to 170 MHz</title>"), 1u);
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
  const std::pair<std::string, std::string> texts[] = {
      {"a<b>&\"'", "a&lt;b&gt;&amp;&quot;'"},
      {"\xC3\xA4 \xE2\x89\x88 \xF0\x9F\x98\x80", "\xC3\xA4 \xE2\x89\x88 \xF0\x9F\x98\x80"},
      {"\x1B\t", "\uFFFD\t"},
      {"\xC0\x80", "\uFFFD\uFFFD"},
      {"\xED\xA0\x80!", "\uFFFD!"},
      {"\xE2\x89", "\uFFFD\uFFFD"},
      {"\xEF\xBF\xBF", "\uFFFD"},
      {"\xF4\x90\x80\x80", "\uFFFD"}};
  for (const auto& [text, escaped] : texts) EXPECT_EQ(XmlText(text), escaped);
  const std::pair<double, const char*> numbers[] = {{0.5, "0.5"},    {-0.001, "0"}, {100, "100"},
                                                    {1.006, "1.01"}, {NAN, "0"},    {1e300, "1000000"}};
  for (const auto& [number, text] : numbers) EXPECT_EQ(SvgNumber(number), text);
}

}  // namespace
}  // namespace reedid::document
