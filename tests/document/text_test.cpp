// The text form: nothing is lost on the way there and back, what is wrong is told with its place, and a changed field
// changes its own bits only.
#include <gtest/gtest.h>

#include <random>

#include "document/check/check.h"
#include "document/text/text_form.h"
#include "tests/document/sound_images.h"
#include "tests/support/corpus.h"
#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"

namespace reedid::document {
namespace {

ByteVector Built(const std::string& text, Notes& notes) {
  ByteVector bytes;
  std::optional<Error> thrown;
  test::Quietly([&] {
    try {
      bytes = BuildText("x", text, notes);
    } catch (const Error& error) {
      thrown = error;
    }
  });
  if (thrown) throw Error(*thrown);
  return bytes;
}

// What is wrong with a text, without the name in front.
std::string ErrorsOf(const std::string& text) {
  try {
    Notes notes;
    Built(text, notes);
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::kInput);
    std::string errors = error.what();
    for (size_t at = 0; (at = errors.find("x: ", at)) != errors.npos;) errors.erase(at, 3);
    return errors;
  }
  return "";
}

// Whether an image opens; then its text must build it.
bool ComesBack(const std::string& name, const ByteVector& bytes, Fields fields) {
  std::optional<Image> image;
  test::Quietly([&] {
    try {
      image = Image::FromBytes(name, bytes);
    } catch (const Error&) {
    }
  });
  if (!image) return false;
  std::string text;
  test::Quietly([&] { text = ExportText(*image, fields); });
  Notes notes;
  try {
    EXPECT_EQ(Built(text, notes), bytes) << name << "\n" << text;
  } catch (const Error& error) {
    ADD_FAILURE() << name << ": " << error.what() << "\n" << text;
  }
  EXPECT_TRUE(notes.empty()) << name << ": " << notes[0];
  return true;
}

TEST(TextForm, LosesNoByte) {
  for (const auto& [name, bytes] : test::Corpus()) {
    EXPECT_TRUE(ComesBack(name, bytes, Fields::kSet)) << name;
    EXPECT_TRUE(ComesBack(name, bytes, Fields::kAll)) << name;
  }
}

void Mutate(std::mt19937& random, ByteVector& bytes) {
  const size_t at = random() % bytes.size(), from = random() % bytes.size();
  switch (random() % 3) {
    case 0:
      bytes[at] = static_cast<uint8_t>(bytes[at] ^ 1u << random() % 8);
      break;
    case 1:
      bytes[at] = static_cast<uint8_t>(random());
      break;
    default:
      for (size_t i = 0; i < 20 && std::max(at, from) + i < bytes.size(); ++i) bytes[at + i] = bytes[from + i];
  }
}

TEST(TextForm, LosesNoByteOfBrokenImages) {
  std::mt19937 random(17);
  std::vector<std::pair<std::string, ByteVector>> images(test::Corpus().begin(), test::Corpus().end());
  int opened = 0;
  for (int i = 0; i < 600; ++i) {
    auto [name, bytes] = images[random() % images.size()];
    for (size_t changes = 1 + random() % 5; changes > 0; --changes) Mutate(random, bytes);
    opened += ComesBack(name + " mutant " + std::to_string(i), bytes, i % 2 == 0 ? Fields::kSet : Fields::kAll);
  }
  EXPECT_GT(opened, 400);
}

constexpr char kMonitor[] = R"({ // comments are fine
  "blocks": [{"manufacturer": "ABC", "productCode": 1, "year": 2026, "hScreenSize": 60, "vScreenSize": 34,
    "descriptors": [{"kind": "timing", "mode": "1920x1080@60", "hImageSize": 600, "vImageSize": 340},
      {"kind": "productName", "text": "Ten lines"},
      {"kind": "rangeLimits", "minVRate": 50, "maxVRate": 60, "minHRate": 30, "maxHRate": 70, "maxPixelClock": 150000}]}
    BLOCKS]})";

std::string Monitor(const std::string& blocks) {
  std::string text = kMonitor;
  return text.replace(text.find("BLOCKS"), 6, blocks);
}

