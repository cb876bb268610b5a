// Devices in the kernel's place: a receiver, and the files of connectors.

#include <linux/videodev2.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/tool/device_support.h"
#include "tools/reedid/device/connectors.h"
#include "tools/reedid/device/ddc.h"
#include "tools/reedid/device/files.h"
#include "tools/reedid/device/firmware.h"
#include "tools/reedid/device/override.h"
#include "tools/reedid/device/schemes.h"
#include "tools/reedid/device/v4l2.h"

namespace reedid::tool::device {
namespace {

// A capture card with one pad.
class Card : public DeviceFile {
 public:
  int Control(unsigned long request, void* argument) override {
    v4l2_edid& edid = *static_cast<v4l2_edid*>(argument);
    if (edid.pad != 1) return -EINVAL;
    if (request == VIDIOC_G_EDID) {
      if (held.empty()) return -ENODATA;
      edid.blocks = static_cast<uint32_t>(held.size() / 128);
      std::copy(held.begin(), held.end(), edid.edid);
      return getError;
    }
    if (setError != 0) return edid.blocks = 1, setError;
    held.assign(edid.edid, edid.edid + edid.blocks * 128);
    if (spoils) spoils(held);
    return 0;
  }
  ByteVector held;
  int getError = 0, setError = 0;
  std::function<void(ByteVector&)> spoils;
};

const Place kCard = {"v4l2:/dev/video0,pad=1", "/dev/video0,pad=1"};

TEST(Video, ReadsBackWhatItWrote) {
  const ByteVector before = ImageOf(1, 0), sent = test::Edid().Extension(Cta().Hdmi(0x3000)).Build();
  const ByteVector elsewhere = test::Edid().Extension(Cta().Hdmi(0x1200)).Build();
  struct Case {
    const char* name;
    std::function<void(ByteVector&)> spoils;
    const char* error;
    const char* note;
  };
  for (const auto& [name, spoils, error, note] : std::initializer_list<Case>{
           {"as sent", {}, "", "v4l2:/dev/video0,pad=1: holds 2 blocks; its source"},
           {"another address",
            [&](ByteVector& held) {
              if (held.size() == 256) held = elsewhere;
            },
            "", "1.2.0.0 instead of 3.0.0.0"},
           {"another address, and more",
            [&](ByteVector& held) {
              if (held.size() == 256) held = test::Edid().Extension(Cta().Hdmi(0x1200, {0x80, 30})).Build();
            },
            "byte", ""},
           {"a byte",
            [](ByteVector& held) {
              if (held.size() == 256) held[200] ^= 1;
            },
            "byte 72 of block 1", ""},
           {"a block",
            [](ByteVector& held) {
              if (held.size() == 256) held.resize(128);
            },
            "2 blocks were sent, 1 read back", ""},
       }) {
    SCOPED_TRACE(name);
    Card card;
    card.held = before;
    card.spoils = spoils;
    Notes notes;
    const std::string thrown = ErrorOf([&] { WriteV4l2(kCard, card, sent, notes); });
    EXPECT_HAS(thrown, error);
    EXPECT_EQ(thrown.empty(), *error == 0);
    EXPECT_HAS(Joined(notes), note);
    if (*error != 0) {
      EXPECT_TRUE(card.held == before) << "the card was left with half an EDID";
    }
  }
}

TEST(Video, TellsTheWayOut) {
  Card card;
  EXPECT_HAS(ErrorOf([&] { ReadV4l2(kCard, card); }), "give it one: reedid send FILE -o v4l2:/dev/video0,pad=1");
  EXPECT_HAS(ErrorOf([&] { ReadV4l2({"v4l2:/dev/video0", "/dev/video0"}, card); }), "no EDID at pad 0");
  EXPECT_HAS(ErrorOf([&] { ReadV4l2({"v4l2:/dev/video0,pad=x", "/dev/video0,pad=x"}, card); }), "the pad is a number");
  Notes notes;
  struct Case {
    int error;
    const char* message;
  };
  for (const auto& [error, message] :
       {Case{-E2BIG, "2 blocks, but the device holds 1 at most"}, Case{-EBUSY, "another program or driver uses it"},
        Case{-ENOTTY, "name an HDMI or DisplayPort receiver"}, Case{-EIO, "the kernel's log"}}) {
    card.setError = error;
    EXPECT_HAS(ErrorOf([&] { WriteV4l2(kCard, card, ImageOf(2, 1), notes); }), message);
  }
  EXPECT_TRUE(notes.empty() && card.held.empty());
}

// A machine with two cards: an HDMI connector on each, and DisplayPort on the second.
class Tree : public ::testing::Test {
 protected:
  Tree() : root_(std::filesystem::path(::testing::TempDir()) / ("reedid-devices-" + std::to_string(getpid()))) {
    std::filesystem::remove_all(root_);
    roots_ = {root_ / "sys", "/dev", root_ / "debug", root_ / "firmware"};
    Put("sys/class/drm/version", "drm 1.1.0");
    Connector("card0-HDMI-A-1", "connected\n", ImageOf(1, 0));
    std::filesystem::create_directory_symlink("../../i2c-3", root_ / "sys/class/drm/card0-HDMI-A-1/ddc");
    Connector("card1-HDMI-A-1", "disconnected\n", {});
    Connector("card1-DP-2", "connected\n", {});
    Put("sys/class/drm/card1-DP-2/i2c-7/name", "AUX");
  }
  ~Tree() override { std::filesystem::remove_all(root_); }
  void Connector(const std::string& name, const std::string& status, const ByteVector& edid) {
    Put("sys/class/drm/" + name + "/status", status);
    Put("sys/class/drm/" + name + "/edid", std::string(edid.begin(), edid.end()));
  }
  void Put(const std::string& path, const std::string& text) {
    std::filesystem::create_directories((root_ / path).parent_path());
    std::ofstream(root_ / path, std::ios::binary) << text;
  }
  std::string Get(const std::string& path) { return ReadKernelText(root_ / path); }
  Place At(const std::string& name) {
    Place place = PlaceIn(name);
    place.roots = roots_;
    return place;
  }

