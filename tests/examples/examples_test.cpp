// Runs the example programs on EDIDs in files and looks at what comes out.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

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
  const ByteVector established = {0x20, 0, 0};  // 640x480 at 60 Hz
  Write("in", Edid()
                  .Set(35, established)
                  .Set(38, {0x81, 0x80})
                  .Dtd(k1080p60)
                  .Extension(Cta().Vdb({5, 193}).Dtd(k720p60))
                  .Build());
  ASSERT_EQ(Run("list_timings in"), 0);
  EXPECT_EQ(printed,
            "established   640x480  60 Hz   25175 kHz\n"
            "standard     1280x1024  60 Hz  108000 kHz\n"
            "VIC 5        1920x540i  60 Hz   74250 kHz\n"
            "VIC 193      5120x2160 120 Hz 1485000 kHz\n"
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
