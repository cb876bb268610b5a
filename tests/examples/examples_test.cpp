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

TEST_F(Examples, WriteEdid) {
  ASSERT_EQ(Run("write_edid out"), 0) << printed;
  EXPECT_EQ(printed, "");
  const Image out = Open("out");
  ASSERT_EQ(out.Blocks().size(), 2u);
  EXPECT_TRUE(isValidEdid(out.get()));
  EXPECT_EQ(BytesOf(out.Blocks()[0])[126], 1);
  EXPECT_EQ(EDID_GetPhyAddr(out.get()), 0x1000);
  const BaseBlock base(out.Blocks()[0]);
  EXPECT_EQ((*base.Timings().begin()).pixelClock, 148500u);
  char name[14];
  ASSERT_EQ(VESA_GetProductName(&base->descriptors[1], name, sizeof name), 0);
  EXPECT_STREQ(name, "Example");
  EXPECT_EQ(CtaExtension(out.Blocks()[1]).DataBlocks().size(), 4u);
}

}  // namespace
}  // namespace reedid::test