  std::filesystem::path root_;
  Roots roots_;
  Notes notes_;
};

TEST_F(Tree, HasConnectorsAndTheirBuses) {
  std::string found;
  for (const auto& connector : FindConnectors(roots_)) {
    found += connector.FullName() + " " + connector.status + " " + connector.bus + "\n";
  }
  EXPECT_EQ(found,
            "card0-HDMI-A-1 connected /dev/i2c-3\n"
            "card1-DP-2 connected /dev/i2c-7\n"
            "card1-HDMI-A-1 disconnected \n");
  EXPECT_TRUE(ReadConnector(At("connector:card0-HDMI-A-1"), notes_) == ImageOf(1, 0));
  for (const auto& [name, message] : {std::pair("HDMI-A-1", "name one of card0-HDMI-A-1, card1-HDMI-A-1"),
                                      {"VGA-1", "there are card0-HDMI-A-1, card1-DP-2, card1-HDMI-A-1"},
                                      {"card1-HDMI-A-1", "disconnected; plug a display in"},
                                      {"DP-2", "ask it with i2c:/dev/i2c-7"}}) {
    EXPECT_HAS(ErrorOf([&, name = name] { ReadConnector(At(std::string("connector:") + name), notes_); }), message);
  }
  EXPECT_HAS(ErrorOf([&] { ReadI2c(At("i2c:card1-HDMI-A-1"), notes_); }), "names no bus");
  EXPECT_HAS(ErrorOf([&] { ReadI2c(At("i2c:" + (root_ / "sys").string()), notes_); }), "is no device");
}

TEST_F(Tree, TakesAnOverride) {
  const ByteVector sent = ImageOf(2, 1);
  EXPECT_HAS(ErrorOf([&] { WriteOverride(At("override:DP-2"), sent, notes_); }), "debugfs is not mounted");
  Put("debug/dri/1/DP-2/edid_override", "");
  Put("debug/dri/1/DP-2/force", "digital\n");
  WriteOverride(At("override:DP-2"), sent, notes_);
  document::ByteVector held;
  EXPECT_EQ(ReadKernelFile(root_ / "debug/dri/1/DP-2/edid_override", held), 0);
  EXPECT_TRUE(held == sent);
  EXPECT_EQ(Get("sys/class/drm/card1-DP-2/status"), "on-digital") << "the forced state was lost";
  EXPECT_HAS(Joined(notes_), "reedid send --clear -o override:DP-2");
  EXPECT_HAS(ErrorOf([&] { WriteOverride(At("override:card0-HDMI-A-1"), sent, notes_); }), "use firmware:NAME");
}

TEST_F(Tree, NamesFirmwareAsTheKernelTakesIt) {
  EXPECT_EQ(FirmwareFile(At("firmware:tv-1"), notes_), (root_ / "firmware/edid/tv-1.bin").string());
  EXPECT_HAS(Joined(notes_), "drm.edid_firmware=HDMI-A-1:edid/tv-1.bin");
  for (const char* name : {"", "../x", ".x", "a/b", "a,b", "a:b", "a b", "1920x1080"}) {
    EXPECT_HAS(ErrorOf([&] { FirmwareFile(At(std::string("firmware:") + name), notes_); }), "name") << name;
  }
  EXPECT_HAS(ErrorOf([&] { ClearFirmware(At("firmware:none"), notes_); }), "nothing is to be undone");
}

}  // namespace
}  // namespace reedid::tool::device