std::string Cta(const std::string& keys) {
  return Monitor(R"(, {"kind": "cta", )" + keys + "}");
}

TEST(TextForm, NeedsLittleForAMonitor) {
  Notes notes;
  const ByteVector bytes = Built(Monitor(""), notes);
  for (const Finding& finding : Check(bytes, test::kThisYear)) {
    EXPECT_EQ(finding.severity, Severity::kNote) << finding.rule->id << ": " << finding.values;
  }
}

TEST(TextForm, ComputesWhatFollowsFromTheImage) {
  Notes notes;
  const std::string cta = R"({"kind": "cta", "dataBlocks": [{"kind": "extensionOverride"}]})";
  ByteVector bytes = Built(Monitor(R"(, {"kind": "blockMap"}, )" + cta + R"(, {"kind": "displayId"})"), notes);
  ASSERT_EQ(bytes.size(), 512u);
  EXPECT_EQ(bytes[126], 1);  // beside an override
  EXPECT_EQ(ByteVector(&bytes[128], &bytes[132]), (ByteVector{0xF0, 0x02, 0x70, 0}));
  EXPECT_EQ(bytes[256 + 6], 3);  // extensions by the override
  EXPECT_EQ(bytes[256 + 2], 7);  // where timings begin
  for (size_t block = 0; block < 4; ++block) EXPECT_EQ(GetChecksum(&bytes[128 * block], 128), bytes[128 * block + 127]);
}

TEST(TextForm, MapFollowsTheVideoBlock) {
  Notes notes;
  const auto map = [&](const std::string& vics) {
    const ByteVector bytes = Built(
        Cta(R"("dataBlocks": [{"kind": "video", "vics": )" + vics + R"(}, {"kind": "ycc420Map", "vics": [97, 96]}])"),
        notes);
    const size_t at = 128 + 4 + 1 + (bytes[128 + 4] & 0x1F);
    return ByteVector(&bytes[at], &bytes[at + 3]);
  };
  EXPECT_EQ(map("[97, 16, 96]"), (ByteVector{0xE2, 0x0F, 0x05}));
  EXPECT_EQ(map("[97, 96]"), (ByteVector{0xE2, 0x0F, 0x03}));
}

