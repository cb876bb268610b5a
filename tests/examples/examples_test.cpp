// Runs the example programs on EDIDs in files and looks at what comes out.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

#include "reedid/reedid.hpp"
#include "tests/support/edid_builder.h"

namespace reedid::test {
namespace {

namespace fs = std::filesystem;

class Examples : public testing::Test {
 protected:
  Examples() {
    std::string pattern = (fs::temp_directory_path() / "reedid-examples-XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
  }
  ~Examples() override { fs::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  void Write(const std::string& name, const ByteVector& bytes) const {
    std::ofstream(Path(name), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }

  Image Open(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return Image(ByteView(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
  }

  // The exit code; what the program prints goes to `printed`.
  int Run(const std::string& arguments) {
    const std::string command = "cd '" + folder_.string() + "' && " REEDID_EXAMPLES "/" + arguments + " 2>&1";
    std::FILE* pipe = popen(command.c_str(), "r");
    printed.clear();
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) printed.push_back(static_cast<char>(c));
    const int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  std::string printed;

 private:
  fs::path folder_;
};

const CeaDataBlock* Find(const CtaExtension& cta, uint8_t tag, uint8_t extTag = 0) {
  return CEA_FindDataBlock(cta.get(), tag, extTag);
}

TEST_F(Examples, ReadAddress) {
  Write("hdmi", Edid().Dtd(k1080p60).Extension(Cta().Vdb({16}).Hdmi(0x1230)).Build());
  Write("dvi", Edid().Dtd(k1080p60).Build());
  EXPECT_EQ(Run("read_address hdmi"), 0);
  EXPECT_EQ(printed, "1.2.3.0\n");
  EXPECT_EQ(Run("read_address dvi"), 1);
  EXPECT_EQ(printed, "dvi: no physical address\n");
  EXPECT_EQ(Run("read_address nothing"), 1);
  EXPECT_EQ(Run("read_address"), 2);
}

TEST_F(Examples, LimitHdmi20) {
  const DtdTiming k2160p120 = AtClock(k2160p60, 655000);
  Write("fast", Edid().Dtd(k2160p120).Dtd(k1080p60).Extension(Cta().Vdb({118, 97, 16}).Hdmi(0x1000)).Build());
  Write("dvi", Edid().Dtd(k1080p60).Build());
  ASSERT_EQ(Run("limit_hdmi20 fast out 0x2100"), 0) << printed;
  const Image out = Open("out");
  ASSERT_TRUE(out);
  EXPECT_EQ(EDID_GetPhyAddr(out.get()), 0x2100);
  EXPECT_TRUE(isValidEdid(out.get()));
  EXPECT_FALSE(out.DetailedTimings().empty());
  for (const DtdTiming& timing : out.DetailedTimings()) EXPECT_LE(timing.pixelClock, 600000u);
  const CtaExtension cta(out.Blocks()[1]);
  VdbRecord video;
  ASSERT_EQ(CEA_GetVDB(Find(cta, 2), &video), 0);
  for (unsigned i = 0; i < video.vicCount; ++i) EXPECT_NE(video.vics[i], 118) << "2160p120 takes 1188 MHz";

  ASSERT_EQ(Run("limit_hdmi20 dvi out 0x2100"), 0) << printed;
  EXPECT_EQ(EDID_GetPhyAddr(Open("out").get()), 0x2100);
}

TEST_F(Examples, SdrStereo) {
  const Cta cta = Cta()
                      .Block(1, {0x15, 0x07, 0x50, 0x0F, 0x7F, 0x07})
                      .Vdb({16})
                      .Hdmi(0x1000)
                      .Extended(6, {0x05, 0x01, 0x60})
                      .Extended(5, {0x80, 0x00});
  Write("hdr", Edid().Dtd(k1080p60).Extension(cta).Build());
  ASSERT_EQ(Run("sdr_stereo hdr out"), 0) << printed;
  const Image out = Open("out");
  ASSERT_EQ(out.Blocks().size(), 2u);
  const CtaExtension left(out.Blocks()[1]);
  EXPECT_EQ(Find(left, 7, 6), nullptr) << "HDR static metadata is still there";
  EXPECT_NE(Find(left, 7, 5), nullptr) << "colorimetry went with it";
  AdbRecord audio;
  ASSERT_EQ(CEA_GetADB(Find(left, 1), &audio), 0);
  ASSERT_EQ(audio.sadCount, 1);
  EXPECT_EQ(audio.sads[0].formatCode, 1);
  EXPECT_EQ(audio.sads[0].channels, 2);
}

TEST_F(Examples, AddVendorBlock) {
  Write("in", Edid().Dtd(k1080p60).Extension(Cta().Vdb({16})).Build());
  ASSERT_EQ(Run("add_vendor_block in out 0x123456 1 0xFF"), 0) << printed;
  const Image out = Open("out");
  EXPECT_TRUE(isValidEdid(out.get()));
  const CtaExtension cta(out.Blocks()[1]);
  ASSERT_EQ(cta.DataBlocks().size(), 2u);
  const ByteView bytes = BytesOf(cta.DataBlocks()[1]);
  EXPECT_EQ(ByteVector(bytes.begin(), bytes.end()), (ByteVector{0x65, 0x56, 0x34, 0x12, 1, 0xFF}));

  Cta full;
  for (int i = 0; i < 4; ++i) full.Block(3, ByteVector(29, 9));
  Write("full", Edid().Dtd(k1080p60).Extension(full).Build());
  EXPECT_EQ(Run("add_vendor_block full none 0x123456 1"), 1);
  EXPECT_NE(printed.find("not enough space, free 3, need 5"), std::string::npos) << printed;
  EXPECT_FALSE(fs::exists(Path("none")));
}

TEST_F(Examples, ListTimings) {
  const ByteVector established = {0xA0, 0, 0};      // 720x400 at 70 Hz, 640x480 at 60 Hz
  const ByteVector cvt = {0, 1, 0x1B, 0x24, 0x29};  // 1080 lines, 16:9, 60 Hz, both forms
  const ByteVector type7 = {2,    0x2F, 0x11, 0x09, 4,    0xFF, 0x0E, 0x2F, 2, 0xAF, 0,
                            0x57, 0,    0x6F, 8,    0x59, 0,    7,    0,    9, 0};
  Write(
      "in",
      Edid()
          .Set(35, established)
          .Set(38, {0x81, 0x80, 0x95, 0x10})
          .Dtd(k1080p60)
          .Descriptor(0xF7, {0, 10, 0x40})
          .Descriptor(0xF8, cvt)
          .Descriptor(0xFA, {0, 0x81, 0x8F, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1})
          .Extension(Cta().Vdb({5, 193}).Hdmi(0x1000, {0, 60, 0x20, 0, 0x20, 1}).Extended(14, {96}).Dtd(k720p60))
          .Extension(
              Cta().Extended(0x22, type7).Extended(0x23, {0, 0x52}).Extended(0x2A, {0, 2, 0xFF, 0x09, 0x9F, 0x05, 143}))
          .Extension(Section(0x20)
                         .Block(0x24, 0, {1, 0xFF, 0x09, 0x9F, 0x05, 143})
                         .Block(0x23, 0x40, {97})
                         .Block(0x05, 0, {0x04, 0xEF, 59})
                         .Block(0x11, 0, {0, 0, 0x7F, 7, 0x37, 4, 143})
                         .Block(0x06, 0, {0x23})
                         .Block(0x07, 0, {0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0})
                         .Block(0x08, 0, {0x08, 0, 0, 0, 0, 0, 0, 0}))
          .Build());
  ASSERT_EQ(Run("list_timings in"), 0);
  // The formula that refuses 144 Hz has said so: reduced blanking version 1 knows multiples of 60 Hz.
  printed = std::regex_replace(printed, std::regex("\\[ERR:Cvt2ToDtd:[^\n]*\n"), "");
  EXPECT_EQ(printed,
            "established   640x480  60 Hz   25175 kHz\n"
            "established   720x400  70 Hz\n"
            "standard     1280x1024  60 Hz  108000 kHz\n"
            "standard     1440x900  76 Hz\n"
            "established   640x400  85 Hz   31500 kHz\n"
            "formula      1920x1080  60 Hz  173000 kHz\n"
            "formula      1920x1080  60 Hz  138500 kHz\n"
            "standard     1280x1024  75 Hz  135000 kHz\n"
            "VIC 5        1920x540i  60 Hz   74250 kHz\n"
            "VIC 193      5120x2160 120 Hz 1485000 kHz\n"
            "HDMI VIC 1   3840x2160  30 Hz  297000 kHz\n"
            "VIC 96       3840x2160  50 Hz  594000 kHz\n"
            "detailed     3840x2160  60 Hz  594224 kHz\n"
            "DMT 82       1920x1080  60 Hz  148500 kHz\n"
            "formula      2560x1440 144 Hz  586586 kHz\n"
            "formula      2560x1440 144 Hz\n"
            "VIC 97       3840x2160  60 Hz  594000 kHz\n"
            "formula      1920x1080  60 Hz  173000 kHz\n"
            "formula      1920x1080 144 Hz  333216 kHz\n"
            "DMT 35       1280x1024  60 Hz  108000 kHz\n"
            "DMT 1         640x350  85 Hz   31500 kHz\n"
            "VIC 4        1280x720  60 Hz   74250 kHz\n"
            "preferred    1920x1080  60 Hz  148500 kHz\n"
            "detailed     1280x720  60 Hz   74250 kHz\n");
}

TEST_F(Examples, WriteEdid) {
  ASSERT_EQ(Run("write_edid out"), 0) << printed;
  EXPECT_EQ(printed, "");
  const Image out = Open("out");
  ASSERT_EQ(out.Blocks().size(), 2u);
  EXPECT_TRUE(isValidEdid(out.get()));
  EXPECT_EQ(BytesOf(out.Blocks()[0])[126], 1);
  EXPECT_EQ(EDID_GetPhyAddr(out.get()), 0x1000);
  ASSERT_EQ(out.DetailedTimings().size(), 1u);
  EXPECT_EQ(out.DetailedTimings()[0].pixelClock, 148500u);
  const BaseBlock base(out.Blocks()[0]);
  char name[14];
  ASSERT_EQ(VESA_GetProductName(&base->descriptors[1], name, sizeof name), 0);
  EXPECT_STREQ(name, "Example");
  EXPECT_EQ(CtaExtension(out.Blocks()[1]).DataBlocks().size(), 4u);
}

}  // namespace
}  // namespace reedid::test
