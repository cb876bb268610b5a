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

  // Runs a program beside a file `in` of this image; gives its exit code, and what it prints behind that.
  std::string Run(const std::string& arguments, const Edid& in) const {
    const ByteVector bytes = in.Build();
    std::ofstream(folder_ / "in", std::ios::binary) << std::string(bytes.begin(), bytes.end());
    const std::string command = "cd '" + folder_.string() + "' && " REEDID_EXAMPLES "/" + arguments + " 2>&1";
    std::FILE* pipe = popen(command.c_str(), "r");
    std::string printed;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) printed.push_back(static_cast<char>(c));
    const int status = pclose(pipe);
    return std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : -1) + " " + printed;
  }

  // The file `out`, which a program has written; empty when it has not.
  ByteVector Out() const {
    std::ifstream file(folder_ / "out", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  fs::path folder_;
};

TEST_F(Examples, ReadAddress) {
  const Edid dvi = Edid().Dtd(k1080p60);
  EXPECT_EQ(Run("read_address in", Edid(dvi).Extension(Cta().Vdb({16}).Hdmi(0x1230))), "0 1.2.3.0\n");
  EXPECT_EQ(Run("read_address in", dvi), "1 in: no physical address\n");
  EXPECT_EQ(Run("read_address nothing", dvi)[0], '1');
  EXPECT_EQ(Run("read_address", dvi)[0], '2');
}

TEST_F(Examples, Edits) {
  const Edid hd = Edid().Dtd(k1080p60), fast = Edid(hd).Dtd(AtClock(k2160p60, 655000));
  const Cta audio = Cta().Block(1, {0x15, 0x07, 0x50, 0x0F, 0x7F, 0x07}), stereo = Cta().Block(1, {0x09, 0x7F, 0x07});
  const struct {
    const char* arguments;
    Edid in, out;
  } rows[] = {
      {"limit_hdmi20 in out 0x2100", Edid(fast).Extension(Cta().Vdb({118, 97, 0x90}).Hdmi(0x1000)),
       Edid(hd).Descriptor(0x10, {}).Extension(Cta().Vdb({97, 0x90}).Hdmi(0x2100))},
      {"sdr_stereo in out",
       Edid(hd).Extension(Cta(audio).Hdmi(0x1000).Extended(6, {0x05, 0x01, 0x60}).Extended(5, {0x80, 0x00})),
       Edid(hd).Extension(Cta(stereo).Hdmi(0x1000).Extended(5, {0x80, 0x00}))},
      {"add_vendor_block in out 0x123456 1 0xFF", Edid(hd).Extension(Cta().Vdb({0x90})),
       Edid(hd).Extension(Cta().Vdb({0x90}).Block(3, {0x56, 0x34, 0x12, 1, 0xFF}))},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Run(row.arguments, row.in)[0], '0') << row.arguments;
    EXPECT_EQ(HexOf(Out()), HexOf(row.out.Build())) << row.arguments;
  }
  for (const char* address : {"0x", "2.1.0.0", "0x1020", "0", "0x12000"}) {
    EXPECT_EQ(Run(std::string("limit_hdmi20 in none ") + address, hd)[0], '2') << address;
  }
  EXPECT_EQ(Run("limit_hdmi20 in out 0x2100", hd)[0], '0');
  EXPECT_EQ(EDID_GetPhyAddr(Image(Out()).get()), 0x2100) << "a DVI image becomes an HDMI one";
}

TEST_F(Examples, AddVendorBlockNeedsRoom) {
  Cta full;
  for (int i = 0; i < 4; ++i) full.Block(3, ByteVector(29, 9));
  const std::string refused = Run("add_vendor_block in out 0x123456 1", Edid().Extension(full));
  EXPECT_NE(refused.find("not enough space, free 3, need 5"), std::string::npos) << refused;
  EXPECT_EQ(refused[0], '1');
  EXPECT_TRUE(Out().empty());
}

TEST_F(Examples, ListTimings) {
  const ByteVector established = {0xA0, 0, 0};      // 720x400 at 70 Hz, 640x480 at 60 Hz
  const ByteVector cvt = {0, 1, 0x1B, 0x24, 0x29};  // 1080 lines, 16:9, 60 Hz, both forms
  const ByteVector type7 = {2,    0x2F, 0x11, 0x09, 4,    0xFF, 0x0E, 0x2F, 2, 0xAF, 0,
                            0x57, 0,    0x6F, 8,    0x59, 0,    7,    0,    9, 0};
  std::string printed = Run(
      "list_timings in",
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
                         .Block(0x08, 0, {0x08, 0, 0, 0, 0, 0, 0, 0})));
  // The formula that refuses 144 Hz has said so: reduced blanking version 1 knows multiples of 60 Hz.
  printed = std::regex_replace(printed, std::regex("\\[ERR:Cvt2ToDtd:[^\n]*\n"), "");
  printed = std::regex_replace(std::regex_replace(printed, std::regex(" +"), " "), std::regex("\n"), "; ");
  EXPECT_EQ(
      printed,
      "0 established 640x480 60 Hz 25175 kHz; established 720x400 70 Hz; standard 1280x1024 60 Hz 108000 kHz; "
      "standard 1440x900 76 Hz; established 640x400 85 Hz 31500 kHz; formula 1920x1080 60 Hz 173000 kHz; "
      "formula 1920x1080 60 Hz 138500 kHz; standard 1280x1024 75 Hz 135000 kHz; VIC 5 1920x540i 60 Hz 74250 kHz; "
      "VIC 193 5120x2160 120 Hz 1485000 kHz; HDMI VIC 1 3840x2160 30 Hz 297000 kHz; VIC 96 3840x2160 50 Hz 594000 kHz; "
      "detailed 3840x2160 60 Hz 594224 kHz; DMT 82 1920x1080 60 Hz 148500 kHz; formula 2560x1440 144 Hz 586586 kHz; "
      "formula 2560x1440 144 Hz; VIC 97 3840x2160 60 Hz 594000 kHz; formula 1920x1080 60 Hz 173000 kHz; "
      "formula 1920x1080 144 Hz 333216 kHz; DMT 35 1280x1024 60 Hz 108000 kHz; DMT 1 640x350 85 Hz 31500 kHz; "
      "VIC 4 1280x720 60 Hz 74250 kHz; preferred 1920x1080 60 Hz 148500 kHz; detailed 1280x720 60 Hz 74250 kHz; ");
}

TEST_F(Examples, WriteEdid) {
  EXPECT_EQ(Run("write_edid out", Edid()), "0 ");
  const Image out(Out());
  ASSERT_EQ(out.Blocks().size(), 2u);
  EXPECT_TRUE(isValidEdid(out.get()));
  EXPECT_EQ(EDID_GetPhyAddr(out.get()), 0x1000);
  const BaseBlock base(out.Blocks()[0]);
  char name[14];
  ASSERT_EQ(VESA_GetProductName(&base->descriptors[1], name, sizeof name), 0);
  EXPECT_STREQ(name, "Example");
  const CtaExtension cta(out.Blocks()[1]);
  EXPECT_EQ(cta.DataBlocks().size(), 4u);
}

}  // namespace
}  // namespace reedid::test