TEST(TextForm, TellsWhatIsWrongAndWhere) {
  const struct {
    std::string text, errors;
  } cases[] = {
      {"[1]", ": a list is no object with \"blocks\""},
      {R"({"reedid": 2, "blocks": []})",
       "reedid: version 2 of the form; this program knows 1\nblocks: there must be a list of 1 to 255 blocks"},
      {R"({"blocks": [{}]})", "blocks[0].manufacturer: must be three letters from A to Z"},
      {R"({"blocks": [{"manufacturer": "abc"}]})", "blocks[0].manufacturer: must be three letters from A to Z"},
      {R"({"blocks": [{"manufacturer": "ABC", "weak": 3, "gammaX100": 355}]})",
       "blocks[0].weak: is not known; did you mean week?"},
      {Monitor(", 7"), "blocks[1]: 7 is no block"},
      {Monitor(R"(, {"kind": "cat"})"), "blocks[1].kind: \"cat\" is not known; did you mean cta?"},
      {Cta(R"("dataBlocks": [{"kind": "video", "nativeVics": 16}])"),
       "blocks[1].dataBlocks[0].nativeVics: 16 is no list"},
      {Monitor(R"(, {"kind": "blockMap", "tags": "x"})"), "blocks[1].tags: \"x\" is no list"},
      {Cta(R"("underscan": 2)"), "blocks[1].underscan: 2 is not true or false"},
      {Cta(R"("dataBlocks": [{"kind": "video", "vics": [16, 4, 300]}, {"kind": "video", "vics": [128]}])"),
       "blocks[1].dataBlocks[0].vics[2]: 300 is no VIC (1..127, 193..219)\n"
       "blocks[1].dataBlocks[1].vics[0]: 128 is no VIC (1..127, 193..219)"},
      {Cta(R"("dataBlocks": [{"kind": "ycc420Map", "vics": [96]}])"),
       "blocks[1].dataBlocks[0].vics[0]: 96 is in no video block of this extension\n"
       "blocks[1].dataBlocks[0].vics: none; a map without any means all (\"all\": true)"},
      {Cta(R"("dataBlocks": [{"kind": "hdmi", "physAddr": "1.2.0", "max_TMDS_Clock": 303}])"),
       "blocks[1].dataBlocks[0].physAddr: \"1.2.0\" is not an address such as \"1.2.0.0\""},
      {Cta(R"("dataBlocks": [{"kind": "hdmi", "max_TMDS_Clock": 303}])"),
       "blocks[1].dataBlocks[0].max_TMDS_Clock: 303 cannot stand here"},
      {Cta(R"("dataBlocks": [{"kind": "colorimetry", "metadataProfiles": 16}])"),
       "blocks[1].dataBlocks[0].metadataProfiles: 16 cannot be written here; it would read as 0"},
      {Cta(R"("timings": [{"kind": "timing", "mode": "3840x2160@120"}])"),
       "blocks[1].timings[0].mode: \"3840x2160@120\" cannot stand here"},
      {Cta(R"("dataBlocks": [{"bytes": "00 0"}, {"bytes": "xy"}])"),
       "blocks[1].dataBlocks[0].bytes: ends in half a byte\n"
       "blocks[1].dataBlocks[1].bytes: \"xy\" are no bytes such as \"00 ff 10\""},
      {Monitor(R"(, {"bytes": "02 03"})"), "blocks[1].bytes: 2 bytes; a block has 128"},
      {"{\"blocks\": 1, \"blocks\": 2}", "\"blocks\" stands twice in one object"},
  };
  for (const auto& row : cases) EXPECT_EQ(ErrorsOf(row.text), row.errors) << row.text;
  EXPECT_NE(ErrorsOf("{\n\n]").find("no JSON: line 3"), std::string::npos);
  EXPECT_NE(ErrorsOf(std::string(100000, '[')).find("lists within lists"), std::string::npos);
  const std::string full = R"({"kind": "dataBlock", "bytes": "7f)" + std::string(62, '0') + "\"}";
  EXPECT_EQ(ErrorsOf(Cta("\"dataBlocks\": [" + full + "," + full + "," + full + "," + full + "]")),
            "blocks[1].dataBlocks: needs 5 more bytes than the block has");
}

// Fields beside bytes are changes to what these say.
TEST(TextForm, AChangeKeepsTheOtherBits) {
  const struct {
    std::string part, bytes;
    size_t notes;
  } cases[] = {
      // Reserved bits of colorimetry and of HDMI's flags stay.
      {R"({"kind": "colorimetry", "bytes": "e3 05 01 30"})", "e3 05 01 30", 0},
      {R"({"bytes": "e3 05 01 30", "xvYCC601": true})", "e3 05 01 30", 0},
      {R"({"bytes": "e3 05 01 30", "BT2020RGB": true})", "e3 05 81 30", 0},
      {R"({"bytes": "67 03 0c 00 10 00 06 2d", "max_TMDS_Clock": 300})", "67 03 0c 00 10 00 06 3c", 0},
      // What is behind a block that gets shorter cannot stay.
      {R"({"kind": "video", "bytes": "43 10 04 1f", "vics": [16, 4]})", "42 10 04", 0},
      {R"({"kind": "hdr10Plus", "bytes": "e7 01 8b 84 90 01 ff ff", "applicationVersion": 2})", "e5 01 8b 84 90 02", 1},
  };
  for (const auto& row : cases) {
    Notes notes;
    const ByteVector bytes = Built(Cta("\"dataBlocks\": [" + row.part + "]"), notes);
    const size_t size = (row.bytes.size() + 1) / 3;
    EXPECT_EQ(Hex({&bytes[132], size}), row.bytes) << row.part;
    EXPECT_EQ(bytes[130], 4 + size) << row.part;
    EXPECT_EQ(notes.size(), row.notes) << row.part;
  }
}

}  // namespace
}  // namespace reedid::document
